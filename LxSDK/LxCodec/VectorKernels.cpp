#include <atomic>

#include "LxCodec/ConversionKernels.h"
#include "LxCodec/ProcessorTargets.h"

// SSSE3 alone is as rare as a processor without it, and the vectors of SVE have no size that tables could be made for.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "LxCodec/VectorKernels.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#if HWY_TARGET != HWY_SCALAR

#include "LxCodec/VectorOutput-inl.h"
#include "LxCodec/VectorUnpack-inl.h"
#include "LxCodec/VectorYuv-inl.h"

HWY_BEFORE_NAMESPACE();
namespace LxDetail
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

template <bool kStream, class Source>
void MonoToBgra(const uint8_t *aLine, uint8_t *aOut, size_t aWidth)
{
    size_t i = 0;
    for (; i + HWY_MAX_BYTES <= aWidth; i += HWY_MAX_BYTES) {
        const auto grey = Source::Load(aLine);
        PutPixels<kStream>(grey, grey, grey, aOut + 4 * i);
        aLine += Source::kVectorBytes;
    }
    if (i < aWidth) {
        uint8_t rest[HWY_MAX_BYTES];
        if constexpr (Source::kLayout != SampleLayout::Bytes) {
            GetScalarKernels().mUnpack[static_cast<size_t>(Source::kLayout)](aLine, rest, aWidth - i);
            aLine = rest;
        }
        GetScalarKernels().mMono[static_cast<size_t>(SampleLayout::Bytes)](aLine, aOut + 4 * i, aWidth - i);
    }
}

template <bool kStream, class... Sources>
void SetMonoKernels(ConversionKernels &aKernels)
{
    ((aKernels.mMono[static_cast<size_t>(Sources::kLayout)] = MonoToBgra<kStream, Sources>), ...);
}

// How a vector of three-byte pixels becomes four-byte pixels: 32-bit words into the block that needs them, bytes in the
// block. kSkipped bytes lie in the vector before the first pixel.
template <size_t kVectorBytes, size_t kSkipped, bool kRedFirst>
struct TripleTables
{
    alignas(64) uint32_t mWords[kVectorBytes / 4] = {};
    alignas(64) uint8_t mBytes[kVectorBytes] = {};

    constexpr TripleTables()
    {
        for (size_t block = 0; block < kVectorBytes / 16; ++block) {
            const size_t start = kSkipped + 12 * block;
            const size_t last = kVectorBytes / 4 - 4;
            const size_t word = start / 4 < last ? start / 4 : last;
            for (size_t i = 0; i < 4; ++i) {
                const auto byte = static_cast<uint8_t>(start - 4 * word + 3 * i);
                uint8_t *const pixel = mBytes + 16 * block + 4 * i;
                mWords[4 * block + i] = static_cast<uint32_t>(word + i);
                pixel[0] = static_cast<uint8_t>(kRedFirst ? byte + 2 : byte);
                pixel[1] = static_cast<uint8_t>(byte + 1);
                pixel[2] = static_cast<uint8_t>(kRedFirst ? byte : byte + 2);
                pixel[3] = 0x80;  // nothing
            }
        }
    }
};

template <class Tables>
HWY_INLINE ByteVector ExpandTriples(const Tables &aTables, const uint8_t *aFrom)
{
    const Bytes bytes;
    const hn::ScalableTag<uint32_t> words;
    auto pixels = hn::LoadU(bytes, aFrom);
    if constexpr (HWY_MAX_BYTES > 16) {
        const auto indices = hn::SetTableIndices(words, aTables.mWords);
        pixels = hn::BitCast(bytes, hn::TableLookupLanes(hn::BitCast(words, pixels), indices));
    }
    const auto alpha = hn::BitCast(bytes, hn::Set(words, 0xFF000000u));
    return hn::Or(hn::TableLookupBytesOr0(pixels, hn::Load(bytes, aTables.mBytes)), alpha);
}

template <bool kStream, bool kRedFirst>
void TriplesToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth)
{
    // Of the bytes that make two vectors the first load starts at the first, the second ends at the last, so that
    // nothing else is read.
    constexpr size_t kVector = HWY_MAX_BYTES;
    constexpr size_t kHalf = kVector / 4 * 3;
    static constexpr TripleTables<kVector, 0, kRedFirst> kFirst;
    static constexpr TripleTables<kVector, kVector - kHalf, kRedFirst> kSecond;
    size_t i = 0;
    for (; i + kVector / 2 <= aWidth; i += kVector / 2) {
        const uint8_t *const in = aSamples + 3 * i;
        Put<kStream>(ExpandTriples(kFirst, in), aOut + 4 * i);
        Put<kStream>(ExpandTriples(kSecond, in + 2 * kHalf - kVector), aOut + 4 * i + kVector);
    }
    if (i < aWidth) {
        const PackedColourKernel rest = kRedFirst ? GetScalarKernels().mRgb : GetScalarKernels().mBgr;
        rest(aSamples + 3 * i, aOut + 4 * i, aWidth - i);
    }
}

template <bool kStream, bool kRedFirst>
void QuadsToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth)
{
    alignas(16) static constexpr uint8_t kSwap[16] = {2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15};
    const Bytes bytes;
    const auto swap = hn::LoadDup128(bytes, kSwap);
    const auto alpha = hn::BitCast(bytes, hn::Set(hn::ScalableTag<uint32_t>(), 0xFF000000u));
    const size_t step = hn::Lanes(bytes) / 4;
    size_t i = 0;
    for (; i + step <= aWidth; i += step) {
        auto pixels = hn::LoadU(bytes, aSamples + 4 * i);
        if constexpr (kRedFirst) {
            pixels = hn::TableLookupBytes(pixels, swap);
        }
        Put<kStream>(hn::Or(pixels, alpha), aOut + 4 * i);
    }
    if (i < aWidth) {
        const PackedColourKernel rest = kRedFirst ? GetScalarKernels().mRgba : GetScalarKernels().mBgra;
        rest(aSamples + 4 * i, aOut + 4 * i, aWidth - i);
    }
}

template <bool kStream>
void PlanesToBgra(const uint8_t *aRed, const uint8_t *aGreen, const uint8_t *aBlue, uint8_t *aOut, size_t aWidth)
{
    const Bytes bytes;
    const size_t step = hn::Lanes(bytes);
    size_t i = 0;
    for (; i + step <= aWidth; i += step) {
        PutPixels<kStream>(hn::LoadU(bytes, aRed + i), hn::LoadU(bytes, aGreen + i), hn::LoadU(bytes, aBlue + i),
                           aOut + 4 * i);
    }
    if (i < aWidth) {
        GetScalarKernels().mPlanes(aRed + i, aGreen + i, aBlue + i, aOut + 4 * i, aWidth - i);
    }
}

// (a + b + c + d + 2) / 4 of the means aAB = (a + b + 1) / 2 and aCD. These are rounded up where a sum is odd, which
// aOdd tells in its lowest bits; that is too much when it decides how their own mean is rounded.
HWY_INLINE ByteVector MeanOfFour(ByteVector aAB, ByteVector aCD, ByteVector aOdd)
{
    const Bytes bytes;
    const auto tooMuch = hn::And(hn::And(aOdd, hn::Xor(aAB, aCD)), hn::Set(bytes, 1));
    return hn::Sub(hn::AverageRound(aAB, aCD), tooMuch);
}

// 32-bit words of a vector, each from kDistance words further on, round and round.
template <size_t kDistance>
HWY_INLINE ByteVector RotateWords(ByteVector aBytes)
{
    constexpr size_t kWords = HWY_MAX_BYTES / 4;
    struct Order
    {
        alignas(64) uint32_t mWords[kWords] = {};
        constexpr Order()
        {
            for (size_t i = 0; i < kWords; ++i) {
                mWords[i] = static_cast<uint32_t>((i + kDistance) % kWords);
            }
        }
    };
    static constexpr Order kOrder;
    const hn::ScalableTag<uint32_t> words;
    const auto indices = hn::SetTableIndices(words, kOrder.mWords);
    return hn::BitCast(Bytes(), hn::TableLookupLanes(hn::BitCast(words, aBytes), indices));
}

// The samples to the left of those at aHere, which begin the line if aIsFirst.
HWY_INLINE ByteVector LoadLeft(const uint8_t *aHere, bool aIsFirst)
{
    const Bytes bytes;
    if (!aIsFirst) {
        return hn::LoadU(bytes, aHere - 1);
    }
    const auto here = hn::LoadU(bytes, aHere);
    const auto before = RotateWords<HWY_MAX_BYTES / 4 - 4>(here);
    const auto mirrored = hn::IfThenElse(hn::FirstN(bytes, 16), hn::Set(bytes, aHere[1]), before);
    return hn::CombineShiftRightBytes<15>(bytes, here, mirrored);
}

// The samples to the right of those at aHere, which end the line if aIsLast.
HWY_INLINE ByteVector LoadRight(const uint8_t *aHere, bool aIsLast)
{
    const Bytes bytes;
    if (!aIsLast) {
        return hn::LoadU(bytes, aHere + 1);
    }
    const auto here = hn::LoadU(bytes, aHere);
    const auto mirror = hn::Set(bytes, aHere[HWY_MAX_BYTES - 2]);
    const auto mirrored = hn::IfThenElse(hn::FirstN(bytes, HWY_MAX_BYTES - 16), RotateWords<4>(here), mirror);
    return hn::CombineShiftRightBytes<1>(bytes, mirrored, here);
}

template <bool kStream, bool kHasRed, bool kStartsGreen>
HWY_INLINE void DemosaicVector(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, LineEnds aEnds,
                               uint8_t *aOut)
{
    const Bytes bytes;
    const auto left = LoadLeft(aLine, aEnds.mFirst);
    const auto here = hn::LoadU(bytes, aLine);
    const auto right = LoadRight(aLine, aEnds.mLast);
    const auto aboveLeft = LoadLeft(aAbove, aEnds.mFirst);
    const auto above = hn::LoadU(bytes, aAbove);
    const auto aboveRight = LoadRight(aAbove, aEnds.mLast);
    const auto belowLeft = LoadLeft(aBelow, aEnds.mFirst);
    const auto below = hn::LoadU(bytes, aBelow);
    const auto belowRight = LoadRight(aBelow, aEnds.mLast);
    const auto horizontal = hn::AverageRound(left, right);
    const auto vertical = hn::AverageRound(above, below);
    const auto cross = MeanOfFour(horizontal, vertical, hn::Or(hn::Xor(left, right), hn::Xor(above, below)));
    const auto diagonal = MeanOfFour(hn::AverageRound(aboveLeft, aboveRight), hn::AverageRound(belowLeft, belowRight),
                                     hn::Or(hn::Xor(aboveLeft, aboveRight), hn::Xor(belowLeft, belowRight)));
    // Lines of red and of blue are alike: what the line has beside green, and what only its neighbours have.
    const auto own = kStartsGreen ? hn::OddEven(here, horizontal) : hn::OddEven(horizontal, here);
    const auto green = kStartsGreen ? hn::OddEven(cross, here) : hn::OddEven(here, cross);
    const auto other = kStartsGreen ? hn::OddEven(diagonal, vertical) : hn::OddEven(vertical, diagonal);
    PutPixels<kStream>(kHasRed ? own : other, green, kHasRed ? other : own, aOut);
}

template <bool kStream, bool kHasRed, bool kStartsGreen>
void DemosaicLine(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, LineEnds aEnds, uint8_t *aOut,
                  size_t aWidth)
{
    constexpr size_t kStep = HWY_MAX_BYTES;
    size_t i = 0;
    for (; i + kStep <= aWidth; i += kStep) {
        const bool isFirst = i == 0 && aEnds.mFirst;
        const bool isLast = i + kStep == aWidth && aEnds.mLast;
        if (isFirst || isLast) {
            DemosaicVector<kStream, kHasRed, kStartsGreen>(aAbove + i, aLine + i, aBelow + i, {isFirst, isLast},
                                                           aOut + 4 * i);
        }
        else {
            DemosaicVector<kStream, kHasRed, kStartsGreen>(aAbove + i, aLine + i, aBelow + i, {false, false},
                                                           aOut + 4 * i);
        }
    }
    if (i < aWidth) {
        GetScalarKernels().mDemosaic(aAbove + i, aLine + i, aBelow + i, {kHasRed, kStartsGreen},
                                     {aEnds.mFirst && i == 0, aEnds.mLast}, aOut + 4 * i, aWidth - i);
    }
}

template <bool kStream>
void Demosaic(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, const BayerLine &aColours,
              LineEnds aEnds, uint8_t *aOut, size_t aWidth)
{
    if (aColours.mHasRed) {
        aColours.mStartsGreen ? DemosaicLine<kStream, true, true>(aAbove, aLine, aBelow, aEnds, aOut, aWidth)
                              : DemosaicLine<kStream, true, false>(aAbove, aLine, aBelow, aEnds, aOut, aWidth);
    }
    else {
        aColours.mStartsGreen ? DemosaicLine<kStream, false, true>(aAbove, aLine, aBelow, aEnds, aOut, aWidth)
                              : DemosaicLine<kStream, false, false>(aAbove, aLine, aBelow, aEnds, aOut, aWidth);
    }
}

void Stream(const uint8_t *aFrom, uint8_t *aTo, size_t aSize)
{
    const Bytes bytes;
    for (size_t i = 0; i < aSize; i += hn::Lanes(bytes)) {
        hn::Stream(hn::LoadU(bytes, aFrom + i), bytes, aTo + i);
    }
}

void Flush()
{
    hwy::FlushStream();
}

template <bool kStream>
ConversionKernels MakeKernels()
{
    ConversionKernels kernels = GetScalarKernels();
    SetUnpackKernels(kernels);
    SetMonoKernels<kStream, ByteSource, Words10Source, Words12Source, Words14Source, Words16Source, Stream10Source,
                   Stream12Source, Stream14Source, PairsSource>(kernels);
    kernels.mRgb = TriplesToBgra<kStream, true>;
    kernels.mBgr = TriplesToBgra<kStream, false>;
    kernels.mRgba = QuadsToBgra<kStream, true>;
    kernels.mBgra = QuadsToBgra<kStream, false>;
    kernels.mPlanes = PlanesToBgra<kStream>;
    kernels.mYuv = YuvToBgra<kStream>;
    kernels.mUyvy = YuvPairsToBgra<kStream, 0, 8>;
    kernels.mYuyv = YuvPairsToBgra<kStream, 8, 0>;
    kernels.mHalfChroma = HalfChromaToBgra<kStream>;
    kernels.mDemosaic = Demosaic<kStream>;
    kernels.mStream = Stream;
    kernels.mFlush = Flush;
    return kernels;
}

const ConversionKernels *GetKernels(bool aStream)
{
    static const ConversionKernels kernels = MakeKernels<false>();
    static const ConversionKernels streaming = MakeKernels<true>();
    return aStream ? &streaming : &kernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace LxDetail
HWY_AFTER_NAMESPACE();

#else

namespace LxDetail
{
namespace HWY_NAMESPACE
{

const ConversionKernels *GetKernels(bool)
{
    return &GetScalarKernels();
}

}  // namespace HWY_NAMESPACE
}  // namespace LxDetail

#endif

#if HWY_ONCE

namespace LxDetail
{

namespace
{

using KernelsOfTarget = const ConversionKernels *(*)(bool);

KernelsOfTarget Choose(int64_t aTargets)
{
    const struct
    {
        int64_t mTarget;
        KernelsOfTarget mKernels;
    } choices[] = {{HWY_AVX3, HWY_CHOOSE_AVX3(GetKernels)},
                   {HWY_AVX2, HWY_CHOOSE_AVX2(GetKernels)},
                   {HWY_SSE4, HWY_CHOOSE_SSE4(GetKernels)},
                   {HWY_NEON, HWY_CHOOSE_NEON(GetKernels)}};
    for (const auto &choice : choices) {
        if ((aTargets & choice.mTarget) != 0 && choice.mKernels) {
            return choice.mKernels;
        }
    }
    return [](bool) { return &GetScalarKernels(); };
}

std::atomic<KernelsOfTarget> sChosen = nullptr;

KernelsOfTarget GetChosen()
{
    if (!sChosen) {
        sChosen = Choose(GetProcessorTargets());
    }
    return sChosen;
}

}  // namespace

const ConversionKernels &GetConversionKernels()
{
    return *GetChosen()(false);
}

const ConversionKernels &GetStreamingKernels()
{
    return *GetChosen()(true);
}

void UseVectorTargets(int64_t aTargets)
{
    sChosen = Choose(aTargets);
}

}  // namespace LxDetail

#endif
