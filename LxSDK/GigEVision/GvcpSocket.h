#pragma once

// Internal: a UDP socket for control packets.

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "GigEVision/GvcpPacket.h"
#include "LxSystem/NetworkAdapter.h"

namespace LxDetail
{

/// A datagram that came, and from where.
struct GvcpDatagram
{
    uint32_t mSource = 0;        ///< the IP address of the sender
    unsigned mAdapterIndex = 0;  ///< the interface index of the adapter at which it came; 0 if unknown
    Gvcp::Bytes mData;           ///< valid until the next one is received on the socket
};

/// A socket without connection. Not thread-safe. Does not throw.
class GvcpSocket
{
public:
    /// Sends by the routes of this computer and receives at every adapter. aLocal is the address to send from; 0 leaves
    /// it to the routes.
    static std::optional<GvcpSocket> OpenRouted(uint32_t aLocal = 0);
    /// Sends and receives at one adapter, whatever the routes say; may broadcast and receives broadcasts.
    static std::optional<GvcpSocket> OpenAtAdapter(const AdapterData &aAdapter);

    GvcpSocket(GvcpSocket &&aOther) noexcept;
    GvcpSocket &operator=(GvcpSocket &&aOther) noexcept;
    ~GvcpSocket();

    /// Sends to the control port. aFrom, when not 0, is the address of the adapter to send from. False with errno set.
    bool Send(Gvcp::Bytes aPacket, uint32_t aAddress, uint32_t aFrom = 0) const;
    /// The next datagram that has come, without waiting. Nothing when there is none, or when the socket can receive no
    /// more (IsBroken()).
    std::optional<GvcpDatagram> Receive();
    bool IsBroken() const { return mBroken; }
    int GetDescriptor() const { return mDescriptor; }

private:
    explicit GvcpSocket(int aDescriptor) : mDescriptor(aDescriptor) {}

    int mDescriptor = -1;
    unsigned mBoundIndex = 0;
    bool mBroken = false;
    std::vector<uint8_t> mBuffer;
};

/// Waits until a datagram has come at one of the sockets, the descriptor (if not negative) is readable, or the time is
/// over. Broken sockets are not waited for.
void WaitForDatagram(const std::vector<GvcpSocket> &aSockets, int aDescriptor,
                     std::chrono::steady_clock::time_point aUntil);

/// A number to start request ids with, so that two programs on one computer hardly ever use the same.
uint16_t MakeRequestId();

}  // namespace LxDetail
