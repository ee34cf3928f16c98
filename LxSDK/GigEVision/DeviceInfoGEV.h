#pragma once

// Internal: a GigE Vision device as its discovery acknowledge describes it.

#include <mutex>

#include "GigEVision/GvcpPacket.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/NetworkAdapter.h"

namespace LxDetail
{

/// What identifies a device at every adapter: its MAC address, or its IP address when it reports no MAC address.
std::string GetDeviceID(const Gvcp::Discovery &aDiscovery);

/// "Persistent IP, DHCP, LLA" for the bits of an IP configuration register.
std::string FormatIPConfiguration(uint32_t aBits);

/// Thread-safe.
class DeviceInfoGEV : public LxDeviceInfoGEV
{
public:
    DeviceInfoGEV(const NetworkAdapter &aAdapter, const Gvcp::Discovery &aDiscovery);

    /// Takes over what the device says now. False when that is what it said before.
    bool Update(const Gvcp::Discovery &aDiscovery);
    Gvcp::Discovery GetDiscovery() const;
    const NetworkAdapter &GetAdapter() const { return mAdapter; }

    int GetType() const override { return LxDeviceInfoTypeGEV; }
    const LxInterface *GetInterface() const override { return &mAdapter; }
    LxString GetUniqueID() const override;
    LxString GetDisplayID() const override;
    LxString GetVendorName() const override;
    LxString GetModelName() const override;
    LxString GetVersion() const override;
    LxString GetManufacturerInfo() const override;
    LxString GetSerialNumber() const override;
    LxString GetUserDefinedName() const override;
    LxString GetConnectionID() const override { return GetIPAddress(); }
    bool IsConfigurationValid() const override;
    bool IsLicenseValid() const override { return true; }  // nothing on this system needs one
    LxString GetLicenseMessage() const override { return "Valid"; }
    LxString GetMACAddress() const override;
    LxString GetIPAddress() const override;
    LxString GetSubnetMask() const override;
    LxString GetDefaultGateway() const override;
    LxString GetIPConfigOptionsString() const override;
    LxString GetIPConfigCurrentString() const override;
    void GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    int GetClass() const override;

private:
    const NetworkAdapter &mAdapter;
    mutable std::mutex mMutex;  // guards mDiscovery
    Gvcp::Discovery mDiscovery;
};

}  // namespace LxDetail
