#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "LxBuffer/LxPixelType.h"

/// What a pixel of a converted image must be. Colours that are the nearest to a number without a closed form come as
/// that number with a tolerance.
struct ReferencePixel
{
    double mBlue;
    double mGreen;
    double mRed;
    double mTolerance;
};

/// Converts an image pixel by pixel and bit by bit from what the pixel format naming convention says about its format.
/// It shares the list of formats with the library and nothing else.
class ReferenceConversion
{
public:
    ReferenceConversion(LxPixelType aType, const uint8_t *aData, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX);

    /// Bytes of an image of the format.
    static uint64_t SizeOf(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                           uint32_t aPaddingY);

    ReferencePixel GetPixel(uint32_t aX, uint32_t aY) const;

private:
    struct Plane
    {
        uint64_t mOffset;
        uint64_t mStride;
        uint64_t mSamples;  // in a line
    };

    bool Is(const char *aPacking) const { return mPacking == aPacking; }
    unsigned Bit(uint64_t aByte, uint64_t aBit) const;
    unsigned Sample(uint32_t aPlane, uint32_t aLine, uint64_t aIndex) const;
    unsigned Component(uint32_t aX, uint32_t aY, const std::string &aName) const;
    unsigned Chroma(uint32_t aX, uint32_t aY, const std::string &aName) const;
    ReferencePixel Yuv(unsigned aY, unsigned aU, unsigned aV) const;
    unsigned BayerColour(uint32_t aX, uint32_t aY, char aColour) const;
    char TileColour(int64_t aX, int64_t aY) const;

    static std::vector<Plane> PlanesOf(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                                       uint64_t *aSize);

    std::string mPacking;
    std::string mBits;
    std::string mTile;
    std::string mFamily;
    std::vector<std::string> mOrder;
    std::vector<Plane> mPlanes;
    LxPixelType mType;
    const uint8_t *mData;
    uint32_t mWidth;
    uint32_t mHeight;
};
