// Answers to searches as no good device gives them.

#include <algorithm>
#include <atomic>
#include <set>

#include "DiscoveryTest.h"
#include "GigEVision/GigEVisionScanner.h"
#include "LxSystem/LxDeviceInfo.h"

TEST_F(Discovery, GarbageIsIgnoredAndTheCameraBesideItFound)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        const Reply good = AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress));
        std::vector<Reply> replies;
        replies.push_back({{}});
        replies.push_back({{0x00}});
        replies.push_back({std::vector<uint8_t>(2000, 0xFF)});
        replies.push_back({std::vector<uint8_t>(good.mBytes.begin(), good.mBytes.begin() + 100)});
        Reply absurd = good;
        absurd.mBytes[4] = 0xFF;
        replies.push_back(absurd);
        Reply shortPayload = Answer(aCommand, Gvcp::Status::Success, std::vector<uint8_t>(247));
        replies.push_back(shortPayload);
        replies.push_back(Answer(aCommand, Gvcp::Status::Error, Gvcp::BuildDiscovery(MakeCamera(1, 1))));
        Reply otherCode = AnswerDiscovery(aCommand, MakeCamera(2, 2));
        otherCode.mBytes[3] = 0x05;
        replies.push_back(otherCode);
        replies.push_back(good);
        return replies;
    });
    ASSERT_TRUE(FindDevices(1));
    ASSERT_EQ(mRecorder.GetReports().size(), 1U);
    EXPECT_EQ(mRecorder.GetReports().front().second->GetUniqueID(), "00:11:22:33:44:AB");
}

TEST_F(Discovery, AnswersWithAnotherRequestIdAreDropped)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        Reply reply = AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress));
        reply.mBytes[7] = static_cast<uint8_t>(reply.mBytes[7] + 1);
        return std::vector<Reply>{reply};
    });
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::Discovery) > 0; }));
    EXPECT_TRUE(mRecorder.GetReports().empty());
}

TEST_F(Discovery, DuplicateAnswersAreReportedOnce)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        const Reply reply = AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress));
        return std::vector<Reply>{reply, reply, reply};
    });
    ASSERT_TRUE(FindDevices(1));
    EXPECT_EQ(mRecorder.GetReports().size(), 1U);
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 1U);
}

TEST_F(Discovery, TwoAnswersWithOneMACAddressAreOneDeviceAndTheNewestCounts)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0x7F000002)),
                                  AnswerDiscovery(aCommand, MakeCamera(mac, 0x7F000003))};
    });
    ASSERT_TRUE(WaitFor([this] {  // the second answer may be late for a search
        return FindDevices(1) && mRecorder.GetReports().size() == 2;
    }));
    ASSERT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 1U);
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceInfo(0)->GetConnectionID(), "127.0.0.3");
}

TEST_F(Discovery, AFloodOfMadeUpDevicesEndsAndTheKnownOnesAreStillFound)
{
    std::atomic<bool> flooding = false;
    std::atomic<uint64_t> next = mac + 1;
    const GvcpResponder responder([&](const ReceivedCommand &aCommand) {
        std::vector<Reply> replies = AnswerAsCamera(aCommand);
        for (int i = 0; i < 150 && flooding; ++i) {
            replies.push_back(AnswerDiscovery(aCommand, MakeCamera(next++, 0x7F000009)));
        }
        return replies;
    });
    ASSERT_TRUE(FindDevices(1));
    const LxInterface *interface = mSystem.GetInterface(0);
    const LxDeviceInfo *known = interface->GetDeviceInfo(0);
    flooding = true;
    std::set<const LxDeviceInfo *> reported = {known};
    ASSERT_TRUE(WaitFor([&] {
        FindInAFlood();
        for (const auto &[at, info] : mRecorder.GetReports()) {
            reported.insert(info);
        }
        return reported.size() >= LxDetail::GigEVisionScanner::MostDevices;
    }));
    const uint64_t before = next;
    ASSERT_TRUE(WaitFor([&] {
        mRecorder.Clear();
        EXPECT_TRUE(mSystem.Find().IsOK());
        return next > before + 300;
    }));
    for (const auto &[at, info] : mRecorder.GetReports()) {
        EXPECT_TRUE(reported.contains(info)) << info->GetUniqueID().GetAscii();
    }
    EXPECT_EQ(reported.size(), LxDetail::GigEVisionScanner::MostDevices);

    flooding = false;
    ASSERT_TRUE(FindDevices(1));
    EXPECT_EQ(interface->GetDeviceInfo(0), known);
    const LxDeviceInfo *found = nullptr;
    EXPECT_TRUE(mSystem.FindDevice("127.0.0.1", &found).IsOK());
    EXPECT_EQ(found, known);
}

TEST_F(Discovery, CamerasWithoutMACAddressAreToldApartByTheirAddress)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(0, 0x7F000002)),
                                  AnswerDiscovery(aCommand, MakeCamera(0, 0x7F000003))};
    });
    ASSERT_TRUE(FindDevices(2));
    ASSERT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 2U);
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceInfo(0)->GetUniqueID(), "127.0.0.2");
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceInfo(1)->GetUniqueID(), "127.0.0.3");
}

TEST_F(Discovery, ADeviceWithoutAddressIsListedAsNotConfigured)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0))};
    });
    ASSERT_TRUE(FindDevices(1));
    ASSERT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 1U);
    EXPECT_FALSE(mSystem.GetInterface(0)->GetDeviceInfo(0)->IsConfigurationValid());
}

TEST_F(Discovery, TextsWithoutAnEndAreCutToTheirFields)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        Reply reply = AnswerDiscovery(aCommand, MakeCamera(mac, loopbackAddress));
        std::fill(reply.mBytes.begin() + Gvcp::headerSize + Gvcp::Register::manufacturerName, reply.mBytes.end(), 'X');
        return std::vector<Reply>{reply};
    });
    ASSERT_TRUE(FindDevices(1));
    const LxDeviceInfo *info = mSystem.GetInterface(0)->GetDeviceInfo(0);
    EXPECT_EQ(info->GetVendorName(), LxString(std::string(32, 'X')));
    EXPECT_EQ(info->GetModelName(), LxString(std::string(32, 'X')));
    EXPECT_EQ(info->GetVersion(), LxString(std::string(32, 'X')));
    EXPECT_EQ(info->GetManufacturerInfo(), LxString(std::string(48, 'X')));
    EXPECT_EQ(info->GetSerialNumber(), LxString(std::string(16, 'X')));
    EXPECT_EQ(info->GetUserDefinedName(), LxString(std::string(16, 'X')));
}
