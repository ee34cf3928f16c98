#pragma once

#include "LxSystem/LxDeviceInfo.h"

/// A device of the Kelvra protocol.
class LX_API LxDeviceInfoKelvraProtocol : public LxDeviceInfo
{
public:
    ~LxDeviceInfoKelvraProtocol() override;

    /// "00:11:22:33:44:55", upper case.
    virtual LxString GetMACAddress() const = 0;
    /// Dotted decimal, as the two below.
    virtual LxString GetIPAddress() const = 0;
    virtual LxString GetSubnetMask() const = 0;
    virtual LxString GetDefaultGateway() const = 0;
    virtual uint32_t GetDeviceID() const = 0;
    virtual uint32_t GetModuleID() const = 0;
    virtual uint32_t GetSubID() const = 0;
    virtual uint32_t GetVendorID() const = 0;
    virtual uint32_t GetSoftwareMajor() const = 0;
    virtual uint32_t GetSoftwareMinor() const = 0;
};
