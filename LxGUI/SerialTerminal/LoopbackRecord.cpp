#include "LxGUI/SerialTerminal/LoopbackRecord.h"

void LoopbackRecord::Reset()
{
    const std::lock_guard lock(mMutex);
    mExpected.clear();
    mExpected.shrink_to_fit();
    mCounts = Counts();
}

void LoopbackRecord::Expect(const uint8_t *aBytes, uint32_t aCount)
{
    const std::lock_guard lock(mMutex);
    mExpected.insert(mExpected.end(), aBytes, aBytes + aCount);
    mCounts.mQueued += aCount;
}

void LoopbackRecord::Compare(const uint8_t *aBytes, uint32_t aCount)
{
    const std::lock_guard lock(mMutex);
    for (uint32_t i = 0; i < aCount && !mExpected.empty(); ++i) {
        bool matched = false;
        while (!matched && !mExpected.empty()) {
            matched = mExpected.front() == aBytes[i];
            mExpected.pop_front();
        }
        mCounts.mMatched += matched ? 1 : 0;
    }
}

LoopbackRecord::Counts LoopbackRecord::GetCounts() const
{
    const std::lock_guard lock(mMutex);
    return mCounts;
}
