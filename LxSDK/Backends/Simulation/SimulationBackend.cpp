#include "Backends/Simulation/SimulationBackend.h"

#include "Backends/Simulation/SimulatedInfos.h"
#include "Backends/Simulation/SimulationLog.h"
#include "Backends/Simulation/SimulationScanner.h"
#include "LxDevice/IPConfiguration.h"

namespace LxDetail
{

std::unique_ptr<DeviceScanner> SimulationBackend::CreateScanner()
{
    return std::make_unique<SimulationScanner>(mHost);
}

LxResult SimulationBackend::Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess,
                                    std::unique_ptr<LxDevice> &aDevice)
{
    const auto *info = dynamic_cast<const SimulatedInfo *>(&aInfo);
    if (info == nullptr) {
        return LxResultCode::NotSupported;
    }
    SimulationLog &log = SimulationLog::Get();
    log.Record("Connect", info->GetUnit()->GetID().GetString() + ", " + std::to_string(static_cast<int>(aAccess)));
    LxResult result;
    if (log.TakeResult("Connect", result)) {
        return result;
    }
    if (!info->IsValid()) {
        return LxResult(LxResultCode::Unavailable,
                        aInfo.GetType() == LxDeviceInfoTypeU3V
                            ? "The device must be connected to a USB 3.0 (SuperSpeed) port."
                            : "The device is on another subnet than the network adapter. Give one of them another IP "
                              "address.");
    }
    return info->GetUnit()->Connect(aAccess, aDevice);
}

LxResult SimulationBackend::GetAccessType(const LxString &aIPAddress, int &aType)
{
    const uint32_t address = ParseIPAddress(aIPAddress);
    for (const auto &unit : mHost.GetUnits()) {
        const LxSimulatedDevice values = unit->GetValues();
        if (values.mType != LxDeviceInfoTypeGEV || address == 0 || ParseIPAddress(values.mIPAddress) != address) {
            continue;
        }
        SimulationLog &log = SimulationLog::Get();
        log.Record("GetAccessType", unit->GetID().GetString() + ", " + aIPAddress.GetString());
        LxResult result;
        if (log.TakeResult("GetAccessType", result)) {
            return result;
        }
        if (unit->GetLink() != SimulatedUnit::Link::Connected || unit->IsFrozen()) {
            return LxResult(LxResultCode::Timeout, "The device does not answer.");
        }
        aType = unit->GetAccessType();
        return LxResult();
    }
    return LxResultCode::NotFound;
}

LxResult SimulationBackend::SetIPConfiguration(const char *aOperation, int aType, const LxString &aMACAddress,
                                               const LxString &aIPAddress, const LxString &aSubnetMask,
                                               const LxString &aDefaultGateway)
{
    uint64_t mac = 0;
    if (!ParseMACAddress(aMACAddress.GetString(), mac)) {
        return LxResultCode::NotFound;
    }
    for (const auto &unit : mHost.GetUnits()) {
        const LxSimulatedDevice values = unit->GetValues();
        uint64_t own = 0;
        if (values.mType != aType || !ParseMACAddress(values.mMACAddress.GetString(), own) || own != mac) {
            continue;
        }
        SimulationLog &log = SimulationLog::Get();
        log.Record(aOperation, unit->GetID().GetString() + ", " + aIPAddress.GetString() + ", " +
                                   aSubnetMask.GetString() + ", " + aDefaultGateway.GetString());
        LxResult result;
        if (log.TakeResult(aOperation, result)) {
            return result;
        }
        if (unit->GetLink() != SimulatedUnit::Link::Connected || unit->IsFrozen()) {
            return LxResult(LxResultCode::Timeout, "The device does not answer.");
        }
        return unit->SetIPConfiguration(ParseIPAddress(aIPAddress), ParseIPAddress(aSubnetMask),
                                        ParseIPAddress(aDefaultGateway));
    }
    return LxResultCode::NotFound;
}

LxResult SimulationBackend::SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                  const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return SetIPConfiguration("SetGEVIPConfiguration", LxDeviceInfoTypeGEV, aMACAddress, aIPAddress, aSubnetMask,
                              aDefaultGateway);
}

LxResult SimulationBackend::SetKelvraIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                     const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return SetIPConfiguration("SetKelvraIPConfiguration", LxDeviceInfoTypeKelvra, aMACAddress, aIPAddress, aSubnetMask,
                              aDefaultGateway);
}

}  // namespace LxDetail
