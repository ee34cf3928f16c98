#include "Backends/Simulation/SerialQueue.h"

#include <algorithm>

namespace LxDetail
{

using namespace std::chrono_literals;

namespace
{

// A wait that ends so much too late has been one of the whole program.
constexpr auto StoodStill = 50ms;

}  // namespace

void SerialQueue::SetCapacity(uint32_t aCapacity)
{
    std::lock_guard lock(mMutex);
    mCapacity = std::max(aCapacity, 1u);
    mChanged.notify_all();
}

void SerialQueue::SetNoise(const LxSimulatedSerialNoise &aNoise)
{
    std::lock_guard lock(mMutex);
    mNoise = aNoise;
    mSeen = 0;
}

void SerialQueue::SetStalled(bool aStalled)
{
    std::lock_guard lock(mMutex);
    mStalled = aStalled;
    mChanged.notify_all();
}

void SerialQueue::SetBroken(bool aPush, bool aPop)
{
    std::lock_guard lock(mMutex);
    mPushBroken = aPush;
    mPopBroken = aPop;
    mChanged.notify_all();
}

void SerialQueue::Close()
{
    std::lock_guard lock(mMutex);
    mClosed = true;
    mChanged.notify_all();
}

void SerialQueue::Clear()
{
    std::lock_guard lock(mMutex);
    mBytes.clear();
    mHead = 0;
    mSegments.clear();
    mLineFree = {};
    mChanged.notify_all();
}

uint32_t SerialQueue::Push(const uint8_t *aData, uint32_t aCount, std::chrono::nanoseconds aByteTime)
{
    std::unique_lock lock(mMutex);
    uint32_t taken = 0;
    while (taken < aCount && !mClosed && !mPushBroken) {
        const size_t waiting = mBytes.size() - mHead;
        if (waiting >= mCapacity) {
            mChanged.wait(lock);
            continue;
        }
        const auto count = static_cast<uint32_t>(std::min<size_t>(aCount - taken, mCapacity - waiting));
        Append(aData + taken, count, aByteTime);
        taken += count;
        mChanged.notify_all();
    }
    return taken;
}

void SerialQueue::Append(const uint8_t *aData, uint32_t aCount, std::chrono::nanoseconds aByteTime)
{
    const size_t before = mBytes.size();
    const auto nth = [this](uint32_t aPeriod) { return aPeriod != 0 && mSeen % aPeriod == 0; };
    for (uint32_t i = 0; i < aCount; ++i) {
        ++mSeen;
        if (mSeen <= mNoise.mLoseFirst || nth(mNoise.mLossPeriod)) {
            continue;
        }
        const bool corrupt = mSeen <= mNoise.mCorruptFirst || nth(mNoise.mCorruptionPeriod);
        mBytes.push_back(corrupt ? aData[i] ^ 1 : aData[i]);
    }
    const size_t count = mBytes.size() - before;
    if (count == 0) {
        return;
    }
    if (aByteTime == 0ns && !mSegments.empty() && mSegments.back().mByteTime == 0ns) {
        mSegments.back().mCount += count;
        return;
    }
    const Clock::time_point start = std::max(mLineFree, Clock::now());
    mSegments.push_back({count, start, aByteTime});
    mLineFree = start + aByteTime * static_cast<int64_t>(count);
}

size_t SerialQueue::CountArrived(Clock::time_point aNow) const
{
    size_t count = 0;
    for (const Segment &segment : mSegments) {
        size_t arrived = segment.mCount;
        if (segment.mByteTime > 0ns) {
            const auto passed = std::max(std::chrono::nanoseconds(aNow - segment.mStart), 0ns);
            arrived = std::min(arrived, static_cast<size_t>(passed / segment.mByteTime));
        }
        else if (aNow < segment.mStart) {
            arrived = 0;
        }
        count += arrived;
        if (arrived < segment.mCount) {
            break;
        }
    }
    return count;
}

void SerialQueue::Take(uint8_t *aData, size_t aCount)
{
    std::copy_n(mBytes.begin() + static_cast<std::ptrdiff_t>(mHead), aCount, aData);
    mHead += aCount;
    if (mHead == mBytes.size()) {
        mBytes.clear();
        mHead = 0;
    }
    else if (mHead >= mCapacity) {
        mBytes.erase(mBytes.begin(), mBytes.begin() + static_cast<std::ptrdiff_t>(mHead));
        mHead = 0;
    }
    while (aCount > 0) {
        Segment &first = mSegments.front();
        const size_t part = std::min(aCount, first.mCount);
        first.mCount -= part;
        first.mStart += first.mByteTime * static_cast<int64_t>(part);
        aCount -= part;
        if (first.mCount == 0) {
            mSegments.pop_front();
        }
    }
}

uint32_t SerialQueue::Pop(uint8_t *aData, uint32_t aCapacity, std::chrono::milliseconds aTimeout)
{
    std::unique_lock lock(mMutex);
    Clock::time_point deadline = Clock::now() + aTimeout;
    bool final = false;
    for (;;) {
        if (mClosed || mPopBroken) {
            return 0;
        }
        const Clock::time_point now = Clock::now();
        if (const size_t arrived = mStalled ? 0 : CountArrived(now); arrived > 0) {
            const size_t count = std::min<size_t>(arrived, aCapacity);
            Take(aData, count);
            mChanged.notify_all();
            return static_cast<uint32_t>(count);
        }
        if (now >= deadline) {
            if (final || now - deadline < StoodStill) {
                return 0;
            }
            // What is simulated stood still with the program: it gets its time.
            deadline = now + aTimeout;
            final = true;
        }
        Clock::time_point until = deadline;
        if (!mStalled && !mSegments.empty()) {
            until = std::min(until, mSegments.front().mStart + mSegments.front().mByteTime);
        }
        mChanged.wait_until(lock, until);
    }
}

}  // namespace LxDetail
