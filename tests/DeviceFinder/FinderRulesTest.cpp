#include <gtest/gtest.h>

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxGUI/DeviceFinder/ListingRules.h"
#include "LxGUI/DeviceFinder/SubnetRules.h"

// Which devices and interfaces are listed

namespace
{

enum : int
{
    GEV = 0,
    Kelvra = 1,
    USB = 2,
    U3V = 3,
    Controller = 0,
    Adapter = 1
};

ListingOptions None()
{
    return {false, false, false, false, false, false, false};
}

ListingOptions Only(bool ListingOptions::*aFlag)
{
    ListingOptions options = None();
    options.*aFlag = true;
    return options;
}

}  // namespace

TEST(ListingRules, ByDefaultAllKindsAreListedAndKelvraIsNotEnabled)
{
    const ListingOptions options;
    EXPECT_FALSE(options.mShowUnreachable);
    for (int type = GEV; type <= U3V; ++type) {
        EXPECT_TRUE(IsDeviceListed(type, options)) << type;
    }
    EXPECT_TRUE(IsDeviceEnabled(GEV, options));
    EXPECT_FALSE(IsDeviceEnabled(Kelvra, options));
    EXPECT_FALSE(IsDeviceEnabled(USB, options));
    EXPECT_TRUE(IsDeviceEnabled(U3V, options));
}

TEST(ListingRules, AKindIsListedByItsVisibleFlagAlone)
{
    for (int type = -1; type <= 4; ++type) {
        EXPECT_EQ(IsDeviceListed(type, Only(&ListingOptions::mGEVVisible)), type == GEV) << type;
        EXPECT_EQ(IsDeviceListed(type, Only(&ListingOptions::mKelvraVisible)), type == Kelvra) << type;
        EXPECT_EQ(IsDeviceListed(type, Only(&ListingOptions::mU3VVisible)), type == USB || type == U3V) << type;
        EXPECT_FALSE(IsDeviceListed(type, Only(&ListingOptions::mGEVEnabled))) << type;
    }
}

TEST(ListingRules, AKindIsEnabledByItsOwnFlagAndUSBNever)
{
    for (int type = -1; type <= 4; ++type) {
        EXPECT_EQ(IsDeviceEnabled(type, Only(&ListingOptions::mGEVEnabled)), type == GEV) << type;
        EXPECT_EQ(IsDeviceEnabled(type, Only(&ListingOptions::mKelvraEnabled)), type == Kelvra) << type;
        EXPECT_EQ(IsDeviceEnabled(type, Only(&ListingOptions::mU3VEnabled)), type == U3V) << type;
    }
}

TEST(ListingRules, InterfacesAreListedForTheKindsThatTheyCarry)
{
    for (int type = -1; type <= 2; ++type) {
        EXPECT_EQ(IsInterfaceListed(type, Only(&ListingOptions::mU3VVisible)), type == Controller) << type;
        EXPECT_EQ(IsInterfaceListed(type, Only(&ListingOptions::mGEVVisible)), type == Adapter) << type;
        EXPECT_EQ(IsInterfaceListed(type, Only(&ListingOptions::mKelvraVisible)), type == Adapter) << type;
        EXPECT_FALSE(IsInterfaceListed(type, None())) << type;
    }
}

TEST(ListingRules, AReportIsTooOldAfterTwoSecondsUnlessTheClockWasSet)
{
    EXPECT_FALSE(IsReportTooOld(0));
    EXPECT_FALSE(IsReportTooOld(2000));
    EXPECT_TRUE(IsReportTooOld(2001));
    EXPECT_TRUE(IsReportTooOld(43200000));
    EXPECT_FALSE(IsReportTooOld(43200001));
}

// Device icons

TEST(IconTiles, DeviceTable)
{
    EXPECT_EQ(IconTiles::GEV(true, true), 1);
    EXPECT_EQ(IconTiles::GEV(true, false), 3);
    EXPECT_EQ(IconTiles::GEV(false, true), 25);
    EXPECT_EQ(IconTiles::GEV(false, false), 25);
    EXPECT_EQ(IconTiles::KelvraProtocol(true, true), 0);
    EXPECT_EQ(IconTiles::KelvraProtocol(true, false), 2);
    EXPECT_EQ(IconTiles::KelvraProtocol(false, true), 26);
    EXPECT_EQ(IconTiles::KelvraProtocol(false, false), 26);
    EXPECT_EQ(IconTiles::USB(true), 17);
    EXPECT_EQ(IconTiles::USB(false), 28);
}

TEST(IconTiles, U3VShowsTheMissingDriverBeforeTheSlowPort)
{
    EXPECT_EQ(IconTiles::U3V(true, true, 4), 21);
    EXPECT_EQ(IconTiles::U3V(true, true, 3), 23);
    EXPECT_EQ(IconTiles::U3V(true, true, 5), 23);
    EXPECT_EQ(IconTiles::U3V(true, false, 4), 24);
    EXPECT_EQ(IconTiles::U3V(true, false, 3), 24);
    EXPECT_EQ(IconTiles::U3V(false, false, 3), 27);
    EXPECT_EQ(IconTiles::U3V(false, true, 4), 27);
}

// Adapter icons and subnets

struct AdapterIconCase
{
    const char *mName;
    AdapterAddresses mOwn;
    AdapterAddresses mOthers;
    int mWithoutDriver;
    int mWithDriver;
};

class AdapterIcon : public testing::TestWithParam<AdapterIconCase>
{
};

TEST_P(AdapterIcon, FollowsAddressesAndDriver)
{
    AdapterAddresses all = GetParam().mOwn;
    all.insert(all.end(), GetParam().mOthers.begin(), GetParam().mOthers.end());
    EXPECT_EQ(IconTiles::NetworkAdapter(false, GetParam().mOwn, all), GetParam().mWithoutDriver);
    EXPECT_EQ(IconTiles::NetworkAdapter(true, GetParam().mOwn, all), GetParam().mWithDriver);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AdapterIcon,
    testing::Values(
        AdapterIconCase{"NoAddress", {}, {{"10.0.0.1", "255.0.0.0"}}, 5, 7},
        AdapterIconCase{"InOrder", {{"192.168.1.1", "255.255.255.0"}}, {{"10.0.0.1", "255.0.0.0"}}, 5, 7},
        AdapterIconCase{"AddressUnset", {{"0.0.0.0", "255.255.255.0"}}, {}, 8, 10},
        AdapterIconCase{"AddressAndMaskUnset", {{"0.0.0.0", "0.0.0.0"}}, {}, 8, 10},
        AdapterIconCase{"MaskUnset", {{"192.168.1.1", "0.0.0.0"}}, {}, 9, 11},
        AdapterIconCase{"OwnAddressesShareASubnet", {{"10.0.0.1", "255.0.0.0"}, {"10.0.0.2", "255.0.0.0"}}, {}, 9, 11},
        AdapterIconCase{"SubnetOfAnotherAdapter", {{"10.0.0.1", "255.0.0.0"}}, {{"10.0.0.9", "255.0.0.0"}}, 9, 11},
        AdapterIconCase{"OnlyTheSecondAddressShares",
                        {{"192.168.1.1", "255.255.255.0"}, {"10.0.0.2", "255.0.0.0"}},
                        {{"10.0.0.9", "255.0.0.0"}},
                        9,
                        11},
        AdapterIconCase{"OnlyTheFirstAddressIsAskedWhetherItIsSet",
                        {{"192.168.1.1", "255.255.255.0"}, {"0.0.0.0", "0.0.0.0"}},
                        {},
                        5,
                        7},
        AdapterIconCase{"UnsetAddressOutweighsASharedSubnet",
                        {{"0.0.0.0", "255.0.0.0"}, {"10.0.0.2", "255.0.0.0"}},
                        {{"10.0.0.9", "255.0.0.0"}},
                        8,
                        10}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST(SubnetRules, AnAddressIsComparedWithAllIncludingItself)
{
    const AdapterAddress one = {"192.168.1.1", "255.255.255.0"};
    EXPECT_TRUE(IsSubnetUnique(one, {one}));
    EXPECT_TRUE(IsSubnetUnique(one, {one, {"192.168.2.1", "255.255.255.0"}}));
    EXPECT_FALSE(IsSubnetUnique(one, {one, {"192.168.1.77", "255.255.255.0"}}));
    EXPECT_FALSE(IsSubnetUnique(one, {one, one}));
}

TEST(SubnetRules, SubnetsAreComparedAsNumbersWhateverTheMask)
{
    const AdapterAddress one = {"10.0.0.1", "255.255.0.0"};
    EXPECT_FALSE(IsSubnetUnique(one, {one, {"10.0.0.2", "255.255.255.0"}}));
    EXPECT_TRUE(IsSubnetUnique(one, {one, {"10.0.3.2", "255.255.255.0"}}));
}

TEST(SubnetRules, WithoutAMaskASubnetCountsAsUnique)
{
    const AdapterAddress one = {"10.0.0.1", "0.0.0.0"};
    EXPECT_TRUE(IsSubnetUnique(one, {one, one, one}));
}

// Formats

TEST(InfoFormat, Numbers)
{
    EXPECT_EQ(InfoFormat::Hex(0xAB, 4), "0x00ab");
    EXPECT_EQ(InfoFormat::Hex(0x5, 2), "0x05");
    EXPECT_EQ(InfoFormat::Hex(0x123, 2), "0x123");
    EXPECT_EQ(InfoFormat::Hex(0xDEADBEEF, 8), "0xdeadbeef");
    EXPECT_EQ(InfoFormat::Dec(4294967295u), "4294967295");
    EXPECT_EQ(InfoFormat::Version(2, 10), "2.10");
    EXPECT_EQ(InfoFormat::Milliampere(896), "896 mA");
}

TEST(InfoFormat, Words)
{
    EXPECT_EQ(InfoFormat::Bool(true), "True");
    EXPECT_EQ(InfoFormat::Bool(false), "False");
    EXPECT_EQ(InfoFormat::Validity(true), "Valid");
    EXPECT_EQ(InfoFormat::Validity(false), "Invalid");
}

TEST(InfoFormat, USBSpeeds)
{
    const char *texts[] = {"Unknown", "Low", "Full", "High", "Super", "Unknown"};
    for (uint32_t i = 0; i < std::size(texts); ++i) {
        EXPECT_EQ(InfoFormat::USBSpeed(i), texts[i]);
    }
    EXPECT_EQ(InfoFormat::USBSpeed(0xFFFFFFFF), "Unknown");
}

TEST(InfoFormat, DeviceClasses)
{
    const char *texts[] = {"Unknown", "Transmitter", "Receiver", "Transceiver", "Peripheral", ""};
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        EXPECT_EQ(InfoFormat::DeviceClass(i), texts[i]);
    }
    EXPECT_EQ(InfoFormat::DeviceClass(-1), "");
}

TEST(InfoFormat, AccessTypes)
{
    const char *texts[] = {"Unknown", "Open", "Control", "Exclusive", "Read-Only", "Unknown"};
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        EXPECT_EQ(InfoFormat::AccessType(i), texts[i]);
    }
    EXPECT_EQ(InfoFormat::AccessType(-1), "Unknown");
}

TEST(InfoFormat, USBStatuses)
{
    const char *texts[] = {"Connected",
                           "Failed Enumeration",
                           "General Failure",
                           "Caused Overcurrent",
                           "Not Enough Power",
                           "Not Enough Bandwidth",
                           "Hub Nested Too Deeply",
                           "Legacy Hub",
                           "Enumerating",
                           "Reset",
                           "Unknown"};
    for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
        EXPECT_EQ(InfoFormat::USBStatus(i), texts[i]);
    }
    EXPECT_EQ(InfoFormat::USBStatus(-1), "Unknown");
}
