#include "GigEVision/DeviceInfoGEV.h"

#include <algorithm>

#include "LxDevice/IPConfiguration.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

using YrUtilsLib::Network::IpAddress;

std::string GetDeviceID(const Gvcp::Discovery &aDiscovery)
{
    return aDiscovery.mMACAddress != 0 ? FormatMACAddress(aDiscovery.mMACAddress)
                                       : IpAddress(aDiscovery.mIPAddress).ToString();
}

std::string FormatIPConfiguration(uint32_t aBits)
{
    constexpr struct
    {
        uint32_t mBit;
        const char *mName;
    } ways[] = {{Gvcp::ipConfigurationPersistent, "Persistent IP"},
                {Gvcp::ipConfigurationDHCP, "DHCP"},
                {Gvcp::ipConfigurationLLA, "LLA"}};
    std::string text;
    for (const auto &way : ways) {
        if ((aBits & way.mBit) != 0) {
            text += (text.empty() ? "" : ", ") + std::string(way.mName);
        }
    }
    return text;
}

DeviceInfoGEV::DeviceInfoGEV(const NetworkAdapter &aAdapter, const Gvcp::Discovery &aDiscovery)
    : mAdapter(aAdapter), mDiscovery(aDiscovery)
{
}

bool DeviceInfoGEV::Update(const Gvcp::Discovery &aDiscovery)
{
    const std::lock_guard lock(mMutex);
    if (mDiscovery == aDiscovery) {
        return false;
    }
    mDiscovery = aDiscovery;
    return true;
}

Gvcp::Discovery DeviceInfoGEV::GetDiscovery() const
{
    const std::lock_guard lock(mMutex);
    return mDiscovery;
}

LxString DeviceInfoGEV::GetUniqueID() const
{
    return GetDeviceID(GetDiscovery());
}

LxString DeviceInfoGEV::GetDisplayID() const
{
    const Gvcp::Discovery discovery = GetDiscovery();
    std::string text = discovery.mManufacturerName;
    if (!discovery.mModelName.empty()) {
        text += (text.empty() ? "" : " ") + discovery.mModelName;
    }
    if (text.empty()) {
        text = "GigE Vision device";
    }
    if (!discovery.mUserDefinedName.empty()) {
        text += " \"" + discovery.mUserDefinedName + '"';
    }
    return text + " [" + IpAddress(discovery.mIPAddress).ToString() + ']';
}

LxString DeviceInfoGEV::GetVendorName() const
{
    return GetDiscovery().mManufacturerName;
}

LxString DeviceInfoGEV::GetModelName() const
{
    return GetDiscovery().mModelName;
}

LxString DeviceInfoGEV::GetVersion() const
{
    return GetDiscovery().mDeviceVersion;
}

LxString DeviceInfoGEV::GetManufacturerInfo() const
{
    return GetDiscovery().mManufacturerInfo;
}

LxString DeviceInfoGEV::GetSerialNumber() const
{
    return GetDiscovery().mSerialNumber;
}

LxString DeviceInfoGEV::GetUserDefinedName() const
{
    return GetDiscovery().mUserDefinedName;
}

bool DeviceInfoGEV::IsConfigurationValid() const
{
    // by the masks of the adapter: that of the device may be unset, and does not decide whether packets reach it
    const uint32_t address = GetDiscovery().mIPAddress;
    const std::vector<AdapterAddress> own = mAdapter.GetData().mAddresses;
    return std::any_of(own.begin(), own.end(),
                       [address](const AdapterAddress &aAddress) { return aAddress.Contains(address); });
}

LxString DeviceInfoGEV::GetMACAddress() const
{
    return FormatMACAddress(GetDiscovery().mMACAddress);
}

LxString DeviceInfoGEV::GetIPAddress() const
{
    return IpAddress(GetDiscovery().mIPAddress).ToString();
}

LxString DeviceInfoGEV::GetSubnetMask() const
{
    return IpAddress(GetDiscovery().mSubnetMask).ToString();
}

LxString DeviceInfoGEV::GetDefaultGateway() const
{
    return IpAddress(GetDiscovery().mDefaultGateway).ToString();
}

LxString DeviceInfoGEV::GetIPConfigOptionsString() const
{
    return FormatIPConfiguration(GetDiscovery().mIPConfigurationOptions);
}

LxString DeviceInfoGEV::GetIPConfigCurrentString() const
{
    return FormatIPConfiguration(GetDiscovery().mIPConfigurationCurrent);
}

void DeviceInfoGEV::GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const Gvcp::Discovery discovery = GetDiscovery();
    aMajor = discovery.mVersionMajor;
    aMinor = discovery.mVersionMinor;
}

int DeviceInfoGEV::GetClass() const
{
    // the register counts from the transmitter, 0; 0 here means unknown
    const uint32_t type = GetDiscovery().mDeviceMode >> 28 & 0x7;
    constexpr uint32_t peripheral = 3;
    return type <= peripheral ? static_cast<int>(type) + 1 : 0;
}

}  // namespace LxDetail
