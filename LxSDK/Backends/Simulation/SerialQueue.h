#pragma once

// Internal: one direction of a simulated serial port.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "LxSimulation/LxSimulatedSerial.h"

namespace LxDetail
{

/// Bytes on their way, each of which arrives at its time. Thread-safe.
class SerialQueue
{
public:
    using Clock = std::chrono::steady_clock;

    void SetCapacity(uint32_t aCapacity);
    void SetNoise(const LxSimulatedSerialNoise &aNoise);
    /// While stalled nothing comes out.
    void SetStalled(bool aStalled);
    /// While an end is broken, Push() or Pop() there return at once.
    void SetBroken(bool aPush, bool aPop);
    /// Breaks both ends for good.
    void Close();
    void Clear();

    /// Takes bytes, waiting while the queue is full.
    /// @param aByteTime how long each is on its way after the one before it; 0: they are there at once.
    /// @return how many were taken; fewer than aCount when the end broke.
    uint32_t Push(const uint8_t *aData, uint32_t aCount, std::chrono::nanoseconds aByteTime);
    /// Waits for at least one byte until the time-out.
    /// @return how many there are; 0: none came in time or the end is broken.
    uint32_t Pop(uint8_t *aData, uint32_t aCapacity, std::chrono::milliseconds aTimeout);

private:
    struct Segment
    {
        size_t mCount;
        Clock::time_point mStart;
        std::chrono::nanoseconds mByteTime;
    };

    void Append(const uint8_t *aData, uint32_t aCount, std::chrono::nanoseconds aByteTime);
    /// How many bytes have arrived.
    size_t CountArrived(Clock::time_point aNow) const;
    void Take(uint8_t *aData, size_t aCount);

    std::mutex mMutex;  // guards all members below
    std::condition_variable mChanged;
    std::vector<uint8_t> mBytes;  // from mHead on
    size_t mHead = 0;
    std::deque<Segment> mSegments;
    Clock::time_point mLineFree{};
    uint32_t mCapacity = 65536;
    LxSimulatedSerialNoise mNoise;
    uint64_t mSeen = 0;  // bytes since the noise was set
    bool mStalled = false;
    bool mPushBroken = false;
    bool mPopBroken = false;
    bool mClosed = false;
};

}  // namespace LxDetail
