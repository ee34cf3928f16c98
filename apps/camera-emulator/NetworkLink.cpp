#include "NetworkLink.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>

#include "YrUtilsLib/IpAddress.h"

namespace LxEmulator
{

namespace
{

using YrUtilsLib::Network::IpAddress;

uint32_t ToNumber(const sockaddr *aAddress)
{
    if (!aAddress || aAddress->sa_family != AF_INET) {
        return 0;
    }
    sockaddr_in address;
    std::memcpy(&address, aAddress, sizeof address);
    return ntohl(address.sin_addr.s_addr);
}

/// The first IPv4 address of any interface for which a condition holds.
bool FindLink(const std::function<bool(const NetworkLink &)> &aCondition, NetworkLink &aLink)
{
    ifaddrs *raw = nullptr;
    if (getifaddrs(&raw) != 0) {
        return false;
    }
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs *)> list(raw, freeifaddrs);
    for (const ifaddrs *entry = raw; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) {
            continue;
        }
        NetworkLink link;
        const std::string label = entry->ifa_name;
        link.mName = label.substr(0, label.find(':'));  // "eth0:1" labels an address of eth0
        link.mIndex = static_cast<int>(if_nametoindex(link.mName.c_str()));
        link.mAddress = ToNumber(entry->ifa_addr);
        link.mMask = ToNumber(entry->ifa_netmask);
        link.mBroadcast = link.mAddress | ~link.mMask;
        if (aCondition(link)) {
            aLink = link;
            return true;
        }
    }
    return false;
}

/// Sends one address message to the kernel and waits for its verdict.
LxResult ChangeAddress(uint16_t aType, uint16_t aFlags, const NetworkLink &aLink, uint32_t aAddress, uint32_t aMask)
{
    const std::string what =
        "Cannot set the address " + IpAddress(aAddress).ToString() + " of the network interface " + aLink.mName;
    const auto fail = [&what](int aError) {
        const bool denied = aError == EPERM || aError == EACCES;
        return LxResult(denied ? LxResultCode::AccessDenied : LxResultCode::Failed,
                        (what + ": " + std::strerror(aError)).c_str());
    };
    struct
    {
        nlmsghdr mHeader;
        ifaddrmsg mBody;
        rtattr mLocalHeader;
        uint32_t mLocal;
        rtattr mBroadcastHeader;
        uint32_t mBroadcast;
    } request{};
    request.mHeader.nlmsg_len = sizeof request;
    request.mHeader.nlmsg_type = aType;
    request.mHeader.nlmsg_flags = static_cast<uint16_t>(NLM_F_REQUEST | NLM_F_ACK | aFlags);
    request.mHeader.nlmsg_seq = 1;
    request.mBody.ifa_family = AF_INET;
    request.mBody.ifa_prefixlen = static_cast<uint8_t>(std::countl_one(aMask));
    request.mBody.ifa_index = static_cast<uint32_t>(aLink.mIndex);
    request.mLocalHeader = {RTA_LENGTH(sizeof request.mLocal), IFA_LOCAL};
    request.mLocal = htonl(aAddress);
    request.mBroadcastHeader = {RTA_LENGTH(sizeof request.mBroadcast), IFA_BROADCAST};
    request.mBroadcast = htonl(aAddress | ~aMask);

    const int descriptor = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (descriptor < 0) {
        return fail(errno);
    }
    char answer[1024];
    const bool exchanged = send(descriptor, &request, sizeof request, 0) == static_cast<ssize_t>(sizeof request);
    const ssize_t received = exchanged ? recv(descriptor, answer, sizeof answer, 0) : -1;
    const int error = errno;
    close(descriptor);
    if (received < static_cast<ssize_t>(NLMSG_LENGTH(sizeof(nlmsgerr)))) {
        return fail(received < 0 ? error : EPROTO);
    }
    nlmsgerr verdict;
    std::memcpy(&verdict, answer + NLMSG_HDRLEN, sizeof verdict);
    return verdict.error == 0 || verdict.error == -EEXIST ? LxResult() : fail(-verdict.error);
}

}  // namespace

LxResult FindLinkOfAddress(uint32_t aAddress, NetworkLink &aLink)
{
    // The loopback interface owns its whole subnet.
    const bool loopback = (aAddress >> 24) == 127;
    const auto owns = [aAddress, loopback](const NetworkLink &aCandidate) {
        return aCandidate.mAddress == aAddress || (loopback && (aCandidate.mAddress >> 24) == 127);
    };
    if (!FindLink(owns, aLink)) {
        return LxResult(LxResultCode::NotFound,
                        ("No network interface has the address " + IpAddress(aAddress).ToString()).c_str());
    }
    return LxResult();
}

LxResult FindLinkByName(const std::string &aName, NetworkLink &aLink)
{
    if (FindLink([&aName](const NetworkLink &aCandidate) { return aCandidate.mName == aName; }, aLink)) {
        return LxResult();
    }
    aLink = NetworkLink();
    aLink.mName = aName;
    aLink.mIndex = static_cast<int>(if_nametoindex(aName.c_str()));
    if (aLink.mIndex == 0) {
        return LxResult(LxResultCode::NotFound, ("There is no network interface " + aName).c_str());
    }
    return LxResult();
}

bool HasAddress(const std::string &aInterface, uint32_t aAddress)
{
    NetworkLink link;
    return FindLink(
        [&](const NetworkLink &aCandidate) {
            return aCandidate.mName == aInterface && aCandidate.mAddress == aAddress;
        },
        link);
}

LxResult AddAddress(const NetworkLink &aLink, uint32_t aAddress, uint32_t aMask)
{
    return ChangeAddress(RTM_NEWADDR, NLM_F_CREATE | NLM_F_REPLACE, aLink, aAddress, aMask);
}

LxResult RemoveAddress(const NetworkLink &aLink, uint32_t aAddress, uint32_t aMask)
{
    return ChangeAddress(RTM_DELADDR, 0, aLink, aAddress, aMask);
}

}  // namespace LxEmulator
