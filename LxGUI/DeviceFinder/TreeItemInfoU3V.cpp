#include "LxGUI/DeviceFinder/TreeItemInfoU3V.h"

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxSystem/LxDeviceInfoU3V.h"
#include "LxSystem/LxUSBHostController.h"

namespace
{

QColor FailingUnless(bool aGood)
{
    return aGood ? Qt::white : Qt::darkRed;
}

QString Version(const LxDeviceInfoU3V &aInfo, void (LxDeviceInfoU3V::*aGet)(uint32_t &, uint32_t &) const)
{
    uint32_t major = 0;
    uint32_t minor = 0;
    (aInfo.*aGet)(major, minor);
    return InfoFormat::Version(major, minor);
}

QColor SpeedColor(const LxDeviceInfoU3V &aInfo)
{
    if (!aInfo.IsCurrentSpeedSupported()) {
        return Qt::darkRed;
    }
    return aInfo.GetSpeed() == LxUSBSpeedSuper ? Qt::white : Qt::yellow;
}

}  // namespace

void TreeItemInfoU3V::FillRows(const LxDeviceInfo &aInfo)
{
    const auto *info = dynamic_cast<const LxDeviceInfoU3V *>(&aInfo);
    if (!info) {
        return;
    }
    const bool driver = info->IsKelvraDriverInstalled();
    AddRow("Vendor Name", info->GetVendorName());
    AddRow("Model Name", info->GetModelName());
    AddRow("Version", info->GetVersion());
    AddRow("Manufacturer Info", info->GetManufacturerInfo());
    AddRow("Serial Number", info->GetSerialNumber());
    AddRow("User Defined Name", info->GetUserDefinedName());
    AddRow("Configuration Valid", InfoFormat::Bool(info->IsConfigurationValid()));
    AddRow("Receiver License", info->GetLicenseMessage(), FailingUnless(info->IsLicenseValid()));
    AddRow("Power", info->GetPowerMessage(), FailingUnless(info->IsInitializedCapabilities()));
    AddRow("GenCP Version", Version(*info, &LxDeviceInfoU3V::GetGenCPVersion));
    AddRow("U3V Version", Version(*info, &LxDeviceInfoU3V::GetU3VVersion));
    AddRow("Device GUID", info->GetDeviceGUID());
    AddRow("Family Name", info->GetFamilyName());
    AddRow("U3V Serial Number", info->GetU3VSerialNumber());
    AddRow("Low Speed Supported", InfoFormat::Bool(info->IsLowSpeedSupported()));
    AddRow("Full Speed Supported", InfoFormat::Bool(info->IsFullSpeedSupported()));
    AddRow("High Speed Supported", InfoFormat::Bool(info->IsHighSpeedSupported()));
    AddRow("Super Speed Supported", InfoFormat::Bool(info->IsSuperSpeedSupported()));
    AddRow("Speed", info->GetSpeedMessage(), SpeedColor(*info));
    AddRow("Max Power", InfoFormat::Milliampere(info->GetMaxPower()));
    AddRow("Kelvra Driver Installed",
           driver ? InfoFormat::Bool(true) : QStringLiteral("Missing driver. See Corvo Player guide"),
           FailingUnless(driver));
}

void TreeItemInfoU3V::ChooseIcon(const LxDeviceInfo &aInfo)
{
    if (const auto *info = dynamic_cast<const LxDeviceInfoU3V *>(&aInfo)) {
        SetIconIndex(IconTiles::U3V(IsEnabled(), info->IsKelvraDriverInstalled(), info->GetSpeed()));
    }
}
