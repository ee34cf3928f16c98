#include "LxGUI/LxSerialTerminalWnd.h"

#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

LxSerialTerminalWnd::LxSerialTerminalWnd()
{
    mWnd = MakeInternal<SerialTerminalWnd>("LxSerialTerminalWnd");
}

LxSerialTerminalWnd::~LxSerialTerminalWnd()
{
    DeleteInternal("~LxSerialTerminalWnd", mWnd);
}

LxResult LxSerialTerminalWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    auto *const wnd = Internal<SerialTerminalWnd>(mWnd, "LxSerialTerminalWnd::SetDevice()");
    return wnd ? wnd->SetDevice(aAdapter) : LxResult(LxResultCode::InvalidArgument);
}

LxResult LxSerialTerminalWnd::SetSerialPort(LxDeviceSerial aPort)
{
    auto *const wnd = Internal<SerialTerminalWnd>(mWnd, "LxSerialTerminalWnd::SetSerialPort()");
    return wnd ? wnd->SetSerialPort(aPort) : LxResult(LxResultCode::InvalidArgument);
}

LxDeviceSerial LxSerialTerminalWnd::GetSerialPort() const
{
    return mWnd ? static_cast<const SerialTerminalWnd *>(mWnd)->GetSerialPort() : LxDeviceSerial::Invalid;
}
