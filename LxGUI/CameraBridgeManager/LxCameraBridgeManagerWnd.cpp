#include "LxGUI/LxCameraBridgeManagerWnd.h"

#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGUI/Frame/InternalWindow.h"

namespace
{

CameraBridgeManagerWnd *Bridges(Wnd *aWnd)
{
    return static_cast<CameraBridgeManagerWnd *>(aWnd);
}

}  // namespace

LxCameraBridgeManagerWnd::LxCameraBridgeManagerWnd()
{
    mWnd = MakeInternal<CameraBridgeManagerWnd>("LxCameraBridgeManagerWnd");
}

LxCameraBridgeManagerWnd::~LxCameraBridgeManagerWnd()
{
    DeleteInternal("~LxCameraBridgeManagerWnd", mWnd);
}

LxResult LxCameraBridgeManagerWnd::SetDevice(LxDevice *aDevice)
{
    if (mWnd) {
        Bridges(mWnd)->SetDevice(aDevice);
    }
    return LxResultCode::OK;
}

LxResult LxCameraBridgeManagerWnd::SetStream(LxStream *aStream)
{
    if (mWnd) {
        Bridges(mWnd)->SetStream(aStream);
    }
    return LxResultCode::OK;
}

int LxCameraBridgeManagerWnd::GetBridgeCount() const
{
    return mWnd ? Bridges(mWnd)->GetBridgeCount() : 0;
}

LxCameraBridge *LxCameraBridgeManagerWnd::GetBridge(int aIndex)
{
    return mWnd ? Bridges(mWnd)->GetBridge(aIndex) : nullptr;
}

LxDeviceSerial LxCameraBridgeManagerWnd::GetBridgePort(int aIndex)
{
    return mWnd ? Bridges(mWnd)->GetBridgePort(aIndex) : LxDeviceSerial::Invalid;
}

LxResult LxCameraBridgeManagerWnd::Save(LxConfigurationWriter &aWriter)
{
    if (mWnd) {
        Bridges(mWnd)->Save(aWriter);
    }
    return LxResultCode::OK;
}

LxResult LxCameraBridgeManagerWnd::Load(LxConfigurationReader &aReader, LxStringList &aErrors)
{
    auto *const wnd = Internal<CameraBridgeManagerWnd>(mWnd, "LxCameraBridgeManagerWnd::Load()");
    return wnd ? wnd->Load(aReader, aErrors) : LxResult();
}

LxResult LxCameraBridgeManagerWnd::Recover()
{
    return LxResultCode::OperationNotImplemented;
}

void LxCameraBridgeManagerWnd::ShowKCF()
{
    if (auto *const wnd = Internal<CameraBridgeManagerWnd>(mWnd, "LxCameraBridgeManagerWnd::ShowKCF()")) {
        wnd->ShowKCF();
    }
}

void LxCameraBridgeManagerWnd::HideKCF()
{
    if (auto *const wnd = Internal<CameraBridgeManagerWnd>(mWnd, "LxCameraBridgeManagerWnd::HideKCF()")) {
        wnd->HideKCF();
    }
}

bool LxCameraBridgeManagerWnd::IsKCFVisible() const
{
    return mWnd && Bridges(mWnd)->IsKCFVisible();
}

void LxCameraBridgeManagerWnd::DeleteLater()
{
    if (mWnd) {
        mWnd->deleteLater();
        mWnd = nullptr;
    }
}
