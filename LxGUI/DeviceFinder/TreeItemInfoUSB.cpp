#include "LxGUI/DeviceFinder/TreeItemInfoUSB.h"

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxSystem/LxDeviceInfoUSB.h"

void TreeItemInfoUSB::FillRows(const LxDeviceInfo &aInfo)
{
    if (const auto *info = dynamic_cast<const LxDeviceInfoUSB *>(&aInfo)) {
        AddRow("Status", InfoFormat::USBStatus(info->GetStatus()));
    }
}

void TreeItemInfoUSB::ChooseIcon(const LxDeviceInfo &)
{
    SetIconIndex(IconTiles::USB(IsEnabled()));
}
