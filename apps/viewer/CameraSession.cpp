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

CameraSession::CameraSession(LiveStream::FrameHandler aHandler) : mHandler(std::move(aHandler)) {}

CameraSession::~CameraSession()
{
    End();
}

// Connecting

void CameraSession::Connect(const LxDeviceInfo *aInfo)
{
    const QString name = NameOf(*aInfo);
    Run([aInfo, name](Attempt &aAttempt) {
        aAttempt.mName = name;
        aAttempt.mResult = LxSystem::Connect(aInfo, LxDeviceAccess::Control, aAttempt.mDevice);
    });
    mName = name;
}

void CameraSession::ConnectAddress(const QString &aAddress)
{
    Run([aAddress](Attempt &aAttempt) {
        aAttempt.mName = aAddress;
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        aAttempt.mResult = system.FindDevice(aAddress.toUtf8().constData(), &info);
        if (!aAttempt.mResult.IsOK()) {
            // a camera on a foreign subnet hears broadcasts only; connecting to it then tells what is wrong
            system.Find();
            info = FindByAddress(system, aAddress);
        }
        if (info) {
            aAttempt.mName = NameOf(*info);
            aAttempt.mResult = LxSystem::Connect(info, LxDeviceAccess::Control, aAttempt.mDevice);
        }
    });
    mName = aAddress;
}

void CameraSession::Run(std::function<void(Attempt &)> aConnect)
{
    Disconnect();
    mAttempt = std::make_shared<Attempt>();
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
    mName = aAttempt->mName;
    if (!aAttempt->mResult.IsOK()) {
        emit Failed(aAttempt->mResult);
        return;
    }
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
        mWorker.Post([this, device = std::move(mDevice)] {
            device->Disconnect();
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

// Pictures

void CameraSession::StartLive()
{
    if (!mDevice || mLive) {
        return;
    }
    mLive = std::make_shared<LiveStream>(mDevice, mHandler);
    mWorker.Post([this, live = mLive] {
        const LxResult result = live->Start();
        mWorker.Answer([this, live, result] {
            if (!result.IsOK() && live == mLive) {
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

void CameraSession::OnLinkDisconnected(LxDevice *)
{
    QMetaObject::invokeMethod(this, &CameraSession::LinkLost, Qt::QueuedConnection);
}

void CameraSession::OnLinkReconnected(LxDevice *)
{
    QMetaObject::invokeMethod(this, &CameraSession::LinkBack, Qt::QueuedConnection);
}
