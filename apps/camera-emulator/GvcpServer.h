#pragma once

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "GvcpResponder.h"
#include "NetworkLink.h"
#include "UdpSocket.h"

namespace LxEmulator
{

/// The control channel of an emulated camera on the network: receives commands and sends what a GvcpResponder answers.
///
/// On an address, it listens to that and to the broadcasts on the interface that owns it. On an interface, it hears
/// everything there and acts on what is addressed to the address that the camera claims, whether the interface has that
/// or not, and on broadcasts.
class GvcpServer
{
public:
    GvcpServer(GvcpResponder &aResponder, std::shared_ptr<LxDetail::MemoryPort> aPort);
    ~GvcpServer();
    GvcpServer(const GvcpServer &) = delete;
    GvcpServer &operator=(const GvcpServer &) = delete;

    LxResult OpenOnAddress(uint32_t aAddress, uint16_t aUdpPort);
    LxResult OpenOnInterface(const NetworkLink &aLink, uint16_t aUdpPort);
    /// After a successful Open...().
    LxResult Start();
    void Stop();

    /// Listens to another address, and no longer to the old one, from the next command on. Does nothing on an
    /// interface. Fails when the address does not belong to this machine or is in use; the server then goes on as
    /// before.
    LxResult Move(uint32_t aAddress);
    uint32_t GetAddress() const;
    uint16_t GetUdpPort() const { return mUdpPort; }

private:
    struct Sockets
    {
        NetworkLink mLink;
        UdpSocket mDirect;
        UdpSocket mLimitedBroadcast;
        UdpSocket mSubnetBroadcast;
    };
    struct Outgoing
    {
        GvcpAnswer mAnswer;
        DatagramOrigin mOrigin;  // of the command
    };

    LxResult Open(uint32_t aAddress, Sockets &aSockets) const;
    void Run();
    void TakeMove();
    int GetPollTime(GvcpResponder::Clock::time_point aNow, std::optional<GvcpResponder::Clock::time_point> aHeartbeat);
    void Receive(const UdpSocket &aSocket);
    bool IsForMe(const DatagramOrigin &aOrigin, bool &aBroadcast) const;
    void SendDue(GvcpResponder::Clock::time_point aNow);
    void Send(const Outgoing &aOutgoing) const;
    void Wake() const;

    GvcpResponder &mResponder;
    const std::shared_ptr<LxDetail::MemoryPort> mPort;
    uint16_t mUdpPort = 0;
    bool mOnInterface = false;
    int mWakeDescriptor = -1;
    std::atomic<bool> mStop{false};
    std::thread mThread;
    Sockets mSockets;                                                     // of the server's thread while that runs
    std::multimap<GvcpResponder::Clock::time_point, Outgoing> mOutgoing;  // of the server's thread

    mutable std::mutex mMutex;  // guards all members below
    std::condition_variable mMoved;
    std::optional<Sockets> mNext;
    uint32_t mAddress = 0;
};

}  // namespace LxEmulator
