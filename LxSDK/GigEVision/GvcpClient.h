#pragma once

// Internal: what a client asks over GVCP, each with sockets of its own. Thread-safe, because nothing is shared.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "GigEVision/GvcpPacket.h"
#include "LxBase/LxResult.h"
#include "LxSystem/NetworkAdapter.h"

namespace LxDetail
{

class GvcpSocket;

/// A device that answered a discovery.
struct DiscoveryAnswer
{
    size_t mAdapter = 0;  ///< the position of the adapter at which it came in the list that was searched
    Gvcp::Discovery mDiscovery;
};

/// How a search is run.
struct DiscoveryOptions
{
    std::chrono::milliseconds mTimeout{1000};
    bool mSubnetBroadcast = false;  ///< also sends to the broadcast address of each subnet
    int mCancelDescriptor = -1;     ///< the search ends when this becomes readable
};

/// Broadcasts DISCOVERY on every adapter and calls aAnswer with each answer as it comes, duplicates too, on this
/// thread. Returns when the time is over, the descriptor is readable, or aAnswer returned false.
void Discover(const std::vector<AdapterData> &aAdapters, const DiscoveryOptions &aOptions,
              const std::function<bool(const DiscoveryAnswer &)> &aAnswer);

/// Sends DISCOVERY to one address, by the routes and on every adapter, 2 times 500 ms. The first answer counts.
/// @return NotFound when nothing answers.
LxResult DiscoverAt(const std::vector<AdapterData> &aAdapters, uint32_t aAddress, DiscoveryAnswer &aAnswer);

/// How long to wait for the answer to a command.
struct GvcpPatience
{
    std::chrono::milliseconds mTimeout{200};  ///< for each try
    int mTries = 3;
};

/// Reads a register of the device at an address.
/// @return Timeout when nothing answers, ProtocolError when the answer makes no sense, otherwise the result for the
///         status (GetStatusResult()).
LxResult ReadRegister(const std::vector<AdapterData> &aAdapters, uint32_t aAddress, uint32_t aRegister,
                      const GvcpPatience &aPatience, uint32_t &aValue);

/// The result for a GVCP status code, with a description.
LxResult GetStatusResult(uint16_t aStatus);

/// Broadcasts FORCEIP on every adapter and, when it is not acknowledged, looks where the device with the MAC address
/// is. Errors as LxDeviceGEV::SetIPConfiguration(). Blocks up to 3 s.
LxResult ForceIP(const std::vector<AdapterData> &aAdapters, const Gvcp::ForceIP &aForceIP);

/// The address of this computer that packets to an address come from: that of an adapter on its subnet, else that which
/// the routes choose; 0 when there is none.
uint32_t GetLocalAddress(const std::vector<AdapterData> &aAdapters, uint32_t aAddress);

}  // namespace LxDetail
