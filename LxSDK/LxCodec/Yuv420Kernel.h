#pragma once

// Internal: lines of planar 4:2:0 of 8 bits to BGRa8.

#include <cstdint>
#include <vector>

namespace LxDetail
{

/// What turns luma and chroma into colour, in fixed point.
class Yuv420Kernel
{
public:
    /// @param aKr, aKb the weights of red and blue in luma, by which recommendations define a matrix.
    Yuv420Kernel(double aKr, double aKb, bool aIsFullRange);

    /// Converts a line of luma with its line of half as many chroma samples (rounded up). Off by at most one from the
    /// exact value.
    void Convert(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, uint8_t *aOut, uint32_t aWidth);

    /// Factors in units of 2^-13 for chroma, for luma as 16-bit fractions of the result's 2^-5.
    struct Factors
    {
        uint16_t mY;
        int16_t mBlack;
        int16_t mRedV;
        int16_t mGreenU;
        int16_t mGreenV;
        int16_t mBlueU;
    };

private:
    Factors mFactors;
    std::vector<int16_t> mChroma;  // what chroma adds to red, green and blue of each pixel of a line
    std::vector<uint8_t> mPlanes;  // red, green and blue of a line
};

}  // namespace LxDetail
