#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "LxBuffer/LxBuffer.h"
#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDevice.h"
#include "LxSystem/LxSystem.h"

/// One camera: connects to it, receives its frames on a thread of its own and tells when it is lost and back.
///
/// All operations are called on the GUI thread. Connecting happens on a worker and ends with Connected() or Failed();
/// Disconnect() and the destructor wait for an attempt that is on its way.
class CameraSession : public QObject, private LxDeviceEventSink
{
    Q_OBJECT

public:
    /// Receives each frame, on the acquisition thread.
    using FrameHandler = std::function<void(const LxBuffer &)>;

    explicit CameraSession(FrameHandler aHandler);
    ~CameraSession() override;

    /// Connects to a device that a living LxSystem found; it must live until Connected() or Failed().
    void Connect(const LxDeviceInfo *aInfo);
    /// Finds the device at an address and connects to it.
    void ConnectAddress(const QString &aAddress);
    void Disconnect();
    bool IsConnecting() const { return mConnecting; }
    bool IsConnected() const { return mDevice != nullptr; }
    /// Null when not connected.
    LxDevice *Device() const { return mDevice.get(); }
    QString CameraName() const { return mName; }

    LxResult StartLive();
    void StopLive();
    bool IsLive() const { return mAcquisition.joinable(); }
    LxStreamStatistics Statistics() const;

signals:
    void Connected();
    void Failed(const LxResult &aResult);
    /// The camera stopped answering; everything continues by itself when it is back.
    void LinkLost();
    void LinkBack();

private:
    struct Attempt
    {
        LxResult mResult;
        std::unique_ptr<LxDevice> mDevice;
        QString mName;
    };

    void OnLinkDisconnected(LxDevice *aDevice) override;
    void OnLinkReconnected(LxDevice *aDevice) override;
    void Run(std::function<Attempt()> aConnect);
    void Finish(int aNumber, Attempt aAttempt);
    void ReceiveFrames();

    FrameHandler mHandler;
    std::thread mWorker;
    bool mConnecting = false;
    int mAttemptNumber = 0;
    std::unique_ptr<LxDevice> mDevice;
    QString mName;
    std::unique_ptr<LxStream> mStream;
    std::thread mAcquisition;
    std::atomic<bool> mStop{false};
};
