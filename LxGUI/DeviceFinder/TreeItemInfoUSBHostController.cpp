#include "LxGUI/DeviceFinder/TreeItemInfoUSBHostController.h"

#include "LxGUI/DeviceFinder/IconTiles.h"
#include "LxGUI/DeviceFinder/InfoFormat.h"
#include "LxSystem/LxUSBHostController.h"

void TreeItemInfoUSBHostController::FillRows(const LxSystem &, const LxInterface &aInterface)
{
    const auto *controller = dynamic_cast<const LxUSBHostController *>(&aInterface);
    if (!controller) {
        return;
    }
    AddRow("Description", controller->GetDisplayID());
    AddRow("Vendor ID", InfoFormat::Hex(controller->GetVendorID(), 4));
    AddRow("Device ID", InfoFormat::Hex(controller->GetDeviceID(), 4));
    AddRow("Subsystem ID", InfoFormat::Hex(controller->GetSubsystemID(), 8));
    AddRow("Revision", InfoFormat::Dec(controller->GetRevision()));
    const uint32_t speed = controller->GetSpeed();
    AddRow("Speed", InfoFormat::USBSpeed(speed), speed == LxUSBSpeedSuper ? Qt::white : Qt::yellow);
}

void TreeItemInfoUSBHostController::ChooseIcon(const LxSystem &, const LxInterface &)
{
    SetIconIndex(IconTiles::USBDevice);
}
