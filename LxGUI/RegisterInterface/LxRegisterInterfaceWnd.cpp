#include "LxGUI/LxRegisterInterfaceWnd.h"

#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUI/RegisterInterface/RegisterInterfaceWnd.h"

LxRegisterInterfaceWnd::LxRegisterInterfaceWnd()
{
    mWnd = MakeInternal<RegisterInterfaceWnd>("LxRegisterInterfaceWnd");
}

LxRegisterInterfaceWnd::~LxRegisterInterfaceWnd()
{
    DeleteInternal("~LxRegisterInterfaceWnd", mWnd);
}

LxResult LxRegisterInterfaceWnd::SetDevice(LxDeviceGEV *aDevice)
{
    auto *const wnd = Internal<RegisterInterfaceWnd>(mWnd, "LxRegisterInterfaceWnd::SetDevice()");
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    wnd->SetDevice(aDevice);
    return LxResultCode::OK;
}
