#pragma once

// Internal: the simulated host: its interfaces and the devices at them.

#include <memory>
#include <mutex>
#include <variant>
#include <vector>

#include "Backends/Simulation/SimulatedUnit.h"
#include "Backends/Simulation/SimulationClock.h"
#include "LxDevice/DeviceBackend.h"
#include "LxSimulation/LxSimulation.h"

namespace LxDetail
{

/// The one simulated host of the process. Thread-safe.
class SimulationHost
{
public:
    using InterfaceValues = std::variant<LxSimulatedNetworkAdapter, LxSimulatedUSBHostController>;

    static SimulationHost &Get();

    void Enable(bool aHideRealDevices);
    void Disable();
    bool IsEnabled() const;
    /// As the environment variable LXSDK_SIMULATION says.
    void EnableByEnvironment();
    void Clear();

    LxResult SetInterface(InterfaceValues aValues);
    LxResult RemoveInterface(const LxString &aName);
    LxResult SetDevice(const LxSimulatedDevice &aDevice);
    LxResult RemoveDevice(const LxString &aID);
    LxResult SetDevicePresent(const LxString &aID, bool aPresent);
    void SetDefaultFindDelay(std::chrono::milliseconds aDelay);
    std::chrono::milliseconds GetDefaultFindDelay() const;

    std::vector<InterfaceValues> GetInterfaces() const;
    std::vector<std::shared_ptr<SimulatedUnit>> GetUnits() const;
    /// Null when there is none.
    std::shared_ptr<SimulatedUnit> FindUnit(const LxString &aID) const;

private:
    SimulationHost();

    void UpdateReachability();

    SimulationClock mClock;
    const std::shared_ptr<DeviceBackend> mBackend;

    std::mutex mChangeMutex;    // held during changes, so that devices see them in their order
    mutable std::mutex mMutex;  // guards all members below
    bool mEnabled = false;
    bool mHidesRealDevices = false;
    std::vector<InterfaceValues> mInterfaces;
    std::vector<std::shared_ptr<SimulatedUnit>> mUnits;
    std::chrono::milliseconds mFindDelay{0};
};

/// The name of an interface.
const LxString &GetName(const SimulationHost::InterfaceValues &aValues);

}  // namespace LxDetail
