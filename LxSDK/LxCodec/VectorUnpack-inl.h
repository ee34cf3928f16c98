// Internal: unpacking of packed samples with vector instructions; included by VectorKernels.cpp once for each kind of
// processor, so there is no "pragma once".

HWY_BEFORE_NAMESPACE();
namespace LxDetail
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

// Where the 8 most significant bits of a sample begin, in a group of 8 samples.
template <size_t kBits>
struct BitStream
{
    static constexpr size_t kGroupBytes = kBits;
    static constexpr size_t GetStart(size_t aIndex) { return aIndex * kBits + kBits - 8; }
};

struct PackedPairs
{
    static constexpr size_t kGroupBytes = 12;
    static constexpr size_t GetStart(size_t aIndex) { return aIndex / 2 * 24 + aIndex % 2 * 16; }
};

// How a vector of packed samples becomes a vector of 16-bit words whose upper halves are the unpacked samples. Each
// block of 16 bytes takes one group of 8 samples: words of 32 bits into the block, bytes in the block, bits by a
// multiplication. kSkipped bytes lie in the vector before the first group.
template <class Packing, size_t kVectorBytes, size_t kSkipped>
struct UnpackTables
{
    alignas(64) uint32_t mWords[kVectorBytes / 4] = {};
    alignas(64) uint8_t mBytes[kVectorBytes] = {};
    alignas(64) uint16_t mFactors[kVectorBytes / 2] = {};

    constexpr UnpackTables()
    {
        for (size_t block = 0; block < kVectorBytes / 16; ++block) {
            const size_t start = kSkipped + Packing::kGroupBytes * block;
            const size_t last = kVectorBytes / 4 - 4;
            const size_t word = start / 4 < last ? start / 4 : last;
            for (size_t i = 0; i < 4; ++i) {
                mWords[4 * block + i] = static_cast<uint32_t>(word + i);
            }
            for (size_t i = 0; i < 8; ++i) {
                constexpr uint8_t kZero = 0x80;
                const auto byte = static_cast<uint8_t>(start - 4 * word + Packing::GetStart(i) / 8);
                const size_t bit = Packing::GetStart(i) % 8;
                mBytes[16 * block + 2 * i] = bit == 0 ? kZero : byte;
                mBytes[16 * block + 2 * i + 1] = static_cast<uint8_t>(bit == 0 ? byte : byte + 1);
                mFactors[8 * block + i] = static_cast<uint16_t>(bit == 0 ? 1 : 1 << (8 - bit));
            }
        }
    }
};

template <class Packing, class Tables>
HWY_INLINE hn::Vec<hn::ScalableTag<uint8_t>> UnpackVector(const Tables &aTables, const uint8_t *aFrom)
{
    const hn::ScalableTag<uint8_t> bytes;
    const hn::ScalableTag<uint16_t> words;
    const hn::ScalableTag<uint32_t> doubleWords;
    auto samples = hn::LoadU(bytes, aFrom);
    if constexpr (HWY_MAX_BYTES > 16) {
        const auto indices = hn::SetTableIndices(doubleWords, aTables.mWords);
        samples = hn::BitCast(bytes, hn::TableLookupLanes(hn::BitCast(doubleWords, samples), indices));
    }
    samples = hn::TableLookupBytesOr0(samples, hn::Load(bytes, aTables.mBytes));
    return hn::BitCast(bytes, hn::Mul(hn::BitCast(words, samples), hn::Load(words, aTables.mFactors)));
}

// Sources of samples: how a vector of them is loaded, from how many bytes, and what scalar code calls their layout.
// They read nothing but these bytes.

struct ByteSource
{
    static constexpr SampleLayout kLayout = SampleLayout::Bytes;
    static constexpr size_t kVectorBytes = HWY_MAX_BYTES;
    static HWY_INLINE hn::Vec<hn::ScalableTag<uint8_t>> Load(const uint8_t *aFrom)
    {
        return hn::LoadU(hn::ScalableTag<uint8_t>(), aFrom);
    }
};

template <class Packing, SampleLayout kItsLayout>
struct PackedSource
{
    static constexpr SampleLayout kLayout = kItsLayout;
    static constexpr size_t kHalf = HWY_MAX_BYTES / 16 * Packing::kGroupBytes;
    static constexpr size_t kVectorBytes = 2 * kHalf;
    // The first load starts at the first byte, the second ends at the last.
    static HWY_INLINE hn::Vec<hn::ScalableTag<uint8_t>> Load(const uint8_t *aFrom)
    {
        static constexpr UnpackTables<Packing, HWY_MAX_BYTES, 0> kFirst;
        static constexpr UnpackTables<Packing, HWY_MAX_BYTES, HWY_MAX_BYTES - kHalf> kSecond;
        const auto first = UnpackVector<Packing>(kFirst, aFrom);
        const auto second = UnpackVector<Packing>(kSecond, aFrom + kVectorBytes - HWY_MAX_BYTES);
        return hn::ConcatOdd(hn::ScalableTag<uint8_t>(), second, first);
    }
};

template <int kShift, SampleLayout kItsLayout>
struct WordSource
{
    static constexpr SampleLayout kLayout = kItsLayout;
    static constexpr size_t kVectorBytes = 2 * HWY_MAX_BYTES;
    static HWY_INLINE hn::Vec<hn::ScalableTag<uint8_t>> Load(const uint8_t *aFrom)
    {
        const hn::ScalableTag<uint8_t> bytes;
        const hn::ScalableTag<uint16_t> words;
        const auto first = hn::LoadU(bytes, aFrom);
        const auto second = hn::LoadU(bytes, aFrom + HWY_MAX_BYTES);
        if constexpr (kShift == 8) {
            return hn::ConcatOdd(bytes, second, first);
        }
        else {
            const auto low = hn::BitCast(bytes, hn::ShiftRight<kShift>(hn::BitCast(words, first)));
            const auto high = hn::BitCast(bytes, hn::ShiftRight<kShift>(hn::BitCast(words, second)));
            return hn::ConcatEven(bytes, high, low);
        }
    }
};

using Words10Source = WordSource<2, SampleLayout::Words10>;
using Words12Source = WordSource<4, SampleLayout::Words12>;
using Words14Source = WordSource<6, SampleLayout::Words14>;
using Words16Source = WordSource<8, SampleLayout::Words16>;
using Stream10Source = PackedSource<BitStream<10>, SampleLayout::Stream10>;
using Stream12Source = PackedSource<BitStream<12>, SampleLayout::Stream12>;
using Stream14Source = PackedSource<BitStream<14>, SampleLayout::Stream14>;
using PairsSource = PackedSource<PackedPairs, SampleLayout::PairsPacked>;

template <class Source>
void UnpackSamples(const uint8_t *aLine, uint8_t *aSamples, size_t aCount)
{
    const hn::ScalableTag<uint8_t> bytes;
    size_t i = 0;
    for (; i + HWY_MAX_BYTES <= aCount; i += HWY_MAX_BYTES) {
        hn::StoreU(Source::Load(aLine), bytes, aSamples + i);
        aLine += Source::kVectorBytes;
    }
    if (i < aCount) {
        GetScalarKernels().mUnpack[static_cast<size_t>(Source::kLayout)](aLine, aSamples + i, aCount - i);
    }
}

template <class Source>
void SetUnpackKernel(ConversionKernels &aKernels)
{
    aKernels.mUnpack[static_cast<size_t>(Source::kLayout)] = UnpackSamples<Source>;
}

inline void SetUnpackKernels(ConversionKernels &aKernels)
{
    SetUnpackKernel<Words10Source>(aKernels);
    SetUnpackKernel<Words12Source>(aKernels);
    SetUnpackKernel<Words14Source>(aKernels);
    SetUnpackKernel<Words16Source>(aKernels);
    SetUnpackKernel<Stream10Source>(aKernels);
    SetUnpackKernel<Stream12Source>(aKernels);
    SetUnpackKernel<Stream14Source>(aKernels);
    SetUnpackKernel<PairsSource>(aKernels);
}

}  // namespace HWY_NAMESPACE
}  // namespace LxDetail
HWY_AFTER_NAMESPACE();
