// Bridges that offer a device's serial port through the Camera Link serial interface.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "LxGenICam/LxGenParameterArrayCL.h"
#include "LxSerial/LxCameraLinkPort.h"
#include "LxSerial/LxSerialBridge.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

namespace
{

std::string GetIDs()
{
    LxStringList list;
    EXPECT_TRUE(LxGenParameterArrayCL::GetPortIDs(list).IsOK());
    std::string text;
    for (size_t i = 0; i < list.GetSize(); ++i) {
        text += list.GetItem(i).GetString() + ";";
    }
    return text;
}

class CameraLinkBridgeTest : public testing::Test
{
protected:
    CameraLinkBridgeTest() { SimulatedGrabber::SetPeer(Serial0, std::make_shared<LxSimulatedSerialEcho>()); }

    LxResult Start(LxDeviceSerial aPort = Serial0) { return mBridge.Start("port", mGrabber.GetAdapter(), aPort); }
    LxResult Write(const std::string &aText)
    {
        uint32_t written = 0;
        return mUser.Write(reinterpret_cast<const uint8_t *>(aText.data()), static_cast<uint32_t>(aText.size()),
                           written);
    }
    std::string Read(size_t aCount, uint32_t aTimeout = 2000)
    {
        std::string text;
        while (text.size() < aCount) {
            uint8_t bytes[64];
            uint32_t read = 0;
            mReadResult = mUser.Read(bytes, sizeof(bytes), read, aTimeout);
            if (!mReadResult.IsOK()) {
                break;
            }
            text.append(reinterpret_cast<const char *>(bytes), read);
        }
        return text;
    }

    SimulatedGrabber mGrabber;
    LxSerialBridge mBridge;
    LxCameraLinkPort mUser;
    LxResult mReadResult;
};

}  // namespace

TEST_F(CameraLinkBridgeTest, OffersThePortUnderItsID)
{
    EXPECT_EQ(GetIDs(), "");
    ASSERT_TRUE(Start().IsOK());
    EXPECT_EQ(GetIDs(), "port;");
    EXPECT_EQ(mBridge.GetName(), LxString("port"));
    EXPECT_EQ(mBridge.GetSerialPort(), LxString()) << "no COM port";
    EXPECT_EQ(mBridge.SetSerialPortConfiguration({}), LxResultCode::InvalidState);
    EXPECT_EQ(mBridge.GetSupportedBaudRateCount(), 10u);
    ASSERT_TRUE(mUser.Open("port").IsOK());
    ASSERT_TRUE(Write("hello").IsOK());
    EXPECT_EQ(Read(5), "hello");
    EXPECT_EQ(mBridge.GetBytesSentToDevice(), 5u);
    EXPECT_EQ(mBridge.GetBytesReceivedFromDevice(), 5u);
    mBridge.ResetStatistics();
    EXPECT_EQ(mBridge.GetBytesSentToDevice(), 0u);
    EXPECT_TRUE(mBridge.Stop().IsOK());
    EXPECT_EQ(GetIDs(), "");
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(CameraLinkBridgeTest, WithoutAPortOnlyTheIDIsRegistered)
{
    ASSERT_TRUE(Start(LxDeviceSerial::Invalid).IsOK());
    EXPECT_EQ(GetIDs(), "port;");
    EXPECT_EQ(mBridge.GetSupportedBaudRateCount(), 0u);
    EXPECT_EQ(mUser.Open("port"), LxResultCode::NotFound);
    mBridge.Stop();
    EXPECT_EQ(GetIDs(), "");
}

TEST_F(CameraLinkBridgeTest, StartFailsWithoutLeavingAnything)
{
    EXPECT_EQ(mBridge.Start("port", nullptr, Serial0), LxResultCode::InvalidArgument);
    EXPECT_EQ(mBridge.Start("", mGrabber.GetAdapter(), Serial0), LxResultCode::InvalidArgument);
    EXPECT_EQ(Start(static_cast<LxDeviceSerial>(10)), LxResultCode::NoSerialPort);
    EXPECT_EQ(GetIDs(), "");
    LxSerialBridge first;
    ASSERT_TRUE(first.Start("port", mGrabber.GetAdapter(), LxDeviceSerial::Bulk0).IsOK());
    EXPECT_EQ(Start(), LxResultCode::Busy) << "the ID is taken";
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 1u);
    EXPECT_EQ(mBridge.Start("other", mGrabber.GetAdapter(), LxDeviceSerial::Bulk0), LxResultCode::Busy)
        << "the port is taken";
    EXPECT_EQ(GetIDs(), "port;");
    EXPECT_EQ(first.Start("again", mGrabber.GetAdapter(), Serial0), LxResultCode::AlreadyOpen);
    EXPECT_EQ(GetIDs(), "port;") << "it goes on";
    first.Stop();
    EXPECT_TRUE(Start().IsOK());
}

TEST_F(CameraLinkBridgeTest, APortHasOneUser)
{
    EXPECT_EQ(Write("x"), LxResultCode::InvalidState);
    Read(1, 0);
    EXPECT_EQ(mReadResult, LxResultCode::InvalidState);
    EXPECT_EQ(mUser.SetBaudRate(9600), LxResultCode::InvalidState);
    EXPECT_EQ(mUser.GetSupportedBaudRateCount(), 0u);
    ASSERT_TRUE(Start().IsOK());
    ASSERT_TRUE(mUser.Open("port").IsOK());
    EXPECT_EQ(mUser.Open("port"), LxResultCode::AlreadyOpen);
    LxCameraLinkPort other;
    EXPECT_EQ(other.Open("port"), LxResultCode::Busy);
    EXPECT_TRUE(mUser.IsOpened());
    mUser.Close();
    EXPECT_FALSE(mUser.IsOpened());
    EXPECT_TRUE(other.Open("port").IsOK());
}

/// An echo that says how much has come back.
class CountingEcho : public LxSimulatedSerialPeer
{
public:
    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override
    {
        mCount += aLine.Send(aData, aCount);
    }
    std::atomic<uint32_t> mCount{0};
};

TEST_F(CameraLinkBridgeTest, ANewUserDoesNotHearWhatCameBefore)
{
    const auto echo = std::make_shared<CountingEcho>();
    SimulatedGrabber::SetPeer(Serial0, echo);
    ASSERT_TRUE(Start().IsOK());
    ASSERT_TRUE(mUser.Open("port").IsOK());
    ASSERT_TRUE(Write("old").IsOK());
    ASSERT_EQ(Read(1).size() > 0, true);
    ASSERT_TRUE(Write("older").IsOK());
    ASSERT_TRUE(WaitFor([&] { return echo->mCount == 8; }));
    mUser.Close();
    ASSERT_TRUE(mUser.Open("port").IsOK());
    ASSERT_TRUE(Write("new").IsOK());
    EXPECT_EQ(Read(3), "new");
}

TEST_F(CameraLinkBridgeTest, TheUserSetsTheSpeedUnlessItIsFixed)
{
    ASSERT_TRUE(Start().IsOK());
    ASSERT_TRUE(mUser.Open("port").IsOK());
    EXPECT_EQ(mUser.GetSupportedBaudRateCount(), 10u);
    EXPECT_EQ(mUser.GetSupportedBaudRate(0), 9600u);
    EXPECT_EQ(mUser.GetSupportedBaudRate(10), 0u);
    EXPECT_TRUE(mUser.SetBaudRate(57600).IsOK());
    EXPECT_EQ(mBridge.GetBaudRate(), 57600u);
    EXPECT_EQ(mUser.SetBaudRate(12345), LxResultCode::NotSupported);
    EXPECT_EQ(mBridge.SetHardCodedBaudRate(12345), LxResultCode::NotSupported);
    EXPECT_EQ(mBridge.GetHardCodedBaudRate(), 0u);
    ASSERT_TRUE(mBridge.SetHardCodedBaudRate(38400).IsOK());
    EXPECT_EQ(mBridge.GetHardCodedBaudRate(), 38400u);
    EXPECT_EQ(mBridge.GetBaudRate(), 38400u);
    LxString rate;
    ASSERT_TRUE(mGrabber.GetFeatures().GetEnumValue("Uart0BaudRate", rate).IsOK());
    EXPECT_EQ(rate, LxString("Baud38400"));
    EXPECT_EQ(mUser.GetSupportedBaudRateCount(), 1u);
    EXPECT_EQ(mUser.GetSupportedBaudRate(0), 38400u);
    EXPECT_EQ(mUser.SetBaudRate(9600), LxResultCode::NotSupported);
    EXPECT_TRUE(mUser.SetBaudRate(38400).IsOK());
    ASSERT_TRUE(mBridge.SetHardCodedBaudRate(0).IsOK());
    EXPECT_TRUE(mUser.SetBaudRate(9600).IsOK());
}

TEST_F(CameraLinkBridgeTest, StopEndsAUserThatReads)
{
    ASSERT_TRUE(Start().IsOK());
    ASSERT_TRUE(mUser.Open("port").IsOK());
    LxSimulation::SetRecording(true);
    std::thread reader([&] { Read(1, 60000); });
    ASSERT_TRUE(WaitFor([] { return LxSimulation::GetCalls("SerialRead").size() > 0; }));
    mBridge.Stop();
    reader.join();
    EXPECT_EQ(mReadResult, LxResultCode::NotConnected);
    EXPECT_EQ(Write("x"), LxResultCode::NotConnected);
    EXPECT_EQ(mUser.SetBaudRate(9600), LxResultCode::NotConnected);
    EXPECT_EQ(mUser.GetSupportedBaudRateCount(), 0u);
    mUser.Close();
    EXPECT_EQ(mUser.Open("port"), LxResultCode::NotFound);
}

TEST_F(CameraLinkBridgeTest, BridgesStopWhileUsersTalk)
{
    std::atomic<bool> stop{false};
    std::thread user([&] {
        while (!stop) {
            mUser.Open("port");
            Write("abc");
            Read(3, 2);
            mUser.SetBaudRate(9600);
            mUser.Close();
        }
    });
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(Start().IsOK());
        mBridge.SetHardCodedBaudRate(i % 2 == 0 ? 9600 : 0);
        mBridge.GetBaudRate();
        mBridge.Stop();
    }
    stop = true;
    user.join();
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}
