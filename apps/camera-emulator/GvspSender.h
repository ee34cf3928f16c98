#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Backends/Simulation/SimulatedCamera.h"
#include "GigEVision/GvcpPacket.h"
#include "GvspBlock.h"
#include "PacketFaults.h"
#include "UdpSocket.h"

namespace LxEmulator
{

namespace Gvcp = LxDetail::Gvcp;

struct StreamStatistics
{
    uint64_t mBlocks = 0;   ///< images sent, complete or not
    uint64_t mPackets = 0;  ///< datagrams handed to the network
    uint64_t mDropped = 0;  ///< packets that faults kept back
    uint64_t mFailed = 0;   ///< datagrams that the network refused
    uint64_t mResendRequests = 0;
    uint64_t mResent = 0;       ///< packets sent again
    uint64_t mUnavailable = 0;  ///< packets asked for that were not held any more
    uint64_t mTestPackets = 0;
};

/// The stream channel of an emulated camera: takes images from the camera at its frame rate and sends them with the
/// GigE Vision streaming protocol to where the stream registers say. Keeps the last images, to send packets again.
/// Thread-safe.
class GvspSender
{
public:
    explicit GvspSender(LxDetail::SimulatedCamera &aCamera);
    ~GvspSender();
    GvspSender(const GvspSender &) = delete;
    GvspSender &operator=(const GvspSender &) = delete;

    /// Sends from this address from now on, and shows the port in the registers.
    LxResult Open(uint32_t aAddress, const std::string &aInterface);
    void Start();
    void Stop();

    /// Sends one datagram of the size that a packet has with this value of the packet size register.
    void FireTestPacket(uint32_t aPacketSizeRegister);
    void Resend(const Gvcp::PacketResend &aRequest);

    void SetFaults(const PacketFaults &aFaults);
    PacketFaults GetFaults() const;
    /// While silent nothing is sent, though the camera goes on acquiring.
    void SetSilent(bool aSilent) { mSilent = aSilent; }
    bool IsSilent() const { return mSilent; }
    StreamStatistics GetStatistics() const;

private:
    using Clock = std::chrono::steady_clock;

    void Run();
    std::shared_ptr<GvspBlock> MakeBlock();
    std::shared_ptr<GvspBlock> TakeSpareBlock();
    void Keep(const std::shared_ptr<GvspBlock> &aBlock);
    std::shared_ptr<const GvspBlock> Find(uint64_t aId) const;
    void SendBlock(const GvspBlock &aBlock);
    /// How long the packets of an image are spread out, by frame rate, packet delay and speed of the link.
    Clock::duration GetSendTime(const GvspBlock &aBlock) const;
    Gvcp::Status GetStatusOfMissing(uint64_t aId) const;
    Endpoint GetDestination() const;
    bool IsInterrupted() const;

    LxDetail::SimulatedCamera &mCamera;
    std::atomic<bool> mStop{false};
    std::atomic<bool> mSilent{false};
    std::thread mThread;

    mutable std::mutex mMutex;  // guards all members below
    std::condition_variable mWake;
    std::shared_ptr<UdpSocket> mSocket;
    PacketPlanner mPlanner;
    StreamStatistics mStatistics;
    std::deque<std::shared_ptr<GvspBlock>> mKept;
    uint64_t mLastId = 0;
};

}  // namespace LxEmulator
