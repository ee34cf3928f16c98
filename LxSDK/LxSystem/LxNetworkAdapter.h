#pragma once

#include "LxSystem/LxInterface.h"

/// A network adapter of the host.
class LX_API LxNetworkAdapter : public LxInterface
{
public:
    ~LxNetworkAdapter() override;

    /// A text for people: on Linux the name of the interface and, in parentheses, of its driver.
    virtual LxString GetDescription() const = 0;
    /// "00:11:22:33:44:55", upper case; "00:00:00:00:00:00" when it has none.
    virtual LxString GetMACAddress() const = 0;
    /// IPv4 addresses only; an adapter may have none.
    virtual uint32_t GetIPAddressCount() const = 0;
    /// Dotted decimal; "0.0.0.0" for an index of no address.
    virtual LxString GetIPAddress(uint32_t aIndex) const = 0;
    /// Dotted decimal; "0.0.0.0" for an index of no address.
    virtual LxString GetSubnetMask(uint32_t aIndex) const = 0;
    /// "0.0.0.0" when there is none.
    virtual LxString GetDefaultGateway() const = 0;
    /// Always true where no such driver is needed.
    virtual bool IsKelvraDriverInstalled() const = 0;
};
