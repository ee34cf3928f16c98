#include "GigEVision/GvcpSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <random>
#include <utility>

namespace LxDetail
{

namespace
{

// one byte more than the protocol allows, so that a datagram that is too long is seen to be
constexpr size_t receiveSize = Gvcp::maxPacket + 1;

sockaddr_in MakeAddress(uint32_t aAddress, uint16_t aPort)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(aAddress);
    address.sin_port = htons(aPort);
    return address;
}

bool Bind(int aSocket, uint32_t aAddress)
{
    const sockaddr_in address = MakeAddress(aAddress, 0);
    return bind(aSocket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

int MakeSocket()
{
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor >= 0) {
        const int on = 1;
        setsockopt(descriptor, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
        setsockopt(descriptor, IPPROTO_IP, IP_PKTINFO, &on, sizeof on);
    }
    return descriptor;
}

}  // namespace

std::optional<GvcpSocket> GvcpSocket::OpenRouted(uint32_t aLocal)
{
    GvcpSocket result(MakeSocket());
    if (result.mDescriptor < 0 || !Bind(result.mDescriptor, aLocal)) {
        return std::nullopt;
    }
    return result;
}

std::optional<GvcpSocket> GvcpSocket::OpenAtAdapter(const AdapterData &aAdapter)
{
    GvcpSocket result(MakeSocket());
    if (result.mDescriptor < 0) {
        return std::nullopt;
    }
    result.mBoundIndex = aAdapter.mIndex;
    // A socket bound to an address of the adapter would not receive broadcast answers, and an adapter may have none.
    // Where the kernel refuses to bind to an adapter, the address is better than nothing.
    const bool bound = setsockopt(result.mDescriptor, SOL_SOCKET, SO_BINDTODEVICE, aAdapter.mName.c_str(),
                                  static_cast<socklen_t>(aAdapter.mName.size() + 1)) == 0;
    if (!bound && aAdapter.mAddresses.empty()) {
        return std::nullopt;
    }
    if (!Bind(result.mDescriptor, bound ? 0 : aAdapter.mAddresses.front().mAddress)) {
        return std::nullopt;
    }
    return result;
}

GvcpSocket::GvcpSocket(GvcpSocket &&aOther) noexcept
    : mDescriptor(std::exchange(aOther.mDescriptor, -1)),
      mBoundIndex(aOther.mBoundIndex),
      mBroken(aOther.mBroken),
      mBuffer(std::move(aOther.mBuffer))
{
}

GvcpSocket &GvcpSocket::operator=(GvcpSocket &&aOther) noexcept
{
    std::swap(mDescriptor, aOther.mDescriptor);
    std::swap(mBoundIndex, aOther.mBoundIndex);
    std::swap(mBroken, aOther.mBroken);
    std::swap(mBuffer, aOther.mBuffer);
    return *this;
}

GvcpSocket::~GvcpSocket()
{
    if (mDescriptor >= 0) {
        close(mDescriptor);
    }
}

bool GvcpSocket::Send(Gvcp::Bytes aPacket, uint32_t aAddress, uint32_t aFrom) const
{
    sockaddr_in address = MakeAddress(aAddress, Gvcp::port);
    iovec data{const_cast<uint8_t *>(aPacket.data()), aPacket.size()};
    msghdr message{};
    message.msg_name = &address;
    message.msg_namelen = sizeof address;
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
    if (mBoundIndex != 0) {
        in_pktinfo info{};
        info.ipi_ifindex = static_cast<int>(mBoundIndex);
        info.ipi_spec_dst.s_addr = htonl(aFrom);
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = IPPROTO_IP;
        header->cmsg_type = IP_PKTINFO;
        header->cmsg_len = CMSG_LEN(sizeof info);
        std::memcpy(CMSG_DATA(header), &info, sizeof info);
    }
    return sendmsg(mDescriptor, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(aPacket.size());
}

std::optional<GvcpDatagram> GvcpSocket::Receive()
{
    mBuffer.resize(receiveSize);
    for (;;) {
        sockaddr_in address{};
        iovec data{mBuffer.data(), mBuffer.size()};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
        msghdr message{};
        message.msg_name = &address;
        message.msg_namelen = sizeof address;
        message.msg_iov = &data;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t size = recvmsg(mDescriptor, &message, 0);
        if (size < 0) {
            if (errno == EINTR || errno == ECONNREFUSED) {
                continue;
            }
            mBroken = errno != EAGAIN && errno != EWOULDBLOCK;
            return std::nullopt;
        }
        GvcpDatagram datagram;
        datagram.mSource = ntohl(address.sin_addr.s_addr);
        for (cmsghdr *header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
            if (header->cmsg_level == IPPROTO_IP && header->cmsg_type == IP_PKTINFO) {
                in_pktinfo info{};
                std::memcpy(&info, CMSG_DATA(header), sizeof info);
                datagram.mAdapterIndex = static_cast<unsigned>(info.ipi_ifindex);
            }
        }
        datagram.mData = Gvcp::Bytes(mBuffer).first(static_cast<size_t>(size));
        return datagram;
    }
}

void WaitForDatagram(const std::vector<GvcpSocket> &aSockets, int aDescriptor,
                     std::chrono::steady_clock::time_point aUntil)
{
    std::vector<pollfd> descriptors{{aDescriptor, POLLIN, 0}};
    for (const GvcpSocket &socket : aSockets) {
        if (!socket.IsBroken()) {
            descriptors.push_back({socket.GetDescriptor(), POLLIN, 0});
        }
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(aUntil - std::chrono::steady_clock::now());
    constexpr int64_t longest = 60000;
    poll(descriptors.data(), descriptors.size(), static_cast<int>(std::clamp<int64_t>(left.count(), 0, longest)));
}

uint16_t MakeRequestId()
{
    static std::atomic<uint16_t> next{static_cast<uint16_t>(std::random_device()())};
    uint16_t id = 0;
    while (id == 0) {
        id = ++next;
    }
    return id;
}

}  // namespace LxDetail
