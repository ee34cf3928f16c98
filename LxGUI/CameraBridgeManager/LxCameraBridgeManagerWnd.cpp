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
    return CallInternalIfAny<CameraBridgeManagerWnd>(mWnd, "LxCameraBridgeManagerWnd::SetStream()",
                                                     [&](CameraBridgeManagerWnd &aWnd) { aWnd.SetStream(aStream); });
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
    return CallInternalIfAny<CameraBridgeManagerWnd>(mWnd, "LxCameraBridgeManagerWnd::Save()",
                                                     [&](CameraBridgeManagerWnd &aWnd) { aWnd.Save(aWriter); });
}

LxResult LxCameraBridgeManagerWnd::Load(LxConfigurationReader &aReader, LxStringList &aErrors)
{
    LxResult result;
    const LxResult called = CallInternalIfAny<CameraBridgeManagerWnd>(
        mWnd, "LxCameraBridgeManagerWnd::Load()",
        [&](CameraBridgeManagerWnd &aWnd) { result = aWnd.Load(aReader, aErrors); });
    return called.IsOK() ? result : called;
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
