#include "LxGUI/LxRegisterInterfaceWnd.h"

#include "LxGUI/RegisterInterface/RegisterInterfaceWnd.h"

LxRegisterInterfaceWnd::LxRegisterInterfaceWnd()
{
    mWnd = new RegisterInterfaceWnd;
}

LxRegisterInterfaceWnd::~LxRegisterInterfaceWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

LxResult LxRegisterInterfaceWnd::SetDevice(LxDeviceGEV *aDevice)
{
    static_cast<RegisterInterfaceWnd *>(mWnd)->SetDevice(aDevice);
    return LxResultCode::OK;
}
