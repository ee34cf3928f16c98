#include "LxGUI/LxSerialBridgeManagerWnd.h"

#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"

namespace
{

SerialBridgeManagerWnd *Bridges(Wnd *aWnd)
{
    return static_cast<SerialBridgeManagerWnd *>(aWnd);
}

}  // namespace

LxSerialBridgeManagerWnd::LxSerialBridgeManagerWnd()
{
    mWnd = MakeInternal<SerialBridgeManagerWnd>("LxSerialBridgeManagerWnd");
}

LxSerialBridgeManagerWnd::~LxSerialBridgeManagerWnd()
{
    DeleteInternal("~LxSerialBridgeManagerWnd", mWnd);
}

LxResult LxSerialBridgeManagerWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    if (mWnd) {
        Bridges(mWnd)->SetDevice(aAdapter);
    }
    return LxResultCode::OK;
}

LxResult LxSerialBridgeManagerWnd::Save(LxPropertyList &aList)
{
    return CallInternalIfAny<SerialBridgeManagerWnd>(mWnd, "LxSerialBridgeManagerWnd::Save()",
                                                     [&](SerialBridgeManagerWnd &aWnd) { aWnd.Save(aList); });
}

LxResult LxSerialBridgeManagerWnd::Load(LxPropertyList &aList, LxStringList &aMessages)
{
    return CallInternalIfAny<SerialBridgeManagerWnd>(
        mWnd, "LxSerialBridgeManagerWnd::Load()", [&](SerialBridgeManagerWnd &aWnd) { aWnd.Load(aList, aMessages); });
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
