#include "GigEVision/GigEVisionScanner.h"

#include <algorithm>
#include <set>

#include "GigEVision/GvcpClient.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

void GigEVisionScanner::UpdateInterfaces()
{
    std::vector<AdapterData> present = ListNetworkAdapters();
    for (AdapterData &data : present) {
        const auto known = std::find_if(
            mAllAdapters.begin(), mAllAdapters.end(),
            [&data](const std::unique_ptr<NetworkAdapter> &aOld) { return aOld->GetData().mName == data.mName; });
        if (known == mAllAdapters.end()) {
            mAllAdapters.push_back(std::make_unique<NetworkAdapter>(data));
        }
        else {
            (*known)->Update(data);
        }
    }
    mAdapters.clear();
    for (const auto &object : mAllAdapters) {
        const auto data = std::find_if(present.begin(), present.end(), [&object](const AdapterData &aData) {
            return aData.mName == object->GetData().mName;
        });
        if (data == present.end()) {
            object->GetDevices().Set({});
        }
        else {
            mAdapters.push_back({object.get(), *data});
        }
    }
}

std::vector<const LxInterface *> GigEVisionScanner::GetInterfaces() const
{
    std::vector<const LxInterface *> interfaces;
    for (const Adapter &adapter : mAdapters) {
        interfaces.push_back(adapter.mObject);
    }
    return interfaces;
}

std::vector<AdapterData> GigEVisionScanner::GetAdapterData() const
{
    std::vector<AdapterData> adapters;
    for (const Adapter &adapter : mAdapters) {
        adapters.push_back(adapter.mData);
    }
    return adapters;
}

const DeviceInfoGEV *GigEVisionScanner::Update(const NetworkAdapter &aAdapter, const Gvcp::Discovery &aDiscovery,
                                               bool &aChanged)
{
    auto &devices = mDevices[&aAdapter];
    const std::string id = GetDeviceID(aDiscovery);
    if (const auto known = devices.find(id); known != devices.end()) {
        aChanged = known->second->Update(aDiscovery);
        return known->second;
    }
    if (devices.size() >= MostDevices) {
        return nullptr;
    }
    mAllDevices.push_back(std::make_unique<DeviceInfoGEV>(aAdapter, aDiscovery));
    aChanged = true;
    return devices[id] = mAllDevices.back().get();
}

void GigEVisionScanner::Find(SearchContext &aContext)
{
    DiscoveryOptions options;
    options.mTimeout = std::chrono::milliseconds(aContext.GetTimeout());
    options.mSubnetBroadcast = aContext.IsSubnetBroadcastEnabled();
    options.mCancelDescriptor = aContext.GetCancelDescriptor();
    std::set<const LxDeviceInfo *> found;
    Discover(GetAdapterData(), options, [&](const DiscoveryAnswer &aAnswer) {
        bool changed = false;
        const DeviceInfoGEV *info = Update(*mAdapters[aAnswer.mAdapter].mObject, aAnswer.mDiscovery, changed);
        // a device answers each of the broadcasts; only what it says first, or anew, is worth a report
        if (info && (found.insert(info).second || changed)) {
            aContext.ReportDevice(info->GetInterface(), info);
        }
        return !aContext.IsCancelled();
    });
    if (aContext.IsCancelled()) {
        return;  // a list of what happened to answer so far would make devices vanish
    }
    for (const Adapter &adapter : mAdapters) {
        std::vector<const LxDeviceInfo *> devices;
        for (const auto &device : mAllDevices) {
            if (&device->GetAdapter() == adapter.mObject && found.contains(device.get())) {
                devices.push_back(device.get());
            }
        }
        adapter.mObject->GetDevices().Set(std::move(devices));
    }
}

LxResult GigEVisionScanner::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    YrUtilsLib::Network::IpAddress address;
    if (!address.Set(aAddress.GetAscii()).IsOK() || address.Get() == 0) {
        return LxResultCode::NotFound;
    }
    DiscoveryAnswer answer;
    const LxResult result = DiscoverAt(GetAdapterData(), address.Get(), answer);
    if (result.IsOK()) {
        bool changed = false;
        *aFound = Update(*mAdapters[answer.mAdapter].mObject, answer.mDiscovery, changed);
        if (!*aFound) {
            return LxResult(LxResultCode::NoMemory,
                            "Too many devices have been found at the network adapter. Search with a new LxSystem.");
        }
    }
    return result;
}

}  // namespace LxDetail
