#include "LxGUI/DeviceFinder/ListingRules.h"

#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"

bool IsDeviceListed(int aType, const ListingOptions &aOptions)
{
    switch (aType) {
        case LxDeviceInfoTypeGEV:
            return aOptions.mGEVVisible;
        case LxDeviceInfoTypeKelvra:
            return aOptions.mKelvraVisible;
        case LxDeviceInfoTypeUSB:
        case LxDeviceInfoTypeU3V:
            return aOptions.mU3VVisible;
        default:
            return false;
    }
}

bool IsDeviceEnabled(int aType, const ListingOptions &aOptions)
{
    switch (aType) {
        case LxDeviceInfoTypeGEV:
            return aOptions.mGEVEnabled;
        case LxDeviceInfoTypeKelvra:
            return aOptions.mKelvraEnabled;
        case LxDeviceInfoTypeU3V:
            return aOptions.mU3VEnabled;
        default:
            return false;
    }
}

bool IsNetworkDevice(int aType)
{
    return aType == LxDeviceInfoTypeGEV || aType == LxDeviceInfoTypeKelvra;
}

bool IsInterfaceListed(int aType, const ListingOptions &aOptions)
{
    switch (aType) {
        case LxInterfaceTypeUSBHostController:
            return aOptions.mU3VVisible;
        case LxInterfaceTypeNetworkAdapter:
            return aOptions.IsNetworkVisible();
        default:
            return false;
    }
}

bool IsReportTooOld(qint64 aElapsed)
{
    return aElapsed > 2000 && aElapsed < 43200001;
}
