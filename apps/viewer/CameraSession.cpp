#include "CameraSession.h"

#include <QtCore/QMetaObject>
#include <utility>

#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"
#include "ViewerLog.h"

namespace
{

QString Text(const LxResult &aResult)
{
    return QStringLiteral("%1 %2").arg(QString::fromUtf8(aResult.GetCodeString().GetAscii()),
                                       QString::fromUtf8(aResult.GetDescription().GetAscii()));
}

// The first device of all interfaces that is as asked, or null.
const LxDeviceInfo *FindInfo(const LxSystem &aSystem, const std::function<bool(const LxDeviceInfo &)> &aIsIt)
{
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        const LxInterface *interface = aSystem.GetInterface(i);
        for (uint32_t k = 0; k < interface->GetDeviceCount(); ++k) {
            const LxDeviceInfo *info = interface->GetDeviceInfo(k);
            if (info && aIsIt(*info)) {
                return info;
            }
        }
    }
    return nullptr;
}

}  // namespace

CameraSession::CameraSession(LiveStream::FrameHandler aHandler) : mHandler(std::move(aHandler)) {}

CameraSession::~CameraSession()
{
    End();
}

// Connecting

void CameraSession::Connect(const LxDeviceInfo *aInfo)
{
    const CameraIdentity camera = CameraIdentity::Of(*aInfo);
    Run(camera.mName, [aInfo, camera](Attempt &aAttempt) {
        aAttempt.mCamera = camera;
        aAttempt.mResult = LxSystem::Connect(aInfo, LxDeviceAccess::Control, aAttempt.mDevice);
    });
}

void CameraSession::ConnectAddress(const QString &aAddress)
{
    Run(aAddress, [aAddress](Attempt &aAttempt) {
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        aAttempt.mResult = system.FindDevice(aAddress.toUtf8().constData(), &info);
        if (!aAttempt.mResult.IsOK()) {
            // a camera on a foreign subnet hears broadcasts only; connecting to it then tells what is wrong
            system.Find();
            info = FindInfo(system,
                            [&](const LxDeviceInfo &aInfo) { return CameraIdentity::Of(aInfo).mAddress == aAddress; });
        }
        if (info) {
            aAttempt.mCamera = CameraIdentity::Of(*info);
            aAttempt.mResult = LxSystem::Connect(info, LxDeviceAccess::Control, aAttempt.mDevice);
        }
    });
}

void CameraSession::ConnectAgain(const CameraIdentity &aCamera)
{
    Run(aCamera.mName, [aCamera](Attempt &aAttempt) {
        const auto isIt = [&](const LxDeviceInfo &aInfo) {
            return CameraIdentity::Of(aInfo).mUniqueID == aCamera.mUniqueID;
        };
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        system.FindDevice(aCamera.mAddress.toUtf8().constData(), &info);
        if (!info || !isIt(*info)) {
            system.Find();  // it may have another address now
            info = FindInfo(system, isIt);
        }
        if (!info) {
            aAttempt.mResult = LxResult(LxResultCode::NotFound, "No camera of this unique ID was found.");
            return;
        }
        aAttempt.mCamera = CameraIdentity::Of(*info);
        aAttempt.mResult = LxSystem::Connect(info, LxDeviceAccess::Control, aAttempt.mDevice);
    });
}

void CameraSession::Run(const QString &aName, std::function<void(Attempt &)> aConnect)
{
    Disconnect();
    qCInfo(LogCamera).noquote() << "connecting to" << aName;
    mCamera = CameraIdentity();
    mCamera.mName = aName;
    mAttempt = std::make_shared<Attempt>();
    mAttempt->mCamera = mCamera;
    ++mAttempts;
    mWorker.Post([this, attempt = mAttempt, connect = std::move(aConnect)] {
        connect(*attempt);
        mWorker.Answer([this, attempt] { Finish(attempt); });
    });
}

void CameraSession::Finish(const std::shared_ptr<Attempt> &aAttempt)
{
    --mAttempts;
    if (aAttempt != mAttempt) {
        emit GivenUp();
        return;
    }
    mAttempt.reset();
    mCamera = aAttempt->mCamera;
    if (!aAttempt->mResult.IsOK()) {
        qCInfo(LogCamera).noquote() << "could not connect to" << CameraName() << Text(aAttempt->mResult);
        emit Failed(aAttempt->mResult);
        return;
    }
    qCInfo(LogCamera).noquote() << "connected to" << CameraName() << mCamera.mModel << "unique ID" << mCamera.mUniqueID;
    mDevice = std::move(aAttempt->mDevice);
    mDevice->RegisterEventSink(this);
    emit Connected();
}

void CameraSession::Disconnect()
{
    StopLive();
    if (mAttempt) {
        mWorker.Post([attempt = std::move(mAttempt)] { attempt->mDevice.reset(); });
        mAttempt.reset();
    }
    if (mDevice) {
        mDevice->UnregisterEventSink(this);
        mWorker.Post([this, device = std::move(mDevice), name = CameraName()] {
            device->Disconnect();
            qCInfo(LogCamera).noquote() << "disconnected from" << name;
            mWorker.Answer([this] { emit GivenUp(); });
        });
        mDevice.reset();
    }
}

void CameraSession::End()
{
    Disconnect();
    mWorker.Wait();
}

void CameraSession::Ask(std::function<void(LxGenParameterArray &)> aWork, std::function<void()> aAnswer)
{
    if (!mDevice) {
        return;
    }
    mWorker.Post([this, device = mDevice, work = std::move(aWork), answer = std::move(aAnswer)] {
        if (LxGenParameterArray *parameters = device->GetParameters()) {
            work(*parameters);
        }
        if (answer) {
            mWorker.Answer([this, device, answer] {
                if (device == mDevice) {
                    answer();
                }
            });
        }
    });
}

// Pictures

void CameraSession::StartLive()
{
    if (!mDevice || mLive) {
        return;
    }
    qCInfo(LogStream).noquote() << "starting the stream of" << CameraName();
    mLive = std::make_shared<LiveStream>(mDevice, mHandler);
    mWorker.Post([this, live = mLive] {
        const LxResult result = live->Start();
        mWorker.Answer([this, live, result] {
            if (!result.IsOK() && live == mLive) {
                qCInfo(LogStream).noquote() << "the stream could not be started:" << Text(result);
                mLive.reset();
                emit LiveFailed(result);
            }
        });
    });
}

void CameraSession::StopLive()
{
    if (mLive) {
        mLive->Cancel();
        mWorker.Post([live = std::move(mLive)] { live->Stop(); });
        mLive.reset();
    }
}

LxStreamStatistics CameraSession::Statistics() const
{
    return mLive ? mLive->Statistics() : LxStreamStatistics();
}

void CameraSession::OnLinkDisconnected(LxDevice *aDevice)
{
    qCInfo(LogCamera).noquote() << "the link is lost:" << aDevice->GetUniqueID().GetAscii();
    QMetaObject::invokeMethod(this, &CameraSession::LinkLost, Qt::QueuedConnection);
}

void CameraSession::OnLinkReconnected(LxDevice *aDevice)
{
    qCInfo(LogCamera).noquote() << "the link is back:" << aDevice->GetUniqueID().GetAscii();
    QMetaObject::invokeMethod(this, &CameraSession::LinkBack, Qt::QueuedConnection);
}
