#pragma once

#include "LxBase/LxStringList.h"
#include "LxGUI/LxWnd.h"

class ILxDeviceAdapter;
class LxPropertyList;

/// Bridges the serial ports of a device to COM ports of the host or to the Camera Link serial interface: one bridge a
/// port, with its settings and what it has carried.
///
/// The COM ports that are offered are those whose names are "COM" and a number: where the system calls its ports
/// otherwise, the application gives such names with LxSerialBridge::SetCOMPortPath() before it opens the window.
///
/// Bridges run from when the user or Load() has started them until their port gets another bridge, another device is
/// set or the window object is destroyed, whether the window is shown or not. All operations are called on the GUI
/// thread unless they say otherwise.
/// @thread{GUI}
class LXGUI_API LxSerialBridgeManagerWnd : public LxWnd
{
public:
    LxSerialBridgeManagerWnd();
    ~LxSerialBridgeManagerWnd() override;

    /// Stops all bridges and shows the ports of another device, all without a bridge. May be called from any thread: it
    /// returns when the GUI thread has done it, which must not wait for the caller meanwhile.
    /// @param aAdapter not owned; it must stay valid until another one or null is set or the window is destroyed. Null
    ///        (the default) leaves no port.
    /// @return always OK.
    /// @thread{any}
    LxResult SetDevice(ILxDeviceAdapter *aAdapter);

    /// Replaces the list by the properties of the bridges, in the order of the ports. P is the port's name, "Serial0",
    /// "Serial1" or "Bulk0" to "Bulk7":
    ///   P                    "COMPort" or "CLDLL"; a port without a bridge has no properties
    ///   P + "Port"           the COM port's name
    ///   P + "COMPortBaudRate", P + "COMPortParity" ("None", "Odd", "Even"), P + "COMPortBitCount",
    ///   P + "COMPortStopBits"  while the COM port is open
    ///   P + "CLDLLBaudRate"  the fixed baud rate of a Camera Link bridge; 0 when there is none
    /// @return OK.
    /// @thread{GUI}
    LxResult Save(LxPropertyList &aList);
    /// Stops all bridges and starts those of a list. A bridge that cannot be started or set does not keep the others
    /// from it; what went wrong is added to the messages, one sentence each.
    /// @return OK.
    /// @thread{GUI}
    LxResult Load(LxPropertyList &aList, LxStringList &aMessages);
    /// Does nothing.
    /// @return always OperationNotImplemented (0x604).
    /// @thread{GUI}
    LxResult Recover();

    /// Deletes the window behind this object when control returns to the event loop, for a host that may be called by
    /// it. Afterwards the object can only be destroyed; its operations do nothing, and those that show it return
    /// InvalidArgument (0x4001).
    /// @thread{GUI}
    void DeleteLater();
};
