#include <gtest/gtest.h>

#include "LxGUI/SerialBridgeManager/SerialBridgeRules.h"

TEST(BridgeRulesTest, SummaryOfAConfiguration)
{
    LxSerialPortConfiguration configuration;
    EXPECT_EQ(FormatSummary(configuration), "9600 baud, no parity, 8 bits, 1 stop bit");
    configuration = {115200, LxSerialParity::Even, 7, 2};
    EXPECT_EQ(FormatSummary(configuration), "115200 baud, even parity, 7 bits, 2 stop bits");
    configuration.mParity = LxSerialParity::Odd;
    configuration.mStopBits = 0;
    EXPECT_EQ(FormatSummary(configuration), "115200 baud, odd parity, 7 bits, 0 stop bit");
    configuration.mStopBits = 3;
    EXPECT_EQ(FormatSummary(configuration), "115200 baud, odd parity, 7 bits, 3 stop bits");
}

TEST(BridgeRulesTest, ParityOutsideTheNumbersIsInvalid)
{
    for (const uint32_t parity : {3u, 4u, 0xFFFFFFFFu}) {
        EXPECT_EQ(FormatSummary({9600, static_cast<LxSerialParity>(parity), 8, 1}),
                  "9600 baud, invalid parity, 8 bits, 1 stop bit");
        EXPECT_EQ(ParityToText(static_cast<LxSerialParity>(parity)), "");
    }
}

TEST(BridgeRulesTest, COMPortsAreThoseWithANumber)
{
    EXPECT_EQ(SelectCOMPorts({}), QStringList());
    EXPECT_EQ(
        SelectCOMPorts({"COM10", "ttyS0", "COM2", "COM1", "LPT1", "COM", "COMX", "COM1a", "com3", "COM+3", "COM-3",
                        "COM 4", "XCOM5", "", "CO", "COM99999999999", "COM0x5", QString::fromUtf8("COM٣")}),
        QStringList({"COM1", "COM2", "COM10"}))
        << "by number";
    EXPECT_EQ(SelectCOMPorts({"COM03", "COM3", "COM0"}), QStringList({"COM0", "COM3"}));
}

TEST(BridgeRulesTest, ParityAsItIsSaved)
{
    for (const auto &[text, parity] : {std::pair("None", LxSerialParity::None), std::pair("Even", LxSerialParity::Even),
                                       std::pair("Odd", LxSerialParity::Odd)})
    {
        EXPECT_EQ(ParityToText(parity), text);
        LxSerialParity parsed = static_cast<LxSerialParity>(7);
        EXPECT_TRUE(ParityFromText(text, parsed));
        EXPECT_EQ(parsed, parity);
    }
    LxSerialParity kept = LxSerialParity::Odd;
    for (const char *text : {"", "none", "Mark", "1", "Even "}) {
        EXPECT_FALSE(ParityFromText(text, kept)) << text;
    }
    EXPECT_EQ(kept, LxSerialParity::Odd);
}

TEST(BridgeRulesTest, FailuresKeepPercentSignsOfTheSDK)
{
    EXPECT_EQ(FormatFailure("What.", LxResult(LxResultCode::Busy, "100%1 %2 of %3")), "What.\nBUSY: 100%1 %2 of %3");
}

TEST(BridgeRulesTest, TablesOfBaudRates)
{
    EXPECT_EQ(SelectableBaudRates.size(), 8u);
    for (const uint32_t rate : SelectableBaudRates) {
        EXPECT_NE(std::find(StandardBaudRates.begin(), StandardBaudRates.end(), rate), StandardBaudRates.end());
        EXPECT_TRUE(rate != 14400 && rate != 28800);
    }
    EXPECT_EQ(FormatBaudRate(14400), "14400 baud");
}
