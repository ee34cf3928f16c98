#include "GvspSender.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>

#include "Backends/Simulation/SimulatedRegisters.h"

namespace LxEmulator
{

namespace
{

namespace Register = LxDetail::SimulatedRegister;

constexpr uint32_t DontFragment = 0x40000000;  // of the packet size register, as the next
constexpr uint32_t PacketSizeMask = 0x0000FFFF;
constexpr uint32_t ExtendedIds = 0x40000000;   // of the GVSP configuration register
constexpr uint32_t ExtendedStatusCodes = 0x4;  // of the GVCP configuration register
constexpr uint32_t MaxUnavailable = 64;        // packets said to be missing in answer to one request
constexpr size_t BatchSize = 32;               // packets handed to the kernel at once
constexpr std::chrono::microseconds BatchTime{500};
constexpr uint64_t KeptBytes = 64 * 1024 * 1024;
constexpr size_t MinKeptBlocks = 2;
constexpr size_t MaxKeptBlocks = 64;
constexpr double PaceBytesPerSecond = 125e6;  // what a gigabit link carries: no receiver needs a faster burst
constexpr double PaceShareOfPeriod = 0.75;    // the rest of the frame period is left for catching up

/// A batch of packets in the form that the kernel takes.
struct Batch
{
    std::array<GvspPacket, BatchSize> mPackets;
    std::array<std::array<iovec, 2>, BatchSize> mParts;
    std::array<mmsghdr, BatchSize> mMessages;
    size_t mSize = 0;

    void Add(const GvspPacket &aPacket, sockaddr_in &aTo)
    {
        GvspPacket &packet = mPackets[mSize] = aPacket;
        auto &parts = mParts[mSize];
        parts[0] = {packet.mHeader.data(), packet.mHeaderSize};
        parts[1] = {const_cast<uint8_t *>(packet.mData.data()), packet.mData.size()};  // sendmmsg only reads
        msghdr &header = mMessages[mSize].msg_hdr = msghdr{};
        header.msg_name = &aTo;
        header.msg_namelen = sizeof aTo;
        header.msg_iov = parts.data();
        header.msg_iovlen = packet.mData.empty() ? 1 : 2;
        ++mSize;
    }

    /// Sends all; returns how many the network refused.
    size_t Send(int aDescriptor)
    {
        size_t refused = 0;
        for (size_t done = 0; done < mSize;) {
            const int sent = sendmmsg(aDescriptor, &mMessages[done], static_cast<unsigned>(mSize - done), 0);
            if (sent <= 0) {
                ++refused;
                ++done;  // the one that could not be sent; those behind it may
            }
            else {
                done += static_cast<size_t>(sent);
            }
        }
        mSize = 0;
        return refused;
    }
};

uint64_t GetNextId(uint64_t aId, bool aExtendedIds)
{
    return aExtendedIds || aId < 0xFFFF ? aId + 1 : 1;  // 0 is no block
}

}  // namespace

GvspSender::GvspSender(LxDetail::SimulatedCamera &aCamera) : mCamera(aCamera) {}

GvspSender::~GvspSender()
{
    Stop();
}

LxResult GvspSender::Open(uint32_t aAddress, const std::string &aInterface)
{
    auto opened = std::make_shared<UdpSocket>();
    if (LxResult result = opened->Open(Endpoint{aAddress, 0}, aInterface); !result.IsOK()) {
        return result;
    }
    mCamera.GetPort()->Poke32(Register::GevSCSP, opened->GetLocal().mPort);
    std::lock_guard lock(mMutex);
    mSocket = std::move(opened);
    return LxResult();
}

void GvspSender::Start()
{
    mCamera.SetAcquisitionListener([this](bool) {
        std::lock_guard lock(mMutex);
        mWake.notify_all();
    });
    mThread = std::thread(&GvspSender::Run, this);
}

void GvspSender::Stop()
{
    if (!mThread.joinable()) {
        return;
    }
    {
        std::lock_guard lock(mMutex);
        mStop = true;
        mWake.notify_all();
    }
    mCamera.AbortAcquisition();  // ends WaitForFrame()
    mThread.join();
    mCamera.SetAcquisitionListener(nullptr);
}

void GvspSender::Run()
{
    uint64_t acquisition = 0;
    while (!mStop) {
        {
            std::unique_lock lock(mMutex);
            mWake.wait(lock, [this] { return mStop || mCamera.IsAcquiring(); });
        }
        while (!mStop && mCamera.WaitForFrame(mStop)) {
            if (GetDestination() == Endpoint()) {
                continue;  // the channel is closed
            }
            if (const uint64_t current = mCamera.GetAcquisitionCount(); current != acquisition) {
                acquisition = current;
                std::lock_guard lock(mMutex);
                mLastId = 0;
                mKept.clear();
            }
            const std::shared_ptr<GvspBlock> block = MakeBlock();
            Keep(block);
            SendBlock(*block);
        }
    }
}

std::shared_ptr<GvspBlock> GvspSender::MakeBlock()
{
    const auto &port = mCamera.GetPort();
    std::shared_ptr<GvspBlock> block = TakeSpareBlock();
    block->mExtendedIds = (port->Peek32(Register::GevGVSPConfiguration) & ExtendedIds) != 0;
    const uint32_t size = port->Peek32(Register::GevSCPS) & PacketSizeMask;
    block->mPacketSize = std::clamp(size, GvspBlock::GetMinPacketSize(block->mExtendedIds), GvspBlock::MaxPacketSize);
    uint8_t timestamp[8] = {};
    port->Read(Register::Timestamp, timestamp, sizeof timestamp);
    block->mTimestamp = 0;
    for (const uint8_t byte : timestamp) {
        block->mTimestamp = block->mTimestamp << 8 | byte;
    }
    // The registers may change while the image is drawn; one that fits what its leader says is wanted, but not awaited
    // for ever.
    for (int tries = 0; tries < 3; ++tries) {
        block->mIsGenDC = mCamera.GetPayloadType() == LxPayloadType::GenDC;
        block->mSizeX = mCamera.GetWidth();
        block->mSizeY = mCamera.GetHeight();
        block->mOffsetX = port->Peek32(Register::OffsetX);
        block->mOffsetY = port->Peek32(Register::OffsetY);
        block->mPixelFormat = static_cast<uint32_t>(mCamera.GetPixelType());
        block->mData.resize(mCamera.GetPayloadSize());
        mCamera.DrawFrame(mLastId, block->mData.data(), block->mData.size());
        if (block->mSizeX == mCamera.GetWidth() && block->mSizeY == mCamera.GetHeight() &&
            block->mData.size() == mCamera.GetPayloadSize())
        {
            break;
        }
    }
    return block;
}

std::shared_ptr<GvspBlock> GvspSender::TakeSpareBlock()
{
    std::lock_guard lock(mMutex);
    uint64_t bytes = 0;
    for (const auto &block : mKept) {
        bytes += block->mData.size();
    }
    const bool full = mKept.size() >= MaxKeptBlocks || (mKept.size() >= MinKeptBlocks && bytes >= KeptBytes);
    if (!full) {
        return std::make_shared<GvspBlock>();
    }
    // The memory of the oldest is used again, unless packets of it are being sent again right now.
    std::shared_ptr<GvspBlock> oldest = std::move(mKept.front());
    mKept.pop_front();
    return oldest.use_count() == 1 ? oldest : std::make_shared<GvspBlock>();
}

void GvspSender::Keep(const std::shared_ptr<GvspBlock> &aBlock)
{
    std::lock_guard lock(mMutex);
    mLastId = GetNextId(mLastId, aBlock->mExtendedIds);
    aBlock->mId = mLastId;
    mKept.push_back(aBlock);
}

std::shared_ptr<const GvspBlock> GvspSender::Find(uint64_t aId) const
{
    const auto found =
        std::find_if(mKept.rbegin(), mKept.rend(), [aId](const auto &aBlock) { return aBlock->mId == aId; });
    return found == mKept.rend() ? nullptr : *found;
}

Gvcp::Status GvspSender::GetStatusOfMissing(uint64_t aId) const
{
    // The finer codes came with GigE Vision 1.1 and are for applications that asked for them.
    if (!(mCamera.GetPort()->Peek32(Register::GevGVCPConfiguration) & ExtendedStatusCodes)) {
        return Gvcp::Status::PacketUnavailable;
    }
    return aId > mLastId ? Gvcp::Status::PacketNotYetAvailable : Gvcp::Status::PacketRemoved;
}

Endpoint GvspSender::GetDestination() const
{
    const auto &port = mCamera.GetPort();
    const Endpoint destination{port->Peek32(Register::GevSCDA), static_cast<uint16_t>(port->Peek32(Register::GevSCP))};
    return destination.mAddress == 0 || destination.mPort == 0 ? Endpoint() : destination;
}

bool GvspSender::IsInterrupted() const
{
    return mStop || mSilent || GetDestination() == Endpoint();
}

GvspSender::Clock::duration GvspSender::GetSendTime(const GvspBlock &aBlock) const
{
    const auto bytes = static_cast<double>(aBlock.mData.size());
    const double megabits = std::max(mCamera.GetPort()->Peek32(Register::GevLinkSpeed), 1u);
    const double rate = mCamera.GetFrameRate();
    const double period = rate > 0 ? 1 / rate : 0;
    double seconds = std::min(PaceShareOfPeriod * period, bytes / PaceBytesPerSecond);
    seconds = std::max(seconds, bytes * 8 / megabits / 1e6);
    const uint64_t frequency = mCamera.GetPort()->Peek64(Register::GevTimestampTickFrequency);
    if (frequency != 0) {
        const uint32_t ticks = mCamera.GetPort()->Peek32(Register::GevSCPD);
        seconds =
            std::max(seconds, static_cast<double>(ticks) / static_cast<double>(frequency) * aBlock.GetPacketCount());
    }
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

void GvspSender::SendBlock(const GvspBlock &aBlock)
{
    std::vector<PlannedPacket> plan;
    std::shared_ptr<UdpSocket> socket;
    uint32_t leaderSizeX = 0;
    uint32_t leaderSizeY = 0;
    uint32_t dropped = 0;
    {
        std::lock_guard lock(mMutex);
        plan = mPlanner.PlanBlock(aBlock.GetPacketCount(), dropped);
        socket = mSocket;
        leaderSizeX = mPlanner.GetFaults().mLeaderSizeX;
        leaderSizeY = mPlanner.GetFaults().mLeaderSizeY;
    }
    if (!socket || mSilent) {
        return;
    }
    const uint32_t size = mCamera.GetPort()->Peek32(Register::GevSCPS);
    socket->SetDontFragment((size & DontFragment) != 0);
    sockaddr_in to = ToSocketAddress(GetDestination());
    const Clock::duration time = GetSendTime(aBlock);
    // Packets that are far apart go out one by one, others in batches.
    const auto distance = time / std::max<Clock::rep>(static_cast<Clock::rep>(plan.size()), 1);
    const auto batchSize = static_cast<size_t>(
        std::clamp<Clock::rep>(BatchTime / std::max(distance, Clock::duration(1)), 1, Clock::rep{BatchSize}));
    const Clock::time_point start = Clock::now();
    Batch batch;
    uint64_t failed = 0;
    size_t done = 0;
    while (done < plan.size() && !IsInterrupted()) {
        const size_t end = std::min(done + batchSize, plan.size());
        for (; done < end; ++done) {
            GvspPacket packet = aBlock.MakePacket(plan[done].mId, false);
            if (plan[done].mTruncated) {
                packet.mData = packet.mData.first(packet.mData.size() / 2);
            }
            if (plan[done].mId == 0 && leaderSizeX != 0) {
                packet = aBlock.MakeLeader(leaderSizeX, leaderSizeY, false);
            }
            batch.Add(packet, to);
        }
        failed += batch.Send(socket->GetDescriptor());
        const auto due = start + time * static_cast<Clock::rep>(done) / static_cast<Clock::rep>(plan.size());
        if (due - Clock::now() > std::chrono::microseconds(100)) {  // a shorter sleep costs more than it gives
            std::this_thread::sleep_until(due);
        }
    }
    std::lock_guard lock(mMutex);
    ++mStatistics.mBlocks;
    mStatistics.mPackets += done - failed;
    mStatistics.mFailed += failed;
    mStatistics.mDropped += dropped;
}

void GvspSender::FireTestPacket(uint32_t aPacketSizeRegister)
{
    const Endpoint destination = GetDestination();
    std::shared_ptr<UdpSocket> socket;
    {
        std::lock_guard lock(mMutex);
        socket = mSocket;
    }
    const uint32_t size = aPacketSizeRegister & PacketSizeMask;
    if (destination == Endpoint() || !socket || mSilent || size <= GvspBlock::UdpOverhead) {
        return;
    }
    socket->SetDontFragment((aPacketSizeRegister & DontFragment) != 0);
    const std::vector<uint8_t> data(size - GvspBlock::UdpOverhead);
    const bool sent = socket->Send(destination, data.data(), data.size());
    std::lock_guard lock(mMutex);
    ++(sent ? mStatistics.mTestPackets : mStatistics.mFailed);
}

void GvspSender::Resend(const Gvcp::PacketResend &aRequest)
{
    const Endpoint destination = GetDestination();
    const bool extendedIds = (mCamera.GetPort()->Peek32(Register::GevGVSPConfiguration) & ExtendedIds) != 0;
    std::shared_ptr<const GvspBlock> block;
    Gvcp::Status missing = Gvcp::Status::PacketUnavailable;
    std::shared_ptr<UdpSocket> socket;
    {
        std::lock_guard lock(mMutex);
        ++mStatistics.mResendRequests;
        const bool ignored = mPlanner.GetFaults().mDropResends || mSilent || !mSocket;
        if (ignored || destination == Endpoint() || aRequest.mStreamChannel != 0 ||
            aRequest.mFirstPacketId > aRequest.mLastPacketId)
        {
            return;
        }
        block = Find(aRequest.mBlockId);
        missing = GetStatusOfMissing(aRequest.mBlockId);
        socket = mSocket;
    }
    sockaddr_in to = ToSocketAddress(destination);
    uint64_t sent = 0;
    Batch batch;
    if (block) {
        const uint32_t last = std::min(aRequest.mLastPacketId, block->GetPacketCount() - 1);
        for (uint64_t id = aRequest.mFirstPacketId; id <= last; ++id) {
            batch.Add(block->MakePacket(static_cast<uint32_t>(id), true), to);
            ++sent;
            if (batch.mSize == BatchSize || id == last) {
                batch.Send(socket->GetDescriptor());
            }
        }
    }
    uint64_t unavailable = 0;
    if (!block) {
        const uint64_t last =
            std::min<uint64_t>(aRequest.mLastPacketId, uint64_t{aRequest.mFirstPacketId} + MaxUnavailable - 1);
        for (uint64_t id = aRequest.mFirstPacketId; id <= last; ++id) {
            batch.Add(GvspBlock::MakeEmptyPacket(aRequest.mBlockId, extendedIds, static_cast<uint32_t>(id), missing),
                      to);
            ++unavailable;
            if (batch.mSize == BatchSize || id == last) {
                batch.Send(socket->GetDescriptor());
            }
        }
    }
    std::lock_guard lock(mMutex);
    mStatistics.mResent += sent;
    mStatistics.mUnavailable += unavailable;
}

void GvspSender::SetFaults(const PacketFaults &aFaults)
{
    std::lock_guard lock(mMutex);
    mPlanner = PacketPlanner(aFaults);
}

PacketFaults GvspSender::GetFaults() const
{
    std::lock_guard lock(mMutex);
    return mPlanner.GetFaults();
}

StreamStatistics GvspSender::GetStatistics() const
{
    std::lock_guard lock(mMutex);
    return mStatistics;
}

}  // namespace LxEmulator
