#include "LxCodec/LxBufferConverter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "GuardedMemory.h"
#include "LxBuffer/PixelFormatTable.h"
#include "ReferenceConversion.h"

using LxDetail::PixelFormat;

namespace
{

// What a camera's picture is not made of, or what has no colours that are defined.
bool IsListedAsUnsupported(const PixelFormat &aFormat)
{
    static const std::set<std::string_view> families = {"bicolor", "confidence", "coord3d",
                                                        "data",    "scf1",       "single-colour"};
    return families.count(aFormat.mFamily) != 0;
}

bool IsPlanar(const PixelFormat &aFormat)
{
    return aFormat.mPacking == LxDetail::PixelPacking::Planar || aFormat.mPacking == LxDetail::PixelPacking::SemiPlanar;
}

std::string HexOf(const uint8_t *aBytes, size_t aCount)
{
    std::string text;
    char byte[4];
    for (size_t i = 0; i < aCount; ++i) {
        std::snprintf(byte, sizeof(byte), "%02X ", aBytes[i]);
        text += byte;
    }
    return text;
}

// The pixels of a one-line image as 0xRRGGBB, checked to have alpha 255.
std::vector<uint32_t> ConvertLine(LxPixelType aType, uint32_t aWidth, std::vector<uint8_t> aBytes)
{
    LxImage input;
    EXPECT_TRUE(input.AttachSized(aBytes.data(), aBytes.size(), aWidth, 1, aType).IsOK());
    LxBuffer output(LxPayloadType::Image);
    EXPECT_TRUE(LxBufferConverter(0).Convert(&input, &output, true, false).IsOK());
    std::vector<uint32_t> pixels;
    const auto *bytes = static_cast<const uint8_t *>(output.GetDataPointer());
    for (uint32_t x = 0; x < aWidth; ++x, bytes += 4) {
        EXPECT_EQ(bytes[3], 255);
        pixels.push_back(uint32_t{bytes[2]} << 16 | uint32_t{bytes[1]} << 8 | bytes[0]);
    }
    return pixels;
}

std::vector<uint32_t> Greys(std::initializer_list<uint32_t> aValues)
{
    std::vector<uint32_t> pixels;
    for (const uint32_t value : aValues) {
        pixels.push_back(value << 16 | value << 8 | value);
    }
    return pixels;
}

// Converts random images of a format with many sizes and compares every byte, written or not, with what it must be.
class EveryFormat : public testing::Test
{
protected:
    void Check(const PixelFormat &aFormat, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX, uint32_t aPaddingY)
    {
        SCOPED_TRACE(std::string(aFormat.mName) + " " + std::to_string(aWidth) + "x" + std::to_string(aHeight) + "+" +
                     std::to_string(aPaddingX) + "+" + std::to_string(aPaddingY));
        const uint64_t size = ReferenceConversion::SizeOf(aFormat.mType, aWidth, aHeight, aPaddingX, aPaddingY);
        ASSERT_EQ(size, LxPixelTypeGetImageSize(aFormat.mType, aWidth, aHeight, aPaddingX, aPaddingY));
        ASSERT_LE(size, mInput.GetCapacity());
        mAtStart = !mAtStart;
        uint8_t *const data = mAtStart ? mInput.AtStart() : mInput.AtEnd(size);
        for (uint64_t i = 0; i < size; ++i) {
            data[i] = static_cast<uint8_t>(mRandom());
        }
        LxImage input;
        ASSERT_TRUE(input.AttachSized(data, size, aWidth, aHeight, aFormat.mType, aPaddingX, aPaddingY).IsOK());

        const uint32_t outPaddingX = mAtStart ? 0 : 5;
        const uint64_t stride = uint64_t{4} * aWidth + outPaddingX;
        const uint64_t outSize = stride * aHeight;
        ASSERT_LE(outSize, mOutput.GetCapacity());
        uint8_t *const out = mAtStart ? mOutput.AtStart() : mOutput.AtEnd(outSize);
        std::memset(out, 0xA5, outSize);
        LxBuffer output(LxPayloadType::Image);
        ASSERT_TRUE(output.GetImage()->Attach(out, aWidth, aHeight, LxPixelType::BGRa8, outPaddingX).IsOK());

        const LxResult result = mConverter.Convert(&input, &output, false, false);
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        const ReferenceConversion reference(aFormat.mType, data, aWidth, aHeight, aPaddingX);
        for (uint32_t y = 0; y < aHeight; ++y) {
            for (uint32_t x = 0; x < aWidth; ++x) {
                const ReferencePixel want = reference.GetPixel(x, y);
                const uint8_t *const got = out + y * stride + uint64_t{4} * x;
                const bool good = std::abs(got[0] - want.mBlue) <= want.mTolerance &&
                                  std::abs(got[1] - want.mGreen) <= want.mTolerance &&
                                  std::abs(got[2] - want.mRed) <= want.mTolerance && got[3] == 255;
                ASSERT_TRUE(good) << "pixel " << x << "," << y << " is " << HexOf(got, 4) << ", wanted BGR "
                                  << want.mBlue << " " << want.mGreen << " " << want.mRed;
            }
            for (uint32_t i = 0; i < outPaddingX; ++i) {
                ASSERT_EQ(out[y * stride + uint64_t{4} * aWidth + i], 0xA5) << "padding of line " << y;
            }
        }
    }

    void CheckSizes(const PixelFormat &aFormat)
    {
        for (const uint32_t width : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 15u, 16u, 17u, 32u, 35u, 67u}) {
            for (const uint32_t height : {1u, 2u, 3u, 6u}) {
                Check(aFormat, width, height, 0, 0);
                if (!IsPlanar(aFormat)) {
                    Check(aFormat, width, height, 1, 0);
                    Check(aFormat, width, height, 3, 2);
                }
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }

    GuardedMemory mInput{1 << 16};
    GuardedMemory mOutput{1 << 16};
    LxBufferConverter mConverter{0};
    std::minstd_rand mRandom{20240607};
    bool mAtStart = false;
};

}  // namespace

TEST_F(EveryFormat, IsConvertedAsDefinedOrListedAsUnsupported)
{
    size_t supported = 0;
    for (const PixelFormat &format : LxDetail::PixelFormats) {
        if (IsListedAsUnsupported(format)) {
            EXPECT_FALSE(LxBufferConverter::IsSupported(format.mType)) << format.mName;
            continue;
        }
        ++supported;
        EXPECT_TRUE(LxBufferConverter::IsSupported(format.mType)) << format.mName;
        CheckSizes(format);
        if (HasFatalFailure()) {
            return;
        }
    }
    EXPECT_EQ(supported, 170u);
}

TEST(LxBufferConverter, ReadsMonoBytesAsDocumented)
{
    EXPECT_EQ(ConvertLine(LxPixelType::Mono8, 3, {0x00, 0x7F, 0xFF}), Greys({0x00, 0x7F, 0xFF}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono8s, 3, {0x80, 0x00, 0x7F}), Greys({0x00, 0x80, 0xFF}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono1p, 8, {0x8D}), Greys({255, 0, 255, 255, 0, 0, 0, 255}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono2p, 4, {0x39}), Greys({85, 170, 255, 0}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono4p, 2, {0x3A}), Greys({0xAA, 0x33}));
    // 10 bits 123, 2AB, 3CD, 0EF; 12 bits 123, ABC; 14 bits 1234, 2ABC, 0F0F, 3C5A
    EXPECT_EQ(ConvertLine(LxPixelType::Mono10p, 4, {0x23, 0xAD, 0xDA, 0xFC, 0x3B}), Greys({0x48, 0xAA, 0xF3, 0x3B}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono12p, 2, {0x23, 0xC1, 0xAB}), Greys({0x12, 0xAB}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono14p, 4, {0x34, 0x12, 0xAF, 0xFA, 0xF0, 0x68, 0xF1}),
              Greys({0x48, 0xAA, 0x3C, 0xF1}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono10Packed, 2, {0x48, 0x33, 0xAA}), Greys({0x48, 0xAA}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono12Packed, 2, {0x12, 0xC3, 0xAB}), Greys({0x12, 0xAB}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono10, 2, {0x23, 0x01, 0xAB, 0x02}), Greys({0x48, 0xAA}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono12, 2, {0x23, 0x01, 0xBC, 0x0A}), Greys({0x12, 0xAB}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono14, 2, {0x34, 0x12, 0xBC, 0x2A}), Greys({0x48, 0xAA}));
    EXPECT_EQ(ConvertLine(LxPixelType::Mono16, 2, {0x34, 0x12, 0xFE, 0xCA}), Greys({0x12, 0xCA}));
}

TEST(LxBufferConverter, ReadsColourBytesAsDocumented)
{
    using Pixels = std::vector<uint32_t>;
    EXPECT_EQ(ConvertLine(LxPixelType::RGB8, 1, {0x12, 0x34, 0x56}), Pixels{0x123456});
    EXPECT_EQ(ConvertLine(LxPixelType::BGR8, 1, {0x12, 0x34, 0x56}), Pixels{0x563412});
    EXPECT_EQ(ConvertLine(LxPixelType::RGBa8, 1, {0x12, 0x34, 0x56, 0x00}), Pixels{0x123456});
    EXPECT_EQ(ConvertLine(LxPixelType::BGRa8, 1, {0x12, 0x34, 0x56, 0x00}), Pixels{0x563412});
    // R 123, G 2AB, B 3CD in 10 bits
    EXPECT_EQ(ConvertLine(LxPixelType::RGB10p, 1, {0x23, 0xAD, 0xDA, 0x3C}), Pixels{0x48AAF3});
    EXPECT_EQ(ConvertLine(LxPixelType::RGB10p32, 1, {0x23, 0xAD, 0xDA, 0x3C}), Pixels{0x48AAF3});
    // R 11, G 2A, B 1C in 5, 6 and 5 bits
    EXPECT_EQ(ConvertLine(LxPixelType::RGB565p, 1, {0x51, 0xE5}), Pixels{0x8CAAE7});
    EXPECT_EQ(ConvertLine(LxPixelType::BGR565p, 1, {0x51, 0xE5}), Pixels{0xE7AA8C});
    EXPECT_EQ(ConvertLine(LxPixelType::RGB8_Planar, 2, {1, 2, 3, 4, 5, 6}), (Pixels{0x010305, 0x020406}));
}

TEST(LxBufferConverter, ReadsLumaAndChromaAsDocumented)
{
    // Y 10, 20, ... with U 80 is no blue difference; V 90 adds 1.402 * 16 = 22 to red, takes 0.714 * 16 = 11 from
    // green.
    const std::vector<uint32_t> two = {0x260510, 0x361520};
    const std::vector<uint32_t> four = {0x260510, 0x361520, 0x462530, 0x563540};
    EXPECT_EQ(ConvertLine(LxPixelType::YUV422_8_UYVY, 2, {0x80, 0x10, 0x90, 0x20}), two);
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr422_8_CbYCrY, 2, {0x80, 0x10, 0x90, 0x20}), two);
    EXPECT_EQ(ConvertLine(LxPixelType::YUV422_8, 2, {0x10, 0x80, 0x20, 0x90}), two);
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr422_8, 2, {0x10, 0x80, 0x20, 0x90}), two);
    EXPECT_EQ(ConvertLine(LxPixelType::YUV411_8_UYYVYY, 4, {0x80, 0x10, 0x20, 0x90, 0x30, 0x40}), four);
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr411_8, 4, {0x10, 0x20, 0x80, 0x30, 0x40, 0x90}), four);
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr411_8_CbYYCrYY, 4, {0x80, 0x10, 0x20, 0x90, 0x30, 0x40}), four);
    EXPECT_EQ(ConvertLine(LxPixelType::YUV8_UYV, 1, {0x80, 0x10, 0x90}), std::vector<uint32_t>{0x260510});
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr8, 1, {0x10, 0x80, 0x90}), std::vector<uint32_t>{0x260510});
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr8_CbYCr, 1, {0x80, 0x10, 0x90}), std::vector<uint32_t>{0x260510});
}

TEST(LxBufferConverter, LimitedRangeReachesBlackAndWhiteFullRangeDoesNotStretch)
{
    const std::vector<uint8_t> line = {128, 16, 128, 235};
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr422_8_CbYCrY, 2, line), Greys({16, 235}));
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr601_422_8_CbYCrY, 2, line), Greys({0, 255}));
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr709_422_8_CbYCrY, 2, line), Greys({0, 255}));
    EXPECT_EQ(ConvertLine(LxPixelType::YCbCr2020_422_8_CbYCrY, 2, line), Greys({0, 255}));
}

TEST(LxBufferConverter, EveryLumaAndChromaBecomesTheNearestColour)
{
    // 65536 chroma pairs with luma that runs through all values.
    constexpr uint32_t kCount = 256;
    std::vector<uint8_t> line(3 * kCount * kCount);
    for (const LxPixelType type : {LxPixelType::YCbCr8_CbYCr, LxPixelType::YCbCr601_8_CbYCr,
                                   LxPixelType::YCbCr709_8_CbYCr, LxPixelType::YCbCr2020_8_CbYCr})
    {
        for (uint32_t i = 0; i < kCount * kCount; ++i) {
            line[3 * i] = static_cast<uint8_t>(i / kCount);
            line[3 * i + 1] = static_cast<uint8_t>(i * 7 + i / kCount * 13);
            line[3 * i + 2] = static_cast<uint8_t>(i);
        }
        const std::vector<uint32_t> pixels = ConvertLine(type, kCount * kCount, line);
        const ReferenceConversion reference(type, line.data(), kCount * kCount, 1, 0);
        for (uint32_t i = 0; i < kCount * kCount; ++i) {
            const ReferencePixel want = reference.GetPixel(i, 0);
            ASSERT_NEAR(pixels[i] & 0xFF, want.mBlue, 0.501) << i;
            ASSERT_NEAR(pixels[i] >> 8 & 0xFF, want.mGreen, 0.501) << i;
            ASSERT_NEAR(pixels[i] >> 16, want.mRed, 0.501) << i;
        }
    }
}

TEST(LxBufferConverter, BayerLettersNameTheStartOfTheFirstLine)
{
    // A mosaic that is bright where the first of the letters says red.
    const auto middle = [](LxPixelType aType) {
        std::vector<uint8_t> mosaic(36, 0);
        for (size_t y = 0; y < 6; y += 2) {
            for (size_t x = 0; x < 6; x += 2) {
                mosaic[y * 6 + x] = 200;
            }
        }
        LxImage input;
        EXPECT_TRUE(input.Attach(mosaic.data(), 6, 6, aType).IsOK());
        LxBuffer output(LxPayloadType::Image);
        EXPECT_TRUE(LxBufferConverter(0).Convert(&input, &output, true, false).IsOK());
        const uint8_t *const pixel = static_cast<const uint8_t *>(output.GetDataPointer()) + 4 * (2 * 6 + 2);
        return uint32_t{pixel[2]} << 16 | uint32_t{pixel[1]} << 8 | pixel[0];
    };
    EXPECT_EQ(middle(LxPixelType::BayerRG8), 0xC80000u);
    EXPECT_EQ(middle(LxPixelType::BayerBG8), 0x0000C8u);
    EXPECT_EQ(middle(LxPixelType::BayerGR8), 0x00C800u);
    EXPECT_EQ(middle(LxPixelType::BayerGB8), 0x00C800u);
}

TEST(LxBufferConverter, EvenlyColouredMosaicStaysEvenUpToItsBorders)
{
    // Mirroring keeps the tile, so no border pixel mixes colours.
    for (const uint32_t size : {2u, 3u, 4u, 7u}) {
        std::vector<uint8_t> mosaic(size * size);
        for (uint32_t y = 0; y < size; ++y) {
            for (uint32_t x = 0; x < size; ++x) {
                mosaic[y * size + x] = y % 2 == x % 2 ? (y % 2 == 0 ? 10 : 250) : 99;
            }
        }
        LxImage input;
        ASSERT_TRUE(input.Attach(mosaic.data(), size, size, LxPixelType::BayerRG8).IsOK());
        LxBuffer output(LxPayloadType::Image);
        ASSERT_TRUE(LxBufferConverter(0).Convert(&input, &output, true, false).IsOK());
        const auto *const pixels = static_cast<const uint8_t *>(output.GetDataPointer());
        for (uint32_t i = 0; i < size * size; ++i) {
            EXPECT_EQ(HexOf(pixels + 4 * i, 4), "FA 63 0A FF ") << size << ": " << i;
        }
    }
}
