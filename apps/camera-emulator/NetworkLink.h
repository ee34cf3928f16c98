#pragma once

#include <cstdint>
#include <string>

#include "LxBase/LxResult.h"

namespace LxEmulator
{

/// A network interface of this machine, as far as the emulator cares. Addresses have the first octet most significant.
struct NetworkLink
{
    std::string mName;
    int mIndex = 0;
    uint32_t mAddress = 0;  ///< 0: none
    uint32_t mMask = 0;
    uint32_t mBroadcast = 0;  ///< directed broadcast address of the subnet
};

/// The interface that owns an address. NotFound when no interface of this machine does.
LxResult FindLinkOfAddress(uint32_t aAddress, NetworkLink &aLink);
/// The interface with a name, and its first address. NotFound when there is none.
LxResult FindLinkByName(const std::string &aName, NetworkLink &aLink);
bool HasAddress(const std::string &aInterface, uint32_t aAddress);

/// Gives an interface another address beside those that it has. Needs the rights of an administrator (AccessDenied).
LxResult AddAddress(const NetworkLink &aLink, uint32_t aAddress, uint32_t aMask);
LxResult RemoveAddress(const NetworkLink &aLink, uint32_t aAddress, uint32_t aMask);

}  // namespace LxEmulator
