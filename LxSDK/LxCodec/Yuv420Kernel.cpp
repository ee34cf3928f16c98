#include "LxCodec/Yuv420Kernel.h"

#include <libyuv/planar_functions.h>

#include <cmath>

namespace LxDetail
{

namespace
{

/// The lines that a conversion works on, none of which overlap.
struct Lines
{
    const uint8_t *mY;
    const uint8_t *mU;
    const uint8_t *mV;
    int16_t *mRedChroma;
    int16_t *mGreenChroma;
    int16_t *mBlueChroma;
    uint8_t *mRed;
    uint8_t *mGreen;
    uint8_t *mBlue;
};

// The upper 16 bits of a product, for which processors have an instruction.
inline int16_t High(int16_t aA, int16_t aB)
{
    return static_cast<int16_t>((aA * aB) >> 16);
}

inline uint8_t Clamp(int16_t aValue)
{
    const auto value = static_cast<int16_t>(aValue >> 5);
    return static_cast<uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// Written so that the compiler makes vectors of it, whatever it is inlined into.
[[gnu::always_inline]] inline void ConvertLine(const Lines &aLines, const Yuv420Kernel::Factors &aFactors,
                                               uint32_t aWidth)
{
    const Yuv420Kernel::Factors factors = aFactors;
    const uint8_t *__restrict u = aLines.mU;
    const uint8_t *__restrict v = aLines.mV;
    int16_t *__restrict redChroma = aLines.mRedChroma;
    int16_t *__restrict greenChroma = aLines.mGreenChroma;
    int16_t *__restrict blueChroma = aLines.mBlueChroma;
    for (uint32_t i = 0; i < (aWidth + 1) / 2; ++i) {
        const auto pb = static_cast<int16_t>((u[i] - 128) * 256);
        const auto pr = static_cast<int16_t>((v[i] - 128) * 256);
        const int16_t red = High(pr, factors.mRedV);
        const auto green = static_cast<int16_t>(High(pb, factors.mGreenU) + High(pr, factors.mGreenV));
        const int16_t blue = High(pb, factors.mBlueU);
        redChroma[2 * i] = redChroma[2 * i + 1] = red;
        greenChroma[2 * i] = greenChroma[2 * i + 1] = green;
        blueChroma[2 * i] = blueChroma[2 * i + 1] = blue;
    }
    const uint8_t *__restrict y = aLines.mY;
    uint8_t *__restrict red = aLines.mRed;
    uint8_t *__restrict green = aLines.mGreen;
    uint8_t *__restrict blue = aLines.mBlue;
    for (uint32_t i = 0; i < aWidth; ++i) {
        const auto wide = static_cast<uint16_t>(y[i] * 257);
        const auto luma = static_cast<int16_t>(((uint32_t{wide} * factors.mY) >> 16) - factors.mBlack);
        red[i] = Clamp(static_cast<int16_t>(luma + redChroma[i]));
        green[i] = Clamp(static_cast<int16_t>(luma - greenChroma[i]));
        blue[i] = Clamp(static_cast<int16_t>(luma + blueChroma[i]));
    }
}

void ConvertLineAnywhere(const Lines &aLines, const Yuv420Kernel::Factors &aFactors, uint32_t aWidth)
{
    ConvertLine(aLines, aFactors, aWidth);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] void ConvertLineAvx2(const Lines &aLines, const Yuv420Kernel::Factors &aFactors,
                                             uint32_t aWidth)
{
    ConvertLine(aLines, aFactors, aWidth);
}

const auto kConvertLine = __builtin_cpu_supports("avx2") ? ConvertLineAvx2 : ConvertLineAnywhere;
#else
const auto kConvertLine = ConvertLineAnywhere;
#endif

}  // namespace

Yuv420Kernel::Yuv420Kernel(double aKr, double aKb, bool aIsFullRange)
{
    const double kg = 1 - aKr - aKb;
    const double luma = aIsFullRange ? 1.0 : 255.0 / 219;
    const auto chroma = [&](double aFactor) {
        return static_cast<int16_t>(std::lround(aFactor * (aIsFullRange ? 1.0 : 255.0 / 224) * 8192));
    };
    mFactors.mY = static_cast<uint16_t>(std::lround(luma * 32 * 65536 / 257));
    // half of a unit of the result is added for rounding
    mFactors.mBlack = static_cast<int16_t>(std::lround((aIsFullRange ? 0 : 16 * luma * 32) - 16));
    mFactors.mRedV = chroma(2 * (1 - aKr));
    mFactors.mGreenU = chroma(2 * aKb * (1 - aKb) / kg);
    mFactors.mGreenV = chroma(2 * aKr * (1 - aKr) / kg);
    mFactors.mBlueU = chroma(2 * (1 - aKb));
}

void Yuv420Kernel::Convert(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, uint8_t *aOut, uint32_t aWidth)
{
    const size_t stride = (size_t{aWidth} + 63) / 32 * 32;  // even, and every line begins where vectors do
    mChroma.resize(3 * stride);
    mPlanes.resize(3 * stride);
    const Lines lines{aY,
                      aU,
                      aV,
                      mChroma.data(),
                      mChroma.data() + stride,
                      mChroma.data() + 2 * stride,
                      mPlanes.data(),
                      mPlanes.data() + stride,
                      mPlanes.data() + 2 * stride};
    kConvertLine(lines, mFactors, aWidth);
    // without a plane of its own alpha becomes 255
    libyuv::MergeARGBPlane(lines.mRed, 0, lines.mGreen, 0, lines.mBlue, 0, nullptr, 0, aOut, 0,
                           static_cast<int>(aWidth), 1);
}

}  // namespace LxDetail
