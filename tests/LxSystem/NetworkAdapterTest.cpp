#include "LxSystem/NetworkAdapter.h"

#include <gtest/gtest.h>

using LxDetail::AdapterAddress;
using LxDetail::AdapterData;
using LxDetail::NetworkAdapter;
using LxDetail::ParseDefaultGateway;

namespace
{

constexpr char headings[] = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";

std::string MakeRoutes(const std::string &aLines)
{
    return headings + aLines;
}

}  // namespace

TEST(DefaultGateway, IsThatOfTheDefaultRouteOfTheAdapter)
{
    const std::string routes = MakeRoutes(
        "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
        "eth0\t0001A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n"
        "eth1\t0002A8C0\t0102A8C0\t0003\t0\t0\t0\t00FFFFFF\t0\t0\t0\n");
    EXPECT_EQ(ParseDefaultGateway(routes, "eth0"), 0xC0A80101U);
    EXPECT_EQ(ParseDefaultGateway(routes, "eth1"), 0U) << "a route to one subnet only";
    EXPECT_EQ(ParseDefaultGateway(routes, "eth"), 0U);
}

TEST(DefaultGateway, IsThatOfTheLowestMetric)
{
    const std::string routes = MakeRoutes(
        "eth0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n"
        "eth0\t00000000\t0201A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
        "eth0\t00000000\t0301A8C0\t0003\t0\t0\t300\t00000000\t0\t0\t0\n");
    EXPECT_EQ(ParseDefaultGateway(routes, "eth0"), 0xC0A80102U);
}

TEST(DefaultGateway, IsNoneInATableThatMakesNoSense)
{
    EXPECT_EQ(ParseDefaultGateway("", "eth0"), 0U);
    EXPECT_EQ(ParseDefaultGateway(headings, "eth0"), 0U);
    EXPECT_EQ(ParseDefaultGateway(MakeRoutes("eth0\n\neth0\tzz\teth0\n"), "eth0"), 0U);
    EXPECT_EQ(ParseDefaultGateway(MakeRoutes("eth0\t00000000\t00000000\t0001\t0\t0\t0\t00000000\t0\t0\t0\n"), "eth0"),
              0U)
        << "a default route without gateway";
}

TEST(AdapterAddress, ContainsTheAddressesOfItsSubnet)
{
    const AdapterAddress address{0xC0A80101, 0xFFFFFF00};
    EXPECT_TRUE(address.Contains(0xC0A801FE));
    EXPECT_FALSE(address.Contains(0xC0A80201));
    EXPECT_FALSE(address.Contains(0));
    EXPECT_FALSE((AdapterAddress{0xC0A80101, 0}.Contains(0xC0A80102))) << "without mask there is no subnet";
    EXPECT_TRUE((AdapterAddress{0xC0A80101, 0xFFFFFFFF}.Contains(0xC0A80101)));
}

TEST(NetworkAdapter, ShowsWhatItWasGivenLast)
{
    AdapterData data;
    data.mName = "eth0";
    data.mDriver = "igb";
    data.mMACAddress = 0x02ABCDEF0102;
    NetworkAdapter adapter(data);
    EXPECT_EQ(adapter.GetUniqueID(), "net:eth0");
    EXPECT_EQ(adapter.GetDisplayID(), "eth0 (no IP address)");
    EXPECT_EQ(adapter.GetDescription(), "eth0 (igb)");
    EXPECT_EQ(adapter.GetMACAddress(), "02:AB:CD:EF:01:02");
    EXPECT_EQ(adapter.GetIPAddressCount(), 0U);
    data.mDriver.clear();
    data.mAddresses = {{0xC0A80101, 0xFFFFFF00}, {0x0A000001, 0xFF000000}};
    data.mDefaultGateway = 0xC0A801FE;
    adapter.Update(data);
    EXPECT_EQ(adapter.GetUniqueID(), "net:eth0");
    EXPECT_EQ(adapter.GetDisplayID(), "eth0 192.168.1.1, 10.0.0.1");
    EXPECT_EQ(adapter.GetDescription(), "eth0");
    EXPECT_EQ(adapter.GetIPAddressCount(), 2U);
    EXPECT_EQ(adapter.GetIPAddress(1), "10.0.0.1");
    EXPECT_EQ(adapter.GetSubnetMask(1), "255.0.0.0");
    EXPECT_EQ(adapter.GetDefaultGateway(), "192.168.1.254");
}
