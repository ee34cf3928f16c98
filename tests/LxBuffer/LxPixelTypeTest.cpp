#include "LxBuffer/LxPixelType.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

#include "LxBuffer/PixelFormatTable.h"

using LxDetail::PixelFormat;
using LxDetail::PixelPacking;

TEST(LxPixelType, HasTheNumbersOfTheNamingConvention)
{
    EXPECT_EQ(static_cast<uint32_t>(LxPixelType::None), 0u);
    EXPECT_EQ(static_cast<uint32_t>(LxPixelType::Mono8), 0x01080001u);
    EXPECT_EQ(static_cast<uint32_t>(LxPixelType::BayerRG12p), 0x010C0059u);
    EXPECT_EQ(static_cast<uint32_t>(LxPixelType::BGRa8), 0x02200017u);
}

TEST(LxPixelType, TableHasEachNameAndNumberOnce)
{
    std::set<std::string_view> names;
    std::set<LxPixelType> types;
    for (const PixelFormat &format : LxDetail::PixelFormats) {
        EXPECT_TRUE(names.insert(format.mName).second) << format.mName;
        EXPECT_TRUE(types.insert(format.mType).second) << format.mName;
        if (format.mGev1Name != "-") {
            EXPECT_TRUE(names.insert(format.mGev1Name).second) << format.mGev1Name;
        }
    }
    EXPECT_EQ(types.size(), 283u);
}

TEST(LxPixelType, TableHasBitsAndComponentsThatAgreeWithTheNumber)
{
    for (const PixelFormat &format : LxDetail::PixelFormats) {
        const auto value = static_cast<uint32_t>(format.mType);
        const uint32_t components = value >> 24;
        EXPECT_TRUE(components == 1 || components == 2) << format.mName;
        EXPECT_GT(LxPixelTypeGetBitsPerPixel(format.mType), 0u) << format.mName;
        if (components == 1 && format.mPacking == PixelPacking::LsbPacked) {
            EXPECT_EQ(std::to_string(LxPixelTypeGetBitsPerPixel(format.mType)), format.mBits) << format.mName;
        }
        if (components == 1 && format.mPacking == PixelPacking::Unpacked) {
            EXPECT_EQ(LxPixelTypeGetBitsPerPixel(format.mType) % 8, 0u) << format.mName;
        }
    }
}

TEST(LxPixelType, BitsPerPixelComeFromTheNumberAlone)
{
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(LxPixelType::None), 0u);
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(LxPixelType::Mono1p), 1u);
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(LxPixelType::Mono12Packed), 12u);
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(LxPixelType::YCbCr411_8), 12u);
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(LxPixelType::BGRa8), 32u);
    EXPECT_EQ(LxPixelTypeGetBitsPerPixel(static_cast<LxPixelType>(0x81FF1234)), 255u);
}

TEST(LxPixelType, EveryNameTravelsThereAndBack)
{
    for (const PixelFormat &format : LxDetail::PixelFormats) {
        EXPECT_EQ(LxPixelTypeToString(format.mType).GetString(), format.mName);
        EXPECT_EQ(LxPixelTypeFromString(std::string(format.mName)), format.mType);
    }
}

TEST(LxPixelType, NumbersWithoutANameAreWrittenInHexadecimal)
{
    EXPECT_STREQ(LxPixelTypeToString(static_cast<LxPixelType>(0x8108ABCD)).GetAscii(), "0x8108ABCD");
    EXPECT_STREQ(LxPixelTypeToString(static_cast<LxPixelType>(1)).GetAscii(), "0x00000001");
    EXPECT_STREQ(LxPixelTypeToString(LxPixelType::None).GetAscii(), "None");
}

TEST(LxPixelType, OldGigEVisionNamesAreUnderstood)
{
    EXPECT_EQ(LxPixelTypeFromString("Mono8Signed"), LxPixelType::Mono8s);
    EXPECT_EQ(LxPixelTypeFromString("RGB8Packed"), LxPixelType::RGB8);
    EXPECT_EQ(LxPixelTypeFromString("BGRA8Packed"), LxPixelType::BGRa8);
}

TEST(LxPixelType, NamesMustBeWrittenExactly)
{
    for (const char *name : {"", "-", "None", "mono8", "Mono8 ", " Mono8", "0x01080001", "Mono"}) {
        EXPECT_EQ(LxPixelTypeFromString(name), LxPixelType::None) << name;
    }
}

TEST(LxPixelType, LinesAreRoundedUpToWholeBytes)
{
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono8, 7), 7u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono10, 7), 14u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono1p, 1), 1u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono1p, 9), 2u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono10p, 4), 5u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono10p, 5), 7u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono12Packed, 3), 5u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::RGB12p, 3), 14u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::YCbCr411_8, 5), 8u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::BGRa8, 0xFFFFFFFF), 4u * 0xFFFFFFFFull);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Mono8, 0), 0u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::None, 7), 0u);
}

TEST(LxPixelType, LineOfAPlanarFormatIsThatOfItsFirstPlane)
{
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::RGB8_Planar, 7), 7u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::RGB12_Planar, 7), 14u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::Coord3D_ABC10p_Planar, 5), 7u);
    EXPECT_EQ(LxPixelTypeGetLineSize(LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar, 7), 7u);
}

TEST(LxPixelType, ImageSizeCountsPaddings)
{
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, 7, 5), 35u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, 7, 5, 1, 0), 40u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, 7, 5, 1, 3), 43u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono10p, 5, 3), 21u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono10p, 5, 3, 1, 2), 26u);
}

TEST(LxPixelType, PlanarImageSizeIsTheSumOfThePlanes)
{
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::RGB8_Planar, 5, 3), 45u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::RGB10_Planar, 5, 3), 90u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Coord3D_AC12p_Planar, 5, 3), 48u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar, 4, 4), 24u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar, 5, 3), 15u + 2u * 6u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::YCbCr422_8_YY_CrCb_Semiplanar, 5, 3), 15u + 3u * 6u);
}

TEST(LxPixelType, PlanarImageWithPaddingHasNoSize)
{
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::RGB8_Planar, 5, 3, 1, 0), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::RGB8_Planar, 5, 3, 0, 1), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar, 5, 3, 1, 0), 0u);
}

TEST(LxPixelType, ImageWithoutPixelsHasNoSize)
{
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, 0, 5, 1, 1), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, 5, 0, 1, 1), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::None, 5, 5, 1, 1), 0u);
}

TEST(LxPixelType, SizeThatExceedsSixtyFourBitsIsNone)
{
    const uint32_t most = 0xFFFFFFFF;
    const uint64_t lines = 0xFFFFFFFFull;
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, most, most), lines * lines);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, most, most, 0, most), lines * lines + lines);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, most, most, 1, 0), lines * lines + lines);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono8, most, most, 2, most), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::Mono16, most, most), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::BGRa8, most, most), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(LxPixelType::RGB8_Planar, most, most), 0u);
    EXPECT_EQ(LxPixelTypeGetImageSize(static_cast<LxPixelType>(0x80FF0000), most, most), 0u);
}
