#include "LxCodec/H264Syntax.h"

#include <algorithm>

namespace LxDetail::H264
{

namespace
{

constexpr uint32_t kMostSequences = 32;     // 7.4.2.1.1
constexpr uint32_t kMostPictures = 256;     // 7.4.2.2
constexpr uint32_t kRecoveryPoint = 6;      // payload type of SEI, D.1
constexpr uint32_t kMostCycleFrames = 255;  // num_ref_frames_in_pic_order_cnt_cycle

/// Reads the bits of a NAL unit behind its header, emulation prevention bytes (7.4.1) taken out. Behind the end
/// everything is 0.
class BitReader
{
public:
    explicit BitReader(std::span<const uint8_t> aUnit) : mBytes(aUnit.subspan(std::min<size_t>(1, aUnit.size()))) {}

    bool IsAtEnd() const { return mPosition >= mBytes.size(); }
    bool IsBeyondEnd() const { return mIsBeyondEnd; }

    uint32_t Bits(unsigned aCount)
    {
        uint32_t value = 0;
        for (; aCount > 0; --aCount) {
            value = value << 1 | Bit();
        }
        return value;
    }

    /// ue(v) of 9.1
    uint32_t Unsigned()
    {
        unsigned zeros = 0;
        while (zeros < 32 && !mIsBeyondEnd && Bit() == 0) {
            ++zeros;
        }
        if (zeros == 32) {
            mIsBeyondEnd = true;
            return 0;
        }
        return (uint32_t{1} << zeros) - 1 + Bits(zeros);
    }

    /// se(v) of 9.1.1
    int64_t Signed()
    {
        const int64_t code = Unsigned();
        return code % 2 ? (code + 1) / 2 : -code / 2;
    }

private:
    uint32_t Bit()
    {
        if (mBit == 0) {
            if (mZeros >= 2 && !IsAtEnd() && mBytes[mPosition] == 3) {
                ++mPosition;
                mZeros = 0;
            }
            if (IsAtEnd()) {
                mIsBeyondEnd = true;
                return 0;
            }
            mByte = mBytes[mPosition++];
            mZeros = mByte == 0 ? mZeros + 1 : 0;
            mBit = 8;
        }
        --mBit;
        return mByte >> mBit & 1;
    }

    const std::span<const uint8_t> mBytes;
    size_t mPosition = 0;
    unsigned mBit = 0;  // of mByte, not yet read
    uint8_t mByte = 0;
    unsigned mZeros = 0;
    bool mIsBeyondEnd = false;
};

// Profiles whose sequence parameter sets tell the chroma format (7.3.2.1.1).
bool HasChromaFormat(uint32_t aProfile)
{
    static constexpr uint32_t profiles[] = {100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};
    return std::find(std::begin(profiles), std::end(profiles), aProfile) != std::end(profiles);
}

void SkipScalingList(BitReader &aBits, unsigned aSize)
{
    int64_t last = 8;
    int64_t next = 8;
    for (unsigned i = 0; i < aSize && !aBits.IsBeyondEnd(); ++i) {
        if (next != 0) {
            next = (last + aBits.Signed() + 256) % 256;
        }
        last = next == 0 ? last : next;
    }
}

}  // namespace

bool NalUnit::HasRecoveryPoint() const
{
    if (mType != 6) {
        return false;
    }
    BitReader bits(mBytes);
    const auto number = [&bits] {
        uint32_t value = 0;
        uint32_t byte = 0;
        do {
            byte = bits.Bits(8);
            value += byte;
        } while (byte == 255 && !bits.IsBeyondEnd());
        return value;
    };
    while (!bits.IsAtEnd()) {
        const uint32_t type = number();
        const uint32_t size = number();
        if (bits.IsBeyondEnd()) {
            return false;
        }
        if (type == kRecoveryPoint) {
            return true;
        }
        for (uint32_t i = 0; i < size && !bits.IsBeyondEnd(); ++i) {
            bits.Bits(8);
        }
    }
    return false;
}

void Split(std::span<const uint8_t> aStream, std::vector<NalUnit> &aUnits)
{
    aUnits.clear();
    // a start code is 0, 0, 1: a larger third byte is in none that begins up to there
    const auto find = [&](auto aFrom) {
        while (aStream.end() - aFrom >= 3) {
            if (aFrom[2] > 1) {
                aFrom += 3;
            }
            else if (aFrom[2] == 1 && aFrom[1] == 0 && aFrom[0] == 0) {
                return aFrom;
            }
            else {
                ++aFrom;
            }
        }
        return aStream.end();
    };
    for (auto start = find(aStream.begin()); start != aStream.end();) {
        const auto begin = start + 3;
        start = find(begin);
        auto end = start;
        while (end != begin && *(end - 1) == 0) {  // a NAL unit never ends in 0
            --end;
        }
        if (begin != end) {
            const uint8_t header = *begin;
            aUnits.push_back(
                {static_cast<uint8_t>(header & 0x1F), static_cast<uint8_t>(header >> 5 & 3), {begin, end}});
        }
    }
}

void FrameOrder::TakeSequence(const NalUnit &aUnit)
{
    BitReader bits(aUnit.mBytes);
    Sequence sequence;
    const uint32_t profile = bits.Bits(8);
    bits.Bits(16);  // constraints, level
    const uint32_t id = bits.Unsigned();
    if (HasChromaFormat(profile)) {
        const uint32_t chromaFormat = bits.Unsigned();
        sequence.mHasColourPlanes = chromaFormat == 3 && bits.Bits(1) != 0;
        bits.Unsigned();  // bit depths
        bits.Unsigned();
        bits.Bits(1);
        if (bits.Bits(1) != 0) {
            for (unsigned i = 0; i < (chromaFormat == 3 ? 12u : 8u); ++i) {
                if (bits.Bits(1) != 0) {
                    SkipScalingList(bits, i < 6 ? 16 : 64);
                }
            }
        }
    }
    sequence.mFrameNumberBits = bits.Unsigned() + 4;
    const uint32_t orderType = bits.Unsigned();
    if (orderType == 0) {
        bits.Unsigned();
    }
    else if (orderType == 1) {
        bits.Bits(1);
        bits.Signed();
        bits.Signed();
        const uint32_t count = bits.Unsigned();
        for (uint32_t i = 0; i < count && i < kMostCycleFrames; ++i) {
            bits.Signed();
        }
    }
    bits.Unsigned();  // max_num_ref_frames
    sequence.mAllowsGaps = bits.Bits(1) != 0;
    bits.Unsigned();  // width
    bits.Unsigned();  // height
    sequence.mHasFrames = bits.Bits(1) != 0;
    if (!bits.IsBeyondEnd() && id < kMostSequences && sequence.mFrameNumberBits <= 16) {
        mSequences[id] = sequence;
    }
}

void FrameOrder::TakePicture(const NalUnit &aUnit)
{
    BitReader bits(aUnit.mBytes);
    const uint32_t id = bits.Unsigned();
    const uint32_t sequence = bits.Unsigned();
    if (!bits.IsBeyondEnd() && id < kMostPictures && sequence < kMostSequences) {
        mPictures[id] = sequence;
    }
}

bool FrameOrder::Take(std::span<const NalUnit> aUnits)
{
    for (const NalUnit &unit : aUnits) {
        if (unit.mType == 7) {
            TakeSequence(unit);
        }
        else if (unit.mType == 8) {
            TakePicture(unit);
        }
    }
    const auto slice = std::find_if(aUnits.begin(), aUnits.end(),
                                    [](const NalUnit &aUnit) { return aUnit.mType == 1 || aUnit.mType == 5; });
    if (slice == aUnits.end()) {
        return true;
    }
    BitReader bits(slice->mBytes);
    bits.Unsigned();  // first_mb_in_slice
    bits.Unsigned();  // slice_type
    const auto picture = mPictures.find(bits.Unsigned());
    const auto sequence = picture == mPictures.end() ? mSequences.end() : mSequences.find(picture->second);
    if (sequence == mSequences.end()) {
        mIsStarted = false;
        return true;
    }
    const Sequence &parameters = sequence->second;
    if (parameters.mHasColourPlanes) {
        bits.Bits(2);
    }
    const uint32_t number = bits.Bits(parameters.mFrameNumberBits);
    const uint32_t next = (mLastReference + 1) & ((uint32_t{1} << parameters.mFrameNumberBits) - 1);
    Lines lines = Lines::All;
    if (!parameters.mHasFrames && bits.Bits(1) != 0) {
        lines = bits.Bits(1) != 0 ? Lines::Bottom : Lines::Top;
    }
    // only the second field of a frame has the number of the first
    const bool isSecondField = mIsStarted && number == mLastReference && lines != Lines::All && lines == mMissingField;
    const bool isInOrder = !mIsStarted || slice->IsIDR() || parameters.mAllowsGaps || number == next || isSecondField;
    if (slice->mRefIdc != 0) {
        mLastReference = number;
        mIsStarted = true;
    }
    mMissingField = isSecondField || slice->mRefIdc == 0 || lines == Lines::All ? Lines::All
                    : lines == Lines::Top                                       ? Lines::Bottom
                                                                                : Lines::Top;
    return isInOrder;
}

}  // namespace LxDetail::H264
