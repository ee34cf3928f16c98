#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"

/// A USB3 Vision device in the device tree.
class TreeItemInfoU3V : public TreeItemInfoDevice
{
public:
    using TreeItemInfoDevice::TreeItemInfoDevice;

    void FillRows(const LxDeviceInfo &aInfo) override;
    void ChooseIcon(const LxDeviceInfo &aInfo) override;
};
