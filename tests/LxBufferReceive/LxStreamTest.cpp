#include "LxBufferReceive/LxStream.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "LxBufferReceive/FrameQueue.h"
#include "LxBufferReceive/StreamSource.h"
#include "LxDevice/LxDevice.h"

using namespace LxDetail;

namespace
{

/// A device that only says whether it may stream.
class PlainDevice : public LxDevice
{
public:
    LxResult Disconnect() override
    {
        mConnected = false;
        return LxResult();
    }
    bool IsConnected() const override { return mConnected; }
    LxString GetUniqueID() const override { return "test"; }
    LxDeviceAccess GetAccess() const override { return mAccess; }
    LxGenParameterArray *GetParameters() override { return nullptr; }
    LxString GetGenICamXML() const override { return ""; }
    LxResult ReadMemory(int64_t, uint8_t *, uint64_t) override { return LxResultCode::NotSupported; }
    LxResult WriteMemory(int64_t, const uint8_t *, uint64_t) override { return LxResultCode::NotSupported; }
    LxResult RegisterEventSink(LxDeviceEventSink *) override { return LxResult(); }
    LxResult UnregisterEventSink(LxDeviceEventSink *) override { return LxResult(); }

    bool mConnected = true;
    LxDeviceAccess mAccess = LxDeviceAccess::Control;
};

class Receiver : public StreamReceiver
{
public:
    Receiver(FrameQueue &aQueue, LxResult &aStart) : mQueue(aQueue), mStart(aStart) {}

    LxResult Start() override
    {
        if (mStart.IsOK()) {
            mQueue.Start();
        }
        return mStart;
    }
    LxResult Stop() override
    {
        mQueue.Stop();
        return LxResult();
    }
    LxResult RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout) override
    {
        return mQueue.Retrieve(aBuffer, aTimeout);
    }
    void GetStatistics(LxStreamStatistics &aStatistics) const override { mQueue.GetStatistics(aStatistics); }

private:
    FrameQueue &mQueue;
    LxResult &mStart;
};

class StreamingDevice : public PlainDevice, public StreamSource
{
public:
    LxResult CreateReceiver(const LxStreamConfiguration &, std::unique_ptr<StreamReceiver> &aReceiver) override
    {
        if (mThrows) {
            throw std::runtime_error("out of ideas");
        }
        aReceiver = std::make_unique<Receiver>(mQueue, mStart);
        return LxResult();
    }

    FrameQueue mQueue{LxStreamConfiguration()};
    LxResult mStart;
    bool mThrows = false;
};

}  // namespace

TEST(LxStreamTest, RefusesWhatCannotStream)
{
    LxStream stream;
    EXPECT_EQ(stream.Open(nullptr), LxResultCode::InvalidArgument);
    PlainDevice plain;
    EXPECT_EQ(stream.Open(&plain), LxResultCode::NotSupported);
    StreamingDevice device;
    device.mAccess = LxDeviceAccess::ReadOnly;
    EXPECT_EQ(stream.Open(&device), LxResultCode::AccessDenied);
    device.mAccess = LxDeviceAccess::Control;
    device.mConnected = false;
    EXPECT_EQ(stream.Open(&device), LxResultCode::NotConnected);
    EXPECT_FALSE(stream.IsOpened());
}

TEST(LxStreamTest, RefusesConfigurationsOutOfRange)
{
    StreamingDevice device;  // outlives the stream
    LxStream stream;
    LxStreamConfiguration configuration;
    configuration.mBufferCount = 1;
    EXPECT_EQ(stream.Open(&device, configuration), LxResultCode::InvalidArgument);
    configuration.mBufferCount = 65;
    EXPECT_EQ(stream.Open(&device, configuration), LxResultCode::InvalidArgument);
    configuration.mBufferCount = 64;
    configuration.mQueueLimit = 0;
    EXPECT_EQ(stream.Open(&device, configuration), LxResultCode::InvalidArgument);
    configuration.mQueueLimit = 33;
    EXPECT_EQ(stream.Open(&device, configuration), LxResultCode::InvalidArgument);
    configuration.mQueueLimit = 32;
    EXPECT_TRUE(stream.Open(&device, configuration).IsOK());
}

TEST(LxStreamTest, OperationsNeedTheirState)
{
    StreamingDevice device;  // outlives the stream
    LxStream stream;
    std::shared_ptr<const LxBuffer> buffer;
    EXPECT_EQ(stream.Start(), LxResultCode::InvalidState);
    EXPECT_TRUE(stream.Stop().IsOK());
    EXPECT_EQ(stream.RetrieveBuffer(buffer, 0), LxResultCode::InvalidState);
    ASSERT_TRUE(stream.Open(&device).IsOK());
    EXPECT_EQ(stream.Open(&device), LxResultCode::AlreadyOpen);
    EXPECT_EQ(stream.RetrieveBuffer(buffer, 0), LxResultCode::InvalidState);
    ASSERT_TRUE(stream.Start().IsOK());
    EXPECT_EQ(stream.Start(), LxResultCode::AlreadyOpen);
    EXPECT_TRUE(stream.IsStarted());
    EXPECT_TRUE(stream.Stop().IsOK());
    EXPECT_TRUE(stream.Stop().IsOK());
    EXPECT_FALSE(stream.IsStarted());
    EXPECT_TRUE(stream.Close().IsOK());
    EXPECT_FALSE(stream.IsOpened());
    EXPECT_TRUE(stream.Open(&device).IsOK());
}

TEST(LxStreamTest, FailedStartLeavesItStopped)
{
    StreamingDevice device;  // outlives the stream
    LxStream stream;
    device.mStart = LxResultCode::Timeout;
    ASSERT_TRUE(stream.Open(&device).IsOK());
    EXPECT_EQ(stream.Start(), LxResultCode::Timeout);
    EXPECT_FALSE(stream.IsStarted());
    device.mStart = LxResult();
    EXPECT_TRUE(stream.Start().IsOK());
}

TEST(LxStreamTest, BufferStaysReadableAfterClose)
{
    StreamingDevice device;  // outlives the stream
    LxStream stream;
    ASSERT_TRUE(stream.Open(&device).IsOK());
    ASSERT_TRUE(stream.Start().IsOK());
    auto frame = std::make_shared<LxBuffer>(LxPayloadType::Image);
    ASSERT_TRUE(frame->GetImage()->Alloc(4, 4, LxPixelType::Mono8).IsOK());
    device.mQueue.Push(std::move(frame));
    std::shared_ptr<const LxBuffer> buffer;
    ASSERT_TRUE(stream.RetrieveBuffer(buffer, 1000).IsOK());
    LxStreamStatistics statistics;
    stream.GetStatistics(statistics);
    EXPECT_EQ(statistics.mDelivered, 1u);
    stream.Close();
    EXPECT_EQ(buffer->GetImage()->GetWidth(), 4u);
    stream.GetStatistics(statistics);
    EXPECT_EQ(statistics.mDelivered, 0u);
}

TEST(LxStreamTest, WhatADeviceThrowsBecomesAResult)
{
    StreamingDevice device;  // outlives the stream
    LxStream stream;
    device.mThrows = true;
    const LxResult result = stream.Open(&device);
    EXPECT_EQ(result, LxResultCode::Failed);
    EXPECT_STREQ(result.GetDescription().GetAscii(), "out of ideas");
}
