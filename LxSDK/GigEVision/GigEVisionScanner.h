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

    // The information about a device at an adapter, brought up to date. aChanged says whether it is new or another.
    const DeviceInfoGEV *Update(const NetworkAdapter &aAdapter, const Gvcp::Discovery &aDiscovery, bool &aChanged);
    std::vector<AdapterData> GetAdapterData() const;

    // Objects are never removed, because the application may hold on to them.
    std::vector<std::unique_ptr<NetworkAdapter>> mAllAdapters;
    std::vector<std::unique_ptr<DeviceInfoGEV>> mAllDevices;
    std::map<std::pair<const NetworkAdapter *, std::string>, DeviceInfoGEV *> mDevices;  // by adapter and device ID
    std::vector<Adapter> mAdapters;                                                      // those that are up
};

}  // namespace LxDetail
