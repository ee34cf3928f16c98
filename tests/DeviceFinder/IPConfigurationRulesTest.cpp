#include <gtest/gtest.h>

#include "IPConfigurationTexts.h"
#include "LxGUI/DeviceFinder/IPConfigurationRules.h"
#include "LxGUI/DeviceFinder/IPv4.h"

// Arithmetic

namespace
{

struct TextCase
{
    const char *mText;
    std::optional<uint32_t> mAddress;
};

struct MaskCase
{
    const char *mMask;
    bool mContiguous;
};

struct NetworkCase
{
    const char *mAddress;
    const char *mMask;
    const char *mNetwork;
    const char *mHostPart;
    const char *mPrefix;
};

}  // namespace

class IPv4Text : public testing::TestWithParam<TextCase>
{
};

TEST_P(IPv4Text, IsReadStrictly)
{
    const QString text = QString::fromUtf8(GetParam().mText);
    EXPECT_EQ(IPv4::Parse(text), GetParam().mAddress) << GetParam().mText;
    EXPECT_EQ(IPv4::ToNumber(text), GetParam().mAddress.value_or(0)) << GetParam().mText;
}

INSTANTIATE_TEST_SUITE_P(Table, IPv4Text,
                         testing::Values(TextCase{"192.168.1.10", 0xC0A8010A}, TextCase{"0.0.0.0", 0},
                                         TextCase{"255.255.255.255", ~0u}, TextCase{"001.010.1.1", 0x010A0101},
                                         TextCase{"", std::nullopt}, TextCase{"1.2.3", std::nullopt},
                                         TextCase{"1.2.3.", std::nullopt}, TextCase{"1.2.3.4.", std::nullopt},
                                         TextCase{"1.2.3.4.5", std::nullopt}, TextCase{" 1.2.3.4", std::nullopt},
                                         TextCase{"1.2.3.4 ", std::nullopt}, TextCase{"1.2.3.4x", std::nullopt},
                                         TextCase{"1.2.3.256", std::nullopt}, TextCase{"-1.2.3.4", std::nullopt},
                                         TextCase{"1..2.3", std::nullopt}, TextCase{"0x1.2.3.4", std::nullopt},
                                         TextCase{"١.2.3.4", std::nullopt}, TextCase{"camera", std::nullopt}));

TEST(IPv4, WritesDottedDecimal)
{
    EXPECT_EQ(IPv4::ToText(0), "0.0.0.0");
    EXPECT_EQ(IPv4::ToText(0xC0A8010A), "192.168.1.10");
    EXPECT_EQ(IPv4::ToText(~0u), "255.255.255.255");
}

TEST(IPv4, CountsOctetsFromTheFirst)
{
    EXPECT_EQ(IPv4::GetOctet(0xC0A8010A, 0), 192u);
    EXPECT_EQ(IPv4::GetOctet(0xC0A8010A, 1), 168u);
    EXPECT_EQ(IPv4::GetOctet(0xC0A8010A, 2), 1u);
    EXPECT_EQ(IPv4::GetOctet(0xC0A8010A, 3), 10u);
}

class IPv4Network : public testing::TestWithParam<NetworkCase>
{
};

TEST_P(IPv4Network, HasAHostPartAndASuggestedPrefix)
{
    const uint32_t address = IPv4::ToNumber(GetParam().mAddress);
    const uint32_t mask = IPv4::ToNumber(GetParam().mMask);
    EXPECT_EQ(IPv4::ToText(IPv4::GetNetwork(address, mask)), GetParam().mNetwork);
    EXPECT_EQ(IPv4::ToText(IPv4::GetHostPart(address, mask)), GetParam().mHostPart);
    EXPECT_EQ(IPv4::GetSuggestedPrefix(IPv4::GetNetwork(address, mask)), GetParam().mPrefix);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IPv4Network,
    testing::Values(NetworkCase{"192.168.1.10", "255.255.255.0", "192.168.1.0", "0.0.0.10", "192.168.1."},
                    NetworkCase{"192.168.7.10", "255.255.0.0", "192.168.0.0", "0.0.7.10", "192.168."},
                    NetworkCase{"10.1.2.3", "255.0.0.0", "10.0.0.0", "0.1.2.3", "10."},
                    NetworkCase{"10.0.5.3", "255.255.255.0", "10.0.5.0", "0.0.0.3", "10.0.5."},
                    NetworkCase{"100.200.100.3", "255.255.255.0", "100.200.100.0", "0.0.0.3", "100.200.100."},
                    NetworkCase{"192.168.1.130", "255.255.255.128", "192.168.1.128", "0.0.0.2", "192.168.1.128"},
                    NetworkCase{"10.0.0.9", "255.255.255.255", "10.0.0.9", "0.0.0.0", "10.0.0.9"},
                    NetworkCase{"10.0.0.9", "0.0.0.0", "0.0.0.0", "10.0.0.9", ""},
                    NetworkCase{"0.0.0.0", "0.0.0.0", "0.0.0.0", "0.0.0.0", ""}));

class IPv4Mask : public testing::TestWithParam<MaskCase>
{
};

TEST_P(IPv4Mask, IsContiguousWhenNo1Follows0)
{
    EXPECT_EQ(IPv4::IsContiguous(IPv4::ToNumber(GetParam().mMask)), GetParam().mContiguous) << GetParam().mMask;
}

INSTANTIATE_TEST_SUITE_P(Table, IPv4Mask,
                         testing::Values(MaskCase{"0.0.0.0", true}, MaskCase{"128.0.0.0", true},
                                         MaskCase{"255.0.0.0", true}, MaskCase{"255.255.240.0", true},
                                         MaskCase{"255.255.255.0", true}, MaskCase{"255.255.255.254", true},
                                         MaskCase{"255.255.255.255", true}, MaskCase{"255.0.255.0", false},
                                         MaskCase{"0.255.255.255", false}, MaskCase{"0.0.0.1", false},
                                         MaskCase{"255.255.255.1", false}, MaskCase{"127.255.255.255", false},
                                         MaskCase{"255.255.253.0", false}));

TEST(IPv4, EveryPrefixLengthIsContiguousAndEveryMaskWithAHoleIsNot)
{
    uint32_t mask = 0;
    for (int length = 0; length <= 32; ++length) {
        EXPECT_TRUE(IPv4::IsContiguous(mask)) << length;
        for (int hole = 0; hole < length - 1; ++hole) {
            EXPECT_FALSE(IPv4::IsContiguous(mask & ~(0x80000000u >> hole))) << length << ' ' << hole;
        }
        mask = mask >> 1 | 0x80000000u;
    }
}

// Doubts about fields

namespace
{

IPConfiguration MakeConfiguration(const char *aAddress, const char *aMask, const char *aGateway)
{
    return {IPv4::ToNumber(aAddress), IPv4::ToNumber(aMask), IPv4::ToNumber(aGateway)};
}

struct DoubtCase
{
    const char *mName;
    const char *mNICAddress;
    const char *mNICMask;
    const char *mAddress;
    const char *mMask;
    const char *mGateway;
    const char *mAddressDoubt;
    const char *mMaskDoubt;
    const char *mGatewayDoubt;
};

constexpr char NIC[] = "192.168.1.10";

}  // namespace

class IPConfigurationDoubt : public testing::TestWithParam<DoubtCase>
{
};

TEST_P(IPConfigurationDoubt, IsThatOfTheFirstRuleThatFails)
{
    const DoubtCase &row = GetParam();
    const IPConfigurationDoubts doubts = FindDoubts(MakeConfiguration(row.mAddress, row.mMask, row.mGateway),
                                                    IPv4::ToNumber(row.mNICAddress), IPv4::ToNumber(row.mNICMask));
    EXPECT_EQ(doubts.mIPAddress, row.mAddressDoubt);
    EXPECT_EQ(doubts.mSubnetMask, row.mMaskDoubt);
    EXPECT_EQ(doubts.mDefaultGateway, row.mGatewayDoubt);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IPConfigurationDoubt,
    testing::Values(
        DoubtCase{"None", NIC, Mask24, "192.168.1.20", Mask24, "192.168.1.1", "", "", ""},
        DoubtCase{"NoneWithoutMaskAndGateway", NIC, Mask24, "192.168.1.20", "0.0.0.0", "", "", "", ""},
        DoubtCase{"Rule1Multicast", NIC, Mask24, "224.0.0.1", Mask24, "", RangeText, "", ""},
        DoubtCase{"Rule1Last", NIC, Mask24, "255.255.255.255", Mask24, "", RangeText, "", ""},
        DoubtCase{"Rule1NotBelow224", "223.1.1.1", Mask24, "223.1.1.2", Mask24, "", "", "", ""},
        DoubtCase{"Rule1BeforeRule2", NIC, Mask24, "239.1.1.0", Mask24, "", RangeText, "", ""},
        DoubtCase{"Rule1BeforeRule4", "230.1.1.1", Mask24, "230.1.1.1", Mask24, "", RangeText, "", ""},
        DoubtCase{"Rule2OtherSubnet", NIC, Mask24, "10.0.0.5", Mask24, "", OtherSubnetText, "", ""},
        DoubtCase{"Rule2JustBeside", NIC, Mask24, "192.168.2.20", Mask24, "", OtherSubnetText, "", ""},
        DoubtCase{"Rule2ByTheMaskOfTheNIC", NIC, "255.255.0.0", "192.168.2.20", "255.255.0.0", "", "", "", ""},
        DoubtCase{"Rule2BeforeRule3", NIC, Mask24, "192.168.2.255", Mask24, "", OtherSubnetText, "", ""},
        DoubtCase{"Rule2OfATextThatIsNoAddress", NIC, Mask24, "192.168.1.", Mask24, "", OtherSubnetText, "", ""},
        DoubtCase{"Rule3Ending0", NIC, Mask24, "192.168.1.0", Mask24, "", EndText, "", ""},
        DoubtCase{"Rule3Ending255", NIC, Mask24, "192.168.1.255", Mask24, "", EndText, "", ""},
        DoubtCase{"Rule3AlsoInTheMiddleOfALargeSubnet", NIC, "255.255.0.0", "192.168.2.0", "255.255.0.0", "", EndText,
                  "", ""},
        DoubtCase{"Rule3BeforeRule4", "192.168.1.255", Mask24, "192.168.1.255", Mask24, "", EndText, "", ""},
        DoubtCase{"Rule3OfATextThatIsNoAddressWithoutASubnet", "0.0.0.0", "0.0.0.0", "192.", "0.0.0.0", "", EndText, "",
                  ""},
        DoubtCase{"Rule4SameAsTheNIC", NIC, Mask24, NIC, Mask24, "", SameAddressText, "", ""},
        DoubtCase{"Rule4ByNumber", NIC, Mask24, "192.168.001.010", Mask24, "", SameAddressText, "", ""},
        DoubtCase{"Rule5OtherMask", NIC, Mask24, "192.168.1.20", "255.255.0.0", "", "", OtherMaskText, ""},
        DoubtCase{"Rule5NotForAMaskThatIsNone", NIC, Mask24, "192.168.1.20", "255.255", "", "", "", ""},
        DoubtCase{"Rule5BeforeRule6", NIC, Mask24, "192.168.1.20", "255.0.255.0", "", "", OtherMaskText, ""},
        DoubtCase{"Rule6MaskWithAHole", NIC, "255.0.255.0", "192.168.1.20", "255.0.255.0", "", "", InvalidMaskText, ""},
        DoubtCase{"Rule7OtherGateway", NIC, Mask24, "192.168.1.20", Mask24, "10.0.0.1", "", "", OtherGatewayText},
        DoubtCase{"Rule7NotForAGatewayThatIsNone", NIC, Mask24, "192.168.1.20", Mask24, "10.", "", "", ""},
        DoubtCase{"Rule7NotForTheGatewayAsAddress", NIC, Mask24, "192.168.1.1", Mask24, "192.168.1.1", "", "", ""},
        DoubtCase{"AllFields", NIC, Mask24, "10.0.0.5", "255.0.0.0", "10.0.0.1", OtherSubnetText, OtherMaskText,
                  OtherGatewayText}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST(IPConfigurationDoubts, AreEmptyWhenNoFieldIsDoubtful)
{
    EXPECT_TRUE(IPConfigurationDoubts().IsEmpty());
    EXPECT_FALSE((IPConfigurationDoubts{"a", "", ""}.IsEmpty()));
    EXPECT_FALSE((IPConfigurationDoubts{"", "a", ""}.IsEmpty()));
    EXPECT_FALSE((IPConfigurationDoubts{"", "", "a"}.IsEmpty()));
}

// What blocks

namespace
{

constexpr char BlockSameText[] = "Cannot assign the same IP Address as the Interface!";
constexpr char BlockSubnetText[] = "Cannot assign the device IP Address to be the same as its subnet!";

struct BlockCase
{
    const char *mName;
    const char *mNICAddress;
    const char *mAddress;
    const char *mMask;
    const char *mError;
};

}  // namespace

class IPConfigurationBlock : public testing::TestWithParam<BlockCase>
{
};

TEST_P(IPConfigurationBlock, SaysWhy)
{
    const BlockCase &row = GetParam();
    EXPECT_EQ(FindBlockingError(MakeConfiguration(row.mAddress, row.mMask, ""), row.mAddress, row.mNICAddress),
              row.mError);
}

INSTANTIATE_TEST_SUITE_P(
    Table, IPConfigurationBlock,
    testing::Values(BlockCase{"Nothing", NIC, "192.168.1.20", Mask24, ""},
                    BlockCase{"AddressOfTheNIC", NIC, NIC, Mask24, BlockSameText},
                    BlockCase{"AddressOfTheNICIsComparedAsText", NIC, "192.168.001.010", Mask24, ""},
                    BlockCase{"AddressOfTheNICBeforeTheRange", "230.1.1.1", "230.1.1.1", Mask24, BlockSameText},
                    BlockCase{"Range", NIC, "224.0.0.1", Mask24, RangeText},
                    BlockCase{"RangeBeforeTheSubnet", NIC, "224.0.0.0", Mask24, RangeText},
                    BlockCase{"NotBelowTheRange", NIC, "223.255.255.254", Mask24, ""},
                    BlockCase{"Subnet", NIC, "192.168.1.0", Mask24, BlockSubnetText},
                    BlockCase{"SubnetByTheMaskOfTheDevice", NIC, "192.168.1.0", "255.255.0.0", ""},
                    BlockCase{"HostMask", NIC, "192.168.1.20", "255.255.255.255", BlockSubnetText},
                    BlockCase{"TextThatIsNoAddress", NIC, "192.168.1.", Mask24, BlockSubnetText},
                    BlockCase{"NoMask", NIC, "192.168.1.20", "", ""},
                    BlockCase{"NoAddressOfTheNIC", "", "192.168.1.20", Mask24, ""},
                    BlockCase{"NoAddressAnywhere", "", "", "", BlockSubnetText}),
    [](const auto &aInfo) { return aInfo.param.mName; });
