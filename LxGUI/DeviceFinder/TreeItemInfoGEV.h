#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"

/// A GigE Vision device in the device tree.
class TreeItemInfoGEV : public TreeItemInfoDevice
{
public:
    using TreeItemInfoDevice::TreeItemInfoDevice;

    /// Asks the device who uses it; nothing when it cannot be reached.
    void RefreshAccess() override;
    void FillRows(const LxDeviceInfo &aInfo) override;
    void ChooseIcon(const LxDeviceInfo &aInfo) override;

private:
    QByteArray mIPAddress;  // empty while the configuration is not valid
    bool mAccessSuppressed = false;
};
