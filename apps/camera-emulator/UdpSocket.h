#pragma once

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "LxBase/LxResult.h"

namespace LxEmulator
{

/// An IPv4 address, first octet most significant, and a UDP port.
struct Endpoint
{
    uint32_t mAddress = 0;
    uint16_t mPort = 0;

    bool operator==(const Endpoint &) const = default;
    std::string ToString() const;
};

/// As the sockets of the operating system take it.
sockaddr_in ToSocketAddress(const Endpoint &aEndpoint);

/// Where a datagram came from, the address that it was sent to and the network interface that it came in on.
struct DatagramOrigin
{
    Endpoint mSource;
    uint32_t mDestination = 0;
    int mInterfaceIndex = 0;
};

/// An IPv4 UDP socket. Movable; closed when destroyed.
class UdpSocket
{
public:
    UdpSocket() = default;
    ~UdpSocket();
    UdpSocket(UdpSocket &&aOther) noexcept;
    UdpSocket &operator=(UdpSocket &&aOther) noexcept;

    /// Binds to an address (0: any; a broadcast address is allowed) and a port (0: any free one). With an interface
    /// name the socket sends and receives on that interface only. aShared lets several sockets bind to the same address
    /// and port, for broadcasts, of which each gets a copy.
    LxResult Open(const Endpoint &aLocal, const std::string &aInterface = std::string(), bool aShared = false);
    void Close();
    bool IsOpen() const { return mDescriptor >= 0; }
    int GetDescriptor() const { return mDescriptor; }
    Endpoint GetLocal() const;

    /// Takes one datagram if there is one; -1 when not. Never blocks.
    ptrdiff_t Receive(void *aData, size_t aSize, DatagramOrigin &aOrigin) const;
    /// Sends one datagram; waits for room. A source address or an interface index other than 0 is used instead of what
    /// the routing tables say.
    bool Send(const Endpoint &aTo, const void *aData, size_t aSize, uint32_t aSource = 0,
              int aInterfaceIndex = 0) const;
    /// Whether datagrams carry "do not fragment"; those that exceed the link are then refused by Send().
    void SetDontFragment(bool aDontFragment) const;

private:
    int mDescriptor = -1;
};

}  // namespace LxEmulator
