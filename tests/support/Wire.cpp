#include "Wire.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "WaitFor.h"

bool RunCommand(const std::string &aCommand)
{
    return std::system(aCommand.c_str()) == 0;
}

Wire::Wire(const std::string &aName, const std::string &aNear, const std::string &aFar) : mName(aName)
{
    EXPECT_TRUE(RunCommand("ip netns add " + mName));
    EXPECT_TRUE(RunCommand("ip link add " + GetNearEnd() + " type veth peer name " + GetFarEnd() + " netns " + mName));
    if (!aNear.empty()) {
        EXPECT_TRUE(RunCommand("ip address add " + aNear + " dev " + GetNearEnd()));
    }
    if (!aFar.empty()) {
        EXPECT_TRUE(RunCommand("ip -n " + mName + " address add " + aFar + " dev " + GetFarEnd()));
    }
    EXPECT_TRUE(RunCommand("ip -n " + mName + " link set " + GetFarEnd() + " up"));
    EXPECT_TRUE(RunCommand("ip link set " + GetNearEnd() + " up"));
    // the kernel drops what is sent before it has seen, a little later, that the other end is up
    EXPECT_TRUE(WaitFor([this] {
        return RunCommand("ip link show " + GetNearEnd() + " | grep -q 'state UP'") &&
               RunCommand("ip -n " + mName + " link show " + GetFarEnd() + " | grep -q 'state UP'");
    }));
    // packets from foreign subnets are what these tests are about
    const std::string filter = "/proc/sys/net/ipv4/conf/$i/rp_filter; done";
    EXPECT_TRUE(RunCommand("for i in all " + GetNearEnd() + "; do echo 0 > " + filter));
    EXPECT_TRUE(
        RunCommand("ip netns exec " + mName + " sh -c 'for i in all " + GetFarEnd() + "; do echo 0 > " + filter + "'"));
}

Wire::~Wire()
{
    EXPECT_TRUE(RunCommand("ip link delete " + GetNearEnd()));
    EXPECT_TRUE(RunCommand("ip netns delete " + mName));
}
