// Streams of real devices over libaravis. Run in a private network namespace.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <thread>

#include "AravisDeviceTest.h"
#include "EmulatedCamera.h"
#include "LxBufferReceive/LxStream.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

using Clock = std::chrono::steady_clock;
using Frame = std::shared_ptr<const LxBuffer>;

constexpr uint32_t patience = 20000;

LxStreamStatistics GetStatistics(const LxStream &aStream)
{
    LxStreamStatistics statistics;
    aStream.GetStatistics(statistics);
    return statistics;
}

/// Takes frames until one fulfils the condition.
template <class Condition>
Frame TakeUntil(LxStream &aStream, const Condition &aCondition)
{
    const auto start = Clock::now();
    while (Since(start) < Milliseconds(patience)) {
        Frame frame;
        if (aStream.RetrieveBuffer(frame, 100).IsOK() && aCondition(*frame)) {
            return frame;
        }
    }
    return nullptr;
}

Frame TakeOne(LxStream &aStream)
{
    return TakeUntil(aStream, [](const LxBuffer &) { return true; });
}

/// A camera in another process.
class AravisStream : public testing::TestWithParam<CameraKind>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mCamera.Start());
        const LxResult result = Connect(mDevice);
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        LxGenParameterArray *parameters = mDevice->GetParameters();
        ASSERT_TRUE(parameters->SetIntegerValue("Width", 512).IsOK());
        ASSERT_TRUE(parameters->SetIntegerValue("Height", 256).IsOK());
        ASSERT_TRUE(mStream.Open(mDevice.get()).IsOK());
    }
    void TearDown() override { mStream.Close(); }

    CameraProcess mCamera{GetParam().mCommand()};
    std::unique_ptr<LxDeviceGEV> mDevice;
    LxStream mStream;
};

INSTANTIATE_TEST_SUITE_P(With, AravisStream, testing::Values(emulatorKind, fakeCameraKind), GetKindName);

/// A camera in this process, with faults on demand.
class AravisStreamFaults : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mCamera.Start().IsOK());
        ASSERT_TRUE(mCamera.SetGeometry(width, height).IsOK());
        const LxResult result = Connect(mDevice);
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    }
    void TearDown() override { mStream.Close(); }

    LxResult StartStream(const LxStreamConfiguration &aConfiguration = LxStreamConfiguration())
    {
        LxResult result = mStream.Open(mDevice.get(), aConfiguration);
        return result.IsOK() ? mStream.Start() : result;
    }

    // small, so that frames are quickly drawn under sanitizers too
    static constexpr uint32_t width = 128;
    static constexpr uint32_t height = 64;
    static constexpr uint32_t smallPacket = 1000;  // makes eleven packets of a frame
    LxEmulator::EmulatedCamera mCamera{LxEmulator::EmulatedCameraOptions()};
    std::unique_ptr<LxDeviceGEV> mDevice;
    LxStream mStream;
};

}  // namespace

TEST_P(AravisStream, DeliversCompleteFramesInOrder)
{
    ASSERT_TRUE(mStream.Start().IsOK());
    EXPECT_TRUE(mStream.IsStarted());
    uint64_t last = 0;
    for (int i = 0; i < 5; ++i) {
        Frame frame;
        ASSERT_TRUE(mStream.RetrieveBuffer(frame, patience).IsOK());
        EXPECT_EQ(frame->GetStatus(), LxBufferStatus::Complete);
        EXPECT_EQ(frame->GetPayloadType(), LxPayloadType::Image);
        EXPECT_GT(frame->GetBlockID(), last);
        last = frame->GetBlockID();
        EXPECT_NE(frame->GetReceptionTime(), 0U);
        const LxImage *image = frame->GetImage();
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->GetWidth(), 512U);
        EXPECT_EQ(image->GetHeight(), 256U);
        EXPECT_EQ(image->GetPixelType(), LxPixelType::Mono8);
        EXPECT_GE(image->GetDataSize(), 512U * 256U);
    }
    EXPECT_GE(GetStatistics(mStream).mDelivered, 5U);
}

TEST_P(AravisStream, StopsAndStartsAgain)
{
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(mStream.Start().IsOK()) << i;
        EXPECT_NE(TakeOne(mStream), nullptr) << i;
        EXPECT_EQ(mStream.Start(), LxResultCode::AlreadyOpen);
        EXPECT_TRUE(mStream.Stop().IsOK());
        EXPECT_TRUE(mStream.Stop().IsOK());
        Frame frame;
        EXPECT_EQ(mStream.RetrieveBuffer(frame, 10), LxResultCode::InvalidState);
    }
}

TEST_P(AravisStream, KeepsFramesReadableAfterEverythingElseIsGone)
{
    ASSERT_TRUE(mStream.Start().IsOK());
    const Frame frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    mStream.Close();
    mDevice.reset();
    uint64_t sum = 0;
    const auto *data = static_cast<const uint8_t *>(frame->GetImage()->GetDataPointer());
    for (uint64_t i = 0; i < frame->GetImage()->GetDataSize(); ++i) {
        sum += data[i];
    }
    EXPECT_NE(sum, 0U);
}

TEST_P(AravisStream, GoesOnByItselfWhenACameraThatWasKilledIsBack)
{
    ASSERT_TRUE(mStream.Start().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    mCamera.Kill();
    Frame frame;
    ASSERT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(frame, 10) == LxResultCode::NotConnected; }));
    EXPECT_TRUE(mStream.IsStarted());
    ASSERT_TRUE(mCamera.Start());
    const auto returned = Clock::now();
    frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    std::printf("[ MEASURED ] first frame after a restarted camera answers: %.1f ms\n", Since(returned).count());
    EXPECT_EQ(frame->GetStatus(), LxBufferStatus::Complete);
}

TEST_P(AravisStream, GoesOnByItselfWhenAFrozenCameraIsBack)
{
    ASSERT_TRUE(mStream.Start().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    mCamera.Freeze();
    Frame frame;
    ASSERT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(frame, 10) == LxResultCode::NotConnected; }));
    mCamera.Thaw();
    EXPECT_NE(TakeUntil(mStream, [](const LxBuffer &aFrame) { return aFrame.GetStatus() == LxBufferStatus::Complete; }),
              nullptr);
}

TEST_P(AravisStream, IsStoppedAtOnceWhileTheCameraIsGoneAndStartedWhenItIsBack)
{
    ASSERT_TRUE(mStream.Start().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    mCamera.Kill();
    ASSERT_TRUE(WaitFor([&] { return !mDevice->IsConnected(); }));
    const RunningTime time;
    EXPECT_TRUE(mStream.Stop().IsOK());
    EXPECT_LT(time.Get(), libraryTimeout);
    EXPECT_EQ(mStream.Start(), LxResultCode::NotConnected);
    ASSERT_TRUE(mCamera.Start());
    ASSERT_TRUE(WaitFor([&] { return mDevice->IsConnected(); }));
    ASSERT_TRUE(WaitFor([&] { return mStream.Start().IsOK(); }));
    EXPECT_NE(TakeOne(mStream), nullptr);
}

TEST_F(AravisStreamFaults, EndsAWaitWhenItIsStopped)
{
    ASSERT_TRUE(StartStream().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    mCamera.SetStreamSilent(true);
    std::atomic<bool> waits{false};
    LxResult result;
    std::thread waiter([&] {
        Frame frame;
        do {
            waits = true;
            result = mStream.RetrieveBuffer(frame, patience);
        } while (result.IsOK());
    });
    ASSERT_TRUE(WaitFor([&] { return waits.load(); }));
    EXPECT_TRUE(mStream.Stop().IsOK());
    waiter.join();
    EXPECT_TRUE(result == LxResultCode::Aborted || result == LxResultCode::InvalidState)
        << result.GetCodeString().GetAscii();
}

TEST_F(AravisStreamFaults, DeliversWhatTheCameraDrew)
{
    ASSERT_TRUE(StartStream().IsOK());
    const Frame frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    std::vector<uint8_t> drawn(width * height);
    mCamera.GetCamera().DrawFrame(frame->GetBlockID(), drawn.data(), drawn.size());
    const LxImage *image = frame->GetImage();
    ASSERT_GE(image->GetDataSize(), drawn.size());
    const auto *data = static_cast<const uint8_t *>(image->GetDataPointer());
    EXPECT_NE(*std::max_element(data, data + drawn.size()), 0);
    std::vector<uint8_t> before(drawn.size());
    mCamera.GetCamera().DrawFrame(frame->GetBlockID() - 1, before.data(), before.size());
    EXPECT_TRUE(std::memcmp(data, drawn.data(), drawn.size()) == 0 ||
                std::memcmp(data, before.data(), before.size()) == 0);
}

TEST_F(AravisStreamFaults, HandsOnGenDCContainers)
{
    mCamera.GetCamera().SetPayloadType(LxPayloadType::GenDC);
    ASSERT_TRUE(StartStream().IsOK());
    const Frame frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->GetPayloadType(), LxPayloadType::GenDC);
    EXPECT_EQ(frame->GetStatus(), LxBufferStatus::Complete);
    EXPECT_EQ(frame->GetImage(), nullptr);
    ASSERT_NE(frame->GetGenDC(), nullptr);
    const ILxGenDCImage *image = frame->GetGenDC()->GetComponent(0)->GetPart(0)->GetImage();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->GetWidth(), width);
    EXPECT_EQ(image->GetHeight(), height);
    ASSERT_EQ(image->GetDataSize(), width * height);
    const auto *data = static_cast<const uint8_t *>(image->GetDataPointer());
    EXPECT_NE(*std::max_element(data, data + width * height), 0);
}

TEST_F(AravisStreamFaults, LocksTheTransportLayerParametersWhileItRuns)
{
    LxGenInteger *feature = mDevice->GetParameters()->GetInteger("Width");
    ASSERT_NE(feature, nullptr);
    EXPECT_TRUE(feature->IsWritable());
    ASSERT_TRUE(StartStream().IsOK());
    EXPECT_FALSE(feature->IsWritable());
    EXPECT_EQ(feature->SetValue(width / 2), LxResultCode::NotWritable);
    mStream.Stop();
    EXPECT_TRUE(feature->IsWritable());
    EXPECT_TRUE(feature->SetValue(width / 2).IsOK());
    ASSERT_TRUE(mStream.Start().IsOK());
    const Frame frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->GetImage()->GetWidth(), width / 2) << "buffers follow the size of the payload";
}

TEST_F(AravisStreamFaults, EndsInTheCameraTooWhenItIsStoppedWhileThatIsAway)
{
    LxGenInteger *feature = mDevice->GetParameters()->GetInteger("Width");
    ASSERT_NE(feature, nullptr);
    ASSERT_TRUE(StartStream().IsOK());
    mCamera.SetFrozen(true);
    ASSERT_TRUE(WaitFor([&] { return !mDevice->IsConnected(); }));
    mStream.Stop();
    mCamera.SetFrozen(false);
    EXPECT_TRUE(WaitFor([&] { return feature->SetValue(width / 2).IsOK(); }));
}

TEST_F(AravisStreamFaults, IsTheOnlyOneOfItsDevice)
{
    ASSERT_TRUE(StartStream().IsOK());
    LxStream second;
    ASSERT_TRUE(second.Open(mDevice.get()).IsOK());
    EXPECT_EQ(second.Start(), LxResultCode::AlreadyOpen);
    EXPECT_NE(TakeOne(mStream), nullptr) << "the first goes on";
    mStream.Stop();
    ASSERT_TRUE(second.Start().IsOK());
    EXPECT_NE(TakeOne(second), nullptr);
}

TEST_F(AravisStreamFaults, CannotBeOpenedOnADeviceThatIsConnectedReadOnly)
{
    std::unique_ptr<LxDeviceGEV> reader;
    ASSERT_TRUE(Connect(reader, LxDeviceAccess::ReadOnly).IsOK());
    EXPECT_EQ(mStream.Open(reader.get()), LxResultCode::AccessDenied);
}

TEST_F(AravisStreamFaults, AsksForLostPacketsAgain)
{
    LxEmulator::PacketFaults faults;
    faults.mDropEvery = 23;  // one of every other frame
    mCamera.SetPacketFaults(faults);
    LxStreamConfiguration configuration;
    configuration.mPacketSize = smallPacket;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    EXPECT_NE(TakeUntil(mStream, [](const LxBuffer &aFrame) { return aFrame.GetStatus() == LxBufferStatus::Complete; }),
              nullptr);
    EXPECT_TRUE(WaitFor([&] { return GetStatistics(mStream).mResentPackets > 0; }));
}

TEST_F(AravisStreamFaults, CountsFramesWithLostPacketsAndKeepsThemBack)
{
    LxEmulator::PacketFaults faults;
    faults.mDropEvery = 7;
    faults.mDropResends = true;
    mCamera.SetPacketFaults(faults);
    LxStreamConfiguration configuration;
    configuration.mPacketSize = smallPacket;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    ASSERT_TRUE(WaitFor([&] { return GetStatistics(mStream).mIncomplete >= 3; }));
    EXPECT_EQ(GetStatistics(mStream).mDelivered, 0U);
    EXPECT_TRUE(WaitFor([&] { return GetStatistics(mStream).mMissingPackets > 0; }));
    Frame frame;
    EXPECT_EQ(mStream.RetrieveBuffer(frame, 0), LxResultCode::Timeout);
}

TEST_F(AravisStreamFaults, HandsOutFramesWithLostPacketsWhenAsked)
{
    LxEmulator::PacketFaults faults;
    faults.mDropEvery = 7;
    faults.mDropResends = true;
    mCamera.SetPacketFaults(faults);
    LxStreamConfiguration configuration;
    configuration.mPacketSize = smallPacket;
    configuration.mDeliverIncomplete = true;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    const Frame frame = TakeOne(mStream);
    ASSERT_NE(frame, nullptr);
    EXPECT_NE(frame->GetStatus(), LxBufferStatus::Complete);
    EXPECT_EQ(frame->GetImage()->GetWidth(), width);
}

TEST_F(AravisStreamFaults, BelievesNoLeaderThatPromisesMoreThanTheBufferHolds)
{
    LxEmulator::PacketFaults faults;
    faults.mLeaderSizeX = 60000;
    faults.mLeaderSizeY = 60000;
    mCamera.SetPacketFaults(faults);
    LxStreamConfiguration configuration;
    configuration.mDeliverIncomplete = true;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    // one that is held up on its way is given up before its size is looked at
    const Frame frame = TakeUntil(mStream, [](const LxBuffer &aFrame) {
        EXPECT_NE(aFrame.GetStatus(), LxBufferStatus::Complete);
        return aFrame.GetStatus() == LxBufferStatus::SizeMismatch;
    });
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->GetImage()->GetDataPointer(), nullptr);
    mCamera.ClearFaults();
    EXPECT_NE(TakeUntil(mStream, [](const LxBuffer &aFrame) { return aFrame.GetStatus() == LxBufferStatus::Complete; }),
              nullptr)
        << "the stream goes on";
}

TEST_F(AravisStreamFaults, FollowsFramesThatGrowWhileItRuns)
{
    ASSERT_TRUE(StartStream().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    ASSERT_TRUE(mCamera.SetGeometry(width * 2, height * 2).IsOK());
    EXPECT_NE(TakeUntil(mStream,
                        [](const LxBuffer &aFrame) {
                            return aFrame.GetStatus() == LxBufferStatus::Complete &&
                                   aFrame.GetImage()->GetWidth() == width * 2 &&
                                   aFrame.GetImage()->GetHeight() == height * 2;
                        }),
              nullptr);
    EXPECT_GT(GetStatistics(mStream).mIncomplete, 0U) << "those that did not fit are counted";
}

TEST_F(AravisStreamFaults, FollowsFramesThatShrinkWhileItRuns)
{
    ASSERT_TRUE(StartStream().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    ASSERT_TRUE(mCamera.SetGeometry(width / 2, height / 2).IsOK());
    EXPECT_NE(TakeUntil(mStream,
                        [](const LxBuffer &aFrame) {
                            return aFrame.GetStatus() == LxBufferStatus::Complete &&
                                   aFrame.GetImage()->GetWidth() == width / 2;
                        }),
              nullptr);
}

TEST_F(AravisStreamFaults, DropsFramesWhileTheApplicationHoldsAllAndGoesOnAfterwards)
{
    LxStreamConfiguration configuration;
    configuration.mBufferCount = 3;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    std::vector<Frame> held;
    for (int i = 0; i < 3; ++i) {
        held.push_back(TakeOne(mStream));
        ASSERT_NE(held.back(), nullptr);
    }
    ASSERT_TRUE(WaitFor([&] { return GetStatistics(mStream).mDropped > 0; }));
    Frame frame;
    EXPECT_EQ(mStream.RetrieveBuffer(frame, 0), LxResultCode::Timeout);
    held.clear();
    EXPECT_NE(TakeOne(mStream), nullptr);
}

TEST_F(AravisStreamFaults, UsesThePacketSizeOfItsConfigurationOrTheLargestThatPasses)
{
    LxStreamConfiguration configuration;
    configuration.mPacketSize = 1400;
    ASSERT_TRUE(StartStream(configuration).IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    uint32_t size = 0;
    ASSERT_TRUE(mDevice->ReadRegister(0x0D04, size).IsOK());
    EXPECT_EQ(size & 0xFFFF, 1400U);
    mStream.Close();
    ASSERT_TRUE(StartStream().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    ASSERT_TRUE(mDevice->ReadRegister(0x0D04, size).IsOK());
    EXPECT_GT(size & 0xFFFF, 1400U);
    std::printf("[ MEASURED ] negotiated packet size: %u bytes\n", size & 0xFFFF);
}

TEST_F(AravisStreamFaults, RefusesToStartOnADeviceThatWasDisconnected)
{
    ASSERT_TRUE(mStream.Open(mDevice.get()).IsOK());
    mDevice->Disconnect();
    EXPECT_EQ(mStream.Start(), LxResultCode::NotConnected);
}

TEST_F(AravisStreamFaults, SurvivesDisconnectingTheDeviceWhileItRuns)
{
    ASSERT_TRUE(StartStream().IsOK());
    ASSERT_NE(TakeOne(mStream), nullptr);
    mDevice->Disconnect();
    Frame frame;
    EXPECT_TRUE(WaitFor([&] { return mStream.RetrieveBuffer(frame, 10) == LxResultCode::NotConnected; }));
    EXPECT_TRUE(mStream.Stop().IsOK());
}
