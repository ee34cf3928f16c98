#include "CommandLine.h"

#include <gtest/gtest.h>

#include "Parse.h"

namespace LxEmulator
{
namespace
{

TEST(Parse, Numbers)
{
    EXPECT_EQ(25u, ParseNumber("25"));
    EXPECT_EQ(0xA110u, ParseNumber("0xa110"));
    EXPECT_EQ(0u, ParseNumber("0"));
    for (const char *text : {"", "0x", "-1", "+1", " 1", "1 ", "1x", "x1", "99999999999999999999", "1.5"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
    }
    EXPECT_EQ(255u, ParseNumber("255", 255));
    EXPECT_FALSE(ParseNumber("256", 255));
}

TEST(Parse, MACs)
{
    EXPECT_EQ(0x02ABCDEF0102u, ParseMAC("02:AB:cd:EF:01:02"));
    EXPECT_EQ(0x02ABCDEF0102u, ParseMAC("02-AB-CD-EF-01-02"));
    for (const char *text : {"", "02:AB:CD:EF:01", "02:AB:CD:EF:01:0", "02:AB:CD:EF:01:0G", "02.AB.CD.EF.01.02",
                             "02:AB:CD:EF:01:02:", "2:AB:CD:EF:01:022"})
    {
        EXPECT_FALSE(ParseMAC(text)) << text;
    }
}

TEST(CommandLine, DefaultsToTheLoopbackAddress)
{
    const CommandLine line = CommandLine::Parse({});
    EXPECT_EQ("", line.mError);
    EXPECT_FALSE(line.mHelp);
    EXPECT_EQ(0x7F000001u, line.mCamera.mListenAddress);
    EXPECT_EQ(0x7F000001u, line.mCamera.mIdentity.mIPAddress);
    EXPECT_EQ(0xFF000000u, line.mCamera.mIdentity.mSubnetMask);
    EXPECT_EQ(3956, line.mCamera.mUdpPort);
}

TEST(CommandLine, TakesEveryOptionInBothForms)
{
    const CommandLine line = CommandLine::Parse({"--address",    "127.0.0.9",
                                                 "--port=4000",  "--ip",
                                                 "10.9.9.9",     "--mask",
                                                 "255.255.0.0",  "--gateway=10.9.0.1",
                                                 "--mac",        "02:00:00:00:00:09",
                                                 "--vendor",     "V",
                                                 "--model",      "M",
                                                 "--serial",     "S9",
                                                 "--name",       "two words",
                                                 "--link-speed", "100",
                                                 "--width",      "640",
                                                 "--height",     "480",
                                                 "--frame-rate", "12.5"});
    ASSERT_EQ("", line.mError);
    EXPECT_EQ(0x7F000009u, line.mCamera.mListenAddress);
    EXPECT_EQ(4000, line.mCamera.mUdpPort);
    EXPECT_EQ(0x0A090909u, line.mCamera.mIdentity.mIPAddress);
    EXPECT_EQ(0xFFFF0000u, line.mCamera.mIdentity.mSubnetMask);
    EXPECT_EQ(0x0A090001u, line.mCamera.mIdentity.mDefaultGateway);
    EXPECT_EQ(0x020000000009u, line.mCamera.mIdentity.mMACAddress);
    EXPECT_EQ("V", line.mCamera.mIdentity.mVendor);
    EXPECT_EQ("M", line.mCamera.mIdentity.mModel);
    EXPECT_EQ("S9", line.mCamera.mIdentity.mSerialNumber);
    EXPECT_EQ("two words", line.mCamera.mIdentity.mUserName);
    EXPECT_EQ(100u, line.mCamera.mLinkSpeed);
    EXPECT_EQ(640u, line.mWidth);
    EXPECT_EQ(480u, line.mHeight);
    EXPECT_EQ(12.5, line.mFrameRate);
}

TEST(CommandLine, SaysWhatIsWrong)
{
    EXPECT_NE("", CommandLine::Parse({"--nonsense"}).mError);
    EXPECT_NE("", CommandLine::Parse({"127.0.0.1"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--ip"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--ip", "1.2.3"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--port", "0"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--port", "65536"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--mac", "zz"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--frame-rate", "-1"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--link-speed", "0"}).mError);
    EXPECT_NE("", CommandLine::Parse({"--address", "127.0.0.2", "--interface", "lo"}).mError);
}

TEST(CommandLine, HelpNamesEveryOptionAndCommand)
{
    EXPECT_TRUE(CommandLine::Parse({"--help"}).mHelp);
    const std::string help = CommandLine::GetHelp();
    for (const char *text : {"--address", "--interface", "--port", "--ip", "--mask", "--gateway", "--mac", "--vendor",
                             "--model", "--serial", "--name", "--link-speed", "--width", "--height", "--frame-rate",
                             "--help", "freeze", "drop-every", "quit"})
    {
        EXPECT_NE(std::string::npos, help.find(text)) << text;
    }
}

}  // namespace
}  // namespace LxEmulator
