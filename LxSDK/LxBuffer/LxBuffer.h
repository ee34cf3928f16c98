#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxBuffer/ILxGenDC.h"
#include "LxBuffer/ILxH264AccessUnit.h"
#include "LxBuffer/LxImage.h"

/// What a buffer is meant to carry.
enum class LxPayloadType : uint32_t
{
    None = 0,
    Image = 1,
    GenDC = 2,
    H264 = 3,
    Raw = 4,
};

/// What happened to the buffer while it was received.
enum class LxBufferStatus : uint32_t
{
    Complete = 0,        ///< Every byte arrived.
    MissingPackets = 1,  ///< Packets of the frame were lost; their place holds old data.
    Timeout = 2,         ///< The frame ended without its last packets.
    SizeMismatch = 3,    ///< What arrived does not fit into the buffer or contradicts its own description.
    Aborted = 4,         ///< Reception was stopped.
};

/// A received or made frame: at most one payload, except that a GenDC container may come with a plain image.
///
/// Movable, not copyable; not synchronised. Pointers that it hands out are valid until it is freed, detached, changed
/// or destroyed. A buffer that was moved from has the payload type None and no payload.
/// @thread{any; one object by one thread at a time}
class LX_API LxBuffer
{
public:
    /// An empty buffer for this payload; an image buffer has an empty image.
    explicit LxBuffer(LxPayloadType aPayloadType = LxPayloadType::None);
    ~LxBuffer();
    /// Takes everything over.
    LxBuffer(LxBuffer &&aOther) noexcept;
    /// Frees what was there and takes everything over.
    LxBuffer &operator=(LxBuffer &&aOther) noexcept;

    /// As given to the constructor; whether the payload is there its operation below says.
    LxPayloadType GetPayloadType() const { return mPayloadType; }

    /// The image, if the payload is an image or the buffer was given one; otherwise null. An image buffer has an image
    /// from the start, empty until it is allocated or attached.
    LxImage *GetImage();
    /// The same for reading only.
    const LxImage *GetImage() const;
    /// The container, or null. Owned by the buffer.
    const ILxGenDCContainer *GetGenDC() const { return mGenDC.get(); }
    /// The access unit, or null. Owned by the buffer.
    const ILxH264AccessUnit *GetH264AccessUnit() const { return mH264.get(); }

    /// Gives the buffer a container; null takes it away.
    void SetGenDC(std::shared_ptr<const ILxGenDCContainer> aContainer);
    /// Gives the buffer an access unit; null takes it away.
    void SetH264AccessUnit(std::shared_ptr<const ILxH264AccessUnit> aUnit);
    /// Gives a buffer of any payload type an (empty) image.
    void AddImage();

    /// The first byte of the image's memory; null when the buffer is empty.
    const void *GetDataPointer() const;
    /// The same for writing.
    void *GetDataPointer();
    /// Drops memory of the buffer's own, the container and the access unit; the buffer is then empty (an image that it
    /// has stays, empty). The numbers and the status stay.
    void Free();
    /// Forgets attached memory; otherwise like Free().
    void Detach();

    /// The number that the device gave the frame (GigE Vision block ID); 0 when unknown.
    uint64_t GetBlockID() const { return mBlockID; }
    /// Sets what GetBlockID() gives.
    void SetBlockID(uint64_t aBlockID) { mBlockID = aBlockID; }
    /// The device's time of exposure, in nanoseconds; 0 when unknown.
    uint64_t GetTimestamp() const { return mTimestamp; }
    /// Sets what GetTimestamp() gives.
    void SetTimestamp(uint64_t aTimestamp) { mTimestamp = aTimestamp; }
    /// The host's time of arrival, in nanoseconds of the system's monotonic clock; 0 when unknown.
    uint64_t GetReceptionTime() const { return mReceptionTime; }
    /// Sets what GetReceptionTime() gives.
    void SetReceptionTime(uint64_t aTime) { mReceptionTime = aTime; }
    /// What happened to the frame on its way; Complete for a buffer that was not received.
    LxBufferStatus GetStatus() const { return mStatus; }
    /// Sets what GetStatus() gives.
    void SetStatus(LxBufferStatus aStatus) { mStatus = aStatus; }

private:
    LxPayloadType mPayloadType;
    std::unique_ptr<LxImage> mImage;
    std::shared_ptr<const ILxGenDCContainer> mGenDC;
    std::shared_ptr<const ILxH264AccessUnit> mH264;
    uint64_t mBlockID = 0;
    uint64_t mTimestamp = 0;
    uint64_t mReceptionTime = 0;
    LxBufferStatus mStatus = LxBufferStatus::Complete;
};
