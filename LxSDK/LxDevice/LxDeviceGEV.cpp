#include "LxDevice/LxDeviceGEV.h"

#include "LxDevice/DeviceBackend.h"
#include "LxDevice/IPConfiguration.h"
#include "YrUtilsLib/IpAddress.h"

LxDeviceGEV::~LxDeviceGEV() = default;

LxResult LxDeviceGEV::GetAccessType(const LxString &aIPAddress, int *aType)
{
    if (!aType) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the access type.");
    }
    *aType = LxAccessUnknown;
    YrUtilsLib::Network::IpAddress address;
    if (!address.Set(aIPAddress.GetAscii()).IsOK() || address.Get() == 0) {
        return LxResult(LxResultCode::InvalidArgument, "\"" + aIPAddress.GetString() + "\" is no IP address.");
    }
    const LxString text = address.ToString();
    return LxDetail::AskBackends(
        [&text, aType](LxDetail::DeviceBackend &aBackend) {
            int type = LxAccessUnknown;
            const LxResult result = aBackend.GetAccessType(text, type);
            if (result.IsOK()) {
                *aType = type;
            }
            return result;
        },
        "No device at " + text.GetString() + " is known.");
}

LxResult LxDeviceGEV::SetIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                         const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return LxDetail::SetIPConfiguration(&LxDetail::DeviceBackend::SetGEVIPConfiguration, aMACAddress, aIPAddress,
                                        aSubnetMask, aDefaultGateway);
}
