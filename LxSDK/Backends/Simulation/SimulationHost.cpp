#include "Backends/Simulation/SimulationHost.h"

#include <algorithm>
#include <cstdlib>

#include "Backends/Simulation/SimulatedCLProtocol.h"
#include "Backends/Simulation/SimulationBackend.h"
#include "Backends/Simulation/SimulationLog.h"
#include "LxDevice/IPConfiguration.h"
#include "LxSystem/LxDeviceInfo.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

LxResult NoDevice(const LxString &aID)
{
    return LxResult(LxResultCode::NotFound, "There is no simulated device \"" + aID.GetString() + "\".");
}

LxResult CheckAddress(const LxString &aText)
{
    YrUtilsLib::Network::IpAddress address;
    return address.Set(aText.GetAscii()).IsOK()
               ? LxResult()
               : LxResult(LxResultCode::InvalidArgument, "\"" + aText.GetString() + "\" is no IP address.");
}

LxResult CheckAddresses(const SimulationHost::InterfaceValues &aValues)
{
    const auto *adapter = std::get_if<LxSimulatedNetworkAdapter>(&aValues);
    if (adapter == nullptr) {
        return LxResult();
    }
    LxResult result = CheckAddress(adapter->mDefaultGateway);
    for (const LxSimulatedAddress &address : adapter->mAddresses) {
        for (const LxString &text : {address.mIPAddress, address.mSubnetMask}) {
            if (result.IsOK()) {
                result = CheckAddress(text);
            }
        }
    }
    return result;
}

bool IsNetworkDevice(const LxSimulatedDevice &aDevice)
{
    return aDevice.mType == LxDeviceInfoTypeGEV || aDevice.mType == LxDeviceInfoTypeKelvra;
}

LxResult CheckDevice(const LxSimulatedDevice &aDevice)
{
    if (IsNetworkDevice(aDevice)) {
        uint64_t mac = 0;
        if (!ParseMACAddress(aDevice.mMACAddress.GetString(), mac)) {
            return LxResult(LxResultCode::InvalidArgument,
                            "\"" + aDevice.mMACAddress.GetString() + "\" is no MAC address.");
        }
        for (const LxString &text : {aDevice.mIPAddress, aDevice.mSubnetMask, aDevice.mDefaultGateway}) {
            if (const LxResult result = CheckAddress(text); !result.IsOK()) {
                return result;
            }
        }
    }
    if (SimulatedUnit::MakeID(aDevice).IsEmpty()) {
        return LxResult(LxResultCode::InvalidArgument, "The device has no unique ID.");
    }
    return LxResult();
}

}  // namespace

const LxString &GetName(const SimulationHost::InterfaceValues &aValues)
{
    return std::visit([](const auto &aInterface) -> const LxString & { return aInterface.mName; }, aValues);
}

SimulationHost &SimulationHost::Get()
{
    // Never destroyed: devices may live until the very end of the process.
    static SimulationHost &host = *new SimulationHost;
    return host;
}

SimulationHost::SimulationHost() : mBackend(std::make_shared<SimulationBackend>(*this)) {}

void SimulationHost::Enable(bool aHideRealDevices)
{
    std::lock_guard change(mChangeMutex);
    bool hidden = false;
    {
        std::lock_guard lock(mMutex);
        mEnabled = true;
        hidden = mHidesRealDevices;
        mHidesRealDevices = aHideRealDevices;
    }
    DeviceBackends::Add(mBackend);
    CLProtocolDrivers::Add(SimulatedCLProtocol::Get());
    if (hidden != aHideRealDevices) {
        DeviceBackends::SetRealDevicesHidden(aHideRealDevices);
    }
}

void SimulationHost::Disable()
{
    std::lock_guard change(mChangeMutex);
    bool hidden = false;
    {
        std::lock_guard lock(mMutex);
        mEnabled = false;
        hidden = mHidesRealDevices;
        mHidesRealDevices = false;
    }
    DeviceBackends::Remove(mBackend);
    CLProtocolDrivers::Remove(SimulatedCLProtocol::Get());
    if (hidden) {
        DeviceBackends::SetRealDevicesHidden(false);
    }
}

bool SimulationHost::IsEnabled() const
{
    std::lock_guard lock(mMutex);
    return mEnabled;
}

void SimulationHost::EnableByEnvironment()
{
    const char *value = std::getenv("LXSDK_SIMULATION");
    const std::string text = value == nullptr ? "" : value;
    if (text.empty() || text == "0") {
        return;
    }
    if (GetInterfaces().empty()) {
        LxSimulation::AddDefaultHost();
    }
    Enable(text == "only");
}

void SimulationHost::Clear()
{
    std::lock_guard change(mChangeMutex);
    std::vector<std::shared_ptr<SimulatedUnit>> units;
    {
        std::lock_guard lock(mMutex);
        units.swap(mUnits);
        mInterfaces.clear();
        mFindDelay = std::chrono::milliseconds(0);
    }
    for (const auto &unit : units) {
        unit->SetPresent(false);
        unit->SetReachable(false);
    }
    SimulationLog::Get().ClearResults();
    SimulationLog::Get().ClearCalls();
    SimulationLog::Get().SetRecording(false);
}

LxResult SimulationHost::SetInterface(InterfaceValues aValues)
{
    if (GetName(aValues).IsEmpty()) {
        return LxResult(LxResultCode::InvalidArgument, "The interface has no name.");
    }
    if (const LxResult result = CheckAddresses(aValues); !result.IsOK()) {
        return result;
    }
    std::lock_guard change(mChangeMutex);
    {
        std::lock_guard lock(mMutex);
        const auto known = std::find_if(mInterfaces.begin(), mInterfaces.end(),
                                        [&](const auto &aOther) { return GetName(aOther) == GetName(aValues); });
        if (known == mInterfaces.end()) {
            mInterfaces.push_back(std::move(aValues));
        }
        else if (known->index() != aValues.index()) {
            return LxResult(LxResultCode::InvalidArgument,
                            "An interface of another kind is called \"" + GetName(aValues).GetString() + "\".");
        }
        else {
            *known = std::move(aValues);
        }
    }
    UpdateReachability();
    return LxResult();
}

LxResult SimulationHost::RemoveInterface(const LxString &aName)
{
    std::lock_guard change(mChangeMutex);
    {
        std::lock_guard lock(mMutex);
        if (std::erase_if(mInterfaces, [&](const auto &aOther) { return GetName(aOther) == aName; }) == 0) {
            return LxResult(LxResultCode::NotFound, "There is no simulated interface \"" + aName.GetString() + "\".");
        }
    }
    UpdateReachability();
    return LxResult();
}

LxResult SimulationHost::SetDevice(const LxSimulatedDevice &aDevice)
{
    if (const LxResult result = CheckDevice(aDevice); !result.IsOK()) {
        return result;
    }
    std::lock_guard change(mChangeMutex);
    const LxString id = SimulatedUnit::MakeID(aDevice);
    auto unit = FindUnit(id);
    if (unit != nullptr && unit->GetValues().mType != aDevice.mType) {
        return LxResult(LxResultCode::InvalidArgument,
                        "The device \"" + id.GetString() + "\" is of another kind; remove it first.");
    }
    if (unit != nullptr) {
        unit->SetValues(aDevice);
    }
    else {
        unit = std::make_shared<SimulatedUnit>(mClock, aDevice);
        std::lock_guard lock(mMutex);
        mUnits.push_back(unit);
    }
    UpdateReachability();
    return LxResult();
}

LxResult SimulationHost::RemoveDevice(const LxString &aID)
{
    std::lock_guard change(mChangeMutex);
    const auto unit = FindUnit(aID);
    if (unit == nullptr) {
        return NoDevice(aID);
    }
    {
        std::lock_guard lock(mMutex);
        std::erase(mUnits, unit);
    }
    unit->SetPresent(false);
    unit->SetReachable(false);
    return LxResult();
}

LxResult SimulationHost::SetDevicePresent(const LxString &aID, bool aPresent)
{
    std::lock_guard change(mChangeMutex);
    const auto unit = FindUnit(aID);
    if (unit == nullptr) {
        return NoDevice(aID);
    }
    unit->SetPresent(aPresent);
    UpdateReachability();
    return LxResult();
}

void SimulationHost::UpdateReachability()
{
    const auto interfaces = GetInterfaces();
    for (const auto &unit : GetUnits()) {
        const auto names = unit->GetValues().mInterfaces;
        const bool connected = std::any_of(interfaces.begin(), interfaces.end(), [&](const auto &aInterface) {
            return std::find(names.begin(), names.end(), GetName(aInterface)) != names.end();
        });
        unit->SetReachable(unit->IsPresent() && connected);
    }
}

void SimulationHost::SetDefaultFindDelay(std::chrono::milliseconds aDelay)
{
    std::lock_guard lock(mMutex);
    mFindDelay = aDelay;
}

std::chrono::milliseconds SimulationHost::GetDefaultFindDelay() const
{
    std::lock_guard lock(mMutex);
    return mFindDelay;
}

std::vector<SimulationHost::InterfaceValues> SimulationHost::GetInterfaces() const
{
    std::lock_guard lock(mMutex);
    return mInterfaces;
}

std::vector<std::shared_ptr<SimulatedUnit>> SimulationHost::GetUnits() const
{
    std::lock_guard lock(mMutex);
    return mUnits;
}

std::shared_ptr<SimulatedUnit> SimulationHost::FindUnit(const LxString &aID) const
{
    std::lock_guard lock(mMutex);
    const auto found =
        std::find_if(mUnits.begin(), mUnits.end(), [&](const auto &aUnit) { return aUnit->GetID() == aID; });
    return found == mUnits.end() ? nullptr : *found;
}

}  // namespace LxDetail
