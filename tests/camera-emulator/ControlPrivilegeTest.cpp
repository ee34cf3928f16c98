#include "ControlPrivilege.h"

#include <gtest/gtest.h>

namespace LxEmulator
{
namespace
{

using namespace std::chrono_literals;

constexpr Endpoint Alice{0x0A000001, 1000};
constexpr Endpoint AlicesOtherSocket{0x0A000001, 1001};
constexpr Endpoint Bob{0x0A000002, 1000};
const ControlPrivilege::Clock::time_point Now{};

TEST(ControlPrivilege, OpenCameraIsReadByAllAndWrittenByNobody)
{
    const ControlPrivilege privilege;
    EXPECT_EQ(0u, privilege.GetValue());
    EXPECT_TRUE(privilege.MayRead(Alice));
    EXPECT_FALSE(privilege.MayWrite(Alice));
    EXPECT_FALSE(privilege.GetHolder());
}

TEST(ControlPrivilege, ControlLetsOthersRead)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, 0, Now));
    EXPECT_EQ(ControlPrivilege::Control, privilege.GetValue());
    EXPECT_TRUE(privilege.MayWrite(Alice));
    EXPECT_TRUE(privilege.MayRead(Bob));
    EXPECT_FALSE(privilege.MayWrite(Bob));
}

TEST(ControlPrivilege, ExclusiveAccessKeepsOthersFromReading)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Exclusive, 0, Now));
    EXPECT_TRUE(privilege.MayRead(Alice));
    EXPECT_FALSE(privilege.MayRead(Bob));
}

TEST(ControlPrivilege, BelongsToAddressAndPort)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, 0, Now));
    EXPECT_FALSE(privilege.MayWrite(AlicesOtherSocket));
    EXPECT_FALSE(privilege.Request(AlicesOtherSocket, ControlPrivilege::Control, 0, Now));
    EXPECT_TRUE(privilege.IsHolder(Alice));
}

TEST(ControlPrivilege, OthersCannotReleaseIt)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, 0, Now));
    EXPECT_FALSE(privilege.Request(Bob, 0, 0, Now));
    EXPECT_TRUE(privilege.Request(Alice, 0, 0, Now));
    EXPECT_EQ(0u, privilege.GetValue());
}

TEST(ControlPrivilege, ReleasingWhatNobodyHasIsFine)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Bob, 0, 0, Now));
}

TEST(ControlPrivilege, HolderMayChangeItsMode)
{
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, 0, Now));
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Exclusive, 0, Now));
    EXPECT_EQ(ControlPrivilege::Exclusive, privilege.GetValue());
}

TEST(ControlPrivilege, SwitchoverNeedsTheOfferAndTheKey)
{
    constexpr uint32_t key = 0x1234;
    constexpr uint32_t request = key << 16 | ControlPrivilege::Control;
    ControlPrivilege privilege;
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, key, Now));
    EXPECT_FALSE(privilege.Request(Bob, request, key, Now)) << "not offered";
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control | ControlPrivilege::Switchover, key, Now));
    EXPECT_FALSE(privilege.Request(Bob, 0x43210000 | ControlPrivilege::Control, key, Now)) << "wrong key";
    EXPECT_FALSE(privilege.Request(Bob, key << 16, key, Now)) << "asks for nothing";
    EXPECT_TRUE(privilege.Request(Bob, request, key, Now));
    EXPECT_TRUE(privilege.IsHolder(Bob));
    EXPECT_EQ(ControlPrivilege::Control, privilege.GetValue()) << "the key is not shown";
}

TEST(ControlPrivilege, ExpiresWhenTheHolderIsSilent)
{
    ControlPrivilege privilege;
    EXPECT_FALSE(privilege.GetExpiry(3000ms));
    EXPECT_FALSE(privilege.IsExpired(Now + 1h, 3000ms)) << "nobody is in control";
    EXPECT_TRUE(privilege.Request(Alice, ControlPrivilege::Control, 0, Now));
    EXPECT_FALSE(privilege.IsExpired(Now + 2999ms, 3000ms));
    EXPECT_TRUE(privilege.IsExpired(Now + 3000ms, 3000ms));
    privilege.Refresh(Bob, Now + 2s);
    EXPECT_TRUE(privilege.IsExpired(Now + 3000ms, 3000ms)) << "others do not count";
    privilege.Refresh(Alice, Now + 2s);
    EXPECT_EQ(Now + 5s, *privilege.GetExpiry(3000ms));
}

}  // namespace
}  // namespace LxEmulator
