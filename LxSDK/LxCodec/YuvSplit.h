#pragma once

// Internal: luma and chroma of a line, and the matrices that make colour of them.

#include "LxCodec/ConversionKernels.h"

namespace LxDetail
{

/// ITU-T T.871: BT.601 in full range.
extern const YuvMatrix kMatrixFullRange;
/// Limited range (luma 16 to 235, chroma 16 to 240) of these recommendations.
extern const YuvMatrix kMatrix601;
extern const YuvMatrix kMatrix709;
extern const YuvMatrix kMatrix2020;

/// @param aKr, aKb the weights of red and blue in luma, by which recommendations define a matrix.
HalfChromaFactors MakeHalfChromaFactors(double aKr, double aKb, bool aIsFullRange);

/// Takes interleaved luma and chroma samples apart, repeating chroma for every pixel that shares it. aCount is the
/// number of samples that the line has; chroma that the last group lacks is that of the group before, or neutral.
using YuvSplitKernel = void (*)(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV,
                                size_t aWidth);

void SplitUyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitYuv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitUyyvyy(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);
void SplitYyuyyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth);

/// Takes chroma pairs, one for two pixels, apart and repeats them for every pixel.
void SplitChromaPairs(const uint8_t *aPairs, uint8_t *aFirst, uint8_t *aSecond, size_t aWidth);

}  // namespace LxDetail
