#include "LxGUI/DeviceFinder/SystemLookup.h"

#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"
#include "LxSystem/LxSystem.h"

const LxInterface *FindInterface(const LxSystem &aSystem, const QByteArray &aUniqueID)
{
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        const LxInterface *interface = aSystem.GetInterface(i);
        if (interface && aUniqueID == interface->GetUniqueID().GetAscii()) {
            return interface;
        }
    }
    return nullptr;
}

const LxDeviceInfo *FindDeviceInfo(const LxInterface &aInterface, const QByteArray &aUniqueID)
{
    for (uint32_t i = 0; i < aInterface.GetDeviceCount(); ++i) {
        const LxDeviceInfo *info = aInterface.GetDeviceInfo(i);
        if (info && aUniqueID == info->GetUniqueID().GetAscii()) {
            return info;
        }
    }
    return nullptr;
}
