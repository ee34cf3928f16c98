#pragma once

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxStringList.h"
#include "LxGUI/LxWnd.h"

class LxCameraBridge;
class LxConfigurationReader;
class LxConfigurationWriter;
class LxDevice;
class LxStream;

/// Connects the cameras behind the serial ports of a frame grabber (through a Kelvra camera file, the GenICam CL
/// Protocol or GenCP) and shows their features: one bridge a port.
///
/// Bridges stay connected when the window is closed, until another device is set or the window object is destroyed. All
/// operations are called on the GUI thread unless they say otherwise. Probing, connecting and loading block the GUI
/// thread, under a wait cursor, until the camera has answered.
/// @thread{GUI}
class LXGUI_API LxCameraBridgeManagerWnd : public LxWnd
{
public:
    LxCameraBridgeManagerWnd();
    ~LxCameraBridgeManagerWnd() override;

    /// Disconnects all bridges and makes one for each serial port of another device. May be called from any thread: it
    /// returns when the GUI thread has done it, which must not wait for the caller meanwhile.
    /// @param aDevice not owned; it must stay valid until another one or null is set or the window is destroyed. Null
    ///        (the default) leaves no bridge.
    /// @return always OK.
    /// @thread{any}
    LxResult SetDevice(LxDevice *aDevice);
    /// The stream that bridges made from now on are given; those that exist keep theirs.
    /// @param aStream not owned; null is allowed.
    /// @return OK.
    /// @thread{GUI}
    LxResult SetStream(LxStream *aStream);

    /// The number of bridges: one for each serial port of the device.
    /// @thread{GUI}
    int GetBridgeCount() const;
    /// The bridge at an index of 0 to GetBridgeCount() - 1, in the order of the ports, owned by the window; else null.
    /// @thread{GUI}
    LxCameraBridge *GetBridge(int aIndex);
    /// Its port; LxDeviceSerial::Invalid when there is no such bridge.
    /// @thread{GUI}
    LxDeviceSerial GetBridgePort(int aIndex);

    /// Saves every connected bridge under its index as name, and the list "CameraBridgeIndex" of these names with the
    /// number of the port of each; nothing when no bridge is connected.
    /// @return OK.
    /// @thread{GUI}
    LxResult Save(LxConfigurationWriter &aWriter);
    /// Connects the bridges as they were saved. A port that the device does not have is left out; what goes wrong with
    /// a bridge is added to the errors.
    /// @return OK; NotFound, and nothing has changed, when nothing was saved.
    /// @thread{GUI}
    LxResult Load(LxConfigurationReader &aReader, LxStringList &aErrors);
    /// Does nothing.
    /// @return always OperationNotImplemented (0x604).
    /// @thread{GUI}
    LxResult Recover();

    /// Offers Kelvra camera files. At first they are offered as the user setting "KelvraCameraFiles" says (not, when
    /// there is none).
    /// @thread{GUI}
    void ShowKCF();
    /// Takes the offer of camera files away and disconnects the bridges that are connected in this way.
    /// @thread{GUI}
    void HideKCF();
    /// Whether Kelvra camera files are offered.
    /// @thread{GUI}
    bool IsKCFVisible() const;

    /// Deletes the window behind this object when control returns to the event loop, for a host that may be called by
    /// it. Afterwards the object can only be destroyed; its operations do nothing, and those that show it return
    /// InvalidArgument (0x4001).
    /// @thread{GUI}
    void DeleteLater();
};
