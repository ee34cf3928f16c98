#include "LxGUI/DeviceFinder/TreeItemInfoKelvraProtocol.h"

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"

void TreeItemInfoKelvraProtocol::FillRows(const LxDeviceInfo &aInfo)
{
    SetReachable(aInfo.IsConfigurationValid());
    const auto *info = dynamic_cast<const LxDeviceInfoKelvraProtocol *>(&aInfo);
    if (!info) {
        return;
    }
    AddRow("MAC", info->GetMACAddress());
    AddRow("IP", info->GetIPAddress());
    AddRow("Subnet Mask", info->GetSubnetMask());
    AddRow("Default Gateway", info->GetDefaultGateway());
    AddRow("Device ID", InfoFormat::Hex(info->GetDeviceID(), 2));
    AddRow("Module ID", InfoFormat::Hex(info->GetModuleID(), 2));
    AddRow("Sub ID", InfoFormat::Hex(info->GetSubID(), 2));
    AddRow("Vendor ID", InfoFormat::Hex(info->GetVendorID(), 2));
    AddRow("Software Major", InfoFormat::Dec(info->GetSoftwareMajor()));
    AddRow("Software Minor", InfoFormat::Dec(info->GetSoftwareMinor()));
}

void TreeItemInfoKelvraProtocol::ChooseIcon(const LxDeviceInfo &aInfo)
{
    SetIconIndex(IconTiles::KelvraProtocol(IsEnabled(), aInfo.IsConfigurationValid()));
}
