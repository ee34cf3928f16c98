#include "LxBufferReceive/FrameQueue.h"

#include <algorithm>

#include "LxBuffer/LxGenDCContainer.h"

namespace LxDetail
{

namespace
{

constexpr std::chrono::seconds RateWindow(1);

/// Block IDs of 16 bits go from here to 1 (GigE Vision 1.2, GVSP block_id: 0 is reserved).
constexpr uint64_t LastShortBlockID = 65535;
/// A larger gap where block IDs of 16 bits might begin again is a device that began to count anew.
constexpr uint64_t MaxGapOverEnd = 1000;

/// How many block IDs lie between two; 0 when the second does not follow the first.
uint64_t GetGap(uint64_t aLast, uint64_t aNext)
{
    if (aNext > aLast) {
        return aNext - aLast - 1;
    }
    if (aLast > LastShortBlockID) {
        return 0;
    }
    const uint64_t gap = LastShortBlockID - aLast + aNext - 1;
    return gap <= MaxGapOverEnd ? gap : 0;
}

}  // namespace

FrameQueue::FrameQueue(const LxStreamConfiguration &aConfiguration)
    : mLimit(std::max(aConfiguration.mQueueLimit, 1u)), mDeliverIncomplete(aConfiguration.mDeliverIncomplete)
{
}

void FrameQueue::Start()
{
    std::deque<std::shared_ptr<const LxBuffer>> old;
    std::lock_guard lock(mMutex);
    old.swap(mFrames);
    mStarted = true;
    mLost = false;
    ++mStarts;
    mStatistics = LxStreamStatistics();
    mLastBlockID = 0;
    mExplainedGap = 0;
    mArrivals.clear();
    mChanged.notify_all();
}

void FrameQueue::Stop()
{
    std::deque<std::shared_ptr<const LxBuffer>> old;
    std::lock_guard lock(mMutex);
    old.swap(mFrames);
    mStarted = false;
    mChanged.notify_all();
}

void FrameQueue::SetLost(bool aLost)
{
    std::lock_guard lock(mMutex);
    mLost = aLost;
    // A device that comes back may have restarted its numbers.
    mLastBlockID = 0;
    mExplainedGap = 0;
    mChanged.notify_all();
}

uint64_t FrameQueue::GetSize(const LxBuffer &aBuffer)
{
    if (const auto *container = dynamic_cast<const LxGenDCContainer *>(aBuffer.GetGenDC())) {
        return container->GetSize();
    }
    const LxImage *image = aBuffer.GetImage();
    return image == nullptr ? 0 : image->GetDataSize();
}

void FrameQueue::CountGap(uint64_t aBlockID)
{
    if (aBlockID != 0) {
        if (mLastBlockID != 0) {
            const uint64_t gap = GetGap(mLastBlockID, aBlockID);
            mStatistics.mMissed += gap - std::min(gap, mExplainedGap);
        }
        mLastBlockID = aBlockID;
    }
    mExplainedGap = 0;
}

void FrameQueue::Push(std::shared_ptr<const LxBuffer> aBuffer)
{
    if (aBuffer == nullptr) {
        return;
    }
    std::shared_ptr<const LxBuffer> oldest;  // destroyed after the lock: that gives the buffer back to its pool
    std::lock_guard lock(mMutex);
    if (!mStarted) {
        oldest = std::move(aBuffer);
        return;
    }
    CountGap(aBuffer->GetBlockID());
    const uint64_t bytes = GetSize(*aBuffer);
    if (aBuffer->GetStatus() != LxBufferStatus::Complete) {
        ++mStatistics.mIncomplete;
        if (!mDeliverIncomplete) {
            oldest = std::move(aBuffer);
            return;
        }
    }
    else {
        ++mStatistics.mDelivered;
        mStatistics.mBytes += bytes;
        const Clock::time_point now = Clock::now();
        mArrivals.push_back({now, bytes});
        while (mArrivals.front().mTime + RateWindow < now) {
            mArrivals.pop_front();
        }
    }
    if (mFrames.size() >= mLimit) {
        oldest = std::move(mFrames.front());
        mFrames.pop_front();
        if (oldest->GetStatus() == LxBufferStatus::Complete) {
            --mStatistics.mDelivered;
            mStatistics.mBytes -= GetSize(*oldest);
            ++mStatistics.mDropped;
        }
    }
    mFrames.push_back(std::move(aBuffer));
    mChanged.notify_one();
}

void FrameQueue::CountDropped(uint64_t aFrames)
{
    std::lock_guard lock(mMutex);
    mStatistics.mDropped += aFrames;
    mExplainedGap += aFrames;
}

void FrameQueue::CountIncomplete(uint64_t aFrames)
{
    std::lock_guard lock(mMutex);
    mStatistics.mIncomplete += aFrames;
    mExplainedGap += aFrames;
}

void FrameQueue::SetPackets(uint64_t aResent, uint64_t aMissing)
{
    std::lock_guard lock(mMutex);
    mStatistics.mResentPackets = aResent;
    mStatistics.mMissingPackets = aMissing;
}

LxResult FrameQueue::Retrieve(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout)
{
    std::unique_lock lock(mMutex);
    if (!mStarted) {
        return LxResult(LxResultCode::InvalidState, "The stream is not started.");
    }
    const uint64_t start = mStarts;
    const auto woken = [&] { return !mFrames.empty() || !mStarted || mLost || mStarts != start; };
    if (!mChanged.wait_for(lock, std::chrono::milliseconds(aTimeout), woken)) {
        return LxResult(LxResultCode::Timeout, "No frame came in time.");
    }
    if (!mStarted || mStarts != start) {
        return LxResult(LxResultCode::Aborted, "The stream was stopped.");
    }
    if (mFrames.empty()) {
        return LxResult(LxResultCode::NotConnected, "The device does not answer any more.");
    }
    std::shared_ptr<const LxBuffer> buffer = std::move(mFrames.front());
    mFrames.pop_front();
    lock.unlock();
    // What the caller held before is given back outside the lock too.
    aBuffer = std::move(buffer);
    return LxResult();
}

void FrameQueue::GetStatistics(LxStreamStatistics &aStatistics) const
{
    std::lock_guard lock(mMutex);
    aStatistics = mStatistics;
    const Clock::time_point now = Clock::now();
    uint64_t frames = 0;
    uint64_t bytes = 0;
    for (const Arrival &arrival : mArrivals) {
        if (arrival.mTime + RateWindow >= now) {
            ++frames;
            bytes += arrival.mBytes;
        }
    }
    const double seconds = std::chrono::duration<double>(RateWindow).count();
    aStatistics.mFrameRate = static_cast<double>(frames) / seconds;
    aStatistics.mBandwidth = static_cast<double>(bytes) / seconds;
}

}  // namespace LxDetail
