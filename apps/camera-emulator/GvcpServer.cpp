#include "GvcpServer.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "Backends/Simulation/SimulatedRegisters.h"

namespace LxEmulator
{

namespace
{

namespace Register = LxDetail::SimulatedRegister;
using Clock = GvcpResponder::Clock;

constexpr uint32_t LimitedBroadcast = 0xFFFFFFFF;
constexpr size_t MaxReceive = 65536;
constexpr int MaxDatagramsAtOnce = 64;  // then heartbeat and answers that are due get their turn

}  // namespace

GvcpServer::GvcpServer(GvcpResponder &aResponder, std::shared_ptr<LxDetail::MemoryPort> aPort)
    : mResponder(aResponder), mPort(std::move(aPort))
{
}

GvcpServer::~GvcpServer()
{
    Stop();
}

LxResult GvcpServer::Open(uint32_t aAddress, Sockets &aSockets) const
{
    if (LxResult result = FindLinkOfAddress(aAddress, aSockets.mLink); !result.IsOK()) {
        return result;
    }
    if (LxResult result = aSockets.mDirect.Open(Endpoint{aAddress, mUdpPort}); !result.IsOK()) {
        return result;
    }
    // A socket that is bound to an address hears no broadcasts; each of them needs a socket of its own, which other
    // cameras on this machine share.
    if (LxResult result = aSockets.mLimitedBroadcast.Open(Endpoint{LimitedBroadcast, mUdpPort}, {}, true);
        !result.IsOK()) {
        return result;
    }
    if (aSockets.mLink.mBroadcast == aAddress) {  // a subnet of one
        return LxResult();
    }
    return aSockets.mSubnetBroadcast.Open(Endpoint{aSockets.mLink.mBroadcast, mUdpPort}, {}, true);
}

LxResult GvcpServer::OpenOnAddress(uint32_t aAddress, uint16_t aUdpPort)
{
    mUdpPort = aUdpPort;
    mOnInterface = false;
    Sockets opened;
    const LxResult result = Open(aAddress, opened);
    if (result.IsOK()) {
        mSockets = std::move(opened);
        std::lock_guard lock(mMutex);
        mAddress = aAddress;
    }
    return result;
}

LxResult GvcpServer::OpenOnInterface(const NetworkLink &aLink, uint16_t aUdpPort)
{
    mUdpPort = aUdpPort;
    mOnInterface = true;
    Sockets opened;
    opened.mLink = aLink;
    const LxResult result = opened.mDirect.Open(Endpoint{0, aUdpPort}, aLink.mName);
    if (result.IsOK()) {
        mSockets = std::move(opened);
    }
    return result;
}

LxResult GvcpServer::Start()
{
    mWakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (mWakeDescriptor < 0) {
        return LxResult(LxResultCode::Failed, "Cannot create an event descriptor");
    }
    mStop = false;
    mThread = std::thread(&GvcpServer::Run, this);
    return LxResult();
}

void GvcpServer::Stop()
{
    if (mThread.joinable()) {
        {
            std::lock_guard lock(mMutex);
            mStop = true;
            mMoved.notify_all();
        }
        Wake();
        mThread.join();
        close(mWakeDescriptor);
        mWakeDescriptor = -1;
    }
    mSockets = Sockets();
    mNext.reset();
    mOutgoing.clear();
}

void GvcpServer::Wake() const
{
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(mWakeDescriptor, &one, sizeof one);  // full means woken already
}

LxResult GvcpServer::Move(uint32_t aAddress)
{
    if (mOnInterface || aAddress == GetAddress()) {
        return LxResult();
    }
    Sockets opened;
    const LxResult result = Open(aAddress, opened);
    if (result.IsOK()) {
        std::unique_lock lock(mMutex);
        mNext = std::move(opened);
        mAddress = aAddress;
        Wake();
        if (std::this_thread::get_id() != mThread.get_id()) {  // that one takes it before its next command anyway
            mMoved.wait(lock, [this] { return !mNext || mStop; });
        }
    }
    return result;
}

uint32_t GvcpServer::GetAddress() const
{
    std::lock_guard lock(mMutex);
    return mOnInterface ? mPort->Peek32(Register::GevCurrentIPAddress) : mAddress;
}

void GvcpServer::TakeMove()
{
    std::lock_guard lock(mMutex);
    if (mNext) {
        mSockets = std::move(*mNext);
        mNext.reset();
        mMoved.notify_all();
    }
}

int GvcpServer::GetPollTime(Clock::time_point aNow, std::optional<Clock::time_point> aHeartbeat)
{
    Clock::time_point next = aNow + std::chrono::seconds(3600);
    if (aHeartbeat) {
        next = std::min(next, *aHeartbeat);
    }
    if (!mOutgoing.empty()) {
        next = std::min(next, mOutgoing.begin()->first);
    }
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(next - aNow).count();
    return static_cast<int>(std::max<decltype(time)>(time, 0));
}

void GvcpServer::Run()
{
    while (!mStop) {
        TakeMove();
        const Clock::time_point now = Clock::now();
        SendDue(now);
        const auto heartbeat = mResponder.CheckHeartbeat(now);
        // Closed sockets have descriptor -1, which poll() passes over.
        std::array<pollfd, 4> descriptors = {{{mWakeDescriptor, POLLIN, 0},
                                              {mSockets.mDirect.GetDescriptor(), POLLIN, 0},
                                              {mSockets.mLimitedBroadcast.GetDescriptor(), POLLIN, 0},
                                              {mSockets.mSubnetBroadcast.GetDescriptor(), POLLIN, 0}}};
        if (poll(descriptors.data(), descriptors.size(), GetPollTime(now, heartbeat)) <= 0) {
            continue;
        }
        if (descriptors[0].revents) {
            uint64_t count = 0;
            [[maybe_unused]] const ssize_t taken = read(mWakeDescriptor, &count, sizeof count);
        }
        if (descriptors[1].revents) {
            Receive(mSockets.mDirect);
        }
        if (descriptors[2].revents) {
            Receive(mSockets.mLimitedBroadcast);
        }
        if (descriptors[3].revents) {
            Receive(mSockets.mSubnetBroadcast);
        }
    }
}

bool GvcpServer::IsForMe(const DatagramOrigin &aOrigin, bool &aBroadcast) const
{
    const uint32_t claimed = mPort->Peek32(Register::GevCurrentIPAddress);
    const uint32_t to = aOrigin.mDestination;
    const uint32_t claimedBroadcast = claimed | ~mPort->Peek32(Register::GevCurrentSubnetMask);
    const bool subnetBroadcast = to == mSockets.mLink.mBroadcast || to == claimedBroadcast;
    // In a subnet of one its broadcast address is the only one.
    aBroadcast = to == LimitedBroadcast || (subnetBroadcast && to != claimed && to != mSockets.mLink.mAddress);
    if (aOrigin.mInterfaceIndex != mSockets.mLink.mIndex) {
        return !aBroadcast && !mOnInterface;  // one's own address is reached over the loopback interface
    }
    return aBroadcast || !mOnInterface || to == claimed;
}

void GvcpServer::Receive(const UdpSocket &aSocket)
{
    std::array<uint8_t, MaxReceive> buffer;
    for (int i = 0; i < MaxDatagramsAtOnce && !mStop; ++i) {
        DatagramOrigin origin;
        const ptrdiff_t size = aSocket.Receive(buffer.data(), buffer.size(), origin);
        if (size < 0) {
            return;
        }
        bool broadcast = false;
        if (!IsForMe(origin, broadcast)) {
            continue;
        }
        const Clock::time_point now = Clock::now();
        const std::span<const uint8_t> datagram(buffer.data(), static_cast<size_t>(size));
        for (GvcpAnswer &answer : mResponder.Respond(datagram, origin.mSource, broadcast, now)) {
            const Clock::time_point due = answer.mDue;
            mOutgoing.emplace(due, Outgoing{std::move(answer), origin});
        }
        std::unique_lock lock(mMutex);
        if (mNext) {
            // The command moved the camera: the answer comes from its new address, and this socket is about to close.
            return;
        }
        lock.unlock();
        SendDue(now);
    }
}

void GvcpServer::SendDue(Clock::time_point aNow)
{
    while (!mOutgoing.empty() && mOutgoing.begin()->first <= aNow) {
        Send(mOutgoing.begin()->second);
        mOutgoing.erase(mOutgoing.begin());
    }
}

void GvcpServer::Send(const Outgoing &aOutgoing) const
{
    const DatagramOrigin &origin = aOutgoing.mOrigin;
    Endpoint to = origin.mSource;
    uint32_t source = 0;
    if (mOnInterface) {
        // A camera that claims an address which its interface does not have answers broadcasts all the same.
        const uint32_t claimed = mPort->Peek32(Register::GevCurrentIPAddress);
        source = origin.mDestination == claimed || HasAddress(mSockets.mLink.mName, claimed) ? claimed : 0;
    }
    if (aOutgoing.mAnswer.mBroadcast) {
        to.mAddress = LimitedBroadcast;
    }
    const int interface = aOutgoing.mAnswer.mBroadcast ? origin.mInterfaceIndex : 0;
    const std::vector<uint8_t> &bytes = aOutgoing.mAnswer.mBytes;
    mSockets.mDirect.Send(to, bytes.data(), bytes.size(), source, interface);
}

}  // namespace LxEmulator
