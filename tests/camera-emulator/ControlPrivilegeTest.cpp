#include "ControlPrivilege.h"

#include <gtest/gtest.h>

namespace LxEmulator
{
namespace
{

using namespace std::chrono_literals;

constexpr Endpoint cAlice{0x0A000001, 1000};
constexpr Endpoint cAlicesOtherSocket{0x0A000001, 1001};
constexpr Endpoint cBob{0x0A000002, 1000};
const ControlPrivilege::Clock::time_point cNow{};

TEST(ControlPrivilege, OpenCameraIsReadByAllAndWrittenByNobody)
{
    const ControlPrivilege privilege;
    EXPECT_EQ(0u, privilege.GetValue());
    EXPECT_TRUE(privilege.MayRead(cAlice));
    EXPECT_FALSE(privilege.MayWrite(cAlice));
    EXPECT_FALSE(privilege.GetHolder());
}

TEST(ControlPrivilege, ControlLetsOthersRead)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, 0, cNow));
    EXPECT_EQ(ControlPrivilege::cControl, privilege.GetValue());
    EXPECT_TRUE(privilege.MayWrite(cAlice));
    EXPECT_TRUE(privilege.MayRead(cBob));
    EXPECT_FALSE(privilege.MayWrite(cBob));
}

TEST(ControlPrivilege, ExclusiveAccessKeepsOthersFromReading)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cExclusive, 0, cNow));
    EXPECT_TRUE(privilege.MayRead(cAlice));
    EXPECT_FALSE(privilege.MayRead(cBob));
}

TEST(ControlPrivilege, BelongsToAddressAndPort)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, 0, cNow));
    EXPECT_FALSE(privilege.MayWrite(cAlicesOtherSocket));
    EXPECT_FALSE(privilege.Request(cAlicesOtherSocket, ControlPrivilege::cControl, 0, cNow));
    EXPECT_TRUE(privilege.IsHolder(cAlice));
}

TEST(ControlPrivilege, OthersCannotReleaseIt)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, 0, cNow));
    EXPECT_FALSE(privilege.Request(cBob, 0, 0, cNow));
    EXPECT_TRUE(privilege.Request(cAlice, 0, 0, cNow));
    EXPECT_EQ(0u, privilege.GetValue());
}

TEST(ControlPrivilege, ReleasingWhatNobodyHasIsFine)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cBob, 0, 0, cNow));
}

TEST(ControlPrivilege, HolderMayChangeItsMode)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, 0, cNow));
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cExclusive, 0, cNow));
    EXPECT_EQ(ControlPrivilege::cExclusive, privilege.GetValue());
}

TEST(ControlPrivilege, SwitchoverNeedsTheOfferAndTheKey)
{
    constexpr uint32_t key = 0x1234;
    constexpr uint32_t request = key << 16 | ControlPrivilege::cControl;
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, key, cNow));
    EXPECT_FALSE(privilege.Request(cBob, request, key, cNow)) << "not offered";
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl | ControlPrivilege::cSwitchover, key, cNow));
    EXPECT_FALSE(privilege.Request(cBob, 0x43210000 | ControlPrivilege::cControl, key, cNow)) << "wrong key";
    EXPECT_FALSE(privilege.Request(cBob, key << 16, key, cNow)) << "asks for nothing";
    EXPECT_TRUE(privilege.Request(cBob, request, key, cNow));
    EXPECT_TRUE(privilege.IsHolder(cBob));
    EXPECT_EQ(ControlPrivilege::cControl, privilege.GetValue()) << "the key is not shown";
}

TEST(ControlPrivilege, ExpiresWhenTheHolderIsSilent)
{
    ControlPrivilege privilege;
    EXPECT_FALSE(privilege.GetExpiry(3000ms));
    EXPECT_FALSE(privilege.IsExpired(cNow + 1h, 3000ms)) << "nobody is in control";
    EXPECT_TRUE(privilege.Request(cAlice, ControlPrivilege::cControl, 0, cNow));
    EXPECT_FALSE(privilege.IsExpired(cNow + 2999ms, 3000ms));
    EXPECT_TRUE(privilege.IsExpired(cNow + 3000ms, 3000ms));
    privilege.Refresh(cBob, cNow + 2s);
    EXPECT_TRUE(privilege.IsExpired(cNow + 3000ms, 3000ms)) << "others do not count";
    privilege.Refresh(cAlice, cNow + 2s);
    EXPECT_EQ(cNow + 5s, *privilege.GetExpiry(3000ms));
}

}  // namespace
}  // namespace LxEmulator
