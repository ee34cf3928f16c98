#pragma once

#include "LxSystem/LxDeviceInfo.h"

/// A device of the Kelvra protocol.
class LX_API LxDeviceInfoKelvraProtocol : public LxDeviceInfo
{
public:
    ~LxDeviceInfoKelvraProtocol() override;

    /// "00:11:22:33:44:55", upper case.
    virtual LxString GetMACAddress() const = 0;
    /// Dotted decimal; "0.0.0.0" when it has none.
    virtual LxString GetIPAddress() const = 0;
    /// Dotted decimal.
    virtual LxString GetSubnetMask() const = 0;
    /// Dotted decimal; "0.0.0.0" when there is none.
    virtual LxString GetDefaultGateway() const = 0;
    /// The number of the kind of device.
    virtual uint32_t GetDeviceID() const = 0;
    /// The number of the module.
    virtual uint32_t GetModuleID() const = 0;
    /// The number of the variant.
    virtual uint32_t GetSubID() const = 0;
    /// The number of the maker.
    virtual uint32_t GetVendorID() const = 0;
    /// The major number of the software's version.
    virtual uint32_t GetSoftwareMajor() const = 0;
    /// The minor number of the software's version.
    virtual uint32_t GetSoftwareMinor() const = 0;
};
