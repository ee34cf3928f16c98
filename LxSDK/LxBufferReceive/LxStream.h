#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxBuffer/LxBuffer.h"

class LxDevice;

/// What a stream has counted since Start().
struct LxStreamStatistics
{
    uint64_t mDelivered = 0;       ///< Buffers handed out or waiting, complete ones.
    uint64_t mIncomplete = 0;      ///< Frames with lost packets, delivered with their status or dropped.
    uint64_t mDropped = 0;         ///< Complete frames that the application was too slow to take.
    uint64_t mMissed = 0;          ///< Frames that never came, from gaps in the block IDs.
    uint64_t mResentPackets = 0;   ///< Packets that came after they were asked for again.
    uint64_t mMissingPackets = 0;  ///< Packets that never came.
    uint64_t mBytes = 0;           ///< Bytes of the delivered payloads.
    double mFrameRate = 0.0;       ///< Delivered frames per second over the last second.
    double mBandwidth = 0.0;       ///< Delivered bytes per second over the last second.
};

/// How a stream works; the defaults suit most cameras.
struct LxStreamConfiguration
{
    uint32_t mBufferCount = 8;           ///< Buffers in flight, 2 to 64.
    uint32_t mSocketBuffer = 16u << 20;  ///< Bytes asked from the system for the receive socket; it may give less.
    uint32_t mPacketSize = 0;            ///< GigE Vision packet size in bytes, 0 negotiates the largest that passes.
    bool mDeliverIncomplete = false;     ///< Hand out frames with lost packets too.
    uint32_t mQueueLimit = 4;            ///< Received buffers that wait; when full the oldest is dropped. 1 to 32.
};

/// Receives the frames of a device.
///
/// Open, Start, take buffers, Stop. Stop() and the destructor may be called from any thread but a callback's. The
/// device must outlive the stream or at least its last operation.
/// @thread{any}
class LX_API LxStream
{
public:
    LxStream();
    virtual ~LxStream();
    LxStream(const LxStream &) = delete;
    LxStream &operator=(const LxStream &) = delete;

    /// Binds the stream to a device. Errors: InvalidArgument (null, or a configuration out of range), AlreadyOpen,
    /// NotSupported (the device streams nothing), NotConnected, AccessDenied (the device is connected read-only).
    LxResult Open(LxDevice *aDevice, const LxStreamConfiguration &aConfiguration = LxStreamConfiguration());
    /// Stops, and forgets the device. Idempotent.
    LxResult Close();
    /// Whether the stream is bound to a device.
    bool IsOpened() const;

    /// Locks the features that must not change while streaming, allocates the buffers and starts the acquisition.
    /// Errors: InvalidState (not open), AlreadyOpen (already started), those of the device.
    LxResult Start();
    /// Stops the acquisition; RetrieveBuffer() that waits ends with Aborted. Idempotent.
    LxResult Stop();
    /// Whether the acquisition runs, from Start() to Stop(), also while the device is lost.
    bool IsStarted() const;

    /// Takes the oldest received frame. The buffer belongs to the stream's pool and returns to it when the last
    /// reference goes; holding many makes the stream drop frames. A buffer stays readable after Stop() and Close().
    /// @param aTimeout in milliseconds.
    /// @return Timeout when no frame came, Aborted, InvalidState (not started), NotConnected (the device is lost).
    LxResult RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout);

    /// What was counted since the last Start(); zeros before the first.
    void GetStatistics(LxStreamStatistics &aStatistics) const;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
