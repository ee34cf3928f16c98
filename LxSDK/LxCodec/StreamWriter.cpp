#include "LxCodec/StreamWriter.h"

#include <algorithm>
#include <cstring>

namespace LxDetail
{

void StreamWriter::Write(uint8_t *aTo, size_t aSize)
{
    if (aTo != mEnd) {
        WriteRest();
    }
    mEnd = aTo + aSize;
    uint8_t *to = aTo - mRest;
    const uint8_t *from = GetRoom() - mRest;
    size_t size = aSize + mRest;
    // whole lines begin behind what shares its line with somebody else
    const size_t misaligned = reinterpret_cast<uintptr_t>(to) % kStreamUnit;
    const size_t head = misaligned == 0 ? 0 : std::min(size, kStreamUnit - misaligned);
    if (head != 0) {
        std::memcpy(to, from, head);
        to += head;
        from += head;
        size -= head;
    }
    mRest = size % kStreamUnit;
    mKernels.mStream(from, to, size - mRest);
    if (mRest != 0) {
        std::memmove(GetRoom() - mRest, from + (size - mRest), mRest);
    }
}

void StreamWriter::Finish()
{
    WriteRest();
    mEnd = nullptr;
    mKernels.mFlush();
}

void StreamWriter::WriteRest()
{
    if (mRest != 0) {
        std::memcpy(mEnd - mRest, GetRoom() - mRest, mRest);
        mRest = 0;
    }
}

}  // namespace LxDetail
