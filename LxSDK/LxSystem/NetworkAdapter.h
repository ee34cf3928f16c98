#pragma once

// Internal: the network adapters of this computer.

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "LxSystem/DeviceList.h"
#include "LxSystem/LxNetworkAdapter.h"

namespace LxDetail
{

/// An IPv4 address of an adapter; numbers with the first octet most significant.
struct AdapterAddress
{
    uint32_t mAddress = 0;
    uint32_t mMask = 0;

    bool Contains(uint32_t aAddress) const
    {
        return mMask != 0 && aAddress != 0 && (aAddress & mMask) == (mAddress & mMask);
    }
    bool operator==(const AdapterAddress &) const = default;
};

/// What the system knows about an adapter.
struct AdapterData
{
    std::string mName;    ///< for example "eth0"
    std::string mDriver;  ///< the name of its driver, or "loopback"; may be empty
    unsigned mIndex = 0;
    uint64_t mMACAddress = 0;
    bool mLoopback = false;
    bool mBroadcast = false;  ///< whether its subnets have broadcast addresses
    std::vector<AdapterAddress> mAddresses;
    uint32_t mDefaultGateway = 0;

    bool operator==(const AdapterData &) const = default;
};

/// Where the kernel tells about adapters, beside its own interface; tests put files elsewhere.
struct AdapterPaths
{
    std::string mRoutes = "/proc/thread-self/net/route";
    std::string mAdapters = "/sys/class/net";
};

/// The adapters that are up, by interface index, also those without an address.
std::vector<AdapterData> ListNetworkAdapters(const AdapterPaths &aPaths = {});

/// The gateway of an adapter's default route with the lowest metric, from a table in the form of /proc/net/route; 0
/// when there is none.
uint32_t ParseDefaultGateway(const std::string &aRoutes, const std::string &aAdapter);

/// An adapter as the SDK hands it out; thread-safe.
class NetworkAdapter : public LxNetworkAdapter
{
public:
    explicit NetworkAdapter(AdapterData aData);

    void Update(AdapterData aData);
    AdapterData GetData() const;
    DeviceList &GetDevices() { return mDevices; }

    int GetType() const override { return LxInterfaceTypeNetworkAdapter; }
    LxString GetUniqueID() const override;
    LxString GetDisplayID() const override;
    uint32_t GetDeviceCount() const override { return mDevices.GetCount(); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return mDevices.Get(aIndex); }
    LxString GetDescription() const override;
    LxString GetMACAddress() const override;
    uint32_t GetIPAddressCount() const override;
    LxString GetIPAddress(uint32_t aIndex) const override;
    LxString GetSubnetMask(uint32_t aIndex) const override;
    LxString GetDefaultGateway() const override;
    bool IsKelvraDriverInstalled() const override { return true; }  // such a driver exists on other systems only

private:
    mutable std::mutex mMutex;  // guards mData
    AdapterData mData;
    DeviceList mDevices;
};

}  // namespace LxDetail
