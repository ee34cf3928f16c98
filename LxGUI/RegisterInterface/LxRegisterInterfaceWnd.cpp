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
    return CallInternal<RegisterInterfaceWnd>(mWnd, "LxRegisterInterfaceWnd::SetDevice()",
                                              [&](RegisterInterfaceWnd &aWnd) { aWnd.SetDevice(aDevice); });
}
