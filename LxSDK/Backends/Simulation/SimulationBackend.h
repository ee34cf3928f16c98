#pragma once

// Internal: the simulated host as a backend.

#include "Backends/Simulation/SimulationHost.h"
#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

class SimulationBackend : public DeviceBackend
{
public:
    explicit SimulationBackend(SimulationHost &aHost) : mHost(aHost) {}

    const char *GetName() const override { return "Simulation"; }
    std::unique_ptr<DeviceScanner> CreateScanner() override;
    LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice) override;
    LxResult GetAccessType(const LxString &aIPAddress, int &aType) override;
    LxResult SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress, const LxString &aSubnetMask,
                                   const LxString &aDefaultGateway) override;
    LxResult SetKelvraIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                      const LxString &aSubnetMask, const LxString &aDefaultGateway) override;

private:
    LxResult SetIPConfiguration(const char *aOperation, int aType, const LxString &aMACAddress,
                                const LxString &aIPAddress, const LxString &aSubnetMask,
                                const LxString &aDefaultGateway);

    SimulationHost &mHost;
};

}  // namespace LxDetail
