#include "GvcpResponder.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace Gvcp = LxDetail::Gvcp;

GvcpResponder::GvcpResponder(Script aScript, const std::string &aNamespace, const std::string &aAdapter)
    : mScript(std::move(aScript)), mStop(eventfd(0, EFD_CLOEXEC))
{
    // a thread, because entering a namespace is for good
    std::thread([&] { Open(aNamespace, aAdapter); }).join();
    if (IsReady()) {
        mThread = std::thread([this] { Run(); });
    }
}

GvcpResponder::~GvcpResponder()
{
    eventfd_write(mStop, 1);
    if (mThread.joinable()) {
        mThread.join();
    }
    close(mStop);
    if (mSocket >= 0) {
        close(mSocket);
    }
}

void GvcpResponder::Open(const std::string &aNamespace, const std::string &aAdapter)
{
    if (!aNamespace.empty()) {
        const int space = open(("/run/netns/" + aNamespace).c_str(), O_RDONLY | O_CLOEXEC);
        const bool entered = space >= 0 && setns(space, CLONE_NEWNET) == 0;
        close(space);
        if (!entered) {
            return;
        }
    }
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    setsockopt(descriptor, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
    setsockopt(descriptor, IPPROTO_IP, IP_PKTINFO, &on, sizeof on);
    if (!aAdapter.empty()) {
        setsockopt(descriptor, SOL_SOCKET, SO_BINDTODEVICE, aAdapter.c_str(),
                   static_cast<socklen_t>(aAdapter.size() + 1));
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(Gvcp::port);
    if (bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0) {
        mSocket = descriptor;
    }
    else {
        close(descriptor);
    }
}

void GvcpResponder::Run()
{
    std::array<uint8_t, 2048> buffer{};
    for (;;) {
        std::array<pollfd, 2> descriptors{{{mSocket, POLLIN, 0}, {mStop, POLLIN, 0}}};
        poll(descriptors.data(), descriptors.size(), -1);
        if (descriptors[1].revents != 0) {
            return;
        }
        sockaddr_in source{};
        iovec data{buffer.data(), buffer.size()};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(in_pktinfo))] = {};
        msghdr message{};
        message.msg_name = &source;
        message.msg_namelen = sizeof source;
        message.msg_iov = &data;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t size = recvmsg(mSocket, &message, MSG_DONTWAIT);
        const auto packet = size < 0 ? std::nullopt : Gvcp::ParseCommand({buffer.data(), static_cast<size_t>(size)});
        if (!packet) {
            continue;
        }
        ReceivedCommand command{*packet, ntohl(source.sin_addr.s_addr), 0};
        if (const cmsghdr *header = CMSG_FIRSTHDR(&message)) {
            in_pktinfo info{};
            std::memcpy(&info, CMSG_DATA(header), sizeof info);
            command.mDestination = ntohl(info.ipi_addr.s_addr);
        }
        {
            const std::lock_guard lock(mMutex);
            mCommands.emplace_back(packet->mCode, command.mDestination);
        }
        for (const Reply &reply : mScript(command)) {
            sockaddr_in destination = source;
            if (reply.mBroadcast) {
                destination.sin_addr.s_addr = INADDR_BROADCAST;
            }
            sendto(mSocket, reply.mBytes.data(), reply.mBytes.size(), 0, reinterpret_cast<sockaddr *>(&destination),
                   sizeof destination);
        }
    }
}

int GvcpResponder::GetCount(Gvcp::Command aCommand) const
{
    return static_cast<int>(GetDestinations(aCommand).size());
}

std::vector<uint32_t> GvcpResponder::GetDestinations(Gvcp::Command aCommand) const
{
    const std::lock_guard lock(mMutex);
    std::vector<uint32_t> destinations;
    for (const auto &[code, destination] : mCommands) {
        if (code == static_cast<uint16_t>(aCommand)) {
            destinations.push_back(destination);
        }
    }
    return destinations;
}

Reply AnswerDiscovery(const ReceivedCommand &aCommand, const Gvcp::Discovery &aDiscovery)
{
    return Answer(aCommand, Gvcp::Status::Success, Gvcp::BuildDiscovery(aDiscovery));
}

Reply Answer(const ReceivedCommand &aCommand, Gvcp::Status aStatus, const std::vector<uint8_t> &aPayload)
{
    const auto ack = Gvcp::GetAck(static_cast<Gvcp::Command>(aCommand.mPacket.mCode));
    return {Gvcp::BuildAck(aStatus, ack, aCommand.mPacket.mRequestId, aPayload)};
}

Gvcp::Discovery MakeCamera(uint64_t aMAC, uint32_t aAddress)
{
    Gvcp::Discovery camera;
    camera.mVersionMajor = 2;
    camera.mVersionMinor = 1;
    camera.mDeviceMode = 0x80000001;
    camera.mMACAddress = aMAC;
    camera.mIPConfigurationOptions = 7;
    camera.mIPConfigurationCurrent = 6;
    camera.mIPAddress = aAddress;
    camera.mSubnetMask = 0xFFFFFF00;
    camera.mManufacturerName = "Maker";
    camera.mModelName = "Model";
    camera.mDeviceVersion = "1.0";
    camera.mManufacturerInfo = "info";
    camera.mSerialNumber = "S1";
    return camera;
}
