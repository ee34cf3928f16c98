#include "LxCodec/LineConverter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "GuardedMemory.h"
#include "LxBuffer/PixelFormatTable.h"
#include "VectorTargets.h"

using LxDetail::Conversion;
using LxDetail::LineConverter;
using LxDetail::PixelFormat;

namespace
{

// Converts an image of random bytes that lies between forbidden pages.
class Picture
{
public:
    Picture(const PixelFormat &aFormat, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX)
        : mIsValid(LxDetail::FindConversionPlan(aFormat.mType, mConversion.mPlan) &&
                   LxDetail::GetImageLayout(mConversion.mLayout, aFormat.mType, aWidth, aHeight, aPaddingX, 0))
    {
        mConversion.mWidth = aWidth;
        mConversion.mHeight = aHeight;
    }

    bool IsValid() const { return mIsValid; }
    size_t GetSize() const { return mConversion.mLayout.mSize; }

    // The lines of output, aStride bytes each, with aLead bytes before them that stay as they are; everything that is
    // not written is 0x5A.
    std::vector<uint8_t> Convert(const uint8_t *aData, size_t aStride, size_t aLead, bool aStream, GuardedMemory &aOut,
                                 uint32_t aBands)
    {
        const size_t size = aLead + aStride * mConversion.mHeight;
        uint8_t *const out = aOut.AtEnd(size);
        std::memset(out, 0x5A, size);
        mConversion.mInput = aData;
        mConversion.mOutput = out + aLead;
        mConversion.mOutputStride = aStride;
        mConversion.mStream = aStream;
        const std::unique_ptr<uint8_t[]> scratch(new uint8_t[LineConverter::GetScratchSize(mConversion)]);
        for (uint32_t band = 0; band < aBands; ++band) {
            LineConverter lines(mConversion, scratch.get());
            lines.Convert(mConversion.mHeight * band / aBands, mConversion.mHeight * (band + 1) / aBands);
        }
        return std::vector<uint8_t>(out, out + size);
    }

private:
    Conversion mConversion;
    bool mIsValid;
};

class Lines : public testing::TestWithParam<int64_t>
{
protected:
    OnVectorTarget mTarget{GetParam()};
};

// Every width up to several vectors, and widths of one and more pieces.
std::vector<uint32_t> Widths()
{
    std::vector<uint32_t> widths = {127, 128, 129, 255, 256, 257, 272, 273, 280, 511, 529, 545};
    for (uint32_t width = 1; width <= 67; ++width) {
        widths.push_back(width);
    }
    return widths;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(OnEveryTarget, Lines, testing::ValuesIn(GetVectorTargets()), NameOf);

TEST_P(Lines, OfEveryFormatAndWidthAreThoseOfTheScalarKernels)
{
    GuardedMemory input(1 << 16);
    GuardedMemory output(1 << 17);
    std::minstd_rand random(3);
    size_t formats = 0;
    for (const PixelFormat &format : LxDetail::PixelFormats) {
        LxDetail::ConversionPlan plan;
        if (!LxDetail::FindConversionPlan(format.mType, plan)) {
            continue;
        }
        ++formats;
        for (const uint32_t width : Widths()) {
            const uint32_t height = width % 2 == 0 ? 5 : 3;
            const uint32_t padding = width % 3 == 0 ? 7 : 0;
            SCOPED_TRACE(std::string(format.mName) + " " + std::to_string(width) + "x" + std::to_string(height));
            const Picture probe(format, width, height, padding);
            const uint32_t possible = probe.IsValid() ? padding : 0;  // planes have no padding
            Picture picture(format, width, height, possible);
            ASSERT_TRUE(picture.IsValid());
            uint8_t *const data = width % 2 == 0 ? input.AtEnd(picture.GetSize()) : input.AtStart();
            for (size_t i = 0; i < picture.GetSize(); ++i) {
                data[i] = static_cast<uint8_t>(random() >> 8);
            }
            const size_t stride = 4 * size_t{width} + width % 5;
            const size_t alignedStride = (4 * size_t{width} + 63) / 64 * 64;
            std::vector<uint8_t> expected;
            std::vector<uint8_t> expectedAligned;
            {
                const OnVectorTarget scalar(HWY_SCALAR);
                Picture reference(format, width, height, possible);
                expected = reference.Convert(data, stride, 0, false, output, 1);
                expectedAligned = reference.Convert(data, alignedStride, 0, false, output, 1);
            }
            const OnVectorTarget target(GetParam());
            ASSERT_EQ(picture.Convert(data, stride, 0, false, output, 1), expected);
            ASSERT_EQ(picture.Convert(data, stride, 0, true, output, 2), expected) << "past the caches";
            ASSERT_EQ(picture.Convert(data, alignedStride, 0, true, output, 2), expectedAligned)
                << "past the caches by the kernels themselves";
        }
    }
    EXPECT_EQ(formats, 170u);
}

TEST_P(Lines, WrittenPastTheCachesAreTheSameWhereverTheyBegin)
{
    GuardedMemory input(1 << 16);
    GuardedMemory output(1 << 17);
    const PixelFormat &format = *LxDetail::FindPixelFormat(LxPixelType::Mono8);
    for (const uint32_t width : {1u, 15u, 16u, 33u, 256u, 272u, 289u, 600u}) {
        constexpr uint32_t kHeight = 9;
        Picture picture(format, width, kHeight, 0);
        uint8_t *const data = input.AtEnd(picture.GetSize());
        for (size_t i = 0; i < picture.GetSize(); ++i) {
            data[i] = static_cast<uint8_t>(i * 7 + i / 256);
        }
        for (size_t lead = 0; lead <= 64; ++lead) {
            for (const size_t padding : {0, 1, 4, 64}) {
                SCOPED_TRACE(std::to_string(width) + ", " + std::to_string(lead) + ", " + std::to_string(padding));
                const size_t stride = 4 * size_t{width} + padding;
                const std::vector<uint8_t> expected = picture.Convert(data, stride, lead, false, output, 1);
                ASSERT_EQ(picture.Convert(data, stride, lead, true, output, 1), expected);
                ASSERT_EQ(picture.Convert(data, stride, lead, true, output, 4), expected);
            }
        }
    }
}
