// Discovery, and which address a camera has.

#include <set>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "EmulatorClient.h"
#include "NetworkLink.h"

namespace LxEmulator
{
namespace
{

namespace Register = LxDetail::SimulatedRegister;

constexpr uint16_t DiscoveryCommand = 0x0002;
constexpr uint16_t ForceIPCommand = 0x0004;
constexpr uint8_t AckRequired = 0x01;
constexpr uint8_t BroadcastAllowed = 0x11;
constexpr uint32_t Broadcast = 0xFFFFFFFF;

Bytes MakeForceIP(uint64_t aMAC, uint32_t aAddress, uint32_t aMask, uint32_t aGateway = 0)
{
    Bytes payload(56);
    Put16(&payload[2], aMAC >> 32);
    Put32(&payload[4], aMAC);
    Put32(&payload[20], aAddress);
    Put32(&payload[36], aMask);
    Put32(&payload[52], aGateway);
    return payload;
}

std::string Text(const Ack &aAck, size_t aOffset, size_t aSize)
{
    const std::string text(aAck.mPayload.begin() + static_cast<ptrdiff_t>(aOffset),
                           aAck.mPayload.begin() + static_cast<ptrdiff_t>(aOffset + aSize));
    return text.substr(0, text.find('\0'));
}

#define START(camera)                                                       \
    do {                                                                    \
        const LxResult started = (camera).Start();                          \
        ASSERT_TRUE(started.IsOK()) << started.GetDescription().GetAscii(); \
    } while (false)

TEST(Discovery, AnswersWithTheBootstrapRegisters)
{
    EmulatedCameraOptions options = MakeOptions();
    options.mIdentity.mVendor = "Maker";
    options.mIdentity.mModel = "Model 7";
    options.mIdentity.mVersion = "1.2";
    options.mIdentity.mManufacturerInfo = "about";
    options.mIdentity.mSerialNumber = "0123456789ABCDEF";  // fills its field, no terminator
    options.mIdentity.mUserName = "left";
    options.mIdentity.mMACAddress = 0x02AABBCCDDEE;
    options.mIdentity.mDefaultGateway = 0x7F0000FE;
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client;
    const Ack ack = client.Ask(DiscoveryCommand, {}, AckRequired);
    EXPECT_EQ(0, ack.mStatus);
    ASSERT_EQ(248u, ack.mPayload.size());
    EXPECT_EQ(0x80000000u, Get32(&ack.mPayload[4]) & 0x80000000u) << "big-endian registers";
    EXPECT_EQ(0x02AAu, Get16(&ack.mPayload[10]));
    EXPECT_EQ(0xBBCCDDEEu, Get32(&ack.mPayload[12]));
    EXPECT_EQ(0x7F000001u, Get32(&ack.mPayload[0x24]));
    EXPECT_EQ(0xFF000000u, Get32(&ack.mPayload[0x34]));
    EXPECT_EQ(0x7F0000FEu, Get32(&ack.mPayload[0x44]));
    EXPECT_EQ("Maker", Text(ack, 0x48, 32));
    EXPECT_EQ("Model 7", Text(ack, 0x68, 32));
    EXPECT_EQ("1.2", Text(ack, 0x88, 32));
    EXPECT_EQ("about", Text(ack, 0xA8, 48));
    EXPECT_EQ("0123456789ABCDEF", Text(ack, 0xD8, 16));
    EXPECT_EQ("left", Text(ack, 0xE8, 16));
    EXPECT_EQ(Loopback, ack.mFrom.mAddress);
    EXPECT_EQ(3956, ack.mFrom.mPort);
}

TEST(Discovery, AnswersLimitedAndSubnetBroadcasts)
{
    EmulatedCamera camera(MakeOptions(0x7F000005));
    START(camera);
    EmulatorClient client(0x7F000005, "lo");
    for (const uint32_t to : {Broadcast, 0x7FFFFFFFu}) {
        const Ack ack = client.Ask(DiscoveryCommand, {}, AckRequired, to);
        EXPECT_EQ(248u, ack.mPayload.size());
        EXPECT_EQ(0x7F000005u, ack.mFrom.mAddress);
    }
}

TEST(Discovery, SeveralCamerasSideBySideAllAnswer)
{
    EmulatedCamera first(MakeOptions(0x7F000001));
    EmulatedCamera second(MakeOptions(0x7F000002));
    EmulatedCamera third(MakeOptions(0x7F000303));
    START(first);
    START(second);
    START(third);
    EmulatorClient client(0, "lo");
    client.SendBytes(EmulatorClient::MakeCommand(DiscoveryCommand, 1, {}), Broadcast);
    std::set<uint32_t> found;
    for (int i = 0; i < 3; ++i) {
        const auto ack = client.Receive();
        ASSERT_TRUE(ack);
        found.insert(Get32(&ack->mPayload[0x24]));
    }
    EXPECT_EQ((std::set<uint32_t>{0x7F000001, 0x7F000002, 0x7F000303}), found);
}

TEST(Discovery, CameraInAnotherSubnetAnswersByBroadcastWhereThatIsAllowed)
{
    EmulatedCameraOptions options = MakeOptions();
    options.mIdentity.mIPAddress = 0x0A090909;
    options.mIdentity.mSubnetMask = 0xFFFFFF00;
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client(Loopback, "lo");
    const Ack allowed = client.Ask(DiscoveryCommand, {}, BroadcastAllowed, Broadcast);
    EXPECT_EQ(Broadcast, allowed.mTo);
    EXPECT_EQ(0x0A090909u, Get32(&allowed.mPayload[0x24]));
    const Ack direct = client.Ask(DiscoveryCommand, {}, AckRequired, Broadcast);
    EXPECT_EQ(Loopback, direct.mTo);
}

TEST(Discovery, CameraInTheSameSubnetAnswersDirectlyEvenThen)
{
    EmulatedCamera camera(MakeOptions());
    START(camera);
    EmulatorClient client(Loopback, "lo", Loopback);
    EXPECT_EQ(Loopback, client.Ask(DiscoveryCommand, {}, BroadcastAllowed, Broadcast).mTo);
}

TEST(Discovery, IsOpenToOthersUnderExclusiveAccess)
{
    EmulatedCamera camera(MakeOptions());
    START(camera);
    EmulatorClient holder;
    holder.TakeControl(1);
    EmulatorClient other;
    EXPECT_EQ(0, other.Ask(DiscoveryCommand, {}).mStatus);
}

TEST(Discovery, IsTheOnlyQuestionAnsweredWhenBroadcast)
{
    EmulatedCamera camera(MakeOptions());
    START(camera);
    EmulatorClient client(Loopback, "lo");
    client.SendBytes(EmulatorClient::MakeCommand(0x0080, 77, Words({0x0A00})), Broadcast);
    EXPECT_TRUE(client.IsSilent());
}

TEST(Discovery, AnswerWaitsAsLongAsTheRegisterSaysAtMost)
{
    EmulatedCamera camera(MakeOptions());
    START(camera);
    camera.GetCamera().GetPort()->Poke32(Register::GevDiscoveryAckDelay, 50);
    EmulatorClient client;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(248u, client.Ask(DiscoveryCommand, {}).mPayload.size());
    }
}

TEST(ForceIP, MovesTheCameraToAnotherAddressOfThisMachine)
{
    const EmulatedCameraOptions options = MakeOptions();
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client(Loopback, "lo");
    const Ack ack =
        client.Ask(ForceIPCommand, MakeForceIP(options.mIdentity.mMACAddress, 0x7F00004D, 0xFF000000, 0x7F000001),
                   BroadcastAllowed, Broadcast);
    EXPECT_EQ(0, ack.mStatus);
    EXPECT_EQ(0x7F00004Du, camera.GetEndpoint().mAddress);
    EmulatorClient atNew(0x7F00004D);
    const Ack found = atNew.Ask(DiscoveryCommand, {});
    EXPECT_EQ(0x7F00004Du, Get32(&found.mPayload[0x24]));
    EXPECT_EQ(0xFF000000u, Get32(&found.mPayload[0x34]));
    EXPECT_EQ(0x7F000001u, Get32(&found.mPayload[0x44]));
    EXPECT_EQ(0x7F00004Du, found.mFrom.mAddress);
    // The old address is free for another camera.
    EmulatedCamera other(MakeOptions());
    START(other);
}

TEST(ForceIP, WrongSubnetIsCuredByBroadcast)
{
    EmulatedCameraOptions options = MakeOptions();
    options.mIdentity.mIPAddress = 0x0A090909;
    options.mIdentity.mSubnetMask = 0xFFFFFF00;
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client(Loopback, "lo");
    EXPECT_EQ(0, client
                     .Ask(ForceIPCommand, MakeForceIP(options.mIdentity.mMACAddress, 0x7F000042, 0xFF000000),
                          BroadcastAllowed, Broadcast)
                     .mStatus);
    EmulatorClient atNew(0x7F000042);
    EXPECT_EQ(0x7F000042u, Get32(&atNew.Ask(DiscoveryCommand, {}).mPayload[0x24]));
}

TEST(ForceIP, AddressThatTheMachineDoesNotHaveIsOnlyClaimed)
{
    const EmulatedCameraOptions options = MakeOptions();
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client;
    EXPECT_EQ(0,
              client.Ask(ForceIPCommand, MakeForceIP(options.mIdentity.mMACAddress, 0x0A000007, 0xFFFFFF00)).mStatus);
    EXPECT_EQ(0x0A000007u, Get32(&client.Ask(DiscoveryCommand, {}).mPayload[0x24]));
}

TEST(ForceIP, IsForOneHardwareAddressOnly)
{
    EmulatedCamera camera(MakeOptions());
    START(camera);
    EmulatorClient client;
    client.SendBytes(
        EmulatorClient::MakeCommand(ForceIPCommand, 9, MakeForceIP(0x02FFFFFFFFFF, 0x7F000042, 0xFF000000)));
    EXPECT_TRUE(client.IsSilent());
    EXPECT_EQ(Loopback, camera.GetEndpoint().mAddress);
}

TEST(ForceIP, RefusesAddressesThatNoHostCanHave)
{
    const EmulatedCameraOptions options = MakeOptions();
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client;
    const uint64_t mac = options.mIdentity.mMACAddress;
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, MakeForceIP(mac, 0xE0000001, 0xFFFFFF00)).mStatus) << "multicast";
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, MakeForceIP(mac, 0x0A000001, 0xFF00FF00)).mStatus)
        << "mask with a hole";
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, MakeForceIP(mac, 0x0A000000, 0xFFFFFF00)).mStatus)
        << "the subnet itself";
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, MakeForceIP(mac, 0x0A0000FF, 0xFFFFFF00)).mStatus) << "its broadcast";
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, MakeForceIP(mac, 0x00000001, 0xFF000000)).mStatus) << "network 0";
    EXPECT_EQ(0x8002, client.Ask(ForceIPCommand, Bytes(52)).mStatus) << "too short";
    EXPECT_EQ(Loopback, Get32(&client.Ask(DiscoveryCommand, {}).mPayload[0x24]));
}

TEST(ForceIP, ZeroGoesBackToTheFirstAddressUnlessControlled)
{
    const EmulatedCameraOptions options = MakeOptions();
    const uint64_t mac = options.mIdentity.mMACAddress;
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client;
    EXPECT_EQ(0, client.Ask(ForceIPCommand, MakeForceIP(mac, 0x0A000007, 0xFFFFFF00)).mStatus);
    client.TakeControl();
    EXPECT_EQ(0x8006, client.Ask(ForceIPCommand, MakeForceIP(mac, 0, 0)).mStatus);
    EXPECT_EQ(0, client.WriteRegister(0x0A00, 0));
    EXPECT_EQ(0, client.Ask(ForceIPCommand, MakeForceIP(mac, 0, 0)).mStatus);
    EXPECT_EQ(Loopback, Get32(&client.Ask(DiscoveryCommand, {}).mPayload[0x24]));
}

TEST(Interface, CameraGivesItItsAddressAndMovesWithForceIP)
{
    EmulatedCameraOptions options = MakeOptions(0x0A090909);
    options.mIdentity.mSubnetMask = 0xFFFFFF00;
    options.mInterface = "lo";
    {
        EmulatedCamera camera(options);
        START(camera);
        EXPECT_TRUE(HasAddress("lo", 0x0A090909));
        EmulatorClient client(0x0A090909);
        EXPECT_EQ(0x0A090909u, client.Ask(DiscoveryCommand, {}).mFrom.mAddress);
        EXPECT_EQ(
            0, client.Ask(ForceIPCommand, MakeForceIP(options.mIdentity.mMACAddress, 0x0A090A14, 0xFFFFFF00)).mStatus);
        EXPECT_TRUE(HasAddress("lo", 0x0A090A14));
        EXPECT_FALSE(HasAddress("lo", 0x0A090909));
        EmulatorClient atNew(0x0A090A14);
        const Ack found = atNew.Ask(DiscoveryCommand, {});
        EXPECT_EQ(0x0A090A14u, found.mFrom.mAddress);
        EXPECT_EQ(0x0A090A14u, Get32(&found.mPayload[0x24]));
    }
    EXPECT_FALSE(HasAddress("lo", 0x0A090A14)) << "what the camera added is gone with it";
    EXPECT_TRUE(HasAddress("lo", Loopback));
}

TEST(Interface, CameraAnswersThereAtItsOwnAddressOnly)
{
    EmulatedCameraOptions options = MakeOptions(0x0A090909);
    options.mIdentity.mSubnetMask = 0xFFFFFF00;
    options.mInterface = "lo";
    EmulatedCamera camera(options);
    START(camera);
    EmulatorClient client(0x0A090909);
    client.SendBytes(EmulatorClient::MakeCommand(0x0080, 5, Words({0x0A00})), Loopback);
    EXPECT_TRUE(client.IsSilent());
}

TEST(Start, SaysWhyItCannot)
{
    EmulatedCamera nowhere(MakeOptions(0x0A0B0C0D));
    EXPECT_EQ(LxResultCode::NotFound, static_cast<LxResultCode>(nowhere.Start().GetCode()));
    EmulatedCameraOptions options = MakeOptions();
    options.mInterface = "nosuchif0";
    EmulatedCamera noInterface(options);
    EXPECT_EQ(LxResultCode::NotFound, static_cast<LxResultCode>(noInterface.Start().GetCode()));
    EmulatedCamera first(MakeOptions());
    START(first);
    EmulatedCamera second(MakeOptions());
    const LxResult result = second.Start();
    EXPECT_FALSE(result.IsOK());
    EXPECT_NE(std::string::npos, std::string(result.GetDescription().GetAscii()).find("127.0.0.1:3956"));
}

TEST(Start, CanStopAndStartAgain)
{
    EmulatedCamera camera(MakeOptions());
    for (int i = 0; i < 3; ++i) {
        START(camera);
        EmulatorClient client;
        EXPECT_EQ(248u, client.Ask(DiscoveryCommand, {}).mPayload.size());
        camera.Stop();
    }
}

}  // namespace
}  // namespace LxEmulator
