#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "LxGUI/Display/HalveImage.h"

namespace
{

/// An image whose bytes count up from line to line, in memory of exactly its size.
struct Counting
{
    Counting(uint32_t aWidth, uint32_t aHeight, LxPixelType aType, uint32_t aPaddingX = 0)
        : mSize(LxPixelTypeGetImageSize(aType, aWidth, aHeight, aPaddingX)), mData(new uint8_t[mSize])
    {
        for (uint64_t i = 0; i < mSize; ++i) {
            mData[i] = static_cast<uint8_t>(i * 7 + i / 251);
        }
        EXPECT_TRUE(mImage.AttachSized(mData.get(), mSize, aWidth, aHeight, aType, aPaddingX).IsOK());
    }

    uint64_t mSize;
    std::unique_ptr<uint8_t[]> mData;
    LxImage mImage;
};

void ExpectEverySecondPixel(const LxImage &aImage, const LxImage &aHalved, uint32_t aPixelSize)
{
    const auto *input = static_cast<const uint8_t *>(aImage.GetDataPointer());
    const auto *output = static_cast<const uint8_t *>(aHalved.GetDataPointer());
    const uint64_t stride = uint64_t{aImage.GetWidth()} * aPixelSize + aImage.GetPaddingX();
    ASSERT_EQ(aHalved.GetPaddingX(), 0u);
    for (uint32_t y = 0; y < aHalved.GetHeight(); ++y) {
        for (uint32_t x = 0; x < aHalved.GetWidth(); ++x) {
            ASSERT_EQ(std::memcmp(output, input + 2 * y * stride + 2 * x * aPixelSize, aPixelSize), 0) << x << ',' << y;
            output += aPixelSize;
        }
    }
}

}  // namespace

TEST(HalveImage, OnlyImagesAbove4096InADirectionAreHalved)
{
    EXPECT_FALSE(IsHalvedForUpload(4096, 4096));
    EXPECT_TRUE(IsHalvedForUpload(4097, 1));
    EXPECT_TRUE(IsHalvedForUpload(1, 4097));
}

TEST(HalveImage, TakesEverySecondPixelOfEverySecondLine)
{
    struct Case
    {
        uint32_t mWidth, mHeight;
        LxPixelType mType;
        uint32_t mPadding, mPixelSize, mHalfWidth, mHalfHeight;
    };
    const Case cases[] = {
        {5000, 3001, LxPixelType::Mono8, 0, 1, 2500, 1500}, {5001, 8, LxPixelType::RGB8, 0, 3, 2500, 4},
        {4098, 7, LxPixelType::Mono16, 5, 2, 2049, 3},      {5000, 1, LxPixelType::BGRa8, 0, 4, 2500, 1},
        {6, 5000, LxPixelType::BayerRG8, 3, 1, 3, 2500},    {5000, 2, LxPixelType::Mono12p, 0, 1, 2500, 1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.mWidth * 10000 + c.mHeight);
        const Counting input(c.mWidth, c.mHeight, c.mType, c.mPadding);
        LxImage halved;
        ASSERT_TRUE(HalveImage(input.mImage, halved));
        EXPECT_EQ(halved.GetWidth(), c.mHalfWidth);
        EXPECT_EQ(halved.GetHeight(), c.mHalfHeight);
        EXPECT_EQ(halved.GetPixelType(), c.mType);
        ExpectEverySecondPixel(input.mImage, halved, c.mPixelSize);
    }
}

TEST(HalveImage, LeavesNothingUnwrittenWherePixelsAreNoWholeBytes)
{
    const Counting input(5000, 2, LxPixelType::Mono12p);
    LxImage halved;
    ASSERT_TRUE(halved.Alloc(5000, 2, LxPixelType::Mono8).IsOK());
    std::memset(halved.GetDataPointer(), 0xA5, halved.GetDataSize());
    ASSERT_TRUE(HalveImage(input.mImage, halved));
    const auto *bytes = static_cast<const uint8_t *>(halved.GetDataPointer());
    ASSERT_EQ(halved.GetDataSize(), 3750u);
    EXPECT_TRUE(std::all_of(bytes + 2500, bytes + 3750, [](uint8_t aByte) { return aByte == 0; }));
}

TEST(HalveImage, RefusesWhatHasNoWholeBytesOrNothingLeft)
{
    LxImage halved;
    const Counting bits(5000, 4, LxPixelType::Mono1p);
    EXPECT_FALSE(HalveImage(bits.mImage, halved));
    const Counting narrow(1, 5000, LxPixelType::Mono8);
    EXPECT_FALSE(HalveImage(narrow.mImage, halved));
    EXPECT_FALSE(HalveImage(LxImage(), halved));
    EXPECT_EQ(halved.GetDataPointer(), nullptr);
}

TEST(HalveImage, ReadsNothingBehindTheData)
{
    // an image that claims more lines than it has data
    class Lying : public LxImage
    {
    public:
        uint64_t GetDataSize() const override { return 5000; }
    };
    const std::unique_ptr<uint8_t[]> data(new uint8_t[5000]());
    Lying image;
    ASSERT_TRUE(image.Attach(data.get(), 5000, 100, LxPixelType::Mono8).IsOK());
    LxImage halved;
    EXPECT_FALSE(HalveImage(image, halved));
}
