#include "LxCodec/YuvSplit.h"

#include <array>
#include <cmath>

namespace LxDetail
{

namespace
{

constexpr int32_t Fixed(double aValue)
{
    return static_cast<int32_t>(aValue * (1 << kYuvFractionBits) + (aValue < 0 ? -0.5 : 0.5));
}

// The inverse of Y = Kr R + (1 - Kr - Kb) G + Kb B with U and V scaled to the same range, for luma and chroma that span
// the given numbers of steps.
constexpr YuvMatrix MakeMatrix(double aKr, double aKb, int32_t aBlack, double aLumaSteps, double aChromaSteps)
{
    const double kg = 1.0 - aKr - aKb;
    const double chroma = 2.0 * 255.0 / aChromaSteps;
    return {aBlack,
            Fixed(255.0 / aLumaSteps),
            Fixed(chroma * (1.0 - aKr)),
            Fixed(-chroma * (1.0 - aKb) * aKb / kg),
            Fixed(-chroma * (1.0 - aKr) * aKr / kg),
            Fixed(chroma * (1.0 - aKb))};
}

// A group of pixels that share chroma: how many samples it has and where each lies.
template <size_t kPixels, size_t kSamples>
struct YuvGroup
{
    std::array<size_t, kPixels> mY;
    size_t mU;
    size_t mV;
};

template <size_t kPixels, size_t kSamples>
inline void SplitGroups(const YuvGroup<kPixels, kSamples> &aGroup, const uint8_t *aSamples, size_t aCount, uint8_t *aY,
                        uint8_t *aU, uint8_t *aV, size_t aWidth)
{
    const size_t groups = aWidth / kPixels;
    for (size_t group = 0; group < groups; ++group) {
        const uint8_t *const in = aSamples + group * kSamples;
        for (size_t i = 0; i < kPixels; ++i) {
            aY[group * kPixels + i] = in[aGroup.mY[i]];
            aU[group * kPixels + i] = in[aGroup.mU];
            aV[group * kPixels + i] = in[aGroup.mV];
        }
    }
    const size_t rest = aWidth - groups * kPixels;
    if (rest != 0) {
        const uint8_t *const in = aSamples + groups * kSamples;
        const size_t count = aCount - groups * kSamples;
        const uint8_t u = groups != 0 ? aU[groups * kPixels - 1] : 128;
        const uint8_t v = groups != 0 ? aV[groups * kPixels - 1] : 128;
        for (size_t i = 0; i < rest; ++i) {
            aY[groups * kPixels + i] = in[aGroup.mY[i]];
            aU[groups * kPixels + i] = aGroup.mU < count ? in[aGroup.mU] : u;
            aV[groups * kPixels + i] = aGroup.mV < count ? in[aGroup.mV] : v;
        }
    }
}

constexpr YuvGroup<1, 3> kUyv = {{1}, 0, 2};
constexpr YuvGroup<1, 3> kYuv = {{0}, 1, 2};
constexpr YuvGroup<4, 6> kUyyvyy = {{1, 2, 4, 5}, 0, 3};
constexpr YuvGroup<4, 6> kYyuyyv = {{0, 1, 3, 4}, 2, 5};

}  // namespace

const YuvMatrix kMatrixFullRange = MakeMatrix(0.299, 0.114, 0, 255.0, 255.0);
const YuvMatrix kMatrix601 = MakeMatrix(0.299, 0.114, 16, 219.0, 224.0);
const YuvMatrix kMatrix709 = MakeMatrix(0.2126, 0.0722, 16, 219.0, 224.0);
const YuvMatrix kMatrix2020 = MakeMatrix(0.2627, 0.0593, 16, 219.0, 224.0);

HalfChromaFactors MakeHalfChromaFactors(double aKr, double aKb, bool aIsFullRange)
{
    constexpr double kUnit = 1 << HalfChromaFactors::kFractionBits;
    const double kg = 1 - aKr - aKb;
    const double luma = aIsFullRange ? 1.0 : 255.0 / 219;
    const auto chroma = [&](double aFactor) {
        return static_cast<int16_t>(std::lround(aFactor * (aIsFullRange ? 1.0 : 255.0 / 224) * kUnit * 256));
    };
    HalfChromaFactors factors = {};
    factors.mY = static_cast<uint16_t>(std::lround(luma * kUnit * 65536 / 257));
    // half of a unit of the result is added for rounding
    factors.mBlack = static_cast<int16_t>(std::lround((aIsFullRange ? 0 : 16 * luma * kUnit) - kUnit / 2));
    factors.mRedV = chroma(2 * (1 - aKr));
    factors.mGreenU = chroma(2 * aKb * (1 - aKb) / kg);
    factors.mGreenV = chroma(2 * aKr * (1 - aKr) / kg);
    factors.mBlueU = chroma(2 * (1 - aKb));
    return factors;
}

void SplitUyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth)
{
    SplitGroups(kUyv, aSamples, aCount, aY, aU, aV, aWidth);
}

void SplitYuv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth)
{
    SplitGroups(kYuv, aSamples, aCount, aY, aU, aV, aWidth);
}

void SplitUyyvyy(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth)
{
    SplitGroups(kUyyvyy, aSamples, aCount, aY, aU, aV, aWidth);
}

void SplitYyuyyv(const uint8_t *aSamples, size_t aCount, uint8_t *aY, uint8_t *aU, uint8_t *aV, size_t aWidth)
{
    SplitGroups(kYyuyyv, aSamples, aCount, aY, aU, aV, aWidth);
}

void SplitChromaPairs(const uint8_t *aPairs, uint8_t *aFirst, uint8_t *aSecond, size_t aWidth)
{
    for (size_t i = 0; i < aWidth; ++i) {
        aFirst[i] = aPairs[i / 2 * 2];
        aSecond[i] = aPairs[i / 2 * 2 + 1];
    }
}

}  // namespace LxDetail
