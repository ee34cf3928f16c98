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

#include "LxCodec/VectorUnpack-inl.h"

HWY_BEFORE_NAMESPACE();
namespace LxDetail
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using ByteVector = hn::Vec<Bytes>;

// Every kernel does what fills vectors and leaves the rest of a line to the scalar kernel. With kStream it writes past
// the caches, to an output that is aligned.

template <bool kStream>
HWY_INLINE void Put(ByteVector aPixels, uint8_t *aOut)
{
    const Bytes bytes;
    if constexpr (kStream) {
        hn::Stream(aPixels, bytes, aOut);
    }
    else {
        hn::StoreU(aPixels, bytes, aOut);
    }
}

// 32-bit words of a vector of bytes so that what interleaving within blocks of 16 bytes makes of them is in order.
HWY_INLINE ByteVector SpreadOverBlocks(ByteVector aBytes)
{
    if constexpr (HWY_MAX_BYTES == 16) {
        return aBytes;
    }
    else {
        constexpr size_t kBlocks = HWY_MAX_BYTES / 16;
        struct Order
        {
            alignas(64) uint32_t mWords[4 * kBlocks] = {};
            constexpr Order()
            {
                for (size_t i = 0; i < 4 * kBlocks; ++i) {
                    mWords[i] = static_cast<uint32_t>(i % 4 * kBlocks + i / 4);
                }
            }
        };
        static constexpr Order kOrder;
        const hn::ScalableTag<uint32_t> words;
        const auto indices = hn::SetTableIndices(words, kOrder.mWords);
        return hn::BitCast(Bytes(), hn::TableLookupLanes(hn::BitCast(words, aBytes), indices));
    }
}

template <bool kStream>
HWY_INLINE void PutPixels(ByteVector aRed, ByteVector aGreen, ByteVector aBlue, uint8_t *aOut)
{
    const Bytes bytes;
    const hn::ScalableTag<uint16_t> halves;
    const size_t step = hn::Lanes(bytes);
    const auto red = SpreadOverBlocks(aRed);
    const auto green = SpreadOverBlocks(aGreen);
    const auto blue = SpreadOverBlocks(aBlue);
    const auto alpha = hn::Set(bytes, 255);
    const auto lowerBG = hn::BitCast(halves, hn::InterleaveLower(bytes, blue, green));
    const auto lowerRA = hn::BitCast(halves, hn::InterleaveLower(bytes, red, alpha));
    const auto upperBG = hn::BitCast(halves, hn::InterleaveUpper(bytes, blue, green));
    const auto upperRA = hn::BitCast(halves, hn::InterleaveUpper(bytes, red, alpha));
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveLower(halves, lowerBG, lowerRA)), aOut);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveUpper(halves, lowerBG, lowerRA)), aOut + step);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveLower(halves, upperBG, upperRA)), aOut + 2 * step);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveUpper(halves, upperBG, upperRA)), aOut + 3 * step);
}

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

using Ints = hn::ScalableTag<int32_t>;
using IntVector = hn::Vec<Ints>;

// The part of a colour that comes from chroma, with the half that rounds.
struct Chroma
{
    IntVector mRed;
    IntVector mGreen;
    IntVector mBlue;
};

HWY_INLINE Chroma GetChroma(IntVector aU, IntVector aV, const YuvMatrix &aMatrix)
{
    const Ints ints;
    const auto half = hn::Set(ints, 1 << (kYuvFractionBits - 1));
    const auto u = hn::Sub(aU, hn::Set(ints, 128));
    const auto v = hn::Sub(aV, hn::Set(ints, 128));
    const auto greenU = hn::Mul(u, hn::Set(ints, aMatrix.mGreenU));
    const auto greenV = hn::Mul(v, hn::Set(ints, aMatrix.mGreenV));
    return {hn::Add(hn::Mul(v, hn::Set(ints, aMatrix.mRedV)), half), hn::Add(hn::Add(greenU, greenV), half),
            hn::Add(hn::Mul(u, hn::Set(ints, aMatrix.mBlueU)), half)};
}

HWY_INLINE IntVector ToByte(IntVector aFixed)
{
    const Ints ints;
    return hn::Min(hn::Max(hn::ShiftRight<kYuvFractionBits>(aFixed), hn::Zero(ints)), hn::Set(ints, 255));
}

// A pixel in each 32-bit word.
HWY_INLINE IntVector GetPixels(IntVector aY, const Chroma &aChroma, const YuvMatrix &aMatrix)
{
    const Ints ints;
    const auto y = hn::Mul(hn::Sub(aY, hn::Set(ints, aMatrix.mBlack)), hn::Set(ints, aMatrix.mY));
    const auto red = ToByte(hn::Add(y, aChroma.mRed));
    const auto green = ToByte(hn::Add(y, aChroma.mGreen));
    const auto blue = ToByte(hn::Add(y, aChroma.mBlue));
    const auto alpha = hn::Set(ints, static_cast<int32_t>(0xFF000000u));
    return hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)), hn::Or(hn::ShiftLeft<16>(red), alpha));
}

template <bool kStream>
void YuvToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const YuvMatrix &aMatrix, uint8_t *aOut,
               size_t aWidth)
{
    const Bytes bytes;
    const Ints ints;
    const hn::Rebind<uint8_t, Ints> quarter;
    const size_t step = hn::Lanes(ints);
    size_t i = 0;
    for (; i + step <= aWidth; i += step) {
        const auto y = hn::PromoteTo(ints, hn::LoadU(quarter, aY + i));
        const auto u = hn::PromoteTo(ints, hn::LoadU(quarter, aU + i));
        const auto v = hn::PromoteTo(ints, hn::LoadU(quarter, aV + i));
        const auto pixels = GetPixels(y, GetChroma(u, v, aMatrix), aMatrix);
        Put<kStream>(hn::BitCast(bytes, pixels), aOut + 4 * i);
    }
    if (i < aWidth) {
        GetScalarKernels().mYuv(aY + i, aU + i, aV + i, aMatrix, aOut + 4 * i, aWidth - i);
    }
}

// The byte of each 32-bit word that begins at a bit.
template <int kBit>
HWY_INLINE IntVector GetByte(IntVector aWords)
{
    const Ints ints;
    const hn::ScalableTag<uint32_t> unsignedInts;
    if constexpr (kBit == 24) {
        return hn::BitCast(ints, hn::ShiftRight<24>(hn::BitCast(unsignedInts, aWords)));
    }
    else {
        return hn::And(hn::ShiftRight<kBit>(aWords), hn::Set(ints, 255));
    }
}

// The order of pairs in a vector so that interleaving pixels within blocks of 16 bytes puts them in order.
HWY_INLINE IntVector SpreadPairsOverBlocks(IntVector aPairs)
{
    if constexpr (HWY_MAX_BYTES == 16) {
        return aPairs;
    }
    else {
        constexpr size_t kBlocks = HWY_MAX_BYTES / 16;
        struct Order
        {
            alignas(64) int32_t mPairs[4 * kBlocks] = {};
            constexpr Order()
            {
                for (size_t i = 0; i < 4 * kBlocks; ++i) {
                    mPairs[i] = static_cast<int32_t>(i % 4 / 2 * 2 * kBlocks + i / 4 * 2 + i % 2);
                }
            }
        };
        static constexpr Order kOrder;
        return hn::TableLookupLanes(aPairs, hn::SetTableIndices(Ints(), kOrder.mPairs));
    }
}

using Shorts = hn::ScalableTag<int16_t>;
using ShortVector = hn::Vec<Shorts>;

// One half of each 32-bit word, 0 the lower, in both halves.
template <int kHalf>
HWY_INLINE ShortVector SpreadHalf(ShortVector aWords)
{
    constexpr uint8_t kFirst = 2 * kHalf;
    alignas(16) static constexpr uint8_t kOrder[16] = {
        kFirst,     kFirst + 1, kFirst,     kFirst + 1, kFirst + 4,  kFirst + 5,  kFirst + 4,  kFirst + 5,
        kFirst + 8, kFirst + 9, kFirst + 8, kFirst + 9, kFirst + 12, kFirst + 13, kFirst + 12, kFirst + 13};
    const Bytes bytes;
    return hn::BitCast(Shorts(), hn::TableLookupBytes(hn::BitCast(bytes, aWords), hn::LoadDup128(bytes, kOrder)));
}

// The bytes of each 16-bit word that begin at a bit.
template <int kBit>
HWY_INLINE ShortVector GetHalves(IntVector aWords)
{
    const Shorts shorts;
    const hn::ScalableTag<uint16_t> unsignedShorts;
    if constexpr (kBit == 0) {
        return hn::And(hn::BitCast(shorts, aWords), hn::Set(shorts, 255));
    }
    else {
        return hn::BitCast(shorts, hn::ShiftRight<8>(hn::BitCast(unsignedShorts, aWords)));
    }
}

// Two factors, for the lower and the upper half of each 32-bit word.
HWY_INLINE ShortVector SetPair(int32_t aLower, int32_t aUpper)
{
    const auto pair = static_cast<uint32_t>(aUpper) << 16 | (static_cast<uint32_t>(aLower) & 0xFFFFu);
    return hn::BitCast(Shorts(), hn::Set(hn::ScalableTag<uint32_t>(), pair));
}

// The sum of the products of both halves of each 32-bit word.
HWY_INLINE IntVector SumOfProducts(ShortVector aA, ShortVector aB)
{
    const Ints ints;
    auto other = hn::Zero(ints);
    const auto sum = hn::ReorderWidenMulAccumulate(ints, aA, aB, hn::Zero(ints), other);
    return hn::RearrangeToOddPlusEven(sum, other);
}

// What is added to luma so that colours above 255 saturate.
constexpr int16_t kSaturation = 32767 - 255;

// A colour in 0 to 255, from luma plus kSaturation.
HWY_INLINE ShortVector AddChroma(ShortVector aLuma, ShortVector aChroma)
{
    const hn::ScalableTag<uint16_t> unsignedShorts;
    const auto sum = hn::BitCast(unsignedShorts, hn::SaturatedAdd(aLuma, aChroma));
    return hn::BitCast(Shorts(), hn::SaturatedSub(sum, hn::Set(unsignedShorts, kSaturation)));
}

// Colour of pairs of pixels in full range, where luma is a colour's part as it is. Two pixels share a 32-bit word, so
// that most is done in 16 bits.
template <int kU, int kY>
class FullRangePairs
{
public:
    explicit FullRangePairs(const YuvMatrix &aMatrix)
        : mFractions(SetPair(GetFractionAboveOne(aMatrix.mBlueU), GetFractionAboveOne(aMatrix.mRedV))),
          mGreenHigh(SetPair(aMatrix.mGreenU >> kLowBits, aMatrix.mGreenV >> kLowBits)),
          mGreenLow(SetPair(aMatrix.mGreenU & kLowMask, aMatrix.mGreenV & kLowMask)),
          mGreenOffset(hn::Set(Ints(), (1 << (kYuvFractionBits - 1)) - 128 * (aMatrix.mGreenU + aMatrix.mGreenV)))
    {
    }

    // The pixels of the lower and of the upper half of each block.
    HWY_INLINE void Convert(IntVector aPairs, ByteVector &aLower, ByteVector &aUpper) const
    {
        const Bytes bytes;
        const Shorts shorts;
        const auto y = hn::Add(GetHalves<kY>(aPairs), hn::Set(shorts, kSaturation));
        const auto uv = GetHalves<kU>(aPairs);
        // A factor between 1 and 2 with 15 bits behind its point rounds every sample as the longer one of the matrix
        // does; green, which has two, needs all bits.
        const auto chroma = hn::Sub(uv, hn::Set(shorts, 128));
        const auto blueRed = hn::Add(chroma, hn::MulFixedPoint15(chroma, mFractions));
        const auto greenSum = hn::Add(hn::ShiftLeft<kLowBits>(SumOfProducts(uv, mGreenHigh)),
                                      hn::Add(SumOfProducts(uv, mGreenLow), mGreenOffset));
        const auto greenChroma = hn::BitCast(shorts, hn::ShiftRight<kYuvFractionBits>(greenSum));
        const auto blue = AddChroma(y, SpreadHalf<0>(blueRed));
        const auto green = AddChroma(y, SpreadHalf<0>(greenChroma));
        const auto red = AddChroma(y, SpreadHalf<1>(blueRed));
        const auto redAlpha = hn::Or(red, hn::Set(shorts, static_cast<int16_t>(0xFF00)));
        const auto blueGreen = hn::Or(blue, hn::ShiftLeft<8>(green));
        aLower = hn::BitCast(bytes, hn::InterleaveLower(shorts, blueGreen, redAlpha));
        aUpper = hn::BitCast(bytes, hn::InterleaveUpper(shorts, blueGreen, redAlpha));
    }

private:
    static constexpr int kLowBits = 6;
    static constexpr int32_t kLowMask = (1 << kLowBits) - 1;

    static int32_t GetFractionAboveOne(int32_t aFactor)
    {
        constexpr int kDropped = kYuvFractionBits - 15;
        return (aFactor - (1 << kYuvFractionBits) + (1 << (kDropped - 1))) >> kDropped;
    }

    ShortVector mFractions;  // of blue and red
    ShortVector mGreenHigh;  // factors of green for U and V, all but the lowest bits
    ShortVector mGreenLow;   // these
    IntVector mGreenOffset;  // rounding, and that chroma begins at 128
};

// Colour of pairs of pixels by any matrix.
template <int kU, int kY>
class MatrixPairs
{
public:
    explicit MatrixPairs(const YuvMatrix &aMatrix) : mMatrix(aMatrix) {}

    HWY_INLINE void Convert(IntVector aPairs, ByteVector &aLower, ByteVector &aUpper) const
    {
        const Bytes bytes;
        const Ints ints;
        const Chroma chroma = GetChroma(GetByte<kU>(aPairs), GetByte<kU + 16>(aPairs), mMatrix);
        const auto even = GetPixels(GetByte<kY>(aPairs), chroma, mMatrix);
        const auto odd = GetPixels(GetByte<kY + 16>(aPairs), chroma, mMatrix);
        aLower = hn::BitCast(bytes, hn::InterleaveLower(ints, even, odd));
        aUpper = hn::BitCast(bytes, hn::InterleaveUpper(ints, even, odd));
    }

private:
    YuvMatrix mMatrix;
};

// A 32-bit word holds two pixels: kU and kY are the first bits of U and of the first luma sample, V and the second luma
// sample follow 16 bits later.
template <bool kStream, int kU, class Pairs>
HWY_INLINE void ConvertYuvPairs(const Pairs &aPairs, const uint8_t *aSamples, const YuvMatrix &aMatrix, uint8_t *aOut,
                                size_t aWidth)
{
    const Bytes bytes;
    const Ints ints;
    const size_t step = 2 * hn::Lanes(ints);
    size_t i = 0;
    for (; i + step <= aWidth; i += step) {
        ByteVector lower;
        ByteVector upper;
        aPairs.Convert(SpreadPairsOverBlocks(hn::BitCast(ints, hn::LoadU(bytes, aSamples + 2 * i))), lower, upper);
        Put<kStream>(lower, aOut + 4 * i);
        Put<kStream>(upper, aOut + 4 * i + 2 * step);
    }
    if (i < aWidth) {
        // a last pixel without V of its own takes that of the pixels before
        if (aWidth - i == 1 && i > 0) {
            i -= 2;
        }
        const YuvPairsKernel rest = kU == 0 ? GetScalarKernels().mUyvy : GetScalarKernels().mYuyv;
        rest(aSamples + 2 * i, aMatrix, aOut + 4 * i, aWidth - i);
    }
}

template <bool kStream, int kU, int kY>
void YuvPairsToBgra(const uint8_t *aSamples, const YuvMatrix &aMatrix, uint8_t *aOut, size_t aWidth)
{
    if (aMatrix.mBlack == 0 && aMatrix.mY == 1 << kYuvFractionBits) {
        ConvertYuvPairs<kStream, kU>(FullRangePairs<kU, kY>(aMatrix), aSamples, aMatrix, aOut, aWidth);
    }
    else {
        ConvertYuvPairs<kStream, kU>(MatrixPairs<kU, kY>(aMatrix), aSamples, aMatrix, aOut, aWidth);
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
    return HWY_CHOOSE_FALLBACK(GetKernels);
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
