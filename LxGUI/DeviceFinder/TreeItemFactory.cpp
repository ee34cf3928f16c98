#include "LxGUI/DeviceFinder/TreeItemFactory.h"

#include "LxGUI/DeviceFinder/TreeItemInfoGEV.h"
#include "LxGUI/DeviceFinder/TreeItemInfoKelvraProtocol.h"
#include "LxGUI/DeviceFinder/TreeItemInfoNetworkAdapter.h"
#include "LxGUI/DeviceFinder/TreeItemInfoU3V.h"
#include "LxGUI/DeviceFinder/TreeItemInfoUSB.h"
#include "LxGUI/DeviceFinder/TreeItemInfoUSBHostController.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"

std::unique_ptr<TreeItemInfoInterface> CreateInterfaceItem(int aType)
{
    if (aType == LxInterfaceTypeUSBHostController) {
        return std::make_unique<TreeItemInfoUSBHostController>();
    }
    return std::make_unique<TreeItemInfoNetworkAdapter>();
}

std::unique_ptr<TreeItemInfoDevice> CreateDeviceItem(int aType, bool aEnabled)
{
    switch (aType) {
        case LxDeviceInfoTypeGEV:
            return std::make_unique<TreeItemInfoGEV>(aEnabled);
        case LxDeviceInfoTypeKelvra:
            return std::make_unique<TreeItemInfoKelvraProtocol>(aEnabled);
        case LxDeviceInfoTypeU3V:
            return std::make_unique<TreeItemInfoU3V>(aEnabled);
        default:
            return std::make_unique<TreeItemInfoUSB>(aEnabled);
    }
}
