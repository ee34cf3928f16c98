#include "GigEVision/GvcpClient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "GigEVision/GvcpSocket.h"
#include "LxDevice/IPConfiguration.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

using YrUtilsLib::Network::IpAddress;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr uint32_t limitedBroadcast = 0xFFFFFFFF;
// so that a flood of datagrams does not keep anybody from looking at the clock
constexpr int mostAtOnce = 1000;
constexpr uint8_t broadcastFlags = Gvcp::flagAckRequired | Gvcp::flagBroadcastAck;

// A socket for each adapter that can have one, and the adapter's position.
struct AdapterSockets
{
    explicit AdapterSockets(const std::vector<AdapterData> &aAdapters) : mAdapters(aAdapters)
    {
        for (size_t i = 0; i < aAdapters.size(); ++i) {
            if (auto socket = GvcpSocket::OpenAtAdapter(aAdapters[i])) {
                mSockets.push_back(std::move(*socket));
                mPositions.push_back(i);
            }
        }
    }

    // Sends to everybody, once from each address: a device answers to the address that it was asked from, and reaches
    // only those on its own subnet.
    void Broadcast(Gvcp::Bytes aPacket, bool aSubnets) const
    {
        for (size_t i = 0; i < mSockets.size(); ++i) {
            const AdapterData &adapter = mAdapters[mPositions[i]];
            if (adapter.mAddresses.empty()) {
                mSockets[i].Send(aPacket, limitedBroadcast);
            }
            for (const AdapterAddress &address : adapter.mAddresses) {
                mSockets[i].Send(aPacket, limitedBroadcast, address.mAddress);
                constexpr uint32_t pointToPoint = 0xFFFFFFFE;  // subnets of so few addresses have no broadcast address
                if (aSubnets && adapter.mBroadcast && address.mMask != 0 && address.mMask < pointToPoint) {
                    mSockets[i].Send(aPacket, address.mAddress | ~address.mMask, address.mAddress);
                }
            }
        }
    }

    // Calls aReceived(position of the adapter, datagram) for what has come; false when that returned false.
    template <class Received>
    bool ReceiveAll(const Received &aReceived)
    {
        for (size_t i = 0; i < mSockets.size(); ++i) {
            for (int n = 0; n < mostAtOnce; ++n) {
                const auto datagram = mSockets[i].Receive();
                if (!datagram) {
                    break;
                }
                if (!aReceived(mPositions[i], *datagram)) {
                    return false;
                }
            }
        }
        return true;
    }

    const std::vector<AdapterData> &mAdapters;
    std::vector<GvcpSocket> mSockets;
    std::vector<size_t> mPositions;
};

std::optional<Gvcp::Discovery> ParseDiscoveryAnswer(Gvcp::Bytes aPacket, uint16_t aRequestId)
{
    const auto ack = Gvcp::ParseAck(aPacket);
    if (!ack || !ack->IsSuccess() || !ack->Answers(Gvcp::Command::Discovery, aRequestId)) {
        return std::nullopt;
    }
    return Gvcp::ParseDiscovery(ack->mPayload);
}

bool IsReadable(int aDescriptor)
{
    if (aDescriptor < 0) {
        return false;
    }
    pollfd descriptor{aDescriptor, POLLIN, 0};
    return poll(&descriptor, 1, 0) > 0;
}

// Sockets to reach one address: by the routes, and at the adapters that have the address on their wire although the
// routes may not say so.
std::vector<GvcpSocket> OpenUnicast(const std::vector<AdapterData> &aAdapters, uint32_t aAddress, bool aEverywhere)
{
    std::vector<GvcpSocket> sockets;
    if (auto socket = GvcpSocket::OpenRouted()) {
        sockets.push_back(std::move(*socket));
    }
    for (const AdapterData &adapter : aAdapters) {
        const bool contains = std::any_of(adapter.mAddresses.begin(), adapter.mAddresses.end(),
                                          [aAddress](const AdapterAddress &aOwn) { return aOwn.Contains(aAddress); });
        if (!adapter.mLoopback && (aEverywhere || contains)) {
            if (auto socket = GvcpSocket::OpenAtAdapter(adapter)) {
                sockets.push_back(std::move(*socket));
            }
        }
    }
    return sockets;
}

// Sends a command until aReceived(ack, datagram) returns true for an acknowledge of it. False when none came in time.
template <class Received>
bool Ask(std::vector<GvcpSocket> &aSockets, uint32_t aAddress, Gvcp::Command aCommand, Gvcp::Bytes aPayload,
         const GvcpPatience &aPatience, const Received &aReceived)
{
    const uint16_t id = MakeRequestId();
    const std::vector<uint8_t> packet = Gvcp::BuildCommand(aCommand, Gvcp::flagAckRequired, id, aPayload);
    bool pending = false;
    for (int i = 0; i < aPatience.mTries && !pending; ++i) {
        for (const GvcpSocket &socket : aSockets) {
            socket.Send(packet, aAddress);
        }
        auto end = Clock::now() + aPatience.mTimeout;
        do {
            WaitForDatagram(aSockets, -1, end);
            for (GvcpSocket &socket : aSockets) {
                for (int n = 0; n < mostAtOnce; ++n) {
                    const auto datagram = socket.Receive();
                    if (!datagram) {
                        break;
                    }
                    const auto ack = Gvcp::ParseAck(datagram->mData);
                    if (!ack || ack->mAckId != id) {
                        continue;
                    }
                    if (ack->Is(Gvcp::Ack::Pending)) {
                        // the device asks for time; it gets, once, what this and the other tries would have taken
                        end = pending ? end : Clock::now() + (aPatience.mTries - i) * aPatience.mTimeout;
                        pending = true;
                    }
                    else if (ack->Answers(aCommand, id) && aReceived(*ack, *datagram)) {
                        return true;
                    }
                }
            }
        } while (Clock::now() < end);
    }
    return false;
}

}  // namespace

void Discover(const std::vector<AdapterData> &aAdapters, const DiscoveryOptions &aOptions,
              const std::function<bool(const DiscoveryAnswer &)> &aAnswer)
{
    const auto end = Clock::now() + aOptions.mTimeout;
    AdapterSockets sockets(aAdapters);
    const uint16_t id = MakeRequestId();
    sockets.Broadcast(Gvcp::BuildCommand(Gvcp::Command::Discovery, broadcastFlags, id), aOptions.mSubnetBroadcast);
    const auto received = [&](size_t aAdapter, const GvcpDatagram &aDatagram) {
        const auto discovery = ParseDiscoveryAnswer(aDatagram.mData, id);
        return !discovery || aAnswer({aAdapter, *discovery});
    };
    while (!IsReadable(aOptions.mCancelDescriptor) && sockets.ReceiveAll(received) && Clock::now() < end) {
        WaitForDatagram(sockets.mSockets, aOptions.mCancelDescriptor, end);
    }
}

LxResult DiscoverAt(const std::vector<AdapterData> &aAdapters, uint32_t aAddress, DiscoveryAnswer &aAnswer)
{
    const auto received = [&](const Gvcp::AckPacket &aAck, const GvcpDatagram &aDatagram) {
        const auto discovery = Gvcp::ParseDiscovery(aAck.mPayload);
        if (!aAck.IsSuccess() || !discovery || aAdapters.empty()) {
            return false;
        }
        const auto adapter = std::find_if(
            aAdapters.begin(), aAdapters.end(),
            [&aDatagram](const AdapterData &aAdapter) { return aAdapter.mIndex == aDatagram.mAdapterIndex; });
        aAnswer.mAdapter = adapter == aAdapters.end() ? 0 : static_cast<size_t>(adapter - aAdapters.begin());
        aAnswer.mDiscovery = *discovery;
        return true;
    };
    std::vector<GvcpSocket> sockets = OpenUnicast(aAdapters, aAddress, true);
    if (!Ask(sockets, aAddress, Gvcp::Command::Discovery, {}, {milliseconds(500), 2}, received)) {
        return LxResult(LxResultCode::NotFound, "No device answers at " + IpAddress(aAddress).ToString() + '.');
    }
    return LxResult();
}

LxResult ReadRegister(const std::vector<AdapterData> &aAdapters, uint32_t aAddress, uint32_t aRegister,
                      const GvcpPatience &aPatience, uint32_t &aValue)
{
    LxResult result;
    const auto received = [&](const Gvcp::AckPacket &aAck, const GvcpDatagram &) {
        const auto values = Gvcp::ParseWords(aAck.mPayload);
        if (!aAck.IsSuccess()) {
            result = GetStatusResult(aAck.mStatus);
        }
        else if (values && values->size() == 1) {
            aValue = values->front();
        }
        else {
            result = LxResult(LxResultCode::ProtocolError, "The device at " + IpAddress(aAddress).ToString() +
                                                               " answers with a packet that the protocol does not "
                                                               "allow.");
        }
        return true;
    };
    std::vector<GvcpSocket> sockets = OpenUnicast(aAdapters, aAddress, false);
    if (!Ask(sockets, aAddress, Gvcp::Command::ReadRegister, Gvcp::BuildWords({&aRegister, 1}), aPatience, received)) {
        return LxResult(LxResultCode::Timeout, "The device at " + IpAddress(aAddress).ToString() + " does not answer.");
    }
    return result;
}

LxResult GetStatusResult(uint16_t aStatus)
{
    using Gvcp::Status;
    switch (static_cast<Status>(aStatus)) {
        case Status::Success:
            return LxResult();
        case Status::NotImplemented:
            return LxResult(LxResultCode::NotSupported, "The device does not implement the operation.");
        case Status::InvalidParameter:
            return LxResult(LxResultCode::InvalidParameter, "The device rejects a parameter.");
        case Status::InvalidAddress:
            return LxResult(LxResultCode::InvalidAddress, "The device has no register at the address.");
        case Status::WriteProtect:
            return LxResult(LxResultCode::WriteProtected, "The register cannot be written.");
        case Status::BadAlignment:
            return LxResult(LxResultCode::BadAlignment, "The address or the length has the wrong alignment.");
        case Status::AccessDenied:
            return LxResult(LxResultCode::AccessDenied, "Another application controls the device.");
        case Status::Busy:
            return LxResult(LxResultCode::Busy, "The device is busy. Try again.");
        default: {
            char text[64];
            std::snprintf(text, sizeof text, "The device answers with the error 0x%04X.", aStatus);
            return LxResult(LxResultCode::ProtocolError, text);
        }
    }
}

LxResult ForceIP(const std::vector<AdapterData> &aAdapters, const Gvcp::ForceIP &aForceIP)
{
    AdapterSockets sockets(aAdapters);
    const uint16_t forceId = MakeRequestId();
    const uint16_t discoveryId = MakeRequestId();
    const auto force =
        Gvcp::BuildCommand(Gvcp::Command::ForceIP, broadcastFlags, forceId, Gvcp::BuildForceIP(aForceIP));
    const auto discover = Gvcp::BuildCommand(Gvcp::Command::Discovery, broadcastFlags, discoveryId);

    constexpr auto success = static_cast<uint16_t>(Gvcp::Status::Success);
    std::optional<uint16_t> status;  // of the acknowledge
    std::optional<uint32_t> seenAt;  // the address that the device reported last
    const auto isDone = [&] {
        // address 0 makes the device choose one itself, so that any is right
        return status == success || (seenAt && (*seenAt == aForceIP.mIPAddress || aForceIP.mIPAddress == 0));
    };
    const auto received = [&](size_t, const GvcpDatagram &aDatagram) {
        const auto ack = Gvcp::ParseAck(aDatagram.mData);
        if (ack && ack->Answers(Gvcp::Command::ForceIP, forceId)) {
            // a refusal may come from a device that was not meant, and does not count beside the acknowledge
            if (status != success) {
                status = ack->mStatus;
            }
        }
        else if (const auto found = ParseDiscoveryAnswer(aDatagram.mData, discoveryId);
                 found && found->mMACAddress == aForceIP.mMACAddress)
        {
            seenAt = found->mIPAddress;
        }
        return !isDone();
    };
    const auto listen = [&](milliseconds aTime) {
        const auto end = Clock::now() + aTime;
        while (sockets.ReceiveAll(received) && Clock::now() < end) {
            WaitForDatagram(sockets.mSockets, -1, end);
        }
    };
    constexpr milliseconds acknowledgeTime(250);
    constexpr milliseconds discoveryTime(500);
    for (int i = 0; i < 2 && !status; ++i) {
        sockets.Broadcast(force, false);
        listen(acknowledgeTime);
    }
    // some devices do not acknowledge, or to an address that does not reach this computer
    for (int i = 0; i < 4 && !status && !isDone(); ++i) {
        sockets.Broadcast(discover, false);
        listen(discoveryTime);
    }

    const std::string device = "The device with the MAC address " + FormatMACAddress(aForceIP.mMACAddress);
    if (status && status != success) {
        if (*status == static_cast<uint16_t>(Gvcp::Status::AccessDenied)) {
            return LxResult(LxResultCode::AccessDenied,
                            device + " refuses the address, because another application controls it.");
        }
        return LxResult(LxResultCode::Failed,
                        device + " refuses the address. " + GetStatusResult(*status).GetDescription().GetString());
    }
    if (isDone()) {
        return LxResult();
    }
    if (seenAt) {
        return LxResult(LxResultCode::Failed, device + " still has the address " + IpAddress(*seenAt).ToString() + '.');
    }
    return LxResult(LxResultCode::NotFound, device + " does not answer.");
}

uint32_t GetLocalAddress(const std::vector<AdapterData> &aAdapters, uint32_t aAddress)
{
    for (const AdapterData &adapter : aAdapters) {
        for (const AdapterAddress &own : adapter.mAddresses) {
            if (own.Contains(aAddress)) {
                return own.mAddress;
            }
        }
    }
    // connecting a UDP socket sends nothing, but asks the routes
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(aAddress);
    address.sin_port = htons(Gvcp::port);
    socklen_t length = sizeof address;
    uint32_t local = 0;
    if (descriptor >= 0) {
        if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
            getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &length) == 0)
        {
            local = ntohl(address.sin_addr.s_addr);
        }
        close(descriptor);
    }
    return local;
}

}  // namespace LxDetail
