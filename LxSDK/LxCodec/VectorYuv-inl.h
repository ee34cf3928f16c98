// Internal: luma and chroma to pixels with vector instructions; included by VectorKernels.cpp once for each kind of
// processor, so there is no "pragma once".

HWY_BEFORE_NAMESPACE();
namespace LxDetail
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

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

// Luma, which begins at a bit of each 16-bit word, plus kSaturation, which has no bit in common with it.
template <int kBit>
HWY_INLINE ShortVector GetSaturatingLuma(IntVector aWords)
{
    const Shorts shorts;
    const auto saturation = hn::Set(shorts, kSaturation);
    if constexpr (kBit == 0) {
        return hn::OrAnd(saturation, hn::BitCast(shorts, aWords), hn::Set(shorts, 255));
    }
    else {
        return hn::Or(GetHalves<kBit>(aWords), saturation);
    }
}

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
        const auto y = GetSaturatingLuma<kY>(aPairs);
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
        aPairs.Convert(SpreadOverBlocks<2>(hn::BitCast(ints, hn::LoadU(bytes, aSamples + 2 * i))), lower, upper);
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

// A colour from its fixed-point sum.
HWY_INLINE ShortVector LimitToByte(ShortVector aSum)
{
    const Shorts shorts;
    const auto colour = hn::ShiftRight<HalfChromaFactors::kFractionBits>(aSum);
    return hn::Min(hn::Max(colour, hn::Zero(shorts)), hn::Set(shorts, 255));
}

// What chroma adds to the colours of two pixels, in 16 bits each.
struct HalfChroma
{
    ShortVector mRed;
    ShortVector mGreen;
    ShortVector mBlue;
};

// Eight pixels in each block of 16 bytes: aWideLuma holds every luma sample twice, which makes 257 times its value.
template <bool kStream>
HWY_INLINE void PutHalfChroma(ByteVector aWideLuma, const HalfChroma &aChroma, ShortVector aBlack,
                              hn::Vec<hn::ScalableTag<uint16_t>> aFactor, uint8_t *aOut)
{
    const Bytes bytes;
    const Shorts shorts;
    const hn::ScalableTag<uint16_t> unsignedShorts;
    const auto scaled = hn::MulHigh(hn::BitCast(unsignedShorts, aWideLuma), aFactor);
    const auto luma = hn::Sub(hn::BitCast(shorts, scaled), aBlack);
    const auto red = LimitToByte(hn::Add(luma, aChroma.mRed));
    const auto green = LimitToByte(hn::Sub(luma, aChroma.mGreen));
    const auto blue = LimitToByte(hn::Add(luma, aChroma.mBlue));
    const auto redAlpha = hn::Or(red, hn::Set(shorts, static_cast<int16_t>(0xFF00)));
    const auto blueGreen = hn::Or(blue, hn::ShiftLeft<8>(green));
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveLower(shorts, blueGreen, redAlpha)), aOut);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveUpper(shorts, blueGreen, redAlpha)), aOut + HWY_MAX_BYTES);
}

// A vector's half as many chroma samples, less their middle, in the upper half of 16-bit words.
HWY_INLINE ShortVector LoadChroma(const uint8_t *aFrom)
{
    const Bytes bytes;
    const hn::ScalableTag<uint16_t> words;
    const hn::Rebind<uint8_t, hn::ScalableTag<uint16_t>> halfBytes;
    const auto spread = SpreadOverBlocks(hn::BitCast(bytes, hn::PromoteTo(words, hn::LoadU(halfBytes, aFrom))));
    const auto upper = hn::ShiftLeft<8>(hn::BitCast(words, spread));
    return hn::BitCast(Shorts(), hn::Xor(upper, hn::Set(words, 0x8000)));
}

template <bool kStream>
void HalfChromaToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const HalfChromaFactors &aFactors,
                      uint8_t *aOut, size_t aWidth)
{
    const Bytes bytes;
    const Shorts shorts;
    const auto luma = hn::Set(hn::ScalableTag<uint16_t>(), aFactors.mY);
    const auto black = hn::Set(shorts, aFactors.mBlack);
    const auto redV = hn::Set(shorts, aFactors.mRedV);
    const auto greenU = hn::Set(shorts, aFactors.mGreenU);
    const auto greenV = hn::Set(shorts, aFactors.mGreenV);
    const auto blueU = hn::Set(shorts, aFactors.mBlueU);
    constexpr size_t kStep = HWY_MAX_BYTES;
    size_t i = 0;
    for (; i + kStep <= aWidth; i += kStep) {
        const auto y = SpreadOverBlocks(hn::LoadU(bytes, aY + i));
        const auto u = LoadChroma(aU + i / 2);
        const auto v = LoadChroma(aV + i / 2);
        const auto red = hn::MulHigh(v, redV);
        const auto green = hn::Add(hn::MulHigh(u, greenU), hn::MulHigh(v, greenV));
        const auto blue = hn::MulHigh(u, blueU);
        const HalfChroma lower = {hn::InterleaveLower(shorts, red, red), hn::InterleaveLower(shorts, green, green),
                                  hn::InterleaveLower(shorts, blue, blue)};
        const HalfChroma upper = {hn::InterleaveUpper(shorts, red, red), hn::InterleaveUpper(shorts, green, green),
                                  hn::InterleaveUpper(shorts, blue, blue)};
        PutHalfChroma<kStream>(hn::InterleaveLower(bytes, y, y), lower, black, luma, aOut + 4 * i);
        PutHalfChroma<kStream>(hn::InterleaveUpper(bytes, y, y), upper, black, luma, aOut + 4 * i + 2 * kStep);
    }
    if (i < aWidth) {
        GetScalarKernels().mHalfChroma(aY + i, aU + i / 2, aV + i / 2, aFactors, aOut + 4 * i, aWidth - i);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace LxDetail
HWY_AFTER_NAMESPACE();
