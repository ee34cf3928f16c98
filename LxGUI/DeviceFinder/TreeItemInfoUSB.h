#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"

/// A USB device that is no USB3 Vision device in the device tree.
class TreeItemInfoUSB : public TreeItemInfoDevice
{
public:
    using TreeItemInfoDevice::TreeItemInfoDevice;

    void FillRows(const LxDeviceInfo &aInfo) override;
    void ChooseIcon(const LxDeviceInfo &aInfo) override;
};
