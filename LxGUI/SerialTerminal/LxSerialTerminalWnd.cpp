#include "LxGUI/LxSerialTerminalWnd.h"

#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

LxSerialTerminalWnd::LxSerialTerminalWnd()
{
    mWnd = new SerialTerminalWnd;
}

LxSerialTerminalWnd::~LxSerialTerminalWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

LxResult LxSerialTerminalWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    return static_cast<SerialTerminalWnd *>(mWnd)->SetDevice(aAdapter);
}

LxResult LxSerialTerminalWnd::SetSerialPort(LxDeviceSerial aPort)
{
    return static_cast<SerialTerminalWnd *>(mWnd)->SetSerialPort(aPort);
}

LxDeviceSerial LxSerialTerminalWnd::GetSerialPort() const
{
    return static_cast<const SerialTerminalWnd *>(mWnd)->GetSerialPort();
}
