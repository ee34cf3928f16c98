#pragma once

// Internal: lines of one-byte samples to lines of BGRa8 with alpha 255.

#include <cstddef>
#include <cstdint>

namespace LxDetail
{

/// Pixels of a line at most: far more than any sensor has, and few enough for the signed widths that libyuv takes.
constexpr uint32_t kMostLinePixels = 1u << 24;

/// Interleaved samples to aWidth pixels at aOut.
using PackedColourKernel = void (*)(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);

void GreyToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);
void RgbToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);
void BgrToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);
void RgbaToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);
void BgraToBgra(const uint8_t *aSamples, uint8_t *aOut, size_t aWidth);

/// One line per component.
void PlanesToBgra(const uint8_t *aRed, const uint8_t *aGreen, const uint8_t *aBlue, uint8_t *aOut, size_t aWidth);

/// What turns luma and chroma into colour, in units of 2^-20: R = aY (Y - black) + Cr part, and so on.
struct YuvMatrix
{
    int32_t mBlack;
    int32_t mY;
    int32_t mRedV;
    int32_t mGreenU;
    int32_t mGreenV;
    int32_t mBlueU;
};

/// ITU-T T.871: BT.601 in full range.
extern const YuvMatrix kMatrixFullRange;
/// Limited range (luma 16 to 235, chroma 16 to 240) of these recommendations.
extern const YuvMatrix kMatrix601;
extern const YuvMatrix kMatrix709;
extern const YuvMatrix kMatrix2020;

/// A line per component, chroma at every pixel, to a line per colour.
void YuvToPlanes(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, const YuvMatrix &aMatrix, uint8_t *aRed,
                 uint8_t *aGreen, uint8_t *aBlue, size_t aWidth);

/// Takes interleaved luma and chroma samples apart, repeating chroma for every pixel that shares it. aCount is the
/// number of samples that the line has; chroma that the last group lacks is that of the group before, or neutral.
using YuvSplitKernel = void (*)(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV,
                                size_t aWidth);

void SplitUyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitYuv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitUyvy(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitYuyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitUyyvyy(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitYyuyyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);

/// Takes chroma pairs, one for two pixels, apart and repeats them for every pixel.
void SplitChromaPairs(const uint8_t *aPairs, uint8_t *aFirst, uint8_t *aSecond, size_t aWidth);

}  // namespace LxDetail
