#include "LxBuffer/LxPixelSamples.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "LxBuffer/LxImage.h"

namespace
{

/// "name value" for each sample of a pixel, or the code of a failure.
std::string Read(const LxImage &aImage, uint32_t aX, uint32_t aY)
{
    LxPixelSamples samples;
    const LxResult result = LxReadPixelSamples(&aImage, aX, aY, samples);
    if (!result.IsOK()) {
        EXPECT_FALSE(result.GetDescription().IsEmpty());
        return result.GetCodeString().GetAscii();
    }
    std::string text;
    for (uint32_t i = 0; i < samples.mCount; ++i) {
        text += (i ? " " : "") + std::string(samples.mNames[i].GetAscii()) + std::to_string(samples.mValues[i]);
    }
    return text;
}

/// An image in memory of exactly its size.
struct Image
{
    Image(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, const std::vector<uint8_t> &aBytes,
          uint32_t aPadding = 0)
        : mBytes(aBytes)
    {
        EXPECT_TRUE(mImage.AttachSized(mBytes.data(), mBytes.size(), aWidth, aHeight, aType, aPadding).IsOK());
    }
    std::vector<uint8_t> mBytes;
    LxImage mImage;
};

}  // namespace

TEST(LxPixelSamples, ReadsEveryWayOfPacking)
{
    struct Case
    {
        LxPixelType mType;
        uint32_t mWidth;
        std::vector<uint8_t> mLine;
        std::vector<std::string> mPixels;
    };
    const Case cases[] = {
        {LxPixelType::Mono8, 3, {1, 128, 255}, {"1", "128", "255"}},
        {LxPixelType::Mono8s, 2, {0x80, 0x7F}, {"-128", "127"}},
        {LxPixelType::Mono12, 2, {0xBC, 0x0A, 0xFF, 0x0F}, {"2748", "4095"}},
        {LxPixelType::Mono16, 2, {0x34, 0x12, 0xFF, 0xFF}, {"4660", "65535"}},
        {LxPixelType::Mono32, 1, {0xFF, 0xFF, 0xFF, 0xFF}, {"4294967295"}},
        {LxPixelType::Mono1p, 8, {0b10000110}, {"0", "1", "1", "0", "0", "0", "0", "1"}},
        {LxPixelType::Mono10p, 4, {0x01, 0x08, 0x30, 0x00, 0x01}, {"1", "2", "3", "4"}},
        {LxPixelType::Mono12p, 2, {0xBC, 0x3A, 0x12}, {"2748", "291"}},
        {LxPixelType::Mono12Packed, 2, {0xAB, 0x3C, 0x12}, {"2748", "291"}},
        {LxPixelType::Mono10Packed, 2, {0xFF, 0x13, 0x00}, {"1023", "1"}},
        {LxPixelType::BayerRG8, 2, {7, 9}, {"R7", "G9"}},
        {LxPixelType::RGB8, 2, {1, 2, 3, 4, 5, 6}, {"R1 G2 B3", "R4 G5 B6"}},
        {LxPixelType::BGRa8, 1, {1, 2, 3, 4}, {"B1 G2 R3 a4"}},
        {LxPixelType::RGB10p32, 1, {0x01, 0x08, 0x30, 0x00}, {"R1 G2 B3"}},
        {LxPixelType::RGB8_Planar, 2, {1, 2, 3, 4, 5, 6}, {"R1 G3 B5", "R2 G4 B6"}},
        {LxPixelType::YUV422_8_UYVY, 2, {10, 20, 30, 40}, {"U10 Y20 V30", "U10 V30 Y40"}},
        {LxPixelType::YCbCr8, 1, {1, 2, 3}, {"Y1 Cb2 Cr3"}},
        {LxPixelType::Coord3D_C32f, 1, {0, 0, 0, 0}, {"PIXEL_FORMAT_NOT_SUPPORTED"}},
        {LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar, 2, {1, 2, 3, 4}, {"PIXEL_FORMAT_NOT_SUPPORTED"}},
    };
    for (const Case &one : cases) {
        const Image image(one.mType, one.mWidth, 1, one.mLine);
        for (uint32_t x = 0; x < one.mPixels.size(); ++x) {
            EXPECT_EQ(Read(image.mImage, x, 0), one.mPixels[x])
                << LxPixelTypeToString(one.mType).GetAscii() << ' ' << x;
        }
    }
}

TEST(LxPixelSamples, SkipsPaddingAndKnowsTheBayerTile)
{
    const Image image(LxPixelType::BayerGB8, 2, 2, {1, 2, 99, 3, 4, 99}, 1);
    EXPECT_EQ(Read(image.mImage, 0, 0), "G1");
    EXPECT_EQ(Read(image.mImage, 1, 0), "B2");
    EXPECT_EQ(Read(image.mImage, 0, 1), "R3");
    EXPECT_EQ(Read(image.mImage, 1, 1), "G4");
}

TEST(LxPixelSamples, RefusesWhatIsNotThere)
{
    LxPixelSamples samples;
    EXPECT_EQ(LxReadPixelSamples(nullptr, 0, 0, samples), LxResultCode::InvalidArgument);
    EXPECT_EQ(Read(LxImage(), 0, 0), "INVALID_ARGUMENT");
    const Image image(LxPixelType::Mono8, 2, 1, {1, 2});
    EXPECT_EQ(Read(image.mImage, 2, 0), "OUT_OF_RANGE");
    EXPECT_EQ(Read(image.mImage, 0, 1), "OUT_OF_RANGE");
}
