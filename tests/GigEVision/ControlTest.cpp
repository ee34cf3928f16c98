// Asking single GigE Vision devices: who controls them, whether they are alive, another address for them, connecting.
// Run in a private network namespace.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>

#include "GigEVision/GvcpClient.h"
#include "GigEVision/LivenessProbe.h"
#include "GvcpResponder.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxSystem.h"
#include "NetworkTest.h"
#include "WaitFor.h"

namespace Gvcp = LxDetail::Gvcp;
using LxDetail::LivenessProbe;
using std::chrono::milliseconds;

namespace
{

constexpr char macText[] = "00:11:22:33:44:AB";

using Control = NetworkTest;

Reply AnswerWord(const ReceivedCommand &aCommand, uint32_t aValue)
{
    return Answer(aCommand, Gvcp::Status::Success, Gvcp::BuildWords({&aValue, 1}));
}

// A camera that answers discoveries and tells this control channel privilege.
GvcpResponder::Script MakePrivileged(uint32_t aPrivilege)
{
    return [aPrivilege](const ReceivedCommand &aCommand) {
        if (aCommand.mPacket.Is(Gvcp::Command::Discovery)) {
            return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress))};
        }
        return std::vector<Reply>{aCommand.mPacket.Is(Gvcp::Command::ReadRegister)
                                      ? AnswerWord(aCommand, aPrivilege)
                                      : Answer(aCommand, Gvcp::Status::NotImplemented)};
    };
}

struct Access
{
    LxResult mResult;
    int mType = -1;
};

Access AskAccess(const char *aAddress = "127.0.0.1")
{
    Access access;
    access.mResult = LxDeviceGEV::GetAccessType(aAddress, &access.mType);
    return access;
}

LxResult Connect(LxDeviceAccess aAccess)
{
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(system.FindDevice("127.0.0.1", &info).IsOK());
    std::unique_ptr<LxDevice> device;
    return LxSystem::Connect(info, aAccess, device);
}

LxResult ForceAddress()
{
    return LxDeviceGEV::SetIPConfiguration(macText, "192.168.50.7", "255.255.255.0", "192.168.50.1");
}

}  // namespace

TEST_F(Control, AccessTypeFollowsThePrivilegeRegister)
{
    const std::vector<std::pair<uint32_t, int>> privileges{
        {0, LxAccessOpen},    {1, LxAccessExclusive}, {2, LxAccessControl},         {3, LxAccessExclusive},
        {6, LxAccessControl}, {4, LxAccessOpen},      {0x12340002, LxAccessControl}};
    for (const auto &[privilege, type] : privileges) {
        std::atomic<uint32_t> asked = 0;
        const GvcpResponder responder([&asked, value = privilege](const ReceivedCommand &aCommand) {
            asked = Gvcp::ParseWords(aCommand.mPacket.mPayload).value().front();
            return std::vector<Reply>{AnswerWord(aCommand, value)};
        });
        const Access access = AskAccess();
        EXPECT_TRUE(access.mResult.IsOK());
        EXPECT_EQ(access.mType, type) << std::hex << privilege;
        EXPECT_EQ(asked, 0x0A00U);
    }
}

TEST_F(Control, ADeviceThatDeniesTheQuestionIsHeldExclusively)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{Answer(aCommand, Gvcp::Status::AccessDenied)};
    });
    const Access access = AskAccess();
    EXPECT_TRUE(access.mResult.IsOK());
    EXPECT_EQ(access.mType, LxAccessExclusive);
}

TEST_F(Control, OtherErrorsOfTheDeviceAreProtocolErrors)
{
    for (const auto status : {Gvcp::Status::NotImplemented, Gvcp::Status::InvalidAddress, Gvcp::Status::Error}) {
        const GvcpResponder responder(
            [status](const ReceivedCommand &aCommand) { return std::vector<Reply>{Answer(aCommand, status)}; });
        const Access access = AskAccess();
        EXPECT_EQ(access.mResult, LxResultCode::ProtocolError);
        EXPECT_FALSE(access.mResult.GetDescription().IsEmpty());
        EXPECT_EQ(access.mType, LxAccessUnknown);
    }
}

TEST_F(Control, AnAnswerOfTheWrongLengthIsAProtocolError)
{
    for (const size_t size : {0, 2, 8}) {
        const GvcpResponder responder([size](const ReceivedCommand &aCommand) {
            return std::vector<Reply>{Answer(aCommand, Gvcp::Status::Success, std::vector<uint8_t>(size))};
        });
        EXPECT_EQ(AskAccess().mResult, LxResultCode::ProtocolError) << size;
    }
}

TEST_F(Control, SilenceIsATimeoutAfterThreeTries)
{
    const GvcpResponder responder([](const ReceivedCommand &) { return std::vector<Reply>(); });
    const Access access = AskAccess();
    EXPECT_EQ(access.mResult, LxResultCode::Timeout);
    EXPECT_EQ(access.mType, LxAccessUnknown);
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::ReadRegister) == 3; }));
}

TEST_F(Control, ForeignAnswersAreDroppedAndTheRightOneHeard)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        Reply wrongId = AnswerWord(aCommand, 1);
        wrongId.mBytes[7] = static_cast<uint8_t>(wrongId.mBytes[7] + 1);
        Reply wrongCode = AnswerWord(aCommand, 1);
        wrongCode.mBytes[3] = 0x85;
        return std::vector<Reply>{{{1, 2, 3}}, wrongId, wrongCode, AnswerWord(aCommand, 2)};
    });
    EXPECT_EQ(AskAccess().mType, LxAccessControl);
}

TEST_F(Control, ADeviceMayAskForTime)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        const Reply pending{Gvcp::BuildAck(Gvcp::Status::Success, Gvcp::Ack::Pending, aCommand.mPacket.mRequestId,
                                           Gvcp::BuildPendingAck(100))};
        return std::vector<Reply>{pending, AnswerWord(aCommand, 2)};
    });
    EXPECT_EQ(AskAccess().mType, LxAccessControl);
}

TEST_F(Control, AccessTypeOfATextThatIsNoAddressIsRefused)
{
    for (const char *text : {"", "camera", "127.0.0", "1.2.3.4.5", "0.0.0.0"}) {
        const Access access = AskAccess(text);
        EXPECT_EQ(access.mResult, LxResultCode::InvalidArgument) << text;
        EXPECT_EQ(access.mType, LxAccessUnknown);
    }
    EXPECT_EQ(LxDeviceGEV::GetAccessType("127.0.0.1", nullptr), LxResultCode::InvalidArgument);
}

TEST_F(Control, ForceIPIsBroadcastAtEveryAdapterAndDoneWhenAcknowledged)
{
    const Wire wire("cam", "192.168.50.1/24", "10.9.9.9/24");
    std::mutex mutex;
    std::optional<Gvcp::ForceIP> received;
    uint8_t flags = 0;
    const GvcpResponder responder(
        [&](const ReceivedCommand &aCommand) {
            if (!aCommand.mPacket.Is(Gvcp::Command::ForceIP)) {
                return std::vector<Reply>();
            }
            const std::lock_guard lock(mutex);
            received = Gvcp::ParseForceIP(aCommand.mPacket.mPayload);
            flags = aCommand.mPacket.mFlags;
            Reply reply = Answer(aCommand, Gvcp::Status::Success);
            reply.mBroadcast = true;
            return std::vector<Reply>{reply};
        },
        wire.GetNamespace(), wire.GetFarEnd());
    const GvcpResponder loopback([](const ReceivedCommand &) { return std::vector<Reply>(); }, "", "lo");
    EXPECT_TRUE(ForceAddress().IsOK());
    const std::lock_guard lock(mutex);
    EXPECT_EQ(received, (Gvcp::ForceIP{mac, 0xC0A83207, 0xFFFFFF00, 0xC0A83201}));
    EXPECT_EQ(flags, 0x11);
    EXPECT_EQ(responder.GetDestinations(Gvcp::Command::ForceIP).at(0), 0xFFFFFFFFU);
    EXPECT_TRUE(WaitFor([&loopback] { return loopback.GetCount(Gvcp::Command::ForceIP) > 0; }));
}

TEST_F(Control, ForceIPWithoutAcknowledgeIsDoneWhenTheDeviceHasTheAddress)
{
    std::atomic<uint32_t> address = 0x0A090909;
    const GvcpResponder responder([&address](const ReceivedCommand &aCommand) {
        if (aCommand.mPacket.Is(Gvcp::Command::ForceIP)) {
            address = Gvcp::ParseForceIP(aCommand.mPacket.mPayload).value().mIPAddress;
            return std::vector<Reply>();
        }
        return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac + 1, 1)),
                                  AnswerDiscovery(aCommand, MakeCamera(mac, address))};
    });
    EXPECT_TRUE(ForceAddress().IsOK());
}

TEST_F(Control, ForceIPFailsWhenTheDeviceKeepsItsAddress)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return aCommand.mPacket.Is(Gvcp::Command::Discovery)
                   ? std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0x0A090909))}
                   : std::vector<Reply>();
    });
    const LxResult result = ForceAddress();
    EXPECT_EQ(result, LxResultCode::Failed);
    EXPECT_NE(result.GetDescription().GetString().find("10.9.9.9"), std::string::npos);
}

TEST_F(Control, ForceIPSaysWhenTheDeviceRefuses)
{
    for (const auto &[status, code] : {std::pair(Gvcp::Status::AccessDenied, LxResultCode::AccessDenied),
                                       std::pair(Gvcp::Status::InvalidParameter, LxResultCode::Failed),
                                       std::pair(Gvcp::Status::NotImplemented, LxResultCode::Failed)})
    {
        const GvcpResponder responder([refusal = status](const ReceivedCommand &aCommand) {
            return std::vector<Reply>{Answer(aCommand, refusal)};
        });
        const LxResult result = ForceAddress();
        EXPECT_EQ(result, code);
        EXPECT_NE(result.GetDescription().GetString().find(macText), std::string::npos);
    }
}

TEST_F(Control, ForceIPThatAnotherDeviceRefusesIsDoneWhenTheRightOneAcknowledges)
{
    for (const bool refusedFirst : {true, false}) {
        const GvcpResponder responder([refusedFirst](const ReceivedCommand &aCommand) {
            const Reply refusal = Answer(aCommand, Gvcp::Status::InvalidParameter);
            const Reply acknowledge = Answer(aCommand, Gvcp::Status::Success);
            return refusedFirst ? std::vector<Reply>{refusal, acknowledge} : std::vector<Reply>{acknowledge, refusal};
        });
        EXPECT_TRUE(ForceAddress().IsOK()) << refusedFirst;
    }
}

TEST_F(Control, ForceIPDropsAnswersThatMakeNoSense)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        if (aCommand.mPacket.Is(Gvcp::Command::Discovery)) {
            // of the right device, but cut, and with a length that lies
            Reply cut = AnswerDiscovery(aCommand, MakeCamera(mac, 0xC0A83207));
            cut.mBytes.resize(100);
            Reply absurd = AnswerDiscovery(aCommand, MakeCamera(mac, 0xC0A83207));
            absurd.mBytes[4] = 0xFF;
            Reply foreign = AnswerDiscovery(aCommand, MakeCamera(mac, 0xC0A83207));
            foreign.mBytes[7] = static_cast<uint8_t>(foreign.mBytes[7] + 1);
            return std::vector<Reply>{{{}}, {{1, 2, 3}}, cut, absurd, foreign};
        }
        Reply wrongId = Answer(aCommand, Gvcp::Status::Success);
        wrongId.mBytes[6] = static_cast<uint8_t>(wrongId.mBytes[6] + 1);
        Reply wrongCode = Answer(aCommand, Gvcp::Status::Success);
        wrongCode.mBytes[3] = 0x81;
        Reply longLength = Answer(aCommand, Gvcp::Status::Success);
        longLength.mBytes[5] = 1;
        return std::vector<Reply>{{std::vector<uint8_t>(2000, 0xFF)}, wrongId, wrongCode, longLength};
    });
    const LxResult result = ForceAddress();
    EXPECT_EQ(result, LxResultCode::NotFound);
    EXPECT_NE(result.GetDescription().GetString().find(macText), std::string::npos);
}

TEST_F(Control, ForceIPOfADeviceThatIsNotThereFindsNothing)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return aCommand.mPacket.Is(Gvcp::Command::Discovery)
                   ? std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac + 1, loopbackAddress))}
                   : std::vector<Reply>();
    });
    EXPECT_EQ(ForceAddress(), LxResultCode::NotFound);
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::ForceIP) == 2; }));
}

TEST_F(Control, ForceIPOfAddressZeroLetsTheDeviceChoose)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return aCommand.mPacket.Is(Gvcp::Command::Discovery)
                   ? std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0xA9FE0102))}
                   : std::vector<Reply>();
    });
    EXPECT_TRUE(LxDeviceGEV::SetIPConfiguration(macText, "0.0.0.0", "0.0.0.0", "0.0.0.0").IsOK());
}

TEST_F(Control, ForceIPOfTextsThatAreNoAddressesIsRefusedUnsent)
{
    const GvcpResponder responder([](const ReceivedCommand &) { return std::vector<Reply>(); });
    const char *good = "192.168.50.7";
    for (const char *text : {"", "00:11:22:33:44", "00:11:22:33:44:AB:", "00:11:22:33:44:GG", "00:11-22:33:44:55"}) {
        EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(text, good, good, good), LxResultCode::InvalidArgument) << text;
    }
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(macText, "192.168.50", good, good), LxResultCode::InvalidArgument);
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(macText, good, "255.255.255.256", good), LxResultCode::InvalidArgument);
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(macText, good, good, ""), LxResultCode::InvalidArgument);
    EXPECT_EQ(responder.GetCount(Gvcp::Command::ForceIP), 0);
}

TEST_F(Control, ConnectingToACameraThatOthersControlSaysWhatToDo)
{
    const GvcpResponder responder(MakePrivileged(Gvcp::privilegeControl));
    for (const auto access : {LxDeviceAccess::Control, LxDeviceAccess::Exclusive}) {
        const LxResult result = Connect(access);
        EXPECT_EQ(result, LxResultCode::AccessDenied);
        const std::string text = result.GetDescription().GetString();
        EXPECT_NE(text.find("Another application controls the camera at 127.0.0.1"), std::string::npos) << text;
        EXPECT_NE(text.find("Close that application"), std::string::npos) << text;
    }
    EXPECT_NE(Connect(LxDeviceAccess::ReadOnly), LxResultCode::AccessDenied);
}

TEST_F(Control, AnExclusivelyHeldCameraCannotEvenBeRead)
{
    const GvcpResponder responder(MakePrivileged(Gvcp::privilegeExclusive));
    EXPECT_EQ(Connect(LxDeviceAccess::ReadOnly), LxResultCode::AccessDenied);
}

TEST_F(Control, ConnectingToACameraThatHasGoneSaysWhatToCheck)
{
    auto responder = std::make_unique<GvcpResponder>(MakePrivileged(0));
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(system.FindDevice("127.0.0.1", &info).IsOK());
    responder.reset();
    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    EXPECT_EQ(result, LxResultCode::Timeout);
    const std::string text = result.GetDescription().GetString();
    EXPECT_NE(text.find("127.0.0.1 does not answer"), std::string::npos) << text;
    EXPECT_NE(text.find("cable"), std::string::npos) << text;
}

TEST_F(Control, AProbeHearsAnyAnswerOfTheDevice)
{
    LivenessProbe probe(loopbackAddress);
    {
        std::atomic<uint32_t> asked = 1;
        const GvcpResponder responder([&asked](const ReceivedCommand &aCommand) {
            asked = Gvcp::ParseWords(aCommand.mPacket.mPayload).value().front();
            return std::vector<Reply>{AnswerWord(aCommand, 0x00020001)};
        });
        EXPECT_TRUE(probe.IsAlive(milliseconds(5000)));
        EXPECT_EQ(asked, 0U) << "a register that does not prolong the control of anybody";
    }
    EXPECT_FALSE(probe.IsAlive(milliseconds(20)));
    const GvcpResponder back([](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{Answer(aCommand, Gvcp::Status::AccessDenied)};
    });
    EXPECT_TRUE(probe.IsAlive(milliseconds(5000))) << "an error is an answer";
}

TEST_F(Control, AProbeReadsRegisters)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        const uint32_t address = Gvcp::ParseWords(aCommand.mPacket.mPayload).value().front();
        return std::vector<Reply>{address == Gvcp::Register::controlChannelPrivilege
                                      ? AnswerWord(aCommand, 2)
                                      : Answer(aCommand, Gvcp::Status::InvalidAddress)};
    });
    LivenessProbe probe(loopbackAddress, loopbackAddress);
    uint32_t value = 7;
    EXPECT_TRUE(probe.Read(Gvcp::Register::controlChannelPrivilege, milliseconds(5000), value).IsOK());
    EXPECT_EQ(value, 2U);
    EXPECT_EQ(probe.Read(0xFFFC, milliseconds(5000), value), LxResultCode::InvalidAddress);
    EXPECT_EQ(value, 2U);
}

TEST_F(Control, AProbeDropsLateAnswersToEarlierQuestions)
{
    std::atomic<int> count = 0;
    std::vector<uint8_t> late;
    const GvcpResponder responder([&](const ReceivedCommand &aCommand) {
        if (++count == 1) {
            late = AnswerWord(aCommand, 1).mBytes;
            return std::vector<Reply>();
        }
        return std::vector<Reply>{{late}, {{0xFF}}, AnswerWord(aCommand, 2)};
    });
    LivenessProbe probe(loopbackAddress);
    uint32_t value = 0;
    EXPECT_EQ(probe.Read(0, milliseconds(10), value), LxResultCode::Timeout);
    EXPECT_TRUE(probe.Read(0, milliseconds(5000), value).IsOK());
    EXPECT_EQ(value, 2U);
}

TEST_F(Control, AProbeFromAnAddressThatThisComputerHasNotHearsNothing)
{
    const GvcpResponder responder(MakePrivileged(0));
    LivenessProbe probe(loopbackAddress, 0xC0A83201);
    EXPECT_FALSE(probe.IsAlive(milliseconds(5)));
}

TEST_F(Control, TheLocalAddressIsThatOnTheSubnetElseThatOfTheRoute)
{
    const Wire wire("cam", "192.168.50.1/24", "192.168.50.2/24");
    ASSERT_TRUE(RunCommand("ip route add default via 192.168.50.2"));
    const auto adapters = LxDetail::ListNetworkAdapters();
    EXPECT_EQ(LxDetail::GetLocalAddress(adapters, 0xC0A83209), 0xC0A83201U);
    EXPECT_EQ(LxDetail::GetLocalAddress(adapters, 0x7F000005), loopbackAddress);
    EXPECT_EQ(LxDetail::GetLocalAddress(adapters, 0x08080808), 0xC0A83201U);
    ASSERT_TRUE(RunCommand("ip route del default"));
    EXPECT_EQ(LxDetail::GetLocalAddress(adapters, 0x08080808), 0U);
}

TEST(GvcpStatus, EachHasAResultThatSaysWhatItMeans)
{
    const std::vector<std::pair<int, LxResultCode>> results{
        {0x0000, LxResultCode::OK},
        {0x8001, LxResultCode::NotSupported},
        {0x8002, LxResultCode::InvalidParameter},
        {0x8003, LxResultCode::InvalidAddress},
        {0x8004, LxResultCode::WriteProtected},
        {0x8005, LxResultCode::BadAlignment},
        {0x8006, LxResultCode::AccessDenied},
        {0x8007, LxResultCode::Busy},
        {0x8008, LxResultCode::ProtocolError},
        {0x8FFF, LxResultCode::ProtocolError},
        {0x1234, LxResultCode::ProtocolError},
    };
    for (const auto &[status, code] : results) {
        const LxResult result = LxDetail::GetStatusResult(static_cast<uint16_t>(status));
        EXPECT_EQ(result, code) << std::hex << status;
        EXPECT_EQ(result.GetDescription().IsEmpty(), status == 0);
    }
}
