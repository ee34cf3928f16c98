// Frames of simulated devices, from the search to the picture.

#include <gmock/gmock.h>

#include <cstring>
#include <future>
#include <thread>

#include "LxBufferReceive/LxStream.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "SimulationTest.h"
#include "WaitFor.h"

namespace
{

class SimulatedStreamTest : public SimulationTest
{
protected:
    SimulatedStreamTest()
    {
        mDevice = ConnectCamera();
        Configure(*mDevice);
    }

    static void Configure(LxDevice &aDevice)
    {
        LxGenParameterArray &parameters = *aDevice.GetParameters();
        EXPECT_TRUE(parameters.SetIntegerValue("Width", 128).IsOK());
        EXPECT_TRUE(parameters.SetIntegerValue("Height", 64).IsOK());
        EXPECT_TRUE(parameters.SetFloatValue("ExposureTime", 1000.0).IsOK());
        EXPECT_TRUE(parameters.SetFloatValue("AcquisitionFrameRate", 400.0).IsOK());
    }
    void Start(const LxStreamConfiguration &aConfiguration = LxStreamConfiguration())
    {
        ASSERT_TRUE(mStream.Open(mDevice.get(), aConfiguration).IsOK());
        ASSERT_TRUE(mStream.Start().IsOK());
    }
    std::shared_ptr<const LxBuffer> Take()
    {
        std::shared_ptr<const LxBuffer> buffer;
        const LxResult result = mStream.RetrieveBuffer(buffer, 20000);
        EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        return buffer;
    }
    LxStreamStatistics GetStatistics() const
    {
        LxStreamStatistics statistics;
        mStream.GetStatistics(statistics);
        return statistics;
    }

    std::unique_ptr<LxDevice> mDevice;
    LxStream mStream;
};

}  // namespace

TEST_F(SimulatedStreamTest, FramesHaveTheGeometryOfTheFeatures)
{
    ASSERT_TRUE(mDevice->GetParameters()->SetEnumValue("PixelFormat", "RGB8").IsOK());
    Start();
    const auto first = Take();
    const auto second = Take();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->GetImage()->GetWidth(), 128u);
    EXPECT_EQ(first->GetImage()->GetHeight(), 64u);
    EXPECT_EQ(first->GetImage()->GetPixelType(), LxPixelType::RGB8);
    EXPECT_EQ(first->GetImage()->GetDataSize(), 128u * 64 * 3);
    EXPECT_EQ(first->GetStatus(), LxBufferStatus::Complete);
    EXPECT_GT(second->GetBlockID(), first->GetBlockID());
    EXPECT_GT(second->GetTimestamp(), first->GetTimestamp());
    EXPECT_GT(second->GetReceptionTime(), first->GetReceptionTime());
    EXPECT_NE(std::memcmp(first->GetDataPointer(), second->GetDataPointer(), 128 * 64 * 3), 0) << "the scene moves";
    EXPECT_GE(GetStatistics().mDelivered, 2u);
}

TEST_F(SimulatedStreamTest, USBCameraStreamsToo)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeUSBCamera()).IsOK());
    const auto usb = Connect(Find("0000C0FFEE01", "usb0"));
    ASSERT_NE(usb, nullptr);
    Configure(*usb);
    ASSERT_TRUE(mStream.Open(usb.get()).IsOK());
    ASSERT_TRUE(mStream.Start().IsOK());
    EXPECT_NE(Take(), nullptr);
    mStream.Close();
}

TEST_F(SimulatedStreamTest, StreamingLocksTheSize)
{
    LxGenParameterArray &parameters = *mDevice->GetParameters();
    Start();
    EXPECT_FALSE(parameters.Get("Width")->IsWritable());
    EXPECT_FALSE(parameters.SetIntegerValue("Width", 256).IsOK());
    EXPECT_TRUE(parameters.Get("Gain")->IsWritable());
    ASSERT_TRUE(mStream.Stop().IsOK());
    EXPECT_TRUE(parameters.SetIntegerValue("Width", 256).IsOK());
    ASSERT_TRUE(mStream.Start().IsOK());
    EXPECT_EQ(Take()->GetImage()->GetWidth(), 256u);
}

TEST_F(SimulatedStreamTest, DeviceHasOneStream)
{
    Start();
    LxStream second;
    EXPECT_EQ(second.Open(mDevice.get()), LxResultCode::Busy);
    mStream.Close();
    EXPECT_TRUE(second.Open(mDevice.get()).IsOK());
}

TEST_F(SimulatedStreamTest, ReaderCannotStream)
{
    const auto reader = Connect(Find(Camera), LxDeviceAccess::ReadOnly);
    EXPECT_EQ(mStream.Open(reader.get()), LxResultCode::AccessDenied);
}

TEST_F(SimulatedStreamTest, SlowApplicationDropsFrames)
{
    LxStreamConfiguration configuration;
    configuration.mQueueLimit = 2;
    Start(configuration);
    EXPECT_TRUE(WaitFor([&] { return GetStatistics().mDropped > 3; }));
    const auto first = Take();
    const auto second = Take();
    EXPECT_GT(first->GetBlockID(), 3u);
    EXPECT_GT(second->GetBlockID(), first->GetBlockID());
    EXPECT_EQ(GetStatistics().mMissed, 0u);
}

TEST_F(SimulatedStreamTest, HeldBuffersStarveThePoolButStayReadable)
{
    LxStreamConfiguration configuration;
    configuration.mBufferCount = 2;
    configuration.mQueueLimit = 1;
    Start(configuration);
    const auto first = Take();
    const auto second = Take();
    EXPECT_TRUE(WaitFor([&] { return GetStatistics().mDropped > 0; }));
    std::shared_ptr<const LxBuffer> none;
    EXPECT_EQ(mStream.RetrieveBuffer(none, 0), LxResultCode::Timeout);
    mStream.Close();
    EXPECT_EQ(first->GetImage()->GetWidth(), 128u);
    EXPECT_NE(static_cast<const uint8_t *>(second->GetDataPointer())[128 * 64 - 1], 0);
}

TEST_F(SimulatedStreamTest, SkippedFramesAreMissedAndDamagedOnesIncomplete)
{
    Start();
    Take();
    ASSERT_TRUE(LxSimulation::SkipFrames(Camera, 3).IsOK());
    EXPECT_TRUE(WaitFor([&] { return GetStatistics().mMissed == 3; }));
    ASSERT_TRUE(LxSimulation::DamageFrames(Camera, 2).IsOK());
    EXPECT_TRUE(WaitFor([&] { return GetStatistics().mIncomplete == 2; }));
    EXPECT_GT(GetStatistics().mMissingPackets, 0u);
    EXPECT_EQ(GetStatistics().mMissed, 3u);
}

TEST_F(SimulatedStreamTest, SendsGenDCContainersOnRequest)
{
    EXPECT_EQ(LxSimulation::SetPayloadType("nowhere", LxPayloadType::GenDC), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::SetPayloadType(Camera, LxPayloadType::Raw), LxResultCode::InvalidArgument);
    int64_t imageSize = 0;
    ASSERT_TRUE(mDevice->GetParameters()->GetIntegerValue("PayloadSize", imageSize).IsOK());
    ASSERT_TRUE(LxSimulation::SetPayloadType(Camera, LxPayloadType::GenDC).IsOK());
    int64_t size = 0;
    ASSERT_TRUE(mDevice->GetParameters()->GetIntegerValue("PayloadSize", size).IsOK());
    EXPECT_GT(size, imageSize);
    ASSERT_TRUE(mDevice->GetParameters()->SetEnumValue("TestPattern", "GreyHorizontalRamp").IsOK());
    Start();
    for (int i = 0; i < 12; ++i) {  // more than there are buffers
        const auto buffer = Take();
        ASSERT_NE(buffer, nullptr);
        EXPECT_EQ(buffer->GetPayloadType(), LxPayloadType::GenDC);
        EXPECT_EQ(buffer->GetImage(), nullptr);
        ASSERT_NE(buffer->GetGenDC(), nullptr);
        ASSERT_EQ(buffer->GetGenDC()->GetComponentCount(), 1u);
        const ILxGenDCImage *image = buffer->GetGenDC()->GetComponent(0)->GetPart(0)->GetImage();
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->GetWidth(), 128u);
        EXPECT_EQ(image->GetHeight(), 64u);
        EXPECT_EQ(image->GetDataSize(), 128u * 64);
        const auto *first = static_cast<const uint8_t *>(image->GetDataPointer());
        EXPECT_LT(first[0], first[127]) << "a ramp";
        EXPECT_EQ(std::memcmp(first, first + 63 * 128, 128), 0) << "every line is the same";
    }
    EXPECT_GE(GetStatistics().mBytes, 12 * static_cast<uint64_t>(size));
    ASSERT_TRUE(LxSimulation::SetPayloadType(Camera, LxPayloadType::Image).IsOK());
    ASSERT_TRUE(WaitFor([&] { return Take()->GetPayloadType() == LxPayloadType::Image; }));
}

TEST_F(SimulatedStreamTest, ADamagedContainerComesWithoutItsContainer)
{
    ASSERT_TRUE(LxSimulation::SetPayloadType(Camera, LxPayloadType::GenDC).IsOK());
    LxStreamConfiguration configuration;
    configuration.mDeliverIncomplete = true;
    Start(configuration);
    ASSERT_TRUE(LxSimulation::DamageFrames(Camera, 1).IsOK());
    std::shared_ptr<const LxBuffer> buffer;
    ASSERT_TRUE(WaitFor([&] { return (buffer = Take())->GetStatus() != LxBufferStatus::Complete; }));
    EXPECT_EQ(buffer->GetPayloadType(), LxPayloadType::GenDC);
    EXPECT_EQ(buffer->GetGenDC(), nullptr);
}

TEST_F(SimulatedStreamTest, StopEndsAWaitingRetrieve)
{
    ASSERT_TRUE(mDevice->GetParameters()->SetEnumValue("TriggerMode", "On").IsOK());
    Start();
    std::atomic<bool> waits{false};
    auto waiting = std::async(std::launch::async, [&] {
        std::shared_ptr<const LxBuffer> buffer;
        waits = true;
        return mStream.RetrieveBuffer(buffer, 60000);
    });
    EXPECT_TRUE(WaitFor([&] { return waits.load(); }));
    mStream.Stop();
    const LxResult result = waiting.get();
    EXPECT_TRUE(result == LxResultCode::Aborted || result == LxResultCode::InvalidState) << result.GetCode();
}

TEST_F(SimulatedStreamTest, SoftwareTriggerTakesOneFrame)
{
    LxGenParameterArray &parameters = *mDevice->GetParameters();
    ASSERT_TRUE(parameters.SetEnumValue("TriggerMode", "On").IsOK());
    Start();
    ASSERT_TRUE(parameters.ExecuteCommand("TriggerSoftware").IsOK());
    EXPECT_EQ(Take()->GetBlockID(), 1u);
    std::shared_ptr<const LxBuffer> none;
    EXPECT_EQ(mStream.RetrieveBuffer(none, 10), LxResultCode::Timeout);
}

TEST_F(SimulatedStreamTest, StreamGoesOnWhenTheDeviceIsBack)
{
    Start();
    Take();
    LxSimulation::SetDevicePresent(Camera, false);
    std::shared_ptr<const LxBuffer> buffer;
    EXPECT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(buffer, 1000) == LxResultCode::NotConnected; }));
    LxSimulation::SetDevicePresent(Camera, true);
    EXPECT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(buffer, 1000).IsOK(); }));
    EXPECT_EQ(buffer->GetImage()->GetWidth(), 1280u) << "it has restarted with its default settings";
    EXPECT_FALSE(mDevice->GetParameters()->Get("Width")->IsWritable()) << "streaming locks it again";
}

TEST_F(SimulatedStreamTest, ALossThatIsOverBeforeTheStreamLooksIsNotMissed)
{
    LxStreamConfiguration configuration;
    configuration.mBufferCount = 64;
    configuration.mQueueLimit = 32;  // no first frame is dropped while this thread waits for its turn
    Start(configuration);
    for (int i = 0; i < 20; ++i) {
        LxSimulation::SetDevicePresent(Camera, false);
        LxSimulation::SetDevicePresent(Camera, true);
        ASSERT_TRUE(WaitFor([&] {
            std::shared_ptr<const LxBuffer> buffer;
            return mStream.RetrieveBuffer(buffer, 20).IsOK() && buffer->GetBlockID() == 1;
        })) << "the acquisition starts anew, time "
            << i;
    }
}

TEST_F(SimulatedStreamTest, FrozenDeviceSendsNothing)
{
    Start();
    Take();
    LxSimulation::FreezeDevice(Camera, 50);
    std::shared_ptr<const LxBuffer> buffer;
    LxResult result;
    EXPECT_TRUE(WaitFor([&] {
        result = mStream.RetrieveBuffer(buffer, 30);
        return !result.IsOK();
    }));
    // on a slow machine it may be lost already
    EXPECT_TRUE(result == LxResultCode::Timeout || result == LxResultCode::NotConnected);
    LxSimulation::ThawDevice(Camera);
    EXPECT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(buffer, 1000).IsOK(); }));
}

TEST_F(SimulatedStreamTest, StartFailsWithTheErrorOfTheDevice)
{
    ASSERT_TRUE(mStream.Open(mDevice.get()).IsOK());
    LxSimulation::FailAll(Camera, LxResult(LxResultCode::Busy, "No."));
    EXPECT_EQ(mStream.Start(), LxResultCode::Busy);
    LxSimulation::ClearFailures(Camera);
    EXPECT_TRUE(mDevice->GetParameters()->Get("Width")->IsWritable()) << "a failed start must not leave it locked";
    LxSimulation::QueueResult("StreamStart", LxResultCode::NoMemory);
    EXPECT_EQ(mStream.Start(), LxResultCode::NoMemory);
    EXPECT_TRUE(mStream.Start().IsOK());
}

TEST_F(SimulatedStreamTest, SettingsChangeWhileItStreams)
{
    Start();
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(mDevice->GetParameters()->SetFloatValue("Gain", i % 20).IsOK());
        EXPECT_TRUE(mDevice->GetParameters()->SetEnumValue("TestPattern", i % 2 == 0 ? "ColorBar" : "Off").IsOK());
        EXPECT_NE(Take(), nullptr);
    }
}

TEST_F(SimulatedStreamTest, NothingLivesOnAfterwards)
{
    Start();
    EXPECT_EQ(LxSimulation::GetCounters().mReceivers, 1u);
    EXPECT_EQ(LxSimulation::GetCounters().mDevices, 1u);
    mStream.Close();
    mDevice.reset();
    mSystem.reset();
    const LxSimulationCounters counters = LxSimulation::GetCounters();
    EXPECT_EQ(counters.mReceivers, 0u);
    EXPECT_EQ(counters.mDevices, 0u);
    EXPECT_EQ(counters.mDeviceInfos, 0u);
    EXPECT_EQ(counters.mScanners, 0u);
}
