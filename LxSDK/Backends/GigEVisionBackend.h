#pragma once

// Internal: GigE Vision devices on the network.

#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

class GigEVisionBackend : public DeviceBackend
{
public:
    const char *GetName() const override { return "GigE Vision"; }
    std::unique_ptr<DeviceScanner> CreateScanner() override;
    LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice) override;
    LxResult GetAccessType(const LxString &aIPAddress, int &aType) override;
    LxResult SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress, const LxString &aSubnetMask,
                                   const LxString &aDefaultGateway) override;
};

}  // namespace LxDetail
