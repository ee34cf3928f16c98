// Finding GigE Vision devices on a network of our own. Run in a private network namespace.

#include <atomic>
#include <chrono>
#include <thread>

#include "DiscoveryTest.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxNetworkAdapter.h"

TEST_F(Discovery, ListsTheAdaptersBeforeAnySearch)
{
    ASSERT_EQ(mSystem.GetInterfaceCount(), 1U);
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(mSystem.GetInterface(0));
    ASSERT_NE(adapter, nullptr);
    EXPECT_EQ(adapter->GetType(), LxInterfaceTypeNetworkAdapter);
    EXPECT_EQ(adapter->GetUniqueID(), "net:lo");
    EXPECT_EQ(adapter->GetDisplayID(), "lo 127.0.0.1");
    EXPECT_EQ(adapter->GetDescription(), "lo (loopback)");
    EXPECT_EQ(adapter->GetMACAddress(), "00:00:00:00:00:00");
    ASSERT_EQ(adapter->GetIPAddressCount(), 1U);
    EXPECT_EQ(adapter->GetIPAddress(0), "127.0.0.1");
    EXPECT_EQ(adapter->GetSubnetMask(0), "255.0.0.0");
    EXPECT_EQ(adapter->GetIPAddress(1), "0.0.0.0");
    EXPECT_EQ(adapter->GetSubnetMask(1), "0.0.0.0");
    EXPECT_EQ(adapter->GetDefaultGateway(), "0.0.0.0");
    EXPECT_TRUE(adapter->IsKelvraDriverInstalled());
    EXPECT_EQ(adapter->GetDeviceCount(), 0U);
    EXPECT_EQ(adapter->GetDeviceInfo(0), nullptr);
    EXPECT_EQ(mSystem.GetInterface(1), nullptr);
}

TEST_F(Discovery, FindsACameraOnLoopbackWithAllThatItSays)
{
    const GvcpResponder responder([](const ReceivedCommand &aCommand) {
        auto camera = MakeCamera(mac, loopbackAddress);
        camera.mDefaultGateway = 0x7F0000FE;
        camera.mUserDefinedName = "left";
        return std::vector<Reply>{AnswerDiscovery(aCommand, camera)};
    });
    ASSERT_TRUE(responder.IsReady());
    ASSERT_TRUE(FindDevices(1));
    ASSERT_EQ(mRecorder.GetReports().size(), 1U);
    EXPECT_EQ(mRecorder.GetThread(), std::this_thread::get_id());
    const auto [interface, device] = mRecorder.GetReports().front();
    EXPECT_EQ(interface, mSystem.GetInterface(0));
    ASSERT_EQ(interface->GetDeviceCount(), 1U);
    EXPECT_EQ(interface->GetDeviceInfo(0), device);
    const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(device);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeGEV);
    EXPECT_EQ(info->GetInterface(), interface);
    EXPECT_EQ(info->GetUniqueID(), "00:11:22:33:44:AB");
    EXPECT_EQ(info->GetMACAddress(), "00:11:22:33:44:AB");
    EXPECT_EQ(info->GetDisplayID(), "Maker Model \"left\" [127.0.0.1]");
    EXPECT_EQ(info->GetConnectionID(), "127.0.0.1");
    EXPECT_EQ(info->GetIPAddress(), "127.0.0.1");
    EXPECT_EQ(info->GetSubnetMask(), "255.255.255.0");
    EXPECT_EQ(info->GetDefaultGateway(), "127.0.0.254");
    EXPECT_EQ(info->GetVendorName(), "Maker");
    EXPECT_EQ(info->GetModelName(), "Model");
    EXPECT_EQ(info->GetVersion(), "1.0");
    EXPECT_EQ(info->GetManufacturerInfo(), "info");
    EXPECT_EQ(info->GetSerialNumber(), "S1");
    EXPECT_EQ(info->GetUserDefinedName(), "left");
    EXPECT_EQ(info->GetIPConfigOptionsString(), "Persistent IP, DHCP, LLA");
    EXPECT_EQ(info->GetIPConfigCurrentString(), "DHCP, LLA");
    uint32_t major = 0;
    uint32_t minor = 0;
    info->GetGEVVersion(major, minor);
    EXPECT_EQ(major, 2U);
    EXPECT_EQ(minor, 1U);
    EXPECT_EQ(info->GetClass(), 1);
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_TRUE(info->IsLicenseValid());
}

TEST_F(Discovery, ReportsAnAnswerWhileTheSearchStillRuns)
{
    const GvcpResponder responder(AnswerAsCamera);
    mSystem.SetDetectionTimeout(60000);
    std::thread searcher([this] { EXPECT_EQ(mSystem.Find(), LxResultCode::Aborted); });
    EXPECT_TRUE(WaitFor([this] { return !mRecorder.GetReports().empty(); }));
    mSystem.CancelFind();
    searcher.join();
}

TEST_F(Discovery, CancelWakesASearchThatHearsNothing)
{
    mSystem.SetDetectionTimeout(600000);
    std::atomic<bool> ended = false;
    std::thread searcher([this, &ended] {
        EXPECT_EQ(mSystem.Find(), LxResultCode::Aborted);
        ended = true;
    });
    // without effect until the search has begun
    EXPECT_TRUE(WaitFor([this, &ended] {
        mSystem.CancelFind();
        return ended.load();
    }));
    searcher.join();
}

TEST_F(Discovery, ACancelledSearchLeavesTheListOfTheLastOne)
{
    std::atomic<bool> silent = false;
    const GvcpResponder responder([&silent](const ReceivedCommand &aCommand) {
        return silent ? std::vector<Reply>() : AnswerAsCamera(aCommand);
    });
    ASSERT_TRUE(FindDevices(1));
    silent = true;
    const int before = responder.GetCount(Gvcp::Command::Discovery);
    mSystem.SetDetectionTimeout(60000);
    std::thread searcher([this] { EXPECT_EQ(mSystem.Find(), LxResultCode::Aborted); });
    EXPECT_TRUE(WaitFor([&responder, before] { return responder.GetCount(Gvcp::Command::Discovery) > before; }));
    mSystem.CancelFind();
    searcher.join();
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 1U);
}

TEST_F(Discovery, SilenceIsNoErrorAndTakesTheTimeout)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_TRUE(mRecorder.GetReports().empty());
}

TEST_F(Discovery, TheObjectOfADeviceIsKeptAndUpdatedOverSearches)
{
    std::atomic<uint32_t> address = 0x7F000002;
    std::atomic<bool> silent = false;
    const GvcpResponder responder([&](const ReceivedCommand &aCommand) {
        return silent ? std::vector<Reply>() : std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, address))};
    });
    ASSERT_TRUE(FindDevices(1));
    const LxDeviceInfo *info = mSystem.GetInterface(0)->GetDeviceInfo(0);
    ASSERT_NE(info, nullptr);
    silent = true;
    ASSERT_TRUE(FindDevices(0));
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceCount(), 0U);
    EXPECT_EQ(info->GetConnectionID(), "127.0.0.2") << "the information outlives the device";
    silent = false;
    address = 0x0A000001;
    ASSERT_TRUE(FindDevices(1));
    EXPECT_EQ(mSystem.GetInterface(0)->GetDeviceInfo(0), info);
    EXPECT_EQ(info->GetConnectionID(), "10.0.0.1");
    EXPECT_FALSE(info->IsConfigurationValid());
    EXPECT_EQ(mRecorder.GetReports().size(), 1U);
}

TEST_F(Discovery, EveryDeviceClassHasItsNumber)
{
    std::atomic<uint32_t> mode = 0;
    const GvcpResponder responder([&mode](const ReceivedCommand &aCommand) {
        auto camera = MakeCamera(mac, loopbackAddress);
        camera.mDeviceMode = mode;
        return std::vector<Reply>{AnswerDiscovery(aCommand, camera)};
    });
    const std::vector<std::pair<uint32_t, int>> classes{{0x80000001, 1}, {0x90000001, 2}, {0xA0000001, 3},
                                                        {0xB0000001, 4}, {0xC0000001, 0}, {0xF0000001, 0}};
    for (const auto &[word, number] : classes) {
        mode = word;
        ASSERT_TRUE(FindDevices(1));
        const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(mSystem.GetInterface(0)->GetDeviceInfo(0));
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(info->GetClass(), number) << std::hex << word;
    }
}

TEST_F(Discovery, ABroadcastAnswerFromAnotherSubnetIsHeard)
{
    const Wire wire("cam", "192.168.50.1/24", "10.9.9.9/24");
    const ForeignCamera camera(wire);
    ASSERT_TRUE(camera.IsReady());
    ASSERT_TRUE(FindDevices(1));
    const LxInterface *interface = GetInterface(wire.GetNearEnd());
    ASSERT_NE(interface, nullptr);
    ASSERT_EQ(interface->GetDeviceCount(), 1U);
    const LxDeviceInfo *info = interface->GetDeviceInfo(0);
    EXPECT_EQ(info->GetInterface(), interface);
    EXPECT_FALSE(info->IsConfigurationValid());
    // what it says to a user who connects nevertheless
    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    EXPECT_EQ(result, LxResultCode::Unavailable);
    const std::string text = result.GetDescription().GetString();
    EXPECT_NE(text.find("10.9.9.0 (mask 255.255.255.0)"), std::string::npos) << text;
    EXPECT_NE(text.find("192.168.50.0 (mask 255.255.255.0)"), std::string::npos) << text;
    EXPECT_NE(text.find(wire.GetNearEnd()), std::string::npos) << text;
    EXPECT_EQ(device, nullptr);
}

TEST_F(Discovery, AnAdapterWithoutAddressFindsToo)
{
    const Wire wire("cam", "", "10.9.9.9/24");
    const ForeignCamera camera(wire);
    ASSERT_TRUE(camera.IsReady());
    ASSERT_TRUE(FindDevices(1));
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(GetInterface(wire.GetNearEnd()));
    ASSERT_NE(adapter, nullptr);
    EXPECT_EQ(adapter->GetIPAddressCount(), 0U);
    EXPECT_EQ(adapter->GetDisplayID(), (wire.GetNearEnd() + " (no IP address)").c_str());
    ASSERT_EQ(adapter->GetDeviceCount(), 1U);
    EXPECT_FALSE(adapter->GetDeviceInfo(0)->IsConfigurationValid());
}

TEST_F(Discovery, ADeviceAtTwoAdaptersHasTwoObjectsAndOneID)
{
    const Wire first("cam1", "192.168.50.1/24", "192.168.50.2/24");
    const Wire second("cam2", "192.168.51.1/24", "192.168.51.2/24");
    const auto script = [](const ReceivedCommand &aCommand) {
        return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0xC0A83202))};
    };
    const GvcpResponder one(script, first.GetNamespace());
    const GvcpResponder two(script, second.GetNamespace());
    ASSERT_TRUE(FindDevices(2));
    const LxInterface *left = GetInterface(first.GetNearEnd());
    const LxInterface *right = GetInterface(second.GetNearEnd());
    ASSERT_NE(left, nullptr);
    ASSERT_NE(right, nullptr);
    ASSERT_EQ(left->GetDeviceCount(), 1U);
    ASSERT_EQ(right->GetDeviceCount(), 1U);
    EXPECT_NE(left->GetDeviceInfo(0), right->GetDeviceInfo(0));
    EXPECT_EQ(left->GetDeviceInfo(0)->GetUniqueID(), right->GetDeviceInfo(0)->GetUniqueID());
    EXPECT_EQ(left->GetDeviceInfo(0)->GetInterface(), left);
    EXPECT_EQ(right->GetDeviceInfo(0)->GetInterface(), right);
    EXPECT_TRUE(left->GetDeviceInfo(0)->IsConfigurationValid());
    EXPECT_FALSE(right->GetDeviceInfo(0)->IsConfigurationValid()) << "its address is of the other wire";
    EXPECT_EQ(mRecorder.GetReports().size(), 2U);
}

TEST_F(Discovery, SubnetBroadcastsAreSentOnlyWhenTheyAreEnabled)
{
    const Wire wire("cam", "192.168.50.1/24", "192.168.50.2/24");
    const GvcpResponder responder([](const ReceivedCommand &) { return std::vector<Reply>(); }, wire.GetNamespace());
    EXPECT_FALSE(mSystem.IsSubnetBroadcastEnabled());
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::Discovery) > 0; }));
    EXPECT_EQ(responder.GetDestinations(Gvcp::Command::Discovery), std::vector<uint32_t>{0xFFFFFFFF});
    mSystem.SetSubnetBroadcastEnabled(true);
    EXPECT_TRUE(mSystem.IsSubnetBroadcastEnabled());
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_TRUE(WaitFor([&responder] { return responder.GetCount(Gvcp::Command::Discovery) > 2; }));
    EXPECT_EQ(responder.GetDestinations(Gvcp::Command::Discovery),
              (std::vector<uint32_t>{0xFFFFFFFF, 0xFFFFFFFF, 0xC0A832FF}));
}

TEST_F(Discovery, EveryAddressOfAnAdapterAsksForItself)
{
    const Wire wire("cam", "192.168.50.1/24", "192.168.60.2/24");
    ASSERT_TRUE(
        RunCommand("ip address add 192.168.60.1/24 dev " + wire.GetNearEnd() + " label " + wire.GetNearEnd() + ":1"));
    std::mutex mutex;
    std::vector<uint32_t> sources;
    const GvcpResponder responder(
        [&](const ReceivedCommand &aCommand) {
            const std::lock_guard lock(mutex);
            sources.push_back(aCommand.mSource);
            return std::vector<Reply>{AnswerDiscovery(aCommand, MakeCamera(mac, 0xC0A83C02))};
        },
        wire.GetNamespace(), wire.GetFarEnd());
    ASSERT_TRUE(FindDevices(1));
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(GetInterface(wire.GetNearEnd()));
    ASSERT_NE(adapter, nullptr);
    EXPECT_EQ(adapter->GetIPAddressCount(), 2U) << "a label is an address of its adapter, no adapter";
    EXPECT_EQ(adapter->GetIPAddress(1), "192.168.60.1");
    ASSERT_EQ(adapter->GetDeviceCount(), 1U);
    EXPECT_TRUE(adapter->GetDeviceInfo(0)->IsConfigurationValid()) << "by the second address";
    EXPECT_TRUE(WaitFor([&] {
        const std::lock_guard lock(mutex);
        return sources.size() > 1;
    }));
    const std::lock_guard lock(mutex);
    sources.resize(2);  // one search may not have been enough
    EXPECT_EQ(sources, (std::vector<uint32_t>{0xC0A83201, 0xC0A83C01}));
}

TEST_F(Discovery, AdaptersComeAndGoAndKeepTheirObjects)
{
    const LxInterface *before = nullptr;
    {
        const Wire wire("cam", "192.168.50.1/24", "192.168.50.2/24");
        EXPECT_TRUE(mSystem.Find().IsOK());
        before = GetInterface(wire.GetNearEnd());
        ASSERT_NE(before, nullptr);
        EXPECT_EQ(mSystem.GetInterface(0)->GetUniqueID(), "net:lo") << "new ones are appended";
    }
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_EQ(mSystem.GetInterfaceCount(), 1U);
    EXPECT_EQ(before->GetDeviceCount(), 0U);
    const Wire wire("cam", "192.168.50.7/24", "192.168.50.2/24");
    EXPECT_TRUE(mSystem.Find().IsOK());
    EXPECT_EQ(GetInterface(wire.GetNearEnd()), before);
    EXPECT_EQ(dynamic_cast<const LxNetworkAdapter *>(before)->GetIPAddress(0), "192.168.50.7");
}

TEST_F(Discovery, AdaptersTellTheirMACAddressAndGateway)
{
    const Wire wire("cam", "192.168.50.1/24", "192.168.50.2/24");
    ASSERT_TRUE(RunCommand("ip link set " + wire.GetNearEnd() + " address 02:ab:cd:ef:01:02"));
    ASSERT_TRUE(RunCommand("ip route add default via 192.168.50.2"));
    EXPECT_TRUE(mSystem.Find().IsOK());
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(GetInterface(wire.GetNearEnd()));
    ASSERT_NE(adapter, nullptr);
    EXPECT_EQ(adapter->GetMACAddress(), "02:AB:CD:EF:01:02");
    EXPECT_EQ(adapter->GetDefaultGateway(), "192.168.50.2");
}

TEST_F(Discovery, AnAdapterThatGoesDuringASearchDoesNotDisturbIt)
{
    auto wire = std::make_unique<Wire>("cam", "192.168.50.1/24", "192.168.50.2/24");
    const GvcpResponder far([](const ReceivedCommand &) { return std::vector<Reply>(); }, wire->GetNamespace());
    mSystem.SetDetectionTimeout(60000);
    std::thread searcher([this] { EXPECT_EQ(mSystem.Find(), LxResultCode::Aborted); });
    EXPECT_TRUE(WaitFor([&far] { return far.GetCount(Gvcp::Command::Discovery) > 0; }));
    wire.reset();
    mSystem.CancelFind();
    searcher.join();
}

TEST_F(Discovery, ReadersSeeWholeInformationWhileASearchRuns)
{
    std::atomic<uint32_t> round = 0;
    const GvcpResponder responder([&round](const ReceivedCommand &aCommand) {
        auto camera = MakeCamera(mac, loopbackAddress);
        camera.mUserDefinedName = std::string(1 + ++round % 15, static_cast<char>('a' + round % 26));
        return std::vector<Reply>{AnswerDiscovery(aCommand, camera)};
    });
    mSystem.SetDetectionTimeout(5);
    std::atomic<bool> stop = false;
    std::thread searcher([this, &stop] {
        while (!stop) {
            mSystem.Find();
        }
    });
    EXPECT_TRUE(WaitFor([this, &round] {
        for (uint32_t i = 0; i < mSystem.GetInterfaceCount(); ++i) {
            const LxInterface *interface = mSystem.GetInterface(i);
            if (const LxDeviceInfo *info = interface ? interface->GetDeviceInfo(0) : nullptr) {
                const std::string name = info->GetUserDefinedName().GetString();
                EXPECT_EQ(name, std::string(name.size(), name.empty() ? ' ' : name[0]));
                EXPECT_TRUE(info->IsConfigurationValid());
            }
        }
        return round > 50;
    }));
    stop = true;
    searcher.join();
}
