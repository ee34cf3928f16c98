#include "LxGUI/SerialTerminal/PortFeatures.h"

#include <gtest/gtest.h>

#include <limits>

#include "../NodeMap/TestCamera.h"

namespace
{

std::string Entry(const std::string &aName, int aValue, const std::string &aMore = "")
{
    return "<EnumEntry Name=\"" + aName + "\">" + aMore + "<Value>" + std::to_string(aValue) + "</Value></EnumEntry>";
}

std::string NameOf(LxGenParameter *aFeature)
{
    LxString name;
    return aFeature && aFeature->GetName(name).IsOK() ? name.GetString() : std::string();
}

std::string Speed(LxGenParameterArray *aParameters, LxDeviceSerial aPort)
{
    return NameOf(FindSpeedFeature(aParameters, aPort));
}

std::string Loopback(LxGenParameterArray *aParameters, LxDeviceSerial aPort)
{
    return NameOf(FindLoopbackFeature(aParameters, aPort));
}

/// Integers of these names.
TestCamera CameraOf(const std::string &aNames)
{
    std::string nodes;
    size_t start = 0;
    for (unsigned address = 0x1000; start < aNames.size(); address += 4) {
        const size_t end = std::min(aNames.find(' ', start), aNames.size());
        nodes += Reg(aNames.substr(start, end - start), address);
        start = end + 1;
    }
    return TestCamera(aNames, nodes);
}

const char *const BaudRate = "BaudRate";

}  // namespace

TEST(PortFeatures, TheSpeedOfAPortHasItsFeature)
{
    const TestCamera all = CameraOf(
        "Uart0BaudRate Uart1BaudRate BulkBaudRate BulkSystemClockDivider Uart0Loopback Uart1Loopback "
        "BulkLoopback");
    EXPECT_EQ(Speed(all.mParameters, LxDeviceSerial::Serial0), "Uart0BaudRate");
    EXPECT_EQ(Speed(all.mParameters, LxDeviceSerial::Serial1), "Uart1BaudRate");
    EXPECT_EQ(Loopback(all.mParameters, LxDeviceSerial::Serial0), "Uart0Loopback");
    EXPECT_EQ(Loopback(all.mParameters, LxDeviceSerial::Serial1), "Uart1Loopback");
    for (uint32_t port = 2; port <= 9; ++port) {
        EXPECT_EQ(Speed(all.mParameters, static_cast<LxDeviceSerial>(port)), "BulkBaudRate");
        EXPECT_EQ(Loopback(all.mParameters, static_cast<LxDeviceSerial>(port)), "BulkLoopback");
    }
    for (const auto port : {static_cast<LxDeviceSerial>(10), LxDeviceSerial::Invalid}) {
        EXPECT_EQ(Speed(all.mParameters, port), "");
        EXPECT_EQ(Loopback(all.mParameters, port), "");
    }
}

TEST(PortFeatures, ABulkPortFallsBackToTheClockDivider)
{
    const TestCamera divider = CameraOf("BulkSystemClockDivider");
    EXPECT_EQ(Speed(divider.mParameters, LxDeviceSerial::Bulk0), "BulkSystemClockDivider");
    EXPECT_EQ(Speed(divider.mParameters, LxDeviceSerial::Serial0), "");
    EXPECT_EQ(Loopback(divider.mParameters, LxDeviceSerial::Bulk0), "");
    const TestCamera other = CameraOf("Width");
    EXPECT_EQ(Speed(other.mParameters, LxDeviceSerial::Bulk0), "");
}

TEST(PortFeatures, NoArrayHasNoFeatures)
{
    for (uint32_t port = 0; port <= 10; ++port) {
        EXPECT_EQ(FindSpeedFeature(nullptr, static_cast<LxDeviceSerial>(port)), nullptr);
        EXPECT_EQ(FindLoopbackFeature(nullptr, static_cast<LxDeviceSerial>(port)), nullptr);
        SelectBulkPort(nullptr, static_cast<LxDeviceSerial>(port));
    }
}

TEST(PortFeatures, AFeatureThatIsNotImplementedIsAbsent)
{
    const TestCamera camera("BulkBaudRate BulkSystemClockDivider",
                            Integer("BulkBaudRate", "Rate", "<pIsImplemented>Has</pIsImplemented>") +
                                Reg("Rate", 0x1000) + Reg("Has", 0x1004) + Reg("BulkSystemClockDivider", 0x1008));
    EXPECT_EQ(Speed(camera.mParameters, LxDeviceSerial::Bulk0), "BulkSystemClockDivider");
    camera.mMemory->Poke32(0x1004, 1);
    EXPECT_EQ(Speed(camera.mParameters, LxDeviceSerial::Bulk0), "BulkBaudRate");
}

TEST(PortFeatures, TheSelectorTakesTheNameOfABulkPort)
{
    std::string entries;
    for (int i = 0; i < 8; ++i) {
        entries += Entry("Bulk" + std::to_string(i), i + 10);
    }
    const TestCamera camera(
        "BulkSelector", Node("Enumeration", "BulkSelector", entries + "<pValue>Reg0</pValue>") + Reg("Reg0", 0x1000));
    SelectBulkPort(camera.mParameters, LxDeviceSerial::Serial1);
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 0u) << "only bulk ports are selected";
    for (uint32_t i = 0; i < 8; ++i) {
        SelectBulkPort(camera.mParameters, static_cast<LxDeviceSerial>(i + 2));
        EXPECT_EQ(camera.mMemory->Peek32(0x1000), i + 10);
    }
}

TEST(PortFeatures, AnEnumerationOffersTheEntriesThatCanBeChosen)
{
    const TestCamera camera(BaudRate,
                            Node("Enumeration", BaudRate,
                                 Entry("Baud9600", 1) + Entry("Baud19200", 2, "<pIsAvailable>Fast</pIsAvailable>") +
                                     Entry("Baud115200", 7) + "<pValue>Reg0</pValue>") +
                                Reg("Reg0", 0x1000) + Reg("Fast", 0x1004));
    camera.mMemory->Poke32(0x1000, 7);
    SpeedChoices choices = ReadSpeed(camera[BaudRate]);
    EXPECT_EQ(choices.mTexts, QStringList({"Baud9600", "Baud115200"}));
    EXPECT_EQ(choices.mCurrent, 1);
    camera.mMemory->Poke32(0x1004, 1);
    camera.mMemory->Poke32(0x1000, 5);
    choices = ReadSpeed(camera[BaudRate]);
    EXPECT_EQ(choices.mTexts, QStringList({"Baud9600", "Baud19200", "Baud115200"}));
    EXPECT_EQ(choices.mCurrent, -1) << "no entry has the number";
    EXPECT_TRUE(WriteSpeed(camera[BaudRate], "Baud19200").IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 2u);
    EXPECT_FALSE(WriteSpeed(camera[BaudRate], "Baud5").IsOK());
    EXPECT_FALSE(WriteSpeed(camera[BaudRate], "").IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 2u);
}

TEST(PortFeatures, ANumberOffersRatesOfItsRangeAndIsWrittenAsANumber)
{
    const TestCamera camera(BaudRate,
                            Integer(BaudRate, "Reg0", "<Min>9600</Min><Max>115200</Max>") + Reg("Reg0", 0x1000));
    camera.mMemory->Poke32(0x1000, 12345);
    const SpeedChoices choices = ReadSpeed(camera[BaudRate]);
    EXPECT_EQ(choices.mTexts,
              QStringList({"9600", "12345", "14400", "19200", "28800", "38400", "57600", "76800", "115200"}));
    EXPECT_EQ(choices.mCurrent, 1);
    EXPECT_TRUE(WriteSpeed(camera[BaudRate], "57600").IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 57600u);
    EXPECT_FALSE(WriteSpeed(camera[BaudRate], "1200").IsOK()) << "below the minimum";
    EXPECT_FALSE(WriteSpeed(camera[BaudRate], "fast").IsOK());
    EXPECT_EQ(camera.mMemory->Peek32(0x1000), 57600u);
}

TEST(PortFeatures, AClockDividerOffersPowersOfTwo)
{
    const TestCamera camera(
        "BulkSystemClockDivider",
        Integer("BulkSystemClockDivider", "Reg0", "<Min>1</Min><Max>1000</Max>") + Reg("Reg0", 0x1000));
    camera.mMemory->Poke32(0x1000, 3);
    const SpeedChoices choices = ReadSpeed(camera["BulkSystemClockDivider"]);
    EXPECT_EQ(choices.mTexts, QStringList({"1", "2", "3", "4", "8", "16", "32", "64", "128", "256", "512"}));
    EXPECT_EQ(choices.mCurrent, 2);
}

TEST(PortFeatures, ASpeedThatCannotBeReadHasNoChoices)
{
    const TestCamera camera(BaudRate, Reg(BaudRate, 0x1000));
    camera.mPort->FailAll(LxResultCode::Timeout);
    EXPECT_TRUE(ReadSpeed(camera[BaudRate]).mTexts.isEmpty());
    EXPECT_EQ(ReadSpeed(camera[BaudRate]).mCurrent, -1);
    EXPECT_FALSE(WriteSpeed(camera[BaudRate], "1").IsOK());
}

TEST(NumbersToOffer, FollowTheTable)
{
    constexpr int64_t most = std::numeric_limits<int64_t>::max();
    constexpr int64_t least = std::numeric_limits<int64_t>::min();
    using Numbers = std::vector<int64_t>;
    const Numbers preferred = {10, 20, 40, 80};
    EXPECT_EQ(NumbersToOffer(1, 4, 1, 2, preferred), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(NumbersToOffer(0, 30, 10, 10, preferred), (Numbers{0, 10, 20, 30}));
    EXPECT_EQ(NumbersToOffer(0, 35, 10, 10, preferred), (Numbers{0, 10, 20, 30}));
    EXPECT_EQ(NumbersToOffer(1, 32, 1, 1, preferred).size(), 32u);
    EXPECT_EQ(NumbersToOffer(1, 33, 1, 1, preferred), (Numbers{1, 10, 20}));
    EXPECT_EQ(NumbersToOffer(0, 1000, 20, 20, preferred), (Numbers{20, 40, 80})) << "on the increment";
    EXPECT_EQ(NumbersToOffer(5, 1000, 1, 999, preferred), (Numbers{10, 20, 40, 80, 999}));
    EXPECT_EQ(NumbersToOffer(1, 4, 1, 9, preferred), (Numbers{1, 2, 3, 4, 9})) << "outside its own range";
    EXPECT_EQ(NumbersToOffer(4, 1, 1, 9, preferred), (Numbers{9})) << "a range without numbers";
    EXPECT_EQ(NumbersToOffer(1, 3, 0, 1, preferred), (Numbers{1, 2, 3})) << "an increment that cannot be";
    EXPECT_EQ(NumbersToOffer(least, most, 1, 0, preferred), (Numbers{0, 10, 20, 40, 80}));
    EXPECT_EQ(NumbersToOffer(least, most, most, 0, preferred), (Numbers{least, -1, 0, most - 1}));
}

TEST(PortFeatures, FlagsAreReadAndWrittenInEveryKind)
{
    const TestCamera camera(
        "Flag Number Choice",
        Node("Boolean", "Flag", "<pValue>Reg0</pValue>") + Reg("Reg0", 0x1000) + Reg("Number", 0x1004) +
            Node("Enumeration", "Choice", Entry("Off", 0) + Entry("On", 1) + "<pValue>Reg2</pValue>") +
            Reg("Reg2", 0x1008));
    unsigned address = 0x1000;
    for (const char *name : {"Flag", "Number", "Choice"}) {
        EXPECT_FALSE(ReadFlag(camera[name])) << name;
        EXPECT_TRUE(WriteFlag(camera[name], true).IsOK()) << name;
        EXPECT_EQ(camera.mMemory->Peek32(address), 1u) << name;
        EXPECT_TRUE(ReadFlag(camera[name])) << name;
        EXPECT_TRUE(WriteFlag(camera[name], false).IsOK()) << name;
        EXPECT_EQ(camera.mMemory->Peek32(address), 0u) << name;
        address += 4;
    }
    camera.mPort->FailAll(LxResultCode::Timeout);
    EXPECT_FALSE(WriteFlag(camera["Flag"], true).IsOK());
    EXPECT_FALSE(ReadFlag(camera["Flag"]));
}

TEST(PortFeatures, OtherKindsCannotBeSet)
{
    const TestCamera camera("Text", Node("String", "Text", "<Value>x</Value>"));
    EXPECT_TRUE(ReadSpeed(camera["Text"]).mTexts.isEmpty());
    EXPECT_FALSE(WriteSpeed(camera["Text"], "9600").IsOK());
    EXPECT_FALSE(ReadFlag(camera["Text"]));
    EXPECT_FALSE(WriteFlag(camera["Text"], true).IsOK());
}
