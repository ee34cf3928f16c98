#pragma once

#include <cstdint>
#include <deque>
#include <mutex>

/// The bytes that were sent and are expected back. Thread-safe.
class LoopbackRecord
{
public:
    struct Counts
    {
        uint64_t mQueued = 0;   ///< Bytes that were expected since the last reset.
        uint64_t mMatched = 0;  ///< Bytes of these that came.
    };

    /// Expects nothing, and counts from 0.
    void Reset();
    void Expect(const uint8_t *aBytes, uint32_t aCount);
    /// Compares received bytes with what is expected next. A byte that is not the expected one is taken for a later
    /// one, and those between them for lost: they are expected no more.
    void Compare(const uint8_t *aBytes, uint32_t aCount);
    Counts GetCounts() const;

private:
    mutable std::mutex mMutex;  // guards the members below
    std::deque<uint8_t> mExpected;
    Counts mCounts;
};
