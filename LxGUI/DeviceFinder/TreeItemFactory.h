#pragma once

#include <memory>

#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"
#include "LxGUI/DeviceFinder/TreeItemInfoInterface.h"

/// The item for a kind of interface that is listed, by LxInterfaceType.
std::unique_ptr<TreeItemInfoInterface> CreateInterfaceItem(int aType);
/// The item for a kind of device that is listed, by LxDeviceInfoType.
std::unique_ptr<TreeItemInfoDevice> CreateDeviceItem(int aType, bool aEnabled);
