#pragma once

// Internal: one opened stream channel of a device, from its opening until the device or the application ends it.

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>

#include "LxBuffer/LxBuffer.h"
#include "LxBufferReceive/LxStream.h"
#include "NodeMap/ArvSupport.h"

struct _ArvBuffer;
struct _ArvDevice;
struct _ArvStream;

namespace LxDetail
{

/// What the library has counted in one session.
struct StreamCounters
{
    uint64_t mUnderruns = 0;  ///< Frames that found no free buffer.
    uint64_t mResentPackets = 0;
    uint64_t mMissingPackets = 0;

    StreamCounters &operator+=(const StreamCounters &aOther)
    {
        mUnderruns += aOther.mUnderruns;
        mResentPackets += aOther.mResentPackets;
        mMissingPackets += aOther.mMissingPackets;
        return *this;
    }
};

/// The image that a frame carries.
struct FrameGeometry
{
    uint32_t mWidth = 0;
    uint32_t mHeight = 0;
    LxPixelType mPixelType = LxPixelType::None;
    uint32_t mPaddingX = 0;
    uint32_t mPaddingY = 0;
    uint32_t mOffsetX = 0;
    uint32_t mOffsetY = 0;
};

/// What a session is opened with.
struct StreamFormat
{
    uint64_t mPayloadSize = 0;  ///< the size of the buffers in bytes
    FrameGeometry mGeometry;    ///< as the features say; for frames that are incomplete from the first one on
};

/// Receives frames of at most a fixed size into buffers of its own, without copying.
///
/// A frame that is handed out keeps its memory for as long as somebody refers to it, and gives it back to the session
/// afterwards if that still runs. Thread-safe.
class AravisStreamSession : public std::enable_shared_from_this<AravisStreamSession>
{
public:
    /// Opens the stream channel of a device.
    /// @param aRestoreCount how often the link had been restored when the session was opened.
    static LxResult Open(_ArvDevice *aDevice, const LxStreamConfiguration &aConfiguration, const StreamFormat &aFormat,
                         uint64_t aRestoreCount, std::shared_ptr<AravisStreamSession> &aSession);
    ~AravisStreamSession();

    /// Waits for the next frame, complete or not; null when none came in time. For one thread.
    std::shared_ptr<const LxBuffer> Pop(std::chrono::milliseconds aTimeout);
    StreamCounters GetCounters() const;
    uint64_t GetPayloadSize() const { return mPayloadSize; }
    uint64_t GetRestoreCount() const { return mRestoreCount; }
    /// Ends the reception. Frames that are out stay readable.
    void Close();

private:
    struct HeldFrame;

    AravisStreamSession(GObjectPtr<_ArvStream> aStream, const StreamFormat &aFormat, uint64_t aRestoreCount);

    void Describe(_ArvBuffer *aFrame, LxBuffer &aBuffer);
    void AttachContainer(_ArvBuffer *aFrame, LxBuffer &aBuffer);
    bool AttachImage(_ArvBuffer *aFrame, bool aComplete, LxImage &aImage);
    void Recycle(GObjectPtr<_ArvBuffer> aBuffer);

    const uint64_t mPayloadSize;
    const uint64_t mRestoreCount;
    FrameGeometry mGeometry;    // of the last complete frame; used by Pop() only
    mutable std::mutex mMutex;  // guards mStream
    GObjectPtr<_ArvStream> mStream;
};

}  // namespace LxDetail
