#pragma once

#include "LxSystem/LxDeviceInfo.h"

/// A GigE Vision device, from its discovery acknowledge.
class LX_API LxDeviceInfoGEV : public LxDeviceInfo
{
public:
    ~LxDeviceInfoGEV() override;

    /// "00:11:22:33:44:55", upper case.
    virtual LxString GetMACAddress() const = 0;
    /// Dotted decimal; "0.0.0.0" when it has none.
    virtual LxString GetIPAddress() const = 0;
    /// Dotted decimal.
    virtual LxString GetSubnetMask() const = 0;
    /// Dotted decimal; "0.0.0.0" when there is none.
    virtual LxString GetDefaultGateway() const = 0;
    /// The supported ways of configuration, for example "Persistent IP, DHCP, LLA".
    virtual LxString GetIPConfigOptionsString() const = 0;
    /// The enabled ways, in the same form.
    virtual LxString GetIPConfigCurrentString() const = 0;
    /// The version of GigE Vision that the device speaks, for example 2 and 0.
    virtual void GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const = 0;
    /// 0 unknown, 1 transmitter, 2 receiver, 3 transceiver, 4 peripheral.
    virtual int GetClass() const = 0;
};
