#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "LxBuffer/LxBuffer.h"
#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDevice.h"

/// The pictures of a camera: receives its frames on a thread of its own.
class LiveStream
{
public:
    /// Receives each frame, on the acquisition thread.
    using FrameHandler = std::function<void(const std::shared_ptr<const LxBuffer> &)>;

    LiveStream(std::shared_ptr<LxDevice> aDevice, FrameHandler aHandler);
    ~LiveStream();
    LiveStream(const LiveStream &) = delete;
    LiveStream &operator=(const LiveStream &) = delete;

    /// No more frames are handed on, at most the one that just is. Any thread.
    void Cancel() { mStop = true; }

    // These wait for the camera and are called on one thread.
    LxResult Start();
    void Stop();

    /// Zeros until the stream is started. Any thread until Stop().
    LxStreamStatistics Statistics() const;

private:
    void ReceiveFrames();

    const std::shared_ptr<LxDevice> mDevice;
    const FrameHandler mHandler;
    std::unique_ptr<LxStream> mStream;
    std::thread mAcquisition;
    std::atomic<bool> mIsStarted{false};
    std::atomic<bool> mStop{false};
};
