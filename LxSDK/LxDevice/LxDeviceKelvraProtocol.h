#pragma once

#include "LxDevice/LxDevice.h"

/// A connected device of the Kelvra protocol.
class LX_API LxDeviceKelvraProtocol : public LxDevice
{
public:
    ~LxDeviceKelvraProtocol() override;

    /// Gives the device with this MAC address an IP configuration. Errors as LxDeviceGEV::SetIPConfiguration().
    static LxResult SetIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                       const LxString &aSubnetMask, const LxString &aDefaultGateway);
};
