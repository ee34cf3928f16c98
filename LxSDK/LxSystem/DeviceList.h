#pragma once

// Internal: the devices that the last search reported at one interface.

#include <mutex>
#include <vector>

#include "LxSystem/LxDeviceInfo.h"

namespace LxDetail
{

/// Thread-safe.
class DeviceList
{
public:
    void Set(std::vector<const LxDeviceInfo *> aDevices)
    {
        const std::lock_guard lock(mMutex);
        mDevices = std::move(aDevices);
    }
    uint32_t GetCount() const
    {
        const std::lock_guard lock(mMutex);
        return static_cast<uint32_t>(mDevices.size());
    }
    const LxDeviceInfo *Get(uint32_t aIndex) const
    {
        const std::lock_guard lock(mMutex);
        return aIndex < mDevices.size() ? mDevices[aIndex] : nullptr;
    }

private:
    mutable std::mutex mMutex;  // guards mDevices
    std::vector<const LxDeviceInfo *> mDevices;
};

}  // namespace LxDetail
