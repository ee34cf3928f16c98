#include "Backends/Simulation/SimulationScanner.h"

#include <poll.h>

#include <algorithm>
#include <thread>

namespace LxDetail
{

using namespace std::chrono_literals;

namespace
{

constexpr auto FindDeviceTimeout = 1000ms;

template <class Object>
Object *Reuse(const std::vector<std::unique_ptr<SimulatedInterface>> &aObjects, const typename Object::Values &aValues)
{
    for (const auto &object : aObjects) {
        auto *known = dynamic_cast<Object *>(object.get());
        if (known != nullptr && known->GetUniqueID() == aValues.mName) {
            known->Update(aValues);
            return known;
        }
    }
    return nullptr;
}

}  // namespace

SimulationScanner::SimulationScanner(SimulationHost &aHost) : mHost(aHost), mCount(SimulationLog::Get().mScanners) {}

void SimulationScanner::UpdateInterfaces()
{
    std::vector<SimulatedInterface *> present;
    for (const auto &values : mHost.GetInterfaces()) {
        std::visit(
            [&](const auto &aValues) {
                using Values = std::decay_t<decltype(aValues)>;
                using Object = std::conditional_t<std::is_same_v<Values, LxSimulatedNetworkAdapter>,
                                                  SimulatedNetworkAdapter, SimulatedUSBHostController>;
                SimulatedInterface *object = Reuse<Object>(mAllInterfaces, aValues);
                if (object == nullptr) {
                    mAllInterfaces.push_back(std::make_unique<Object>(aValues));
                    object = mAllInterfaces.back().get();
                }
                present.push_back(object);
            },
            values);
    }
    for (SimulatedInterface *old : mInterfaces) {
        if (std::find(present.begin(), present.end(), old) == present.end()) {
            old->GetDevices().Set({});
        }
    }
    mInterfaces = std::move(present);
}

std::vector<const LxInterface *> SimulationScanner::GetInterfaces() const
{
    std::vector<const LxInterface *> interfaces;
    for (const SimulatedInterface *object : mInterfaces) {
        interfaces.push_back(object->GetInterface());
    }
    return interfaces;
}

SimulatedInterface *SimulationScanner::FindInterface(const LxString &aName) const
{
    const auto found = std::find_if(mInterfaces.begin(), mInterfaces.end(), [&](const SimulatedInterface *aInterface) {
        return aInterface->GetInterface()->GetUniqueID() == aName;
    });
    return found == mInterfaces.end() ? nullptr : *found;
}

SimulatedInfo &SimulationScanner::UpdateInfo(const std::shared_ptr<SimulatedUnit> &aUnit,
                                             SimulatedInterface &aInterface)
{
    std::unique_ptr<SimulatedInfo> &info = mInfos[{aUnit.get(), &aInterface}];
    if (info == nullptr) {
        info = SimulatedInfo::Create(aUnit, aInterface);
    }
    else {
        info->Update();
    }
    return *info;
}

bool SimulationScanner::WaitUntil(SearchContext &aContext, std::chrono::steady_clock::time_point aTime)
{
    while (!aContext.IsCancelled()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(aTime - std::chrono::steady_clock::now());
        if (left <= 0ms) {
            return true;
        }
        pollfd descriptor{aContext.GetCancelDescriptor(), POLLIN, 0};
        // Without a descriptor the flag is looked at now and then.
        const auto wait = descriptor.fd < 0 ? std::min<std::chrono::milliseconds>(left, 10ms) : left;
        poll(&descriptor, descriptor.fd < 0 ? 0 : 1, static_cast<int>(wait.count()));
    }
    return false;
}

void SimulationScanner::Find(SearchContext &aContext)
{
    SimulationLog::Get().Record(
        "Find", std::to_string(aContext.GetTimeout()) + (aContext.IsSubnetBroadcastEnabled() ? ", subnets" : ""));
    struct Answer
    {
        std::chrono::milliseconds mDelay;
        std::shared_ptr<SimulatedUnit> mUnit;
        SimulatedInterface *mInterface;
    };
    const auto start = std::chrono::steady_clock::now();
    std::vector<Answer> answers;
    for (const auto &unit : mHost.GetUnits()) {
        const auto delay = unit->GetFindDelay(mHost.GetDefaultFindDelay());
        if (!unit->IsPresent() || unit->IsFrozen() || delay > std::chrono::milliseconds(aContext.GetTimeout())) {
            continue;
        }
        for (const LxString &name : unit->GetValues().mInterfaces) {
            if (SimulatedInterface *object = FindInterface(name)) {
                answers.push_back({delay, unit, object});
            }
        }
    }
    std::stable_sort(answers.begin(), answers.end(),
                     [](const Answer &aLeft, const Answer &aRight) { return aLeft.mDelay < aRight.mDelay; });

    std::map<SimulatedInterface *, std::vector<const LxDeviceInfo *>> found;
    for (const Answer &answer : answers) {
        if (!WaitUntil(aContext, start + answer.mDelay)) {
            return;  // a list of what happened to answer so far would make devices vanish
        }
        const SimulatedInfo &info = UpdateInfo(answer.mUnit, *answer.mInterface);
        found[answer.mInterface].push_back(info.GetInfo());
        aContext.ReportDevice(answer.mInterface->GetInterface(), info.GetInfo());
    }
    for (SimulatedInterface *object : mInterfaces) {
        object->GetDevices().Set(std::move(found[object]));
    }
}

LxResult SimulationScanner::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    for (const auto &unit : mHost.GetUnits()) {
        for (const LxString &name : unit->GetValues().mInterfaces) {
            SimulatedInterface *object = FindInterface(name);
            if (object == nullptr || !unit->IsPresent() || unit->IsFrozen()) {
                continue;
            }
            const SimulatedInfo &info = UpdateInfo(unit, *object);
            const bool elsewhere =
                info.GetValues().mConfigurationValid == LxSimulatedAnswer::Automatic && !info.IsValid();
            if (info.GetInfo()->GetConnectionID() != aAddress || aAddress == LxString("0.0.0.0") || elsewhere) {
                continue;
            }
            SimulationLog::Get().Record("FindDevice", aAddress.GetString());
            LxResult result;
            if (SimulationLog::Get().TakeResult("FindDevice", result)) {
                return result;
            }
            const auto delay = unit->GetFindDelay(mHost.GetDefaultFindDelay());
            std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(delay, FindDeviceTimeout));
            if (delay > FindDeviceTimeout) {
                return LxResult(LxResultCode::NotFound, "No device answers at " + aAddress.GetString() + ".");
            }
            *aFound = info.GetInfo();
            return LxResult();
        }
    }
    return LxResultCode::NotFound;
}

}  // namespace LxDetail
