// Devices that stop answering, and what everybody who uses them notices. Run in a private network namespace.

#include <cstdio>
#include <future>
#include <thread>
#include <utility>

#include "AravisDeviceTest.h"
#include "Backends/Aravis/LinkMonitor.h"
#include "EmulatedCamera.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

using Clock = std::chrono::steady_clock;

void Report(const char *aName, Milliseconds aTime)
{
    std::printf("[ MEASURED ] %s: %.1f ms\n", aName, aTime.count());
}

bool IsRefused(LxDeviceGEV &aDevice)
{
    uint32_t value = 0;
    return !aDevice.ReadRegister(0, value).IsOK();
}

/// The longest of some calls of every kind.
Milliseconds LongestCall(LxDeviceGEV &aDevice)
{
    Milliseconds longest{0};
    for (int i = 0; i < 50; ++i) {
        uint32_t value = 0;
        uint8_t byte = 0;
        int64_t width = 0;
        const auto expectRefused = [&longest](const auto &aCall) {
            const RunningTime time;
            EXPECT_FALSE(aCall().IsOK());
            longest = std::max(longest, time.Get());
        };
        expectRefused([&] { return aDevice.ReadRegister(0, value); });
        expectRefused([&] { return aDevice.WriteRegister(0x1000, 1); });
        expectRefused([&] { return aDevice.ReadMemory(0, &byte, 1); });
        expectRefused([&] { return aDevice.GetParameters()->GetIntegerValue("Width", width); });
    }
    return longest;
}

class AravisLoss : public testing::TestWithParam<CameraKind>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mCamera.Start());
        const LxResult result = Connect(mDevice);
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        mDevice->RegisterEventSink(&mEvents);
    }

    bool WaitForEvents(const std::string &aEvents)
    {
        return WaitFor([&] { return mEvents.GetEvents() == aEvents; });
    }
    /// A busy computer may take a device that is back for lost once more.
    bool WaitForReturn()
    {
        return WaitFor([&] { return mEvents.GetEvents().starts_with("-") && mEvents.GetEvents().ends_with("+"); });
    }

    const int64_t mMemory = GetParam().mFreeMemory;
    CameraProcess mCamera{GetParam().mCommand()};
    EventRecorder mEvents;
    std::unique_ptr<LxDeviceGEV> mDevice;
};

INSTANTIATE_TEST_SUITE_P(With, AravisLoss, testing::Values(emulatorKind, fakeCameraKind), GetKindName);

}  // namespace

TEST_P(AravisLoss, ADeviceThatIsKilledWhileItsRegistersAreReadAnswersAtOnceUntilItIsBack)
{
    Reader stuck(*mDevice);
    ASSERT_TRUE(WaitFor([&] { return stuck.mGood > 100; }));
    const RunningTime sinceKilled;
    mCamera.Kill();
    // looks at the port's state only, so that this thread does not get stuck itself
    ASSERT_TRUE(WaitFor([&] { return mDevice->GetParameters()->GetAccessMode() != 0; }));
    const Milliseconds noticed = sinceKilled.Get();
    Report("a killed device is noticed after", noticed);
    EXPECT_LT(noticed, libraryTimeout);
    const bool wasStuck = stuck.mInCall && stuck.mBad == 0;
    const Milliseconds longest = LongestCall(*mDevice);
    Report("longest call while another thread is stuck", longest);
    EXPECT_TRUE(wasStuck) << "the other thread was to be inside the library";
    EXPECT_LT(longest, libraryTimeout);

    ASSERT_TRUE(WaitForEvents("-"));
    EXPECT_EQ(mEvents.GetDevice(), mDevice.get());
    EXPECT_FALSE(mDevice->IsConnected());
    uint32_t value = 0;
    const LxResult lost = mDevice->ReadRegister(0, value);
    EXPECT_EQ(lost, LxResultCode::NotConnected);
    EXPECT_FALSE(lost.GetDescription().IsEmpty());

    ASSERT_TRUE(mCamera.Start());
    const auto returned = Clock::now();
    ASSERT_TRUE(WaitFor([&] { return !IsRefused(*mDevice); }));
    Report("a restarted device is in use again after", Since(returned));
    EXPECT_TRUE(mDevice->WriteRegister(mMemory, 5).IsOK()) << "it is controlled again";
    uint32_t privilege = 0;
    ASSERT_TRUE(mDevice->ReadRegister(0x0A00, privilege).IsOK());
    EXPECT_EQ(privilege, 2U);
    EXPECT_TRUE(WaitForReturn());
    EXPECT_TRUE(mDevice->IsConnected());
}

TEST_P(AravisLoss, ADeviceThatFreezesIsBackWhenItGoesOn)
{
    Reader stuck(*mDevice);
    ASSERT_TRUE(WaitFor([&] { return stuck.mGood > 100; }));
    const RunningTime sinceFrozen;
    mCamera.Freeze();
    ASSERT_TRUE(WaitFor([&] { return mDevice->GetParameters()->GetAccessMode() != 0; }));
    const Milliseconds noticed = sinceFrozen.Get();
    Report("a frozen device is noticed after", noticed);
    EXPECT_LT(noticed, libraryTimeout);
    Report("longest call while it is frozen", LongestCall(*mDevice));
    ASSERT_TRUE(WaitForEvents("-"));
    mCamera.Thaw();
    const RunningTime sinceThawed;
    ASSERT_TRUE(WaitFor([&] { return !IsRefused(*mDevice); }));
    const Milliseconds took = sinceThawed.Get();
    Report("a device that goes on is in use again after", took);
    EXPECT_LT(took, libraryTimeout);
    EXPECT_TRUE(mDevice->WriteRegister(mMemory, 5).IsOK());
    EXPECT_TRUE(WaitForReturn());
}

TEST_P(AravisLoss, AShortFreezeIsNoLoss)
{
    const auto frozen = Clock::now();
    mCamera.Freeze();
    ASSERT_TRUE(WaitFor([&] { return mDevice->GetParameters()->GetAccessMode() != 0; }));
    mCamera.Thaw();
    ASSERT_TRUE(WaitFor([&] { return !IsRefused(*mDevice); }));
    if (Since(frozen) < LxDetail::LinkTiming().mSuspectTime) {
        // a loss would have been reported before the device is in use again
        EXPECT_EQ(mEvents.GetEvents(), "");
    }
    else {
        std::printf("[ NOTICE   ] the machine was too slow for a short freeze\n");
        EXPECT_TRUE(WaitFor([&] { return mEvents.GetEvents().size() % 2 == 0; }));
    }
    EXPECT_TRUE(WaitFor([&] { return mDevice->IsConnected(); }));
}

TEST_P(AravisLoss, ADeviceThatRestartsQuicklyIsControlledAgain)
{
    mCamera.Kill();
    ASSERT_TRUE(mCamera.Start());
    // it has forgotten who controls it; the library's heartbeat finds that out
    ASSERT_TRUE(WaitForReturn());
    ASSERT_TRUE(WaitFor([&] { return !IsRefused(*mDevice); }));
    uint32_t privilege = 0;
    ASSERT_TRUE(mDevice->ReadRegister(0x0A00, privilege).IsOK());
    EXPECT_EQ(privilege, 2U);
}

TEST_P(AravisLoss, DisconnectingALostDeviceWaitsForNobody)
{
    mCamera.Kill();
    ASSERT_TRUE(WaitForEvents("-"));
    const RunningTime time;
    mDevice->Disconnect();
    const Milliseconds took = time.Get();
    Report("disconnecting a lost device takes", took);
    EXPECT_LT(took, libraryTimeout);
    uint32_t value = 0;
    EXPECT_EQ(mDevice->ReadRegister(0, value), LxResultCode::NotConnected);
}

TEST_P(AravisLoss, ALostDeviceCanBeDestroyedInItsOwnEvent)
{
    class Destroyer : public LxDeviceEventSink
    {
    public:
        explicit Destroyer(std::unique_ptr<LxDeviceGEV> &aDevice) : mDevice(aDevice) {}
        void OnLinkDisconnected(LxDevice *) override
        {
            mDevice->UnregisterEventSink(this);
            mDevice.reset();
            mDone = true;
        }
        std::unique_ptr<LxDeviceGEV> &mDevice;
        std::atomic<bool> mDone{false};
    };
    mDevice->UnregisterEventSink(&mEvents);
    Destroyer destroyer(mDevice);
    mDevice->RegisterEventSink(&destroyer);
    mCamera.Kill();
    ASSERT_TRUE(WaitFor([&] { return destroyer.mDone.load(); }));
    EXPECT_EQ(mDevice, nullptr);
}

TEST_P(AravisLoss, DisconnectingWaitsNeitherForASinkNorForOneThatDisconnectsToo)
{
    class Disconnecter : public LxDeviceEventSink
    {
    public:
        void OnLinkDisconnected(LxDevice *aDevice) override
        {
            mRuns = true;
            mInTime = WaitFor([this] { return mDisconnected.load(); });
            aDevice->Disconnect();
            mDone = true;
        }
        std::atomic<bool> mRuns{false};
        std::atomic<bool> mDisconnected{false};
        std::atomic<bool> mInTime{false};
        std::atomic<bool> mDone{false};
    };
    Disconnecter disconnecter;
    mDevice->RegisterEventSink(&disconnecter);
    mCamera.Kill();
    ASSERT_TRUE(WaitFor([&] { return disconnecter.mRuns.load(); }));
    mDevice->Disconnect();
    disconnecter.mDisconnected = true;
    ASSERT_TRUE(WaitFor([&] { return disconnecter.mDone.load(); }));
    EXPECT_TRUE(disconnecter.mInTime);
}

TEST_P(AravisLoss, ASinkAndAnotherThreadMayDisconnectAtTheSameTime)
{
    class Disconnecter : public LxDeviceEventSink
    {
    public:
        void OnLinkDisconnected(LxDevice *aDevice) override
        {
            mRuns = true;
            WaitFor([aDevice] { return aDevice->GetParameters() == nullptr; });  // the other thread has begun
            aDevice->Disconnect();
            mDone = true;
        }
        std::atomic<bool> mRuns{false};
        std::atomic<bool> mDone{false};
    };
    Disconnecter disconnecter;
    mDevice->RegisterEventSink(&disconnecter);
    mCamera.Kill();
    ASSERT_TRUE(WaitFor([&] { return disconnecter.mRuns.load(); }));
    mDevice->Disconnect();
    EXPECT_TRUE(WaitFor([&] { return disconnecter.mDone.load(); }));
}

TEST_P(AravisLoss, DisconnectingAnswersThoseWhoWaitForAThreadThatIsStuck)
{
    LxGenParameterArray &parameters = *mDevice->GetParameters();
    std::atomic<int> asking{0};
    std::atomic<int> answered{0};
    std::vector<std::future<LxResult>> readers;
    for (int i = 0; i < 2; ++i) {
        readers.push_back(std::async(std::launch::async, [&] {
            LxResult result;
            while (result.IsOK()) {  // until the camera has really stopped
                int64_t width = 0;
                result = parameters.GetIntegerValue("Width", width);
                ++asking;
            }
            ++answered;
            return result;
        }));
    }
    ASSERT_TRUE(WaitFor([&] { return asking >= 10; }));
    mCamera.Freeze();
    // usually both hang now: one in the library, one waiting for it
    int asked = -1;
    ASSERT_TRUE(WaitFor([&] { return std::exchange(asked, asking.load()) == asking; }));
    const RunningTime time;
    mDevice->Disconnect();
    Report("disconnecting a device that has just frozen takes", time.Get());
    EXPECT_TRUE(WaitFor([&] { return answered >= 1; }));
    const Milliseconds took = time.Get();
    Report("one who waits for a stuck thread is answered after", took);
    EXPECT_LT(took, libraryTimeout);
    for (auto &reader : readers) {
        EXPECT_EQ(reader.get(), LxResultCode::NotConnected);
    }
    mCamera.Thaw();
}

TEST_P(AravisLoss, ASinkThatIsRemovedIsNotCalledAnyMore)
{
    EXPECT_TRUE(mDevice->UnregisterEventSink(&mEvents).IsOK());
    EXPECT_EQ(mDevice->UnregisterEventSink(&mEvents), LxResultCode::NotFound);
    EXPECT_EQ(mDevice->RegisterEventSink(nullptr), LxResultCode::InvalidArgument);
    EventRecorder other;
    mDevice->RegisterEventSink(&other);
    mCamera.Kill();
    ASSERT_TRUE(WaitFor([&] { return other.GetEvents() == "-"; }));
    EXPECT_EQ(mEvents.GetEvents(), "");
    mDevice->UnregisterEventSink(&other);
}

TEST(AravisLosses, ADeviceThatAnotherApplicationTookMeanwhileIsDeniedUntilItIsFree)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    camera.SetFrozen(true);
    ASSERT_TRUE(WaitFor([&] { return !device->IsConnected(); }));
    camera.OverrideControl(2);
    camera.SetFrozen(false);
    LxResult denied;
    ASSERT_TRUE(WaitFor([&] {
        uint32_t value = 0;
        denied = device->ReadRegister(0, value);
        return denied == LxResultCode::AccessDenied;
    }));
    EXPECT_NE(std::string(denied.GetDescription().GetAscii()).find("Another application"), std::string::npos);
    EXPECT_FALSE(device->IsConnected());
    camera.OverrideControl(0);
    ASSERT_TRUE(WaitFor([&] { return !IsRefused(*device); })) << "taken again when it is free";
    EXPECT_TRUE(device->WriteRegister(emulatorKind.mFreeMemory, 1).IsOK());
}

TEST(AravisLosses, AnotherDeviceAtTheSameAddressIsNotTakenForTheLostOne)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    camera.SetFrozen(true);
    ASSERT_TRUE(WaitFor([&] { return !device->IsConnected(); }));
    std::atomic<int> identityReads{0};
    camera.GetCamera().GetPort()->OnRead(0x0008, 8, [&](LxDetail::MemoryPort &, uint64_t, uint32_t) {
        ++identityReads;
        return LxResult();
    });
    const uint32_t mac = camera.GetCamera().GetPort()->Peek32(0x000C);
    camera.GetCamera().GetPort()->Poke32(0x000C, mac + 1);
    camera.SetFrozen(false);
    ASSERT_TRUE(WaitFor([&] { return identityReads >= 4; }));
    EXPECT_FALSE(device->IsConnected());
    camera.GetCamera().GetPort()->Poke32(0x000C, mac);
    ASSERT_TRUE(WaitFor([&] { return device->IsConnected(); }));
}

TEST(AravisLosses, LostPacketsAreNoLossOfTheDevice)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    EventRecorder events;
    device->RegisterEventSink(&events);
    LxEmulator::ControlFaults faults;
    faults.mIgnoreCommands = 1;
    camera.SetControlFaults(faults);
    uint32_t value = 0;
    EXPECT_TRUE(device->ReadRegister(0, value).IsOK()) << "asked again by the library";
    EXPECT_EQ(events.GetEvents(), "");
    device->UnregisterEventSink(&events);
}
