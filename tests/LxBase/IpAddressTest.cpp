#include <gtest/gtest.h>

#include "YrUtilsLib/IpAddress.h"

using YrUtilsLib::Network::IpAddress;

TEST(IpAddress, ReadsFourDecimalOctetsFirstMostSignificant)
{
    const std::pair<const char *, uint32_t> cases[] = {
        {"0.0.0.0", 0},          {"192.168.0.1", 0xC0A80001},     {"255.255.255.255", 0xFFFFFFFF},
        {"1.2.3.4", 0x01020304}, {"010.001.000.009", 0x0A010009},
    };
    for (const auto &[text, value] : cases) {
        IpAddress address;
        EXPECT_TRUE(address.Set(text).IsOK()) << text;
        EXPECT_EQ(address.Get(), value) << text;
    }
}

TEST(IpAddress, RejectsEverythingElseAndLeavesZero)
{
    const char *cases[] = {
        "",          "1",          "1.2.3",      "1.2.3.4.5", " 1.2.3.4", "1.2.3.4 ", "1.2.3.4x",          "1..3.4",
        "256.0.0.1", "1.2.3.0004", "0x7f.0.0.1", "-1.2.3.4",  "+1.2.3.4", "1.2.3.",   "99999999999.1.1.1", ".1.2.3"};
    for (const char *text : cases) {
        IpAddress address(0x12345678);
        EXPECT_FALSE(address.Set(text).IsOK()) << text;
        EXPECT_EQ(address.Get(), 0u) << text;
    }
    IpAddress address(1);
    EXPECT_FALSE(address.Set(nullptr).IsOK());
    EXPECT_EQ(address.Get(), 0u);
}

TEST(IpAddress, WritesItselfAsText)
{
    EXPECT_EQ(IpAddress(0xC0A80001).ToString(), "192.168.0.1");
    EXPECT_EQ(IpAddress().ToString(), "0.0.0.0");
}
