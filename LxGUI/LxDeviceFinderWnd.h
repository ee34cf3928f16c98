#pragma once

#include "LxGUI/LxWnd.h"

class LxDeviceInfo;

/// Shows the devices at the network adapters and USB host controllers of this computer and lets the user choose one.
///
/// Devices are searched without end while the window is open; one that has not answered for two seconds disappears.
/// ShowModal() returns OK when a device was chosen; GetSelected() then says which.
///
/// A kind of devices that is visible is listed; one that is enabled besides can be chosen. What is set takes effect
/// when the window opens the next time; in an open window it applies to devices that are found later. By default GigE
/// Vision and USB3 Vision are enabled and visible, the Kelvra protocol is visible only.
/// @thread{GUI}
class LXGUI_API LxDeviceFinderWnd : public LxWnd
{
public:
    LxDeviceFinderWnd();
    ~LxDeviceFinderWnd() override;

    /// Whether a device is listed. The default takes every device.
    ///
    /// Called on the search thread, and on the GUI thread while a device is searched by its address; an override must
    /// be thread-safe, must return soon and must not wait for the GUI thread. An application that overrides it calls
    /// Close() before it destroys the window.
    /// @param aInfo never null.
    /// @thread{called on the search thread and on the GUI thread}
    virtual bool OnFound(const LxDeviceInfo *aInfo);

    /// The chosen device, or null when none was chosen since the window was opened last. Owned by the window and valid
    /// until it is opened again or destroyed.
    /// @thread{GUI}
    const LxDeviceInfo *GetSelected() const;

    /// Whether GigE Vision devices can be chosen and whether they are listed.
    /// @thread{GUI}
    void SetGEVEnabled(bool aEnabled, bool aVisible);
    /// As it was set.
    /// @thread{GUI}
    void GetGEVEnabled(bool &aEnabled, bool &aVisible) const;
    /// Whether USB3 Vision devices can be chosen, and whether USB devices are listed. Other USB devices are never
    /// chosen.
    /// @thread{GUI}
    void SetU3VEnabled(bool aEnabled, bool aVisible);
    /// As it was set.
    /// @thread{GUI}
    void GetU3VEnabled(bool &aEnabled, bool &aVisible) const;
    /// Whether devices of the Kelvra protocol can be chosen and whether they are listed.
    /// @thread{GUI}
    void SetKelvraProtocolEnabled(bool aEnabled, bool aVisible);
    /// As it was set.
    /// @thread{GUI}
    void GetKelvraProtocolEnabled(bool &aEnabled, bool &aVisible) const;
};
