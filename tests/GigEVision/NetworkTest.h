#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Backends/GigEVisionBackend.h"
#include "GvcpResponder.h"

/// A wire from this network namespace to one made for a camera. Needs root in a private namespace.
class Wire
{
public:
    /// @param aName names the other namespace and the ends of the wire.
    /// @param aNear, aFar the addresses with prefix length; empty for none.
    Wire(const std::string &aName, const std::string &aNear, const std::string &aFar) : mName(aName)
    {
        EXPECT_TRUE(RunCommand("ip netns add " + mName));
        EXPECT_TRUE(
            RunCommand("ip link add " + GetNearEnd() + " type veth peer name " + GetFarEnd() + " netns " + mName));
        if (!aNear.empty()) {
            EXPECT_TRUE(RunCommand("ip address add " + aNear + " dev " + GetNearEnd()));
        }
        if (!aFar.empty()) {
            EXPECT_TRUE(RunCommand("ip -n " + mName + " address add " + aFar + " dev " + GetFarEnd()));
        }
        EXPECT_TRUE(RunCommand("ip -n " + mName + " link set " + GetFarEnd() + " up"));
        EXPECT_TRUE(RunCommand("ip link set " + GetNearEnd() + " up"));
        // packets from foreign subnets are what these tests are about
        const std::string filter = "/proc/sys/net/ipv4/conf/$i/rp_filter; done";
        EXPECT_TRUE(RunCommand("for i in all " + GetNearEnd() + "; do echo 0 > " + filter));
        EXPECT_TRUE(RunCommand("ip netns exec " + mName + " sh -c 'for i in all " + GetFarEnd() + "; do echo 0 > " +
                               filter + "'"));
    }
    ~Wire()
    {
        EXPECT_TRUE(RunCommand("ip link delete " + GetNearEnd()));
        EXPECT_TRUE(RunCommand("ip netns delete " + mName));
    }
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    std::string GetNamespace() const { return mName; }
    std::string GetNearEnd() const { return mName + "-near"; }
    std::string GetFarEnd() const { return mName + "-far"; }

private:
    const std::string mName;
};

/// Tests that own the network: they refuse to run beside other adapters. Only GigE Vision devices are searched.
class NetworkTest : public testing::Test
{
public:
    NetworkTest() : mBackend(std::make_shared<LxDetail::GigEVisionBackend>())
    {
        LxDetail::DeviceBackends::SetRealDevicesHidden(true);
        LxDetail::DeviceBackends::Add(mBackend);
    }
    ~NetworkTest() override
    {
        LxDetail::DeviceBackends::Remove(mBackend);
        LxDetail::DeviceBackends::SetRealDevicesHidden(false);
    }

protected:
    void SetUp() override
    {
        ASSERT_TRUE(RunCommand("test \"$(ls /sys/class/net)\" = lo")) << "run me with tests/support/in-netns";
    }

private:
    const std::shared_ptr<LxDetail::DeviceBackend> mBackend;
};
