#include "UdpSocket.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "YrUtilsLib/IpAddress.h"

namespace LxEmulator
{

namespace
{

LxResult SystemError(const std::string &aWhat)
{
    const int error = errno;
    const std::string text = aWhat + ": " + std::strerror(error);
    const bool denied = error == EACCES || error == EPERM;
    return LxResult(denied ? LxResultCode::AccessDenied : LxResultCode::Failed, text.c_str());
}

bool SetOption(int aDescriptor, int aLevel, int aName, int aValue)
{
    return setsockopt(aDescriptor, aLevel, aName, &aValue, sizeof aValue) == 0;
}

}  // namespace

std::string Endpoint::ToString() const
{
    return YrUtilsLib::Network::IpAddress(mAddress).ToString() + ":" + std::to_string(mPort);
}

sockaddr_in ToSocketAddress(const Endpoint &aEndpoint)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(aEndpoint.mAddress);
    address.sin_port = htons(aEndpoint.mPort);
    return address;
}

UdpSocket::~UdpSocket()
{
    Close();
}

UdpSocket::UdpSocket(UdpSocket &&aOther) noexcept : mDescriptor(std::exchange(aOther.mDescriptor, -1)) {}

UdpSocket &UdpSocket::operator=(UdpSocket &&aOther) noexcept
{
    std::swap(mDescriptor, aOther.mDescriptor);
    return *this;
}

LxResult UdpSocket::Open(const Endpoint &aLocal, const std::string &aInterface, bool aShared)
{
    Close();
    UdpSocket opened;
    opened.mDescriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (!opened.IsOpen()) {
        return SystemError("Cannot create a socket");
    }
    const int descriptor = opened.mDescriptor;
    if (!aInterface.empty() && setsockopt(descriptor, SOL_SOCKET, SO_BINDTODEVICE, aInterface.c_str(),
                                          static_cast<socklen_t>(aInterface.size())) != 0)
    {
        return SystemError("Cannot use the network interface " + aInterface);
    }
    if (!SetOption(descriptor, SOL_SOCKET, SO_BROADCAST, 1) || !SetOption(descriptor, IPPROTO_IP, IP_PKTINFO, 1) ||
        (aShared && !SetOption(descriptor, SOL_SOCKET, SO_REUSEADDR, 1)))
    {
        return SystemError("Cannot prepare a socket");
    }
    const sockaddr_in address = ToSocketAddress(aLocal);
    if (bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        return SystemError("Cannot listen on " + aLocal.ToString());
    }
    std::swap(mDescriptor, opened.mDescriptor);
    return LxResult();
}

void UdpSocket::Close()
{
    if (IsOpen()) {
        close(std::exchange(mDescriptor, -1));
    }
}

Endpoint UdpSocket::GetLocal() const
{
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (!IsOpen() || getsockname(mDescriptor, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        return Endpoint();
    }
    return Endpoint{ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

ptrdiff_t UdpSocket::Receive(void *aData, size_t aSize, DatagramOrigin &aOrigin) const
{
    sockaddr_in source{};
    iovec part{aData, aSize};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))];
    msghdr message{};
    message.msg_name = &source;
    message.msg_namelen = sizeof source;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const ssize_t received = recvmsg(mDescriptor, &message, MSG_DONTWAIT);
    if (received < 0) {
        return -1;
    }
    aOrigin = DatagramOrigin{Endpoint{ntohl(source.sin_addr.s_addr), ntohs(source.sin_port)}};
    for (cmsghdr *header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level == IPPROTO_IP && header->cmsg_type == IP_PKTINFO) {
            in_pktinfo info;
            std::memcpy(&info, CMSG_DATA(header), sizeof info);
            aOrigin.mDestination = ntohl(info.ipi_addr.s_addr);
            aOrigin.mInterfaceIndex = info.ipi_ifindex;
        }
    }
    return received;
}

bool UdpSocket::Send(const Endpoint &aTo, const void *aData, size_t aSize, uint32_t aSource, int aInterfaceIndex) const
{
    sockaddr_in to = ToSocketAddress(aTo);
    iovec part{const_cast<void *>(aData), aSize};  // sendmsg only reads
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
    msghdr message{};
    message.msg_name = &to;
    message.msg_namelen = sizeof to;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (aSource || aInterfaceIndex) {
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = IPPROTO_IP;
        header->cmsg_type = IP_PKTINFO;
        header->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
        in_pktinfo info{};
        info.ipi_spec_dst.s_addr = htonl(aSource);
        info.ipi_ifindex = aInterfaceIndex;
        std::memcpy(CMSG_DATA(header), &info, sizeof info);
    }
    return sendmsg(mDescriptor, &message, 0) == static_cast<ssize_t>(aSize);
}

void UdpSocket::SetDontFragment(bool aDontFragment) const
{
    // PROBE sets the bit and lets datagrams up to the size of the link through, whatever a path discovery said before.
    SetOption(mDescriptor, IPPROTO_IP, IP_MTU_DISCOVER, aDontFragment ? IP_PMTUDISC_PROBE : IP_PMTUDISC_DONT);
}

}  // namespace LxEmulator
