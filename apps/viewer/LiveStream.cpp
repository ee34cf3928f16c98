#include "LiveStream.h"

#include <chrono>
#include <utility>

#include "ViewerLog.h"

LiveStream::LiveStream(std::shared_ptr<LxDevice> aDevice, FrameHandler aHandler)
    : mDevice(std::move(aDevice)), mHandler(std::move(aHandler))
{
}

LiveStream::~LiveStream()
{
    Stop();
}

LxResult LiveStream::Start()
{
    if (mStop) {
        return LxResult();
    }
    auto stream = std::make_unique<LxStream>();
    LxResult result = stream->Open(mDevice.get());
    if (result.IsOK()) {
        result = stream->Start();
    }
    if (result.IsOK()) {
        mStream = std::move(stream);
        mIsStarted = true;
        mAcquisition = std::thread([this] { ReceiveFrames(); });
    }
    return result;
}

void LiveStream::Stop()
{
    mStop = true;
    mIsStarted = false;
    if (mStream) {
        mStream->Stop();
        mAcquisition.join();
        LxStreamStatistics counted;
        mStream->GetStatistics(counted);
        qCInfo(LogStream) << "the stream ends:" << counted.mDelivered << "frames came," << counted.mMissed
                          << "never came," << counted.mIncomplete << "came with gaps," << counted.mDropped
                          << "were dropped," << counted.mResentPackets << "packets were sent again";
        mStream->Close();
        mStream.reset();
    }
}

LxStreamStatistics LiveStream::Statistics() const
{
    LxStreamStatistics statistics;
    if (mIsStarted) {
        mStream->GetStatistics(statistics);
    }
    return statistics;
}

void LiveStream::ReceiveFrames()
{
    while (!mStop) {
        std::shared_ptr<const LxBuffer> buffer;
        const LxResult result = mStream->RetrieveBuffer(buffer, 200);
        if (result.IsOK() && buffer && !mStop) {
            mHandler(buffer);
        }
        else if (result == LxResultCode::NotConnected) {
            // the stream goes on by itself when the camera is back; do not spin until then
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
}
