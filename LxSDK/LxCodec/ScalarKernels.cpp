#include <algorithm>
#include <cstring>

#include "LxCodec/ConversionKernels.h"

namespace LxDetail
{

namespace
{

inline void StorePixel(uint8_t *aOut, unsigned aRed, unsigned aGreen, unsigned aBlue)
{
    aOut[0] = static_cast<uint8_t>(aBlue);
    aOut[1] = static_cast<uint8_t>(aGreen);
    aOut[2] = static_cast<uint8_t>(aRed);
    aOut[3] = 255;
}

// Components of interleaved pixels: how many there are and where each lies.
template <size_t kComponents, size_t kRed, size_t kGreen, size_t kBlue>
void PackedToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        const uint8_t *const in = aSamples + kComponents * i;
        StorePixel(aOut + 4 * i, in[kRed], in[kGreen], in[kBlue]);
    }
}

void PlanesToBgra(const uint8_t *aRed, const uint8_t *aGreen, const uint8_t *aBlue, uint8_t *aOut, size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        StorePixel(aOut + 4 * i, aRed[i], aGreen[i], aBlue[i]);
    }
}

inline unsigned ToByte(int32_t aFixed)
{
    return static_cast<unsigned>(std::clamp(aFixed >> kYuvFractionBits, 0, 255));
}

inline void StoreYuv(uint8_t *aOut, int32_t aY, int32_t aU, int32_t aV, const YuvMatrix &aMatrix)
{
    const int32_t y = (aY - aMatrix.mBlack) * aMatrix.mY + (1 << (kYuvFractionBits - 1));
    const int32_t u = aU - 128;
    const int32_t v = aV - 128;
    StorePixel(aOut, ToByte(y + v * aMatrix.mRedV), ToByte(y + u * aMatrix.mGreenU + v * aMatrix.mGreenV),
               ToByte(y + u * aMatrix.mBlueU));
}

void YuvToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const YuvMatrix &aMatrix, uint8_t *aOut,
               size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        StoreYuv(aOut + 4 * i, aY[i], aU[i], aV[i], aMatrix);
    }
}

// Where U and the first luma sample lie in the four samples of a pair; V and the second luma sample follow two later.
template <size_t kU, size_t kY>
void YuvPairsToBgra(const uint8_t *aSamples, const YuvMatrix &aMatrix, uint8_t *aOut, size_t aWidth)
{
    int32_t v = 128;
    for (size_t i = 0; i < aWidth; ++i) {
        const uint8_t *const pair = aSamples + i / 2 * 4;
        if ((i | 1) < aWidth) {
            v = pair[kU + 2];
        }
        StoreYuv(aOut + 4 * i, pair[kY + i % 2 * 2], pair[kU], v, aMatrix);
    }
}

// The upper 16 bits of a product, for which processors have an instruction.
inline int High(int aA, int aB)
{
    return (aA * aB) >> 16;
}

inline unsigned LimitToByte(int aSum)
{
    return static_cast<unsigned>(std::clamp(aSum >> HalfChromaFactors::kFractionBits, 0, 255));
}

void HalfChromaToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const HalfChromaFactors &aFactors,
                      uint8_t *aOut, size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        const int luma = static_cast<int>((uint32_t{aY[i]} * 257 * aFactors.mY) >> 16) - aFactors.mBlack;
        const int u = (aU[i / 2] - 128) * 256;
        const int v = (aV[i / 2] - 128) * 256;
        StorePixel(aOut + 4 * i, LimitToByte(luma + High(v, aFactors.mRedV)),
                   LimitToByte(luma - High(u, aFactors.mGreenU) - High(v, aFactors.mGreenV)),
                   LimitToByte(luma + High(u, aFactors.mBlueU)));
    }
}

void Demosaic(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, const BayerLine &aColours,
              LineEnds aEnds, uint8_t *aOut, size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        const bool isFirst = i == 0 && aEnds.mFirst;
        const bool isLast = i + 1 == aWidth && aEnds.mLast;
        const ptrdiff_t left = isFirst ? (isLast ? 0 : 1) : -1;
        const ptrdiff_t right = isLast ? (isFirst ? 0 : -1) : 1;
        const uint8_t *const above = aAbove + i;
        const uint8_t *const line = aLine + i;
        const uint8_t *const below = aBelow + i;
        const unsigned horizontal = line[left] + line[right];
        const unsigned vertical = above[0] + below[0];
        const unsigned diagonal = above[left] + above[right] + below[left] + below[right];
        const bool isGreen = (i % 2 == 0) == aColours.mStartsGreen;
        // Lines of red and of blue are alike: what the line has beside green, and what only its neighbours have.
        const unsigned own = isGreen ? (horizontal + 1) >> 1 : line[0];
        const unsigned green = isGreen ? line[0] : (horizontal + vertical + 2) >> 2;
        const unsigned other = isGreen ? (vertical + 1) >> 1 : (diagonal + 2) >> 2;
        StorePixel(aOut + 4 * i, aColours.mHasRed ? own : other, green, aColours.mHasRed ? other : own);
    }
}

void Copy(const uint8_t *aFrom, uint8_t *aTo, size_t aSize)
{
    std::memcpy(aTo, aFrom, aSize);
}

void DoNothing() {}

ConversionKernels MakeKernels()
{
    ConversionKernels kernels = {};
    SetScalarUnpackKernels(kernels);
    kernels.mMono[static_cast<size_t>(SampleLayout::Bytes)] = PackedToBgra<1, 0, 0, 0>;
    kernels.mRgb = PackedToBgra<3, 0, 1, 2>;
    kernels.mBgr = PackedToBgra<3, 2, 1, 0>;
    kernels.mRgba = PackedToBgra<4, 0, 1, 2>;
    kernels.mBgra = PackedToBgra<4, 2, 1, 0>;
    kernels.mPlanes = PlanesToBgra;
    kernels.mYuv = YuvToBgra;
    kernels.mUyvy = YuvPairsToBgra<0, 1>;
    kernels.mYuyv = YuvPairsToBgra<1, 0>;
    kernels.mHalfChroma = HalfChromaToBgra;
    kernels.mDemosaic = Demosaic;
    kernels.mStream = Copy;
    kernels.mFlush = DoNothing;
    return kernels;
}

}  // namespace

const ConversionKernels &GetScalarKernels()
{
    static const ConversionKernels kernels = MakeKernels();
    return kernels;
}

}  // namespace LxDetail
