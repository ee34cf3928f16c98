#include "LxGUI/RegisterInterface/HexField.h"

#include <gtest/gtest.h>

#include <optional>

namespace
{

std::optional<uint32_t> Parse(const char *aText)
{
    uint32_t value = 0x55555555;
    if (!ParseHexField(QString::fromUtf8(aText), value)) {
        EXPECT_EQ(value, 0x55555555u) << "a failure must leave the value";
        return std::nullopt;
    }
    return value;
}

}  // namespace

struct HexFieldCase
{
    const char *mName;
    const char *mText;
    std::optional<uint32_t> mValue;
};

class HexField : public testing::TestWithParam<HexFieldCase>
{
};

TEST_P(HexField, IsParsed)
{
    EXPECT_EQ(Parse(GetParam().mText), GetParam().mValue);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, HexField,
    testing::Values(HexFieldCase{"EightDigits", "0000ABCD", 0xABCDu},
                    HexFieldCase{"LowerCase", "deadbeef", 0xDEADBEEFu},
                    HexFieldCase{"MixedCase", "DeadBeef", 0xDEADBEEFu}, HexFieldCase{"OneDigit", "7", 7u},
                    HexFieldCase{"PrefixInLowerCase", "0xab", 0xABu}, HexFieldCase{"PrefixInUpperCase", "0XAB", 0xABu},
                    HexFieldCase{"PrefixOfTheShortestText", "0x1", 1u},
                    HexFieldCase{"BlanksAround", "  0xab\t ", 0xABu}, HexFieldCase{"GarbageBehind", "12G", 0x12u},
                    HexFieldCase{"SuffixIsNoForm", "12h", 0x12u}, HexFieldCase{"BlankInside", "12 34", 0x12u},
                    HexFieldCase{"TwoPrefixes", "0x0x12", 0x12u}, HexFieldCase{"Empty", "", std::nullopt},
                    HexFieldCase{"OnlyBlanks", "   ", std::nullopt}, HexFieldCase{"NoDigit", "G12", std::nullopt},
                    HexFieldCase{"PrefixOfNoDigit", "0xG", std::nullopt}, HexFieldCase{"NonASCII", "ä1", std::nullopt},
                    HexFieldCase{"Largest", "FFFFFFFF", 0xFFFFFFFFu}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST(HexFieldTexts, PrefixAloneIsLeftToTheScan)
{
    // The scan may take it for 0 or refuse it; both are allowed by the C standard's text.
    const std::optional<uint32_t> value = Parse("0X");
    EXPECT_TRUE(!value || *value == 0);
}

TEST(HexFieldTexts, MoreThanEightDigitsAreRead)
{
    EXPECT_TRUE(Parse("123456789").has_value());
}

TEST(HexFieldTexts, ValuesAreShownWithEightUpperCaseDigits)
{
    EXPECT_EQ(FormatHexField(0xAB), "000000AB");
    EXPECT_EQ(FormatHexField(0), "00000000");
    EXPECT_EQ(FormatHexField(0xFFFFFFFF), "FFFFFFFF");
}
