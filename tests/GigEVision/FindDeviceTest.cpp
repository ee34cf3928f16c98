// Finding one GigE Vision device by its address.

#include <atomic>

#include "DiscoveryTest.h"
#include "LxSystem/LxDeviceInfo.h"

TEST_F(Discovery, ADeviceTooManyIsNotFoundByItsAddressEither)
{
    std::atomic<uint64_t> next = mac;
    const GvcpResponder responder([&](const ReceivedCommand &aCommand) {
        std::vector<Reply> replies;
        for (int i = 0; i < 150; ++i) {
            replies.push_back(AnswerDiscovery(aCommand, MakeCamera(next++, loopbackAddress)));
        }
        return replies;
    });
    const LxDeviceInfo *found = nullptr;
    ASSERT_TRUE(WaitFor([&] {
        FindInAFlood();
        return mSystem.FindDevice("127.0.0.1", &found) == LxResultCode::NoMemory;
    }));
    EXPECT_EQ(found, nullptr);
    EXPECT_FALSE(mSystem.FindDevice("127.0.0.1", &found).GetDescription().IsEmpty());
    LxSystem fresh;
    EXPECT_TRUE(fresh.FindDevice("127.0.0.1", &found).IsOK());
}

TEST_F(Discovery, FindDeviceAsksOneAddressOnly)
{
    const GvcpResponder responder(AnswerAsCamera);
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(mSystem.FindDevice("127.0.0.1", &info).IsOK());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetUniqueID(), "00:11:22:33:44:AB");
    EXPECT_EQ(info->GetInterface(), mSystem.GetInterface(0));
    for (const uint32_t destination : responder.GetDestinations(Gvcp::Command::Discovery)) {
        EXPECT_EQ(destination, loopbackAddress);
    }
    ASSERT_EQ(mRecorder.GetReports().size(), 1U);
    EXPECT_EQ(mRecorder.GetReports().front().second, info);
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 0U) << "the list is that of the last Find()";
}

TEST_F(Discovery, FindDeviceAndFindShareTheObjectOfADevice)
{
    const GvcpResponder responder(AnswerAsCamera);
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(mSystem.FindDevice("127.0.0.1", &info).IsOK());
    ASSERT_TRUE(FindDevices(1));
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceInfo(0), info);
}

TEST_F(Discovery, FindDeviceTriesTwiceAndSaysThatNobodyAnswers)
{
    const GvcpResponder responder([](const ReceivedCommand &) { return std::vector<Reply>(); });
    const LxDeviceInfo *info = reinterpret_cast<const LxDeviceInfo *>(1);
    const LxResult result = mSystem.FindDevice("127.0.0.1", &info);
    EXPECT_EQ(result, LxResultCode::NotFound);
    EXPECT_NE(result.GetDescription().GetString().find("127.0.0.1"), std::string::npos);
    EXPECT_EQ(info, nullptr);
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::Discovery) == 2; }));
}

TEST_F(Discovery, FindDeviceHearsTheSecondTry)
{
    std::atomic<int> count = 0;
    const GvcpResponder responder([&count](const ReceivedCommand &aCommand) {
        return ++count == 1 ? std::vector<Reply>() : AnswerAsCamera(aCommand);
    });
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(mSystem.FindDevice("127.0.0.1", &info).IsOK());
    EXPECT_EQ(count, 2);
}

TEST_F(Discovery, FindDeviceDropsAnswersThatMakeNoSense)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        const Reply good = AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress));
        Reply cut = good;
        cut.mBytes.resize(100);
        Reply absurd = good;
        absurd.mBytes[4] = 0xFF;
        Reply foreign = AnswerDiscovery(aCommand, MakeCamera(1, 1));
        foreign.mBytes[7] = static_cast<uint8_t>(foreign.mBytes[7] + 1);
        const Reply shortPayload = Answer(aCommand, Gvcp::Status::Success, std::vector<uint8_t>(247));
        const Reply refusal = Answer(aCommand, Gvcp::Status::Error, Gvcp::BuildDiscovery(MakeCamera(1, 1)));
        return std::vector<Reply>{{{}}, {{1, 2, 3}}, cut, absurd, foreign, shortPayload, refusal, good};
    });
    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(mSystem.FindDevice("127.0.0.1", &info).IsOK());
    EXPECT_EQ(info->GetUniqueID(), "00:11:22:33:44:AB");
}

TEST_F(Discovery, FindDeviceReachesADeviceThatNoRouteLeadsTo)
{
    const Wire wire("cam", "192.168.50.1/24", "10.9.9.9/24");
    const ForeignCamera camera(wire);
    // the device resolves the address of who asks like a camera does, which has no routes to look at
    ASSERT_TRUE(RunCommand("ip netns exec " + wire.GetNamespace() + " ip route add default dev " + wire.GetFarEnd()));
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(mSystem.FindDevice("10.9.9.9", &info).IsOK());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetInterface(), GetInterface(wire.GetNearEnd()));
    EXPECT_FALSE(info->IsConfigurationValid());
}

TEST_F(Discovery, FindDeviceOfATextThatIsNoAddressFindsNothingAtOnce)
{
    for (const char *text : {"camera", "127.0.0.", "127.0.0.1.", "0.0.0.0", "300.0.0.1"}) {
        const LxDeviceInfo *info = nullptr;
        EXPECT_EQ(mSystem.FindDevice(text, &info), LxResultCode::NotFound) << text;
        EXPECT_EQ(info, nullptr);
    }
    const LxDeviceInfo *info = nullptr;
    EXPECT_EQ(mSystem.FindDevice("", &info), LxResultCode::InvalidArgument);
    EXPECT_EQ(mSystem.FindDevice("127.0.0.1", nullptr), LxResultCode::InvalidArgument);
}
