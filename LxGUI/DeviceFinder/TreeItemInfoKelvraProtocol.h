#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"

/// A device of the Kelvra protocol in the device tree.
class TreeItemInfoKelvraProtocol : public TreeItemInfoDevice
{
public:
    using TreeItemInfoDevice::TreeItemInfoDevice;

    void FillRows(const LxDeviceInfo &aInfo) override;
    void ChooseIcon(const LxDeviceInfo &aInfo) override;
};
