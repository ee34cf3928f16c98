// The code of docs/simulation.md.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxSystem.h"
#include "WaitFor.h"

class MyApplicationTest : public testing::Test
{
protected:
    MyApplicationTest()
    {
        LxSimulation::Enable(true);  // true: real cameras are left out
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth0";
        adapter.mAddresses = {{"192.168.5.1", "255.255.255.0"}};
        LxSimulation::SetNetworkAdapter(adapter);
        LxSimulatedDevice camera;
        camera.mUniqueID = "left";
        camera.mInterfaces = {"eth0"};
        camera.mIPAddress = "192.168.5.20";
        camera.mSubnetMask = "255.255.255.0";
        camera.mUserDefinedName = "Left";
        LxSimulation::SetDevice(camera);
    }

    ~MyApplicationTest() override
    {
        mDevice.reset();
        LxSimulation::Clear();  // every test begins with an empty host
        LxSimulation::Disable();
    }

    LxResult Connect()
    {
        const LxDeviceInfo *info = nullptr;
        const LxResult result = mSystem.FindDevice("192.168.5.20", &info);
        return result.IsOK() ? LxSystem::Connect(info, LxDeviceAccess::Control, mDevice) : result;
    }

    LxSystem mSystem;
    std::unique_ptr<LxDevice> mDevice;
};

TEST_F(MyApplicationTest, SaysThatTheCameraIsTaken)
{
    LxSimulation::QueueResult("Connect", LxResult(LxResultCode::AccessDenied, "Taken."));
    EXPECT_EQ(Connect(), LxResultCode::AccessDenied);
    EXPECT_TRUE(Connect().IsOK());  // a queued result is given once
}

TEST_F(MyApplicationTest, SurvivesACableThatIsPulled)
{
    ASSERT_TRUE(Connect().IsOK());
    LxSimulation::SetDevicePresent("left", false);
    EXPECT_TRUE(WaitFor([&] { return !mDevice->IsConnected(); }));
    LxSimulation::SetDevicePresent("left", true);
    EXPECT_TRUE(WaitFor([&] { return mDevice->IsConnected(); }));
}

TEST_F(MyApplicationTest, ShowsWhatTheCameraSays)
{
    ASSERT_TRUE(Connect().IsOK());
    LxSimulation::FailAll("left", LxResult(LxResultCode::Busy, "Out to lunch."));
    int64_t width = 0;
    EXPECT_EQ(mDevice->GetParameters()->GetIntegerValue("Width", width), LxResultCode::Busy);
    LxSimulation::ClearFailures("left");
    EXPECT_TRUE(mDevice->GetParameters()->GetIntegerValue("Width", width).IsOK());
}

TEST_F(MyApplicationTest, CountsLostFrames)
{
    ASSERT_TRUE(Connect().IsOK());
    LxStream stream;
    ASSERT_TRUE(stream.Open(mDevice.get()).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    std::shared_ptr<const LxBuffer> buffer;
    ASSERT_TRUE(stream.RetrieveBuffer(buffer, 5000).IsOK());  // lost frames are gaps behind one that came
    LxSimulation::SkipFrames("left", 3);                      // never arrive
    LxSimulation::DamageFrames("left", 2);                    // arrive without some of their packets
    LxStreamStatistics statistics;
    EXPECT_TRUE(WaitFor([&] {
        stream.RetrieveBuffer(buffer, 1000);
        stream.GetStatistics(statistics);
        return statistics.mMissed == 3 && statistics.mIncomplete == 2;
    }));
}

TEST_F(MyApplicationTest, SetsTheExposureOnce)
{
    ASSERT_TRUE(Connect().IsOK());
    LxSimulation::SetRecording(true);
    mDevice->GetParameters()->SetFloatValue("ExposureTime", 2000.0);
    EXPECT_EQ(LxSimulation::GetCalls("WritePort").size(), 1u);
    LxSimulation::SetRecording(false);
}

TEST_F(MyApplicationTest, TalksToTheCameraBehindAFrameGrabber)
{
    LxSimulatedDevice grabber;
    LxSimulation::GetDevice("left", grabber);
    grabber.mUniqueID = "grabber";
    grabber.mMACAddress = "02:00:00:00:01:02";
    grabber.mIPAddress = "192.168.5.21";
    grabber.mSerialPorts = 1u << static_cast<uint32_t>(LxDeviceSerial::Serial0);
    LxSimulation::SetDevice(grabber);
    auto peer = std::make_shared<LxSimulatedSerialScript>();
    peer->Add("ID?\r", "My camera\r");
    LxSimulation::SetSerialPeer("grabber", LxDeviceSerial::Serial0, peer);

    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(mSystem.FindDevice("192.168.5.21", &info).IsOK());
    ASSERT_TRUE(LxSystem::Connect(info, LxDeviceAccess::Control, mDevice).IsOK());
    LxDeviceAdapter adapter(mDevice.get());
    LxDeviceSerialPort port;
    ASSERT_TRUE(port.Open(&adapter, LxDeviceSerial::Serial0).IsOK());
    uint32_t count = 0;
    port.Write(reinterpret_cast<const uint8_t *>("ID?\r"), 4, count);
    std::string answer;
    for (uint8_t bytes[64]; answer.find('\r') == std::string::npos;) {
        ASSERT_TRUE(port.Read(bytes, sizeof bytes, count, 5000).IsOK());
        answer.append(bytes, bytes + count);
    }
    EXPECT_EQ(answer, "My camera\r");
}
