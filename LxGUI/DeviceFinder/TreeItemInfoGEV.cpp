#include "LxGUI/DeviceFinder/TreeItemInfoGEV.h"

#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxGUI/Frame/Text.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxNetworkAdapter.h"

void TreeItemInfoGEV::RefreshAccess()
{
    if (mIPAddress.isEmpty() || mAccessSuppressed) {
        return;
    }
    int type = LxAccessUnknown;
    LxDeviceGEV::GetAccessType(mIPAddress.constData(), &type);
    const bool inUse = type == LxAccessControl || type == LxAccessExclusive;
    ChangeRow("Access Status", InfoFormat::AccessType(type), inUse ? Qt::yellow : Qt::white);
}

void TreeItemInfoGEV::FillRows(const LxDeviceInfo &aInfo)
{
    const bool valid = aInfo.IsConfigurationValid();
    SetReachable(valid);
    mIPAddress.clear();
    const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(&aInfo);
    if (!info) {
        return;
    }
    const QString address = ToQString(info->GetIPAddress());
    const bool hasAddress = !IsUnset(address);
    if (valid) {
        mIPAddress = address.toUtf8();
    }
    const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(info->GetInterface());
    const bool sameMask = adapter && info->GetSubnetMask() == adapter->GetSubnetMask(0);
    uint32_t major = 0;
    uint32_t minor = 0;
    info->GetGEVVersion(major, minor);
    const bool license = info->IsLicenseValid();

    AddRow("MAC", info->GetMACAddress());
    AddRow("IP", address, hasAddress ? Qt::white : Qt::yellow);
    AddRow("Subnet Mask", info->GetSubnetMask(), sameMask ? Qt::white : Qt::yellow);
    AddRow("Default Gateway", info->GetDefaultGateway());
    AddRow("Vendor", info->GetVendorName());
    AddRow("Model", info->GetModelName());
    AddRow("Access Status", InfoFormat::AccessType(LxAccessUnknown));
    AddRow("Manufacturer Info", info->GetManufacturerInfo());
    AddRow("Version", info->GetVersion());
    AddRow("Serial Number", info->GetSerialNumber());
    AddRow("User Defined Name", info->GetUserDefinedName());
    AddRow("Protocol Version", InfoFormat::Version(major, minor));
    AddRow("IP Configuration",
           valid || !hasAddress ? InfoFormat::Validity(valid) : QStringLiteral("Invalid on this interface"),
           valid ? Qt::white : Qt::darkRed);
    AddRow("Receiver License", InfoFormat::Validity(license), license ? Qt::white : Qt::darkRed);
    AddRow("Device Class", InfoFormat::DeviceClass(info->GetClass()));
    AddRow("IP Config Options", info->GetIPConfigOptionsString());
    AddRow("Current IP Config", info->GetIPConfigCurrentString());
}

void TreeItemInfoGEV::ChooseIcon(const LxDeviceInfo &aInfo)
{
    SetIconIndex(IconTiles::GEV(IsEnabled(), aInfo.IsConfigurationValid()));
}
