#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "LxBuffer/LxBuffer.h"
#include "LxCodec/LxBufferConverter.h"
#include "VectorTargets.h"

namespace
{

struct Mosaic
{
    LxPixelType mType;
    const char *mTile;  // colours of the first two pixels of the first line, then of the second
    unsigned mBits;
    char mPacking;  // 'b'ytes, 'w'ords, 's'tream of bits, 'p'airs in three bytes
};

const Mosaic kMosaics[] = {
    {LxPixelType::BayerRG8, "RGGB", 8, 'b'},         {LxPixelType::BayerGR8, "GRBG", 8, 'b'},
    {LxPixelType::BayerGB8, "GBRG", 8, 'b'},         {LxPixelType::BayerBG8, "BGGR", 8, 'b'},
    {LxPixelType::BayerRG10p, "RGGB", 10, 's'},      {LxPixelType::BayerGR12p, "GRBG", 12, 's'},
    {LxPixelType::BayerGB10Packed, "GBRG", 10, 'p'}, {LxPixelType::BayerBG12Packed, "BGGR", 12, 'p'},
    {LxPixelType::BayerRG10, "RGGB", 10, 'w'},       {LxPixelType::BayerGB12, "GBRG", 12, 'w'},
    {LxPixelType::BayerGR16, "GRBG", 16, 'w'},
};

std::vector<uint8_t> Pack(const Mosaic &aMosaic, const std::vector<unsigned> &aValues, size_t aWidth)
{
    std::vector<uint8_t> bytes(LxPixelTypeGetImageSize(aMosaic.mType, static_cast<uint32_t>(aWidth),
                                                       static_cast<uint32_t>(aValues.size() / aWidth)));
    const size_t stride = bytes.size() / (aValues.size() / aWidth);
    const auto set = [&bytes](size_t aBit, unsigned aValue, unsigned aBits) {
        for (unsigned i = 0; i < aBits; ++i) {
            uint8_t &byte = bytes[(aBit + i) / 8];
            byte = static_cast<uint8_t>(byte | (aValue >> i & 1) << (aBit + i) % 8);
        }
    };
    for (size_t i = 0; i < aValues.size(); ++i) {
        const size_t line = i / aWidth * stride * 8;
        const size_t x = i % aWidth;
        if (aMosaic.mPacking == 'p') {
            const unsigned low = aMosaic.mBits - 8;
            set(line + x / 2 * 24 + x % 2 * 16, aValues[i] >> low, 8);
            set(line + x / 2 * 24 + 8 + x % 2 * 4, aValues[i], low);
        }
        else {
            set(line + x * (aMosaic.mPacking == 'w' ? 16 : aMosaic.mBits), aValues[i], aMosaic.mBits);
        }
    }
    return bytes;
}

// Bilinear interpolation in double precision of samples scaled to 0 to 255; lines and columns are mirrored at borders.
double Interpolate(const Mosaic &aMosaic, const std::vector<unsigned> &aValues, int aWidth, int aHeight, int aX, int aY,
                   char aColour)
{
    const auto mirror = [](int aIndex, int aCount) {
        const int folded = std::abs(aIndex);
        return aCount == 1 ? 0 : folded < aCount ? folded : 2 * (aCount - 1) - folded;
    };
    double sum = 0;
    double weights = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (aMosaic.mTile[((aY + dy) & 1) * 2 + ((aX + dx) & 1)] == aColour) {
                // a colour that is in the middle is exact, the others weigh by their distance
                const bool isMiddle = aMosaic.mTile[(aY & 1) * 2 + (aX & 1)] == aColour;
                const double weight = isMiddle ? (dx == 0 && dy == 0) : (2 - std::abs(dx)) * (2 - std::abs(dy));
                const int place = mirror(aY + dy, aHeight) * aWidth + mirror(aX + dx, aWidth);
                sum += weight * aValues[static_cast<size_t>(place)];
                weights += weight;
            }
        }
    }
    return sum / weights * 255.0 / ((1 << aMosaic.mBits) - 1);
}

class BayerInterpolation : public testing::TestWithParam<int64_t>
{
protected:
    OnVectorTarget mTarget{GetParam()};
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(OnEveryTarget, BayerInterpolation, testing::ValuesIn(GetVectorTargets()), NameOf);

TEST_P(BayerInterpolation, IsWithinOneOfDoublePrecisionUpToTheBorders)
{
    std::minstd_rand random(7);
    LxBufferConverter converter(0);
    LxBuffer output(LxPayloadType::Image);
    for (const Mosaic &mosaic : kMosaics) {
        for (const int width : {2, 3, 4, 7, 64, 67, 130, 300}) {
            for (const int height : {2, 3, 5, 8}) {
                SCOPED_TRACE(std::string(LxPixelTypeToString(mosaic.mType).GetAscii()) + " " + std::to_string(width) +
                             "x" + std::to_string(height));
                std::vector<unsigned> values(static_cast<size_t>(width * height));
                for (unsigned &value : values) {
                    value = static_cast<unsigned>(random() >> 8) % (1u << mosaic.mBits);
                }
                std::vector<uint8_t> bytes = Pack(mosaic, values, static_cast<size_t>(width));
                LxImage input;
                ASSERT_TRUE(input
                                .AttachSized(bytes.data(), bytes.size(), static_cast<uint32_t>(width),
                                             static_cast<uint32_t>(height), mosaic.mType)
                                .IsOK());
                ASSERT_TRUE(converter.Convert(&input, &output, true, false).IsOK());
                const auto *pixel = static_cast<const uint8_t *>(output.GetDataPointer());
                for (int y = 0; y < height; ++y) {
                    for (int x = 0; x < width; ++x, pixel += 4) {
                        for (int i = 0; i < 3; ++i) {
                            const double wanted = Interpolate(mosaic, values, width, height, x, y, "BGR"[i]);
                            ASSERT_LE(std::abs(pixel[i] - std::round(wanted)), 1.0)
                                << "BGR"[i] << " of " << x << "," << y << ": " << wanted;
                        }
                    }
                }
            }
        }
    }
}
