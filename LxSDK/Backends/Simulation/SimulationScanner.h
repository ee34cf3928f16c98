#pragma once

// Internal: what one LxSystem has seen of the simulated host.

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Backends/Simulation/SimulatedInfos.h"
#include "Backends/Simulation/SimulationHost.h"
#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

class SimulationScanner : public DeviceScanner
{
public:
    explicit SimulationScanner(SimulationHost &aHost);

    void UpdateInterfaces() override;
    std::vector<const LxInterface *> GetInterfaces() const override;
    void Find(SearchContext &aContext) override;
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override;

private:
    using Key = std::pair<const SimulatedUnit *, const SimulatedInterface *>;

    SimulatedInterface *FindInterface(const LxString &aName) const;
    SimulatedInfo &UpdateInfo(const std::shared_ptr<SimulatedUnit> &aUnit, SimulatedInterface &aInterface);
    /// False when the search was cancelled meanwhile.
    static bool WaitUntil(SearchContext &aContext, std::chrono::steady_clock::time_point aTime);

    SimulationHost &mHost;
    const SimulationCount mCount;
    std::vector<std::unique_ptr<SimulatedInterface>> mAllInterfaces;  // also those that have gone
    std::vector<SimulatedInterface *> mInterfaces;
    std::map<Key, std::unique_ptr<SimulatedInfo>> mInfos;
};

}  // namespace LxDetail
