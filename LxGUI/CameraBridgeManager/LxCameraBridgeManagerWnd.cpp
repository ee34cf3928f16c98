#include "LxGUI/LxCameraBridgeManagerWnd.h"

#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"

namespace
{

CameraBridgeManagerWnd *Internal(Wnd *aWnd)
{
    return static_cast<CameraBridgeManagerWnd *>(aWnd);
}

}  // namespace

LxCameraBridgeManagerWnd::LxCameraBridgeManagerWnd()
{
    mWnd = new CameraBridgeManagerWnd;
}

LxCameraBridgeManagerWnd::~LxCameraBridgeManagerWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

LxResult LxCameraBridgeManagerWnd::SetDevice(LxDevice *aDevice)
{
    if (mWnd) {
        Internal(mWnd)->SetDevice(aDevice);
    }
    return LxResultCode::OK;
}

LxResult LxCameraBridgeManagerWnd::SetStream(LxStream *aStream)
{
    if (mWnd) {
        Internal(mWnd)->SetStream(aStream);
    }
    return LxResultCode::OK;
}

int LxCameraBridgeManagerWnd::GetBridgeCount() const
{
    return mWnd ? Internal(mWnd)->GetBridgeCount() : 0;
}

LxCameraBridge *LxCameraBridgeManagerWnd::GetBridge(int aIndex)
{
    return mWnd ? Internal(mWnd)->GetBridge(aIndex) : nullptr;
}

LxDeviceSerial LxCameraBridgeManagerWnd::GetBridgePort(int aIndex)
{
    return mWnd ? Internal(mWnd)->GetBridgePort(aIndex) : LxDeviceSerial::Invalid;
}

LxResult LxCameraBridgeManagerWnd::Save(LxConfigurationWriter &aWriter)
{
    if (mWnd) {
        Internal(mWnd)->Save(aWriter);
    }
    return LxResultCode::OK;
}

LxResult LxCameraBridgeManagerWnd::Load(LxConfigurationReader &aReader, LxStringList &aErrors)
{
    return mWnd ? Internal(mWnd)->Load(aReader, aErrors) : LxResult();
}

LxResult LxCameraBridgeManagerWnd::Recover()
{
    return LxResultCode::OperationNotImplemented;
}

void LxCameraBridgeManagerWnd::ShowKCF()
{
    if (mWnd) {
        Internal(mWnd)->ShowKCF();
    }
}

void LxCameraBridgeManagerWnd::HideKCF()
{
    if (mWnd) {
        Internal(mWnd)->HideKCF();
    }
}

bool LxCameraBridgeManagerWnd::IsKCFVisible() const
{
    return mWnd && Internal(mWnd)->IsKCFVisible();
}

void LxCameraBridgeManagerWnd::DeleteLater()
{
    if (mWnd) {
        mWnd->deleteLater();
        mWnd = nullptr;
    }
}
