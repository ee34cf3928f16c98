#include "LxDevice/LxDeviceKelvraProtocol.h"

#include "LxDevice/IPConfiguration.h"

LxDeviceKelvraProtocol::~LxDeviceKelvraProtocol() = default;

LxResult LxDeviceKelvraProtocol::SetIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                    const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return LxDetail::SetIPConfiguration(&LxDetail::DeviceBackend::SetKelvraIPConfiguration, aMACAddress, aIPAddress,
                                        aSubnetMask, aDefaultGateway);
}
