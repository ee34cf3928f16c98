#include "LxGUI/LxSerialBridgeManagerWnd.h"

#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"

namespace
{

SerialBridgeManagerWnd *Internal(Wnd *aWnd)
{
    return static_cast<SerialBridgeManagerWnd *>(aWnd);
}

}  // namespace

LxSerialBridgeManagerWnd::LxSerialBridgeManagerWnd()
{
    mWnd = new SerialBridgeManagerWnd;
}

LxSerialBridgeManagerWnd::~LxSerialBridgeManagerWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

LxResult LxSerialBridgeManagerWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    if (mWnd) {
        Internal(mWnd)->SetDevice(aAdapter);
    }
    return LxResultCode::OK;
}

LxResult LxSerialBridgeManagerWnd::Save(LxPropertyList &aList)
{
    if (mWnd) {
        Internal(mWnd)->Save(aList);
    }
    return LxResultCode::OK;
}

LxResult LxSerialBridgeManagerWnd::Load(LxPropertyList &aList, LxStringList &aMessages)
{
    if (mWnd) {
        Internal(mWnd)->Load(aList, aMessages);
    }
    return LxResultCode::OK;
}

LxResult LxSerialBridgeManagerWnd::Recover()
{
    return LxResultCode::OperationNotImplemented;
}

void LxSerialBridgeManagerWnd::DeleteLater()
{
    if (mWnd) {
        mWnd->deleteLater();
        mWnd = nullptr;
    }
}
