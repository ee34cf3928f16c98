#pragma once

#include "LxBase/LxDeviceSerial.h"
#include "LxGUI/LxWnd.h"

class ILxDeviceAdapter;

/// A terminal over the serial ports of a device: shows what a port receives as text, as hexadecimal numbers or as both,
/// and sends typed bytes and files.
///
/// While the window is open it has the selected port open, and two threads of its own work on the port. Closing the
/// window, choosing another port and setting another device wait for them: up to a second while a file is being sent,
/// and for as long as the port does not take the bytes of a write.
/// @thread{GUI}
class LXGUI_API LxSerialTerminalWnd : public LxWnd
{
public:
    LxSerialTerminalWnd();
    ~LxSerialTerminalWnd() override;

    /// Sets the device whose ports are offered. An open window closes the port of the device that it had and opens one
    /// of the new device.
    /// @param aAdapter not owned; it, and its device, must stay valid until another adapter or null is set or the
    ///        window is destroyed. Null (the default) leaves the window without a port.
    /// @return OK; NoSerialPort (25) when the device has none of the ports that the window offers, "Serial0", "Serial1"
    ///         and "Bulk0" to "Bulk6". The adapter is kept in that case, too.
    /// @thread{GUI}
    LxResult SetDevice(ILxDeviceAdapter *aAdapter);
    /// Selects the port to open; a visible window opens it at once. LxDeviceSerial::Serial0 from the start. A window
    /// that opens while the device does not have the selected port selects the first that the device has. The item that
    /// the list of ports then shows is the one whose index is the number of the port.
    /// @return OK; Unavailable (26), and nothing changes, when there is a device and it does not have the port.
    /// @thread{GUI}
    LxResult SetSerialPort(LxDeviceSerial aPort);
    /// The selected port, also while no device has it.
    /// @thread{GUI}
    LxDeviceSerial GetSerialPort() const;
};
