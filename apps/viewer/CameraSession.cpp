#include "CameraSession.h"

#include <QtCore/QMetaObject>
#include <utility>

#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"

namespace
{

QString NameOf(const LxDeviceInfo &aInfo)
{
    const QString user = QString::fromUtf8(aInfo.GetUserDefinedName().GetAscii());
    const QString model = QString::fromUtf8(aInfo.GetModelName().GetAscii());
    const QString id = QString::fromUtf8(aInfo.GetConnectionID().GetAscii());
    const QString name = user.isEmpty() ? model : user;
    return name.isEmpty() ? id : QStringLiteral("%1 (%2)").arg(name, id);
}

const LxDeviceInfo *FindByAddress(const LxSystem &aSystem, const QString &aAddress)
{
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        const LxInterface *interface = aSystem.GetInterface(i);
        for (uint32_t k = 0; k < interface->GetDeviceCount(); ++k) {
            const LxDeviceInfo *info = interface->GetDeviceInfo(k);
            if (info && aAddress == QString::fromUtf8(info->GetConnectionID().GetAscii())) {
                return info;
            }
        }
    }
    return nullptr;
}

}  // namespace

CameraSession::CameraSession(FrameHandler aHandler) : mHandler(std::move(aHandler)) {}

CameraSession::~CameraSession()
{
    Disconnect();
}

void CameraSession::Connect(const LxDeviceInfo *aInfo)
{
    mName = NameOf(*aInfo);
    Run([aInfo] {
        Attempt attempt;
        attempt.mName = NameOf(*aInfo);
        attempt.mResult = LxSystem::Connect(aInfo, LxDeviceAccess::Control, attempt.mDevice);
        return attempt;
    });
}

void CameraSession::ConnectAddress(const QString &aAddress)
{
    mName = aAddress;
    Run([aAddress] {
        Attempt attempt;
        attempt.mName = aAddress;
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        attempt.mResult = system.FindDevice(aAddress.toUtf8().constData(), &info);
        if (!attempt.mResult.IsOK()) {
            // a camera on a foreign subnet hears broadcasts only; connecting to it then tells what is wrong
            system.Find();
            info = FindByAddress(system, aAddress);
        }
        if (info) {
            attempt.mName = NameOf(*info);
            attempt.mResult = LxSystem::Connect(info, LxDeviceAccess::Control, attempt.mDevice);
        }
        return attempt;
    });
}

void CameraSession::Run(std::function<Attempt()> aConnect)
{
    Disconnect();
    mConnecting = true;
    mWorker = std::thread([this, number = ++mAttemptNumber, connect = std::move(aConnect)] {
        auto attempt = std::make_shared<Attempt>(connect());
        // dropped by Qt when the session is gone by then
        QMetaObject::invokeMethod(
            this, [this, number, attempt] { Finish(number, std::move(*attempt)); }, Qt::QueuedConnection);
    });
}

void CameraSession::Finish(int aNumber, Attempt aAttempt)
{
    if (aNumber != mAttemptNumber || !mConnecting) {
        return;  // disconnected while the attempt was on its way
    }
    mWorker.join();
    mConnecting = false;
    mName = aAttempt.mName;
    if (!aAttempt.mResult.IsOK()) {
        emit Failed(aAttempt.mResult);
        return;
    }
    mDevice = std::move(aAttempt.mDevice);
    mDevice->RegisterEventSink(this);
    emit Connected();
}

void CameraSession::Disconnect()
{
    mConnecting = false;
    if (mWorker.joinable()) {
        mWorker.join();
    }
    StopLive();
    if (mDevice) {
        mDevice->UnregisterEventSink(this);
        mDevice->Disconnect();
        mDevice.reset();
    }
}

LxResult CameraSession::StartLive()
{
    if (!mDevice) {
        return LxResult(LxResultCode::NotConnected);
    }
    if (IsLive()) {
        return LxResult();
    }
    auto stream = std::make_unique<LxStream>();
    LxResult result = stream->Open(mDevice.get());
    if (result.IsOK()) {
        result = stream->Start();
    }
    if (!result.IsOK()) {
        return result;
    }
    mStream = std::move(stream);
    mStop = false;
    mAcquisition = std::thread([this] { ReceiveFrames(); });
    return result;
}

void CameraSession::StopLive()
{
    if (!IsLive()) {
        return;
    }
    mStop = true;
    mStream->Stop();
    mAcquisition.join();
    mStream->Close();
    mStream.reset();
}

void CameraSession::ReceiveFrames()
{
    while (!mStop) {
        std::shared_ptr<const LxBuffer> buffer;
        const LxResult result = mStream->RetrieveBuffer(buffer, 200);
        if (result.IsOK() && buffer) {
            mHandler(*buffer);
        }
        else if (result == LxResultCode::NotConnected) {
            // the stream goes on by itself when the camera is back; do not spin until then
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
}

LxStreamStatistics CameraSession::Statistics() const
{
    LxStreamStatistics statistics;
    if (mStream) {
        mStream->GetStatistics(statistics);
    }
    return statistics;
}

void CameraSession::OnLinkDisconnected(LxDevice *)
{
    QMetaObject::invokeMethod(this, &CameraSession::LinkLost, Qt::QueuedConnection);
}

void CameraSession::OnLinkReconnected(LxDevice *)
{
    QMetaObject::invokeMethod(this, &CameraSession::LinkBack, Qt::QueuedConnection);
}
