#pragma once

#include "LxGUI/LxWnd.h"

class LxDeviceGEV;

/// A small tool window that reads and writes single 32-bit registers of a GigE Vision device by hexadecimal address.
///
/// The addresses and the value to write are set to "00000000" each time the window is shown; the value read last and
/// the results stay. Reading and writing block the GUI thread until the device answered or the time-out passed.
/// @thread{GUI}
class LXGUI_API LxRegisterInterfaceWnd : public LxWnd
{
public:
    LxRegisterInterfaceWnd();
    ~LxRegisterInterfaceWnd() override;

    /// Sets the device that the buttons work on from now on; may be called at any time.
    /// @param aDevice not owned; it must stay valid until another device or null is set or the window is destroyed.
    ///        With null (the default) the buttons do nothing but say that there is no device.
    /// @return always OK.
    /// @thread{GUI}
    LxResult SetDevice(LxDeviceGEV *aDevice);
};
