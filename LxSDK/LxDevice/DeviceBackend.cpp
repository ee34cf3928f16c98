#include "LxDevice/DeviceBackend.h"

#include <algorithm>
#include <mutex>

namespace LxDetail
{

namespace
{

struct Registry
{
    std::mutex mMutex;                                   // guards everything below
    std::vector<std::shared_ptr<DeviceBackend>> mAdded;  // the newest first
    std::vector<std::shared_ptr<DeviceBackend>> mReal;
    bool mRealCreated = false;
    int mHidden = 0;
};

Registry &GetRegistry()
{
    static Registry &registry = *new Registry;  // never destroyed: windows may search until the very end
    return registry;
}

}  // namespace

LxResult DeviceBackend::GetAccessType(const LxString &, int &)
{
    return LxResultCode::NotFound;
}

LxResult DeviceBackend::SetGEVIPConfiguration(const LxString &, const LxString &, const LxString &, const LxString &)
{
    return LxResultCode::NotFound;
}

LxResult DeviceBackend::SetKelvraIPConfiguration(const LxString &, const LxString &, const LxString &, const LxString &)
{
    return LxResultCode::NotFound;
}

std::vector<std::shared_ptr<DeviceBackend>> DeviceBackends::Get()
{
    static std::once_flag environment;
    std::call_once(environment, EnableBackendsByEnvironment);
    Registry &registry = GetRegistry();
    const std::lock_guard lock(registry.mMutex);
    std::vector<std::shared_ptr<DeviceBackend>> backends = registry.mAdded;
    if (registry.mHidden == 0) {
        if (!registry.mRealCreated) {
            registry.mReal = CreateRealDeviceBackends();
            registry.mRealCreated = true;
        }
        backends.insert(backends.end(), registry.mReal.begin(), registry.mReal.end());
    }
    return backends;
}

void DeviceBackends::Add(std::shared_ptr<DeviceBackend> aBackend)
{
    if (!aBackend) {
        return;
    }
    Registry &registry = GetRegistry();
    const std::lock_guard lock(registry.mMutex);
    if (std::find(registry.mAdded.begin(), registry.mAdded.end(), aBackend) == registry.mAdded.end()) {
        registry.mAdded.insert(registry.mAdded.begin(), std::move(aBackend));
    }
}

void DeviceBackends::Remove(const std::shared_ptr<DeviceBackend> &aBackend)
{
    Registry &registry = GetRegistry();
    const std::lock_guard lock(registry.mMutex);
    std::erase(registry.mAdded, aBackend);
}

void DeviceBackends::SetRealDevicesHidden(bool aHidden)
{
    Registry &registry = GetRegistry();
    const std::lock_guard lock(registry.mMutex);
    registry.mHidden = std::max(0, registry.mHidden + (aHidden ? 1 : -1));
}

}  // namespace LxDetail
