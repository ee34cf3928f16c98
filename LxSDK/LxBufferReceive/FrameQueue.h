#pragma once

// Internal: received frames on their way to the application, and what is counted about them.

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>

#include "LxBufferReceive/LxStream.h"

namespace LxDetail
{

/// A queue of received frames between a receiving thread and the application, with the statistics of a stream. When it
/// is full the oldest frame makes room. Thread-safe; no lock is held while a frame is destroyed.
class FrameQueue
{
public:
    explicit FrameQueue(const LxStreamConfiguration &aConfiguration);

    /// Empties the queue, sets the statistics to 0 and lets frames in.
    void Start();
    /// Lets no more frames in, drops the waiting ones and ends every Retrieve() with Aborted.
    void Stop();
    /// While lost, a Retrieve() that finds no frame fails at once with NotConnected.
    void SetLost(bool aLost);

    /// A frame arrived. An incomplete one is counted, and queued only when the configuration asks for it. Gaps in the
    /// block IDs are counted as missed frames, also where numbers of 16 bits begin again; a block ID that is 0 or
    /// otherwise not larger than the last one counts nothing.
    void Push(std::shared_ptr<const LxBuffer> aBuffer);
    /// Complete frames arrived and found no buffer: they are dropped, and the gap in the block IDs is not counted
    /// again.
    void CountDropped(uint64_t aFrames = 1);
    /// Incomplete frames arrived that are not worth a Push().
    void CountIncomplete(uint64_t aFrames = 1);
    /// What the transport has counted since Start().
    void SetPackets(uint64_t aResent, uint64_t aMissing);

    /// As LxStream::RetrieveBuffer().
    LxResult Retrieve(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout);
    void GetStatistics(LxStreamStatistics &aStatistics) const;

private:
    using Clock = std::chrono::steady_clock;

    struct Arrival
    {
        Clock::time_point mTime;
        uint64_t mBytes;
    };

    static uint64_t GetSize(const LxBuffer &aBuffer);
    void CountGap(uint64_t aBlockID);

    const size_t mLimit;
    const bool mDeliverIncomplete;

    mutable std::mutex mMutex;  // guards all members below
    std::condition_variable mChanged;
    std::deque<std::shared_ptr<const LxBuffer>> mFrames;
    bool mStarted = false;
    bool mLost = false;
    uint64_t mStarts = 0;  // so that a Retrieve() of an earlier start does not take frames of a later one
    LxStreamStatistics mStatistics;
    uint64_t mLastBlockID = 0;
    uint64_t mExplainedGap = 0;     // frames that were counted as dropped or incomplete since the last block ID
    std::deque<Arrival> mArrivals;  // of the last second
};

}  // namespace LxDetail
