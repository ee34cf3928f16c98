#include "LxSystem/LxSystem.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "FakeBackend.h"
#include "LxSystem/LxSystemEventSink.h"
#include "WaitFor.h"

namespace
{

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class Sink : public LxSystemEventSink
{
public:
    using Action = std::function<void(const LxInterface *, const LxDeviceInfo *)>;
    explicit Sink(Action aAction = nullptr) : mAction(std::move(aAction)) {}
    void OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool &aReserved) override
    {
        EXPECT_FALSE(aReserved);
        if (mAction) {
            mAction(aInterface, aInfo);
        }
        const std::lock_guard lock(mMutex);
        mNames.push_back(aInfo->GetUniqueID().GetString());
    }
    std::vector<std::string> GetNames() const
    {
        const std::lock_guard lock(mMutex);
        return mNames;
    }

private:
    const Action mAction;
    mutable std::mutex mMutex;  // guards mNames
    std::vector<std::string> mNames;
};

std::vector<std::string> GetInterfaceNames(const LxSystem &aSystem)
{
    std::vector<std::string> names;
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        names.push_back(aSystem.GetInterface(i)->GetUniqueID().GetString());
    }
    return names;
}

class System : public testing::Test
{
    const NoRealDevices mNoRealDevices;
};

}  // namespace

TEST_F(System, StartsWithOneSecondAndWithoutSubnetBroadcast)
{
    LxSystem system;
    EXPECT_EQ(system.GetDetectionTimeout(), 1000U);
    EXPECT_FALSE(system.IsSubnetBroadcastEnabled());
    system.SetDetectionTimeout(5);
    system.SetSubnetBroadcastEnabled(true);
    EXPECT_EQ(system.GetDetectionTimeout(), 5U);
    EXPECT_TRUE(system.IsSubnetBroadcastEnabled());
}

TEST_F(System, HandsItsSettingsToTheBackends)
{
    ActiveBackend backend("a");
    uint32_t timeout = 0;
    bool broadcast = false;
    backend->mOnFind = [&](LxDetail::SearchContext &aContext) {
        timeout = aContext.GetTimeout();
        broadcast = aContext.IsSubnetBroadcastEnabled();
        EXPECT_FALSE(aContext.IsCancelled());
        EXPECT_GE(aContext.GetCancelDescriptor(), 0);
    };
    LxSystem system;
    system.SetDetectionTimeout(17);
    system.SetSubnetBroadcastEnabled(true);
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(timeout, 17U);
    EXPECT_TRUE(broadcast);
}

TEST_F(System, ListsTheInterfacesOfEveryBackendFromConstructionOn)
{
    const ActiveBackend second("second");
    const ActiveBackend first("first");
    const LxSystem system;
    EXPECT_EQ(GetInterfaceNames(system), (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(system.GetInterface(2), nullptr);
    EXPECT_EQ(system.GetInterface(0xFFFFFFFF), nullptr);
}

TEST_F(System, ReportsTheDevicesOfEveryBackendInTheirOrder)
{
    const ActiveBackend second("second");
    const ActiveBackend first("first");
    LxSystem system;
    Sink sink;
    EXPECT_TRUE(system.RegisterEventSink(&sink).IsOK());
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(sink.GetNames(), (std::vector<std::string>{"first", "second"}));
    EXPECT_TRUE(system.UnregisterEventSink(&sink).IsOK());
}

TEST_F(System, TakesOverBackendsThatComeAndGoAtTheNextSearch)
{
    const ActiveBackend stays("stays");
    LxSystem system;
    const LxInterface *gone = nullptr;
    {
        const ActiveBackend comes("comes");
        EXPECT_EQ(system.GetInterfaceCount(), 1U);
        EXPECT_TRUE(system.Find().IsOK());
        EXPECT_EQ(GetInterfaceNames(system), (std::vector<std::string>{"comes", "stays"}));
        gone = system.GetInterface(0);
    }
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(GetInterfaceNames(system), std::vector<std::string>{"stays"});
    EXPECT_EQ(gone->GetUniqueID(), "comes") << "what was handed out lives as long as the system";
}

TEST_F(System, AQuickSearchStillTakesItsPace)
{
    const ActiveBackend backend("a");
    LxSystem system;
    system.SetDetectionTimeout(20000);
    auto start = steady_clock::now();
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_GE(steady_clock::now() - start, milliseconds(30));
    EXPECT_LT(steady_clock::now() - start, milliseconds(19000)) << "but not the whole time-out";
    system.SetDetectionTimeout(0);
    EXPECT_TRUE(system.Find().IsOK());
}

TEST_F(System, CancelEndsASearchThatWaitsForBackends)
{
    ActiveBackend backend("a");
    backend->mOnFind = [](LxDetail::SearchContext &aContext) {
        EXPECT_TRUE(WaitFor([&aContext] { return aContext.IsCancelled(); }));
    };
    const ActiveBackend never("never");
    LxSystem system;
    Sink sink;
    system.RegisterEventSink(&sink);
    std::thread searcher([&system] { EXPECT_EQ(system.Find(), LxResultCode::Aborted); });
    EXPECT_TRUE(WaitFor([&backend] { return backend->mFindCount > 0; }));
    system.CancelFind();
    searcher.join();
    EXPECT_EQ(sink.GetNames(), std::vector<std::string>{"never"}) << "no report after the end was asked for";
}

TEST_F(System, AfterACancelledSearchTheListsAreThoseOfTheSearchesThatEnded)
{
    const ActiveBackend second("second");
    ActiveBackend first("first");
    LxSystem system;
    Sink sink;
    system.RegisterEventSink(&sink);
    first->mOnFind = [&system](LxDetail::SearchContext &) { system.CancelFind(); };
    EXPECT_EQ(system.Find(), LxResultCode::Aborted);
    EXPECT_EQ(GetInterfaceNames(system), (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(system.GetInterface(0)->GetDeviceCount(), 1U) << "it was searched to its end";
    EXPECT_EQ(second->mFindCount, 0);
    EXPECT_EQ(system.GetInterface(1)->GetDeviceCount(), 0U);
    EXPECT_TRUE(sink.GetNames().empty()) << "nothing is reported any more";

    first->mOnFind = [](LxDetail::SearchContext &) {};
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(system.GetInterface(1)->GetDeviceCount(), 1U);
    first->mOnFind = [&system](LxDetail::SearchContext &) { system.CancelFind(); };
    EXPECT_EQ(system.Find(), LxResultCode::Aborted);
    EXPECT_EQ(system.GetInterface(1)->GetDeviceCount(), 1U) << "as the search before left it";
}

TEST_F(System, CancelBetweenSearchesHasNoEffect)
{
    const ActiveBackend backend("a");
    LxSystem system;
    system.CancelFind();
    EXPECT_TRUE(system.Find().IsOK());
    system.CancelFind();
    EXPECT_TRUE(system.Find().IsOK());
}

TEST_F(System, ASearchWithinACallbackIsRefused)
{
    const ActiveBackend backend("a");
    LxSystem system;
    LxResult find;
    LxResult findDevice;
    Sink sink([&](const LxInterface *, const LxDeviceInfo *) {
        find = system.Find();
        const LxDeviceInfo *info = nullptr;
        findDevice = system.FindDevice("10.0.0.1", &info);
    });
    system.RegisterEventSink(&sink);
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(find, LxResultCode::InvalidState);
    EXPECT_EQ(findDevice, LxResultCode::InvalidState);
}

TEST_F(System, SinksAreToldOnceAndOnlyWhileTheyAreRegistered)
{
    const ActiveBackend backend("a");
    LxSystem system;
    Sink sink;
    EXPECT_TRUE(system.RegisterEventSink(&sink).IsOK());
    EXPECT_TRUE(system.RegisterEventSink(&sink).IsOK());
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(sink.GetNames().size(), 1U);
    EXPECT_TRUE(system.UnregisterEventSink(&sink).IsOK());
    EXPECT_EQ(system.UnregisterEventSink(&sink), LxResultCode::NotFound);
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(sink.GetNames().size(), 1U);
    EXPECT_EQ(system.RegisterEventSink(nullptr), LxResultCode::InvalidArgument);
    EXPECT_EQ(system.UnregisterEventSink(nullptr), LxResultCode::NotFound);
}

TEST_F(System, ASinkMayRemoveItselfAndOthersWithinItsCallback)
{
    const ActiveBackend backend("a");
    LxSystem system;
    Sink other;
    Sink *self = nullptr;
    Sink sink([&](const LxInterface *, const LxDeviceInfo *) {
        EXPECT_TRUE(system.UnregisterEventSink(self).IsOK());
        EXPECT_TRUE(system.UnregisterEventSink(&other).IsOK());
    });
    self = &sink;
    system.RegisterEventSink(&sink);
    system.RegisterEventSink(&other);
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_TRUE(system.Find().IsOK());
    EXPECT_EQ(sink.GetNames().size(), 1U);
    EXPECT_TRUE(other.GetNames().empty());
}

TEST_F(System, RemovingASinkWaitsForItsRunningCallback)
{
    const ActiveBackend backend("a");
    LxSystem system;
    std::atomic<bool> inside = false;
    std::atomic<bool> leave = false;
    std::atomic<bool> left = false;
    auto sink = std::make_unique<Sink>([&](const LxInterface *, const LxDeviceInfo *) {
        inside = true;
        EXPECT_TRUE(WaitFor([&leave] { return leave.load(); }));
        left = true;
    });
    system.RegisterEventSink(sink.get());
    std::thread searcher([&system] { EXPECT_TRUE(system.Find().IsOK()); });
    EXPECT_TRUE(WaitFor([&inside] { return inside.load(); }));
    std::atomic<bool> removing = false;
    std::thread remover([&] {
        removing = true;
        EXPECT_TRUE(system.UnregisterEventSink(sink.get()).IsOK());
        EXPECT_TRUE(left);
        sink.reset();
    });
    EXPECT_TRUE(WaitFor([&removing] { return removing.load(); }));
    leave = true;
    remover.join();
    searcher.join();
}

TEST_F(System, SinksComeAndGoWhileSearchesRun)
{
    const ActiveBackend backend("a");
    LxSystem system;
    system.SetDetectionTimeout(0);
    std::atomic<bool> stop = false;
    std::thread searcher([&] {
        while (!stop) {
            system.Find();
        }
    });
    std::atomic<int> calls = 0;
    EXPECT_TRUE(WaitFor([&] {
        const auto sink = std::make_unique<Sink>([&calls](const LxInterface *, const LxDeviceInfo *) { ++calls; });
        system.RegisterEventSink(sink.get());
        const int before = calls;
        WaitFor([&calls, before] { return calls > before; });
        system.UnregisterEventSink(sink.get());
        return calls > 100;
    }));
    stop = true;
    searcher.join();
}

TEST_F(System, ListsMayBeReadWhileSearchesRunAndBackendsChange)
{
    LxSystem system;
    system.SetDetectionTimeout(0);
    std::atomic<bool> stop = false;
    std::thread searcher([&] {
        while (!stop) {
            system.Find();
        }
    });
    for (int i = 0; i < 50; ++i) {
        const ActiveBackend backend("a");
        EXPECT_TRUE(WaitFor([&backend, &system] {
            for (uint32_t n = 0; n < system.GetInterfaceCount(); ++n) {
                const LxInterface *interface = system.GetInterface(n);
                const LxDeviceInfo *info = interface ? interface->GetDeviceInfo(0) : nullptr;
                EXPECT_TRUE(!info || info->GetInterface() == interface);
            }
            return backend->mFindCount > 0;
        }));
    }
    stop = true;
    searcher.join();
}

TEST_F(System, TwoThreadsThatSearchWaitForEachOther)
{
    ActiveBackend backend("a");
    std::atomic<int> inside = 0;
    backend->mOnFind = [&inside](LxDetail::SearchContext &) {
        EXPECT_EQ(++inside, 1);
        std::this_thread::yield();
        --inside;
    };
    LxSystem system;
    system.SetDetectionTimeout(0);
    const auto search = [&system] {
        for (int i = 0; i < 200; ++i) {
            EXPECT_TRUE(system.Find().IsOK());
        }
    };
    std::thread first(search);
    std::thread second(search);
    first.join();
    second.join();
}

TEST_F(System, WhatABackendThrowsBecomesAResult)
{
    ActiveBackend backend("a");
    backend->mOnFind = [](LxDetail::SearchContext &) { throw std::runtime_error("the bus is on fire"); };
    LxSystem system;
    const LxResult result = system.Find();
    EXPECT_EQ(result, LxResultCode::Failed);
    EXPECT_EQ(result.GetDescription(), "the bus is on fire");
    backend->mOnFind = [](LxDetail::SearchContext &) {};
    EXPECT_TRUE(system.Find().IsOK()) << "the next search works";
}

TEST_F(System, FindDeviceAsksOneBackendAfterTheOther)
{
    ActiveBackend second("second");
    ActiveBackend first("first");
    first->mAddress = "10.0.0.1";
    second->mAddress = "10.0.0.2";
    LxSystem system;
    Sink sink;
    system.RegisterEventSink(&sink);
    const LxDeviceInfo *info = nullptr;
    EXPECT_TRUE(system.FindDevice("10.0.0.2", &info).IsOK());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetUniqueID(), "second");
    EXPECT_EQ(sink.GetNames(), std::vector<std::string>{"second"});
    EXPECT_EQ(system.FindDevice("10.0.0.3", &info), LxResultCode::NotFound);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(system.FindDevice("", &info), LxResultCode::InvalidArgument);
    first->mFindDeviceResult = LxResult(LxResultCode::Busy, "later");
    EXPECT_EQ(system.FindDevice("10.0.0.3", &info).GetDescription(), "later") << "more telling than not found";
    EXPECT_TRUE(system.FindDevice("10.0.0.2", &info).IsOK());
}

TEST_F(System, ConnectGoesToTheBackendOfTheDevice)
{
    ActiveBackend second("second");
    ActiveBackend first("first");
    first->mConnectResult = LxResultCode::Busy;
    second->mConnectResult = LxResultCode::AccessDenied;
    const FakeInterface interface("interface");
    std::unique_ptr<LxDevice> device;
    const auto connect = [&](const char *aName) {
        const FakeInfo info(aName, interface);
        return LxSystem::Connect(&info, LxDeviceAccess::Control, device);
    };
    EXPECT_EQ(connect("first"), LxResultCode::Busy);
    EXPECT_EQ(connect("second"), LxResultCode::AccessDenied);
    EXPECT_EQ(connect("nobody's"), LxResultCode::NotSupported);
    EXPECT_FALSE(connect("nobody's").GetDescription().IsEmpty());
    EXPECT_EQ(LxSystem::Connect(nullptr, LxDeviceAccess::Control, device), LxResultCode::InvalidArgument);
    const FakeInfo info("first", interface);
    EXPECT_EQ(LxSystem::Connect(&info, static_cast<LxDeviceAccess>(3), device), LxResultCode::InvalidArgument);
}
