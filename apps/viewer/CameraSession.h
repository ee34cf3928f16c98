#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <functional>
#include <memory>

#include "CameraIdentity.h"
#include "LiveStream.h"
#include "LxDevice/LxDevice.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSystem/LxSystem.h"
#include "Worker.h"

/// One camera: connects to it, receives its frames on a thread of its own and tells when it is lost and back.
///
/// All operations are called on the GUI thread and return at once. What waits for the camera happens on a worker, one
/// thing after the other.
class CameraSession : public QObject, private LxDeviceEventSink
{
    Q_OBJECT

public:
    /// @param aHandler receives each frame, on the acquisition thread, and at most one more after StopLive().
    explicit CameraSession(LiveStream::FrameHandler aHandler);
    /// Like End().
    ~CameraSession() override;

    /// Connects to a device that a living LxSystem found; it must live until IsAttempting() says false.
    void Connect(const LxDeviceInfo *aInfo);
    /// Finds the device at an address and connects to it.
    void ConnectAddress(const QString &aAddress);
    /// Connects to a camera of an earlier time, where it was then or wherever it is now.
    void ConnectAgain(const CameraIdentity &aCamera);
    /// Gives up the camera or the attempt to connect; the camera is told later. Whatever uses the device ends before.
    void Disconnect();
    /// Disconnects and waits until the camera was told.
    void End();
    bool IsConnecting() const { return mAttempt != nullptr; }
    /// Whether an attempt runs, perhaps one that was given up.
    bool IsAttempting() const { return mAttempts > 0; }
    bool IsConnected() const { return mDevice != nullptr; }
    /// Null when not connected.
    LxDevice *Device() const { return mDevice.get(); }
    QString CameraName() const { return mCamera.mName; }
    /// Of the connected camera.
    const CameraIdentity &Camera() const { return mCamera; }

    /// Does something with the features of the connected camera on the worker, after what was begun before. The answer
    /// is called on the GUI thread, unless the camera has been given up by then.
    void Ask(std::function<void(LxGenParameterArray &)> aWork, std::function<void()> aAnswer = {});

    void StartLive();
    void StopLive();
    /// Whether frames come, or will soon.
    bool IsLive() const { return mLive != nullptr; }
    LxStreamStatistics Statistics() const;

signals:
    void Connected();
    void Failed(const LxResult &aResult);
    void LiveFailed(const LxResult &aResult);
    /// What was given up has ended.
    void GivenUp();
    /// The camera stopped answering; everything continues by itself when it is back.
    void LinkLost();
    void LinkBack();

private:
    struct Attempt
    {
        LxResult mResult;
        std::unique_ptr<LxDevice> mDevice;
        CameraIdentity mCamera;
    };

    void OnLinkDisconnected(LxDevice *aDevice) override;
    void OnLinkReconnected(LxDevice *aDevice) override;
    void Run(const QString &aName, std::function<void(Attempt &)> aConnect);
    void Finish(const std::shared_ptr<Attempt> &aAttempt);

    const LiveStream::FrameHandler mHandler;
    int mAttempts = 0;
    std::shared_ptr<Attempt> mAttempt;  // its fields belong to the worker until Finish()
    std::shared_ptr<LxDevice> mDevice;
    CameraIdentity mCamera;
    std::shared_ptr<LiveStream> mLive;
    Worker mWorker;  // the first to go, as what it does uses the rest
};
