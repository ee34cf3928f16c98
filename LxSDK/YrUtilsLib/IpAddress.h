#pragma once

#include <cstdint>
#include <string>

#include "LxSDKExport.h"
#include "RkUtilsLib/Result.h"

namespace YrUtilsLib::Network
{

/// An IPv4 address or mask as a number, the first octet most significant.
/// @thread{any; one object by one thread at a time}
class LX_API IpAddress
{
public:
    IpAddress() = default;
    /// The first octet is the most significant.
    explicit IpAddress(uint32_t aValue) : mValue(aValue) {}

    /// Reads exactly four decimal octets of 0 to 255 separated by dots, with nothing before, between or behind them;
    /// at most three digits an octet, leading zeros allowed (and decimal). A text that is not such an address, or
    /// null, fails and leaves 0.
    RkUtilsLib::Result Set(const char *aText);
    /// The first octet is the most significant.
    uint32_t Get() const { return mValue; }
    /// "a.b.c.d" in decimal.
    std::string ToString() const;

private:
    uint32_t mValue = 0;
};

}  // namespace YrUtilsLib::Network
