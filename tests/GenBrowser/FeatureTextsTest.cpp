#include "LxGUI/GenBrowser/FeatureTexts.h"

#include <gtest/gtest.h>

#include <QtCore/QLocale>
#include <limits>
#include <ostream>
#include <utility>
#include <vector>

namespace
{

TEST(FeatureTexts, VisibilitiesHaveTheirTexts)
{
    EXPECT_EQ(VisibilityText(LxGenVisibilityBeginner), "Beginner");
    EXPECT_EQ(VisibilityText(LxGenVisibilityExpert), "Expert");
    EXPECT_EQ(VisibilityText(LxGenVisibilityGuru), "Guru");
    EXPECT_EQ(VisibilityText(LxGenVisibilityInvisible), "Invisible");
    EXPECT_EQ(VisibilityText(static_cast<LxGenVisibility>(4)), "");
    EXPECT_EQ(VisibilityText(LxGenVisibilityUndefined), "");
}

TEST(FeatureTexts, NameSpacesHaveTheirTexts)
{
    EXPECT_EQ(NameSpaceText(LxGenNameSpaceStandard), "Standard");
    EXPECT_EQ(NameSpaceText(LxGenNameSpaceCustom), "Custom");
    EXPECT_EQ(NameSpaceText(LxGenNameSpaceUndefined), "Invalid");
    EXPECT_EQ(NameSpaceText(static_cast<LxGenNameSpace>(2)), "Invalid");
}

TEST(FeatureTexts, TypesHaveTheirTextsAndNumbersBeyondHaveNone)
{
    const char *texts[] = {"Integer", "Enum", "Boolean", "String", "Command", "Float", "Register", "", ""};
    for (uint32_t type = 0; type < std::size(texts); ++type) {
        EXPECT_EQ(TypeText(static_cast<LxGenType>(type)), texts[type]) << type;
    }
}

TEST(FeatureTexts, AddressFeaturesAreKnownByTheirExactNames)
{
    for (const char *name : {"IPAddress", "GevCurrentIPAddress", "GevCurrentSubnetMask", "GevCurrentDefaultGateway",
                             "GevPersistentIPAddress", "GevPersistentSubnetMask", "GevPersistentDefaultGateway",
                             "GevMCDA", "GevSCDA", "MulticastIPAddress", "SourceIPAddress", "SourceSCDA",
                             "GevPrimaryApplicationIPAddress", "LocalIPAddress", "DeviceIPAddress"})
    {
        EXPECT_TRUE(IsIPAddressName(name)) << name;
        EXPECT_FALSE(IsIPAddressName(QString(name).toLower())) << name;
    }
    EXPECT_FALSE(IsIPAddressName("GevMACAddress"));
    EXPECT_FALSE(IsIPAddressName(""));
    EXPECT_TRUE(IsMACAddressName("GevMACAddress"));
    EXPECT_FALSE(IsMACAddressName("gevMACAddress"));
}

TEST(FeatureTexts, ALeadingSourceLocationIsDropped)
{
    const std::vector<std::pair<const char *, const char *>> cases = {
        {"LxGenParameter.cpp:120 Timeout", "Timeout"},
        {"LxGenParameter.cpp:120 The device does not answer.", "The device does not answer."},
        {"Timeout", "Timeout"},
        {"The device does not answer.", "The device does not answer."},
        {"LxGenParameter.cpp:120", "LxGenParameter.cpp:120"},    // no blank
        {"LxGenParameter.cpp:120 ", "LxGenParameter.cpp:120 "},  // nothing behind the blank
        {".cpp:120 Timeout", ".cpp:120 Timeout"},                // at the first character
        {"a.cpp 120 Timeout", "a.cpp 120 Timeout"},              // no colon
        {"", ""},
        {"x.cpp:1 100% %1", "100% %1"},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(CleanDescription(text), expected) << text;
    }
}

TEST(FeatureTexts, AFailureIsTheStageAColonAndTheCleanDescription)
{
    EXPECT_EQ(FailureText("Error reading value", LxResult(LxResultCode::Timeout, "LxGenInteger.cpp:7 Timeout")),
              "Error reading value: Timeout");
    EXPECT_EQ(FailureText("Error reading value", LxResult(LxResultCode::Timeout, "%1 and %2")),
              "Error reading value: %1 and %2");
}

TEST(FeatureTexts, AFailureWithoutDescriptionIsNamedByItsCode)
{
    EXPECT_EQ(FailureText(LxResult(LxResultCode::AccessDenied)), "ACCESS_DENIED");
}

TEST(FeatureTexts, MACAddressesAreSixUpperCaseBytes)
{
    EXPECT_EQ(FormatMACAddress(0x0000AABBCCDDEEFF), "AA:BB:CC:DD:EE:FF");
    EXPECT_EQ(FormatMACAddress(0x00111C0A0B0C), "00:11:1C:0A:0B:0C");
    EXPECT_EQ(FormatMACAddress(-1), "FF:FF:FF:FF:FF:FF");
    EXPECT_EQ(FormatMACAddress(0), "00:00:00:00:00:00");
}

TEST(FeatureTexts, IPAddressesAreFourDecimalBytes)
{
    EXPECT_EQ(FormatIPAddress(0xC0A80001), "192.168.0.1");
    EXPECT_EQ(FormatIPAddress(0), "0.0.0.0");
    EXPECT_EQ(FormatIPAddress(-1), "255.255.255.255");
    EXPECT_EQ(FormatIPAddress(0x1'00000001), "0.0.0.1");
}

TEST(FeatureTexts, IPAddressesAreReadInAnyBase)
{
    const std::vector<std::pair<const char *, int64_t>> cases = {
        {"192.168.0.1", 0xC0A80001},     {"0.0.0.0", 0},
        {"255.255.255.255", 0xFFFFFFFF}, {"0xC0.0xa8.0.1", 0xC0A80001},
        {"010.0.0.1", 0x08000001},       {" 1.2.3.4", 0x01020304},
    };
    for (const auto &[text, expected] : cases) {
        int64_t value = -7;
        EXPECT_TRUE(ParseIPAddress(text, value)) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST(FeatureTexts, TextsThatAreNoIPAddressAreRefused)
{
    for (const char *text : {"192.168.0.256", "192.168.0", "192.168.0.", "", "a.b.c.d", "-1.2.3.4", "1.2.3.-4",
                             "4294967296.0.0.1", "99999999999999999999.0.0.1", "1,2,3,4"})
    {
        int64_t value = -7;
        EXPECT_FALSE(ParseIPAddress(text, value)) << text;
        EXPECT_EQ(value, -7) << text;
    }
}

TEST(FeatureTexts, IntegersAreWrittenInTheirRepresentationWithABlankAndTheUnit)
{
    EXPECT_EQ(FormatInteger(5, LxGenRepresentationLinear, "us"), "5 us");
    EXPECT_EQ(FormatInteger(5, LxGenRepresentationPureNumber, ""), "5 ");
    EXPECT_EQ(FormatInteger(-5, LxGenRepresentationLogarithmic, "%1"), "-5 %1");
    EXPECT_EQ(FormatInteger(0xAB, LxGenRepresentationHexNumber, "u"), "0xab u");
    EXPECT_EQ(FormatInteger(std::numeric_limits<int64_t>::max(), LxGenRepresentationHexNumber, ""),
              "0x7fffffffffffffff ");
    EXPECT_EQ(FormatInteger(std::numeric_limits<int64_t>::min(), LxGenRepresentationPureNumber, ""),
              "-9223372036854775808 ");
}

TEST(FeatureTexts, FloatsHaveSixSignificantDigitsInTheLocale)
{
    for (const double value : {0.0, 123456.789, 0.000012345678, -1e300, 1.0 / 3.0}) {
        EXPECT_EQ(FormatFloat(value), QLocale().toString(value, 'g', 6));
    }
}

TEST(FeatureTexts, WholeRangesAreNamedAndOthersShown)
{
    struct Case
    {
        int64_t mMin;
        int64_t mMax;
        int mRepresentation;
        const char *mText;
    };
    constexpr auto min64 = std::numeric_limits<int64_t>::min();
    constexpr auto max64 = std::numeric_limits<int64_t>::max();
    const Case cases[] = {
        {min64, max64, 0, "Unbound signed 64 bits integer"},
        {-2147483648LL, 2147483647LL, 0, "Unbound signed 32 bits integer"},
        {0, 4294967295LL, 0, "Unbound unsigned 32 bits integer"},
        {-32768, 32767, 0, "Unbound signed 16 bits integer"},
        {0, 65535, 0, "Unbound unsigned 16 bits integer"},
        {0, 65535, LxGenRepresentationHexNumber, "Unbound unsigned 16 bits integer"},
        {1, 65535, 0, "Min: <b>1</b> Max: <b>65535</b>"},
        {1, 65535, LxGenRepresentationHexNumber, "Min: <b>1</b> Max: <b>ffff</b>"},
        {0, max64, 0, "Min: <b>0</b> Max: <b>9223372036854775807</b>"},
        {-5, 5, 0, "Min: <b>-5</b> Max: <b>5</b>"},
        {0, 255, 0, "Min: <b>0</b> Max: <b>255</b>"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(IntegerRangeText(c.mMin, c.mMax, c.mRepresentation), c.mText);
    }
}

}  // namespace
