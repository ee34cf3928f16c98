#include "LxBufferReceive/FrameQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "WaitFor.h"

using LxDetail::FrameQueue;

namespace
{

std::shared_ptr<LxBuffer> MakeFrame(uint64_t aBlockID, LxBufferStatus aStatus = LxBufferStatus::Complete)
{
    auto buffer = std::make_shared<LxBuffer>(LxPayloadType::Image);
    EXPECT_TRUE(buffer->GetImage()->Alloc(10, 10, LxPixelType::Mono8).IsOK());
    buffer->SetBlockID(aBlockID);
    buffer->SetStatus(aStatus);
    return buffer;
}

class FrameQueueTest : public testing::Test
{
protected:
    FrameQueueTest()
    {
        mConfiguration.mQueueLimit = 3;
        Make();
    }
    void Make()
    {
        mQueue = std::make_unique<FrameQueue>(mConfiguration);
        mQueue->Start();
    }
    LxStreamStatistics GetStatistics() const
    {
        LxStreamStatistics statistics;
        mQueue->GetStatistics(statistics);
        return statistics;
    }
    uint64_t Take()
    {
        std::shared_ptr<const LxBuffer> buffer;
        const LxResult result = mQueue->Retrieve(buffer, 0);
        return result.IsOK() ? buffer->GetBlockID() : 0;
    }

    LxStreamConfiguration mConfiguration;
    std::unique_ptr<FrameQueue> mQueue;
};

}  // namespace

TEST_F(FrameQueueTest, FramesComeInOrder)
{
    mQueue->Push(MakeFrame(1));
    mQueue->Push(MakeFrame(2));
    EXPECT_EQ(Take(), 1u);
    EXPECT_EQ(Take(), 2u);
    EXPECT_EQ(Take(), 0u);
    EXPECT_EQ(GetStatistics().mDelivered, 2u);
    EXPECT_EQ(GetStatistics().mBytes, 200u);
    EXPECT_EQ(GetStatistics().mMissed, 0u);
}

TEST_F(FrameQueueTest, FullQueueDropsTheOldest)
{
    for (uint64_t id = 1; id <= 5; ++id) {
        mQueue->Push(MakeFrame(id));
    }
    EXPECT_EQ(Take(), 3u);
    EXPECT_EQ(Take(), 4u);
    EXPECT_EQ(Take(), 5u);
    const LxStreamStatistics statistics = GetStatistics();
    EXPECT_EQ(statistics.mDropped, 2u);
    EXPECT_EQ(statistics.mDelivered, 3u);
    EXPECT_EQ(statistics.mBytes, 300u);
}

TEST_F(FrameQueueTest, IncompleteFramesAreCountedAndHeldBack)
{
    mQueue->Push(MakeFrame(1, LxBufferStatus::MissingPackets));
    EXPECT_EQ(Take(), 0u);
    EXPECT_EQ(GetStatistics().mIncomplete, 1u);
    EXPECT_EQ(GetStatistics().mDelivered, 0u);
}

TEST_F(FrameQueueTest, IncompleteFramesAreDeliveredOnRequest)
{
    mConfiguration.mDeliverIncomplete = true;
    Make();
    mQueue->Push(MakeFrame(1, LxBufferStatus::MissingPackets));
    std::shared_ptr<const LxBuffer> buffer;
    ASSERT_TRUE(mQueue->Retrieve(buffer, 0).IsOK());
    EXPECT_EQ(buffer->GetStatus(), LxBufferStatus::MissingPackets);
    EXPECT_EQ(GetStatistics().mIncomplete, 1u);
    EXPECT_EQ(GetStatistics().mDelivered, 0u);
}

TEST_F(FrameQueueTest, GapsInTheBlockIDsAreMissedFrames)
{
    mQueue->Push(MakeFrame(1));
    mQueue->Push(MakeFrame(5));
    EXPECT_EQ(GetStatistics().mMissed, 3u);
    mQueue->Push(MakeFrame(65535));
    const uint64_t missed = GetStatistics().mMissed;
    mQueue->Push(MakeFrame(1));  // 16-bit block IDs start again at 1
    mQueue->Push(MakeFrame(0));  // unknown
    mQueue->Push(MakeFrame(2));
    EXPECT_EQ(GetStatistics().mMissed, missed);
}

TEST_F(FrameQueueTest, GapsWhereShortBlockIDsBeginAgainAreMissedFrames)
{
    mQueue->Push(MakeFrame(65534));
    mQueue->Push(MakeFrame(2));
    EXPECT_EQ(GetStatistics().mMissed, 2u) << "65535 and 1; there is no 0";
    mQueue->Push(MakeFrame(1));
    EXPECT_EQ(GetStatistics().mMissed, 2u) << "a late frame, or a device that counts anew";
    mQueue->SetLost(false);
    mQueue->Push(MakeFrame(64536));
    mQueue->Push(MakeFrame(1));
    EXPECT_EQ(GetStatistics().mMissed, 1001u);
    mQueue->SetLost(false);
    mQueue->Push(MakeFrame(40000));
    mQueue->Push(MakeFrame(1));
    EXPECT_EQ(GetStatistics().mMissed, 1001u) << "too far from the end to be the next round";
}

TEST_F(FrameQueueTest, LongBlockIDsDoNotBeginAgain)
{
    mQueue->Push(MakeFrame(65536));
    mQueue->Push(MakeFrame(2));
    EXPECT_EQ(GetStatistics().mMissed, 0u);
    mQueue->Push(MakeFrame(UINT64_MAX));
    const uint64_t missed = GetStatistics().mMissed;
    mQueue->Push(MakeFrame(1));
    EXPECT_EQ(GetStatistics().mMissed, missed);
}

TEST_F(FrameQueueTest, FramesThatFoundNoBufferAreDroppedNotMissed)
{
    mQueue->Push(MakeFrame(1));
    mQueue->CountDropped(2);
    mQueue->Push(MakeFrame(5));
    EXPECT_EQ(GetStatistics().mDropped, 2u);
    EXPECT_EQ(GetStatistics().mMissed, 1u);
    mQueue->CountIncomplete();
    mQueue->Push(MakeFrame(7));
    EXPECT_EQ(GetStatistics().mIncomplete, 1u);
    EXPECT_EQ(GetStatistics().mMissed, 1u);
}

TEST_F(FrameQueueTest, StartForgetsFramesAndNumbers)
{
    mQueue->Push(MakeFrame(7));
    mQueue->SetPackets(3, 4);
    EXPECT_EQ(GetStatistics().mResentPackets, 3u);
    EXPECT_EQ(GetStatistics().mMissingPackets, 4u);
    mQueue->Start();
    EXPECT_EQ(Take(), 0u);
    EXPECT_EQ(GetStatistics().mDelivered, 0u);
    EXPECT_EQ(GetStatistics().mMissingPackets, 0u);
    EXPECT_EQ(GetStatistics().mFrameRate, 0.0);
    mQueue->Push(MakeFrame(100));
    EXPECT_EQ(GetStatistics().mMissed, 0u);
}

TEST_F(FrameQueueTest, StoppedQueueTakesNothing)
{
    mQueue->Push(MakeFrame(1));
    mQueue->Stop();
    auto frame = MakeFrame(2);
    std::weak_ptr<LxBuffer> watched = frame;
    mQueue->Push(std::move(frame));
    EXPECT_TRUE(watched.expired());
    std::shared_ptr<const LxBuffer> buffer;
    EXPECT_EQ(mQueue->Retrieve(buffer, 0), LxResultCode::InvalidState);
    EXPECT_EQ(GetStatistics().mDelivered, 1u) << "the numbers stay until the next start";
}

TEST_F(FrameQueueTest, RetrieveTimesOut)
{
    std::shared_ptr<const LxBuffer> buffer;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(mQueue->Retrieve(buffer, 20), LxResultCode::Timeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
    EXPECT_EQ(buffer, nullptr);
}

TEST_F(FrameQueueTest, StopEndsAWaitingRetrieve)
{
    auto waiting = std::async(std::launch::async, [&] {
        std::shared_ptr<const LxBuffer> buffer;
        return mQueue->Retrieve(buffer, 60000);
    });
    // Stopped before or while it waits; both end it at once.
    mQueue->Stop();
    const LxResult result = waiting.get();
    EXPECT_TRUE(result == LxResultCode::Aborted || result == LxResultCode::InvalidState) << result.GetCode();
}

TEST_F(FrameQueueTest, LostDeviceFailsRetrieveAfterTheLastFrame)
{
    mQueue->Push(MakeFrame(1));
    mQueue->SetLost(true);
    EXPECT_EQ(Take(), 1u);
    std::shared_ptr<const LxBuffer> buffer;
    EXPECT_EQ(mQueue->Retrieve(buffer, 60000), LxResultCode::NotConnected);
    mQueue->SetLost(false);
    mQueue->Push(MakeFrame(50));
    EXPECT_EQ(Take(), 50u);
    EXPECT_EQ(GetStatistics().mMissed, 0u) << "the device may have restarted";
}

TEST_F(FrameQueueTest, RatesCoverTheLastSecond)
{
    LxStreamStatistics statistics;
    ASSERT_TRUE(WaitFor([&] {  // until it is looked at in time
        Make();
        const auto start = std::chrono::steady_clock::now();
        for (uint64_t id = 1; id <= 10; ++id) {
            mQueue->Push(MakeFrame(id));
        }
        statistics = GetStatistics();
        return std::chrono::steady_clock::now() - start < std::chrono::milliseconds(900);
    }));
    EXPECT_NEAR(statistics.mFrameRate, 10.0, 1e-9);
    EXPECT_NEAR(statistics.mBandwidth, 1000.0, 1e-9);
    EXPECT_TRUE(WaitFor([&] { return GetStatistics().mFrameRate == 0.0; }));
}

TEST_F(FrameQueueTest, ProducerAndConsumersShareIt)
{
    std::atomic<bool> stop{false};
    std::atomic<uint64_t> taken{0};
    std::thread producer([&] {
        for (uint64_t id = 1; id <= 3000; ++id) {
            mQueue->Push(MakeFrame(id));
        }
        stop = true;
    });
    std::vector<std::thread> consumers;
    for (int i = 0; i < 2; ++i) {
        consumers.emplace_back([&] {
            std::shared_ptr<const LxBuffer> buffer;
            while (!stop) {
                if (mQueue->Retrieve(buffer, 1).IsOK()) {
                    ++taken;
                }
                GetStatistics();
            }
            while (mQueue->Retrieve(buffer, 0).IsOK()) {
                ++taken;
            }
        });
    }
    producer.join();
    for (std::thread &consumer : consumers) {
        consumer.join();
    }
    EXPECT_EQ(taken, GetStatistics().mDelivered);
    EXPECT_EQ(GetStatistics().mDelivered + GetStatistics().mDropped, 3000u);
}
