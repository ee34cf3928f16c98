#pragma once

// Internal: Bayer mosaic to colour.

#include <cstddef>
#include <cstdint>

namespace LxDetail
{

/// The two colours of a mosaic line: red or blue, which the line has, and green.
struct BayerLine
{
    bool mHasRed;       ///< Red and green, else blue and green.
    bool mStartsGreen;  ///< The first pixel is green.
};

/// Interpolates a line bilinearly: the mean of the two or four nearest samples of a colour, halves rounded up.
/// @param aAbove, aLine, aBelow the samples; the byte before the first and behind the last must be readable and hold
/// the
///        mirrored neighbours.
/// @param aMask aWidth + 1 bytes 255, 0, 255, 0, ...
void DemosaicLine(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, const BayerLine &aColours,
                  const uint8_t *aMask, uint8_t *aRed, uint8_t *aGreen, uint8_t *aBlue, size_t aWidth);

/// The index that stands for aIndex, which is -1 to aCount, in a row of aCount samples: mirrored at the first and the
/// last sample, so that the colour of the mosaic is kept. A single sample stands for its neighbours too.
inline uint32_t MirrorIndex(int64_t aIndex, uint32_t aCount)
{
    if (aCount == 1) {
        return 0;
    }
    if (aIndex < 0) {
        return 1;
    }
    return aIndex < aCount ? static_cast<uint32_t>(aIndex) : aCount - 2;
}

}  // namespace LxDetail
