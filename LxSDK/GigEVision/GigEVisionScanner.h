#pragma once

// Internal: finds the network adapters and the GigE Vision devices at them.

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "GigEVision/DeviceInfoGEV.h"
#include "LxDevice/DeviceBackend.h"
#include "LxSystem/NetworkAdapter.h"

namespace LxDetail
{

class GigEVisionScanner : public DeviceScanner
{
public:
    /// How many devices are told apart at one adapter. Their objects live as long as the scanner, so that answers with
    /// ever new MAC addresses would fill the memory.
    static constexpr size_t MostDevices = 4096;

    void UpdateInterfaces() override;
    std::vector<const LxInterface *> GetInterfaces() const override;
    void Find(SearchContext &aContext) override;
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override;

private:
    struct Adapter
    {
        NetworkAdapter *mObject = nullptr;
        AdapterData mData;
    };

    // The information about a device at an adapter, brought up to date; null for a new one where there are too many.
    // aChanged says whether it is new or another.
    const DeviceInfoGEV *Update(const NetworkAdapter &aAdapter, const Gvcp::Discovery &aDiscovery, bool &aChanged);
    std::vector<AdapterData> GetAdapterData() const;

    // Objects are never removed, because the application may hold on to them.
    std::vector<std::unique_ptr<NetworkAdapter>> mAllAdapters;
    std::vector<std::unique_ptr<DeviceInfoGEV>> mAllDevices;
    std::map<const NetworkAdapter *, std::map<std::string, DeviceInfoGEV *>> mDevices;  // by adapter and device ID
    std::vector<Adapter> mAdapters;                                                     // those that are up
};

}  // namespace LxDetail
