#include "LxCodec/BayerKernel.h"

namespace LxDetail
{

namespace
{

inline uint8_t Select(uint8_t aMask, unsigned aIfSet, unsigned aIfClear)
{
    return static_cast<uint8_t>((aIfSet & aMask) | (aIfClear & ~static_cast<unsigned>(aMask)));
}

}  // namespace

void DemosaicLine(const uint8_t *aAbove, const uint8_t *aLine, const uint8_t *aBelow, const BayerLine &aColours,
                  const uint8_t *aMask, uint8_t *aRed, uint8_t *aGreen, uint8_t *aBlue, size_t aWidth)
{
    // Lines of red and of blue are alike: what the line has beside green, and what only its neighbours have.
    uint8_t *__restrict const own = aColours.mHasRed ? aRed : aBlue;
    uint8_t *__restrict const other = aColours.mHasRed ? aBlue : aRed;
    uint8_t *__restrict const green = aGreen;
    const uint8_t *const isColour = aMask + (aColours.mStartsGreen ? 1 : 0);
    const uint8_t *const left = aLine - 1;
    const uint8_t *const right = aLine + 1;
    const uint8_t *const aboveLeft = aAbove - 1;
    const uint8_t *const aboveRight = aAbove + 1;
    const uint8_t *const belowLeft = aBelow - 1;
    const uint8_t *const belowRight = aBelow + 1;
    for (size_t i = 0; i < aWidth; ++i) {
        const unsigned horizontal = left[i] + right[i];
        const unsigned vertical = aAbove[i] + aBelow[i];
        const unsigned diagonal = aboveLeft[i] + aboveRight[i] + belowLeft[i] + belowRight[i];
        const uint8_t mask = isColour[i];
        own[i] = Select(mask, aLine[i], (horizontal + 1) >> 1);
        green[i] = Select(mask, (horizontal + vertical + 2) >> 2, aLine[i]);
        other[i] = Select(mask, (diagonal + 2) >> 2, (vertical + 1) >> 1);
    }
}

}  // namespace LxDetail
