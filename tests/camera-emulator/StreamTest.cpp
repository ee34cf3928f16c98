// The stream, packet by packet, and what goes wrong with it on demand.

#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "CommandChannel.h"
#include "EmulatorClient.h"
#include "WaitFor.h"

namespace LxEmulator
{
namespace
{

namespace Register = LxDetail::SimulatedRegister;
using namespace std::chrono_literals;

// 64 x 32 bytes in packets of 500: 464 bytes of data each with standard ids, 452 with extended ones.
constexpr uint32_t Packets = 5;

std::vector<uint32_t> GetIds(const std::vector<StreamPacket> &aPackets)
{
    std::vector<uint32_t> ids;
    for (const StreamPacket &packet : aPackets) {
        ids.push_back(packet.mId);
    }
    return ids;
}

std::vector<uint32_t> Sequence(uint32_t aCount)
{
    std::vector<uint32_t> ids(aCount);
    std::iota(ids.begin(), ids.end(), 0);
    return ids;
}

bool IsTrailer(const StreamPacket &aPacket)
{
    return aPacket.mType == TrailerPacket;
}

class Stream : public StreamTest
{
protected:
    void Command(const std::string &aLine)
    {
        CommandChannel channel(mCamera);
        EXPECT_EQ("ok", channel.Execute(aLine)) << aLine;
    }
    /// The next block with these packets; others may be on their way still.
    std::optional<std::vector<StreamPacket>> ReceiveBlockWith(const std::vector<uint32_t> &aIds)
    {
        for (int i = 0; i < 1000; ++i) {
            auto packets = ReceiveBlock();
            if (packets.empty() || GetIds(packets) == aIds) {
                return packets.empty() ? std::nullopt : std::optional(packets);
            }
        }
        return std::nullopt;
    }
    void BeginStream()
    {
        Begin();
        OpenChannel();
        StartAcquisition();
    }
};

TEST_F(Stream, BlockIsLeaderPayloadTrailer)
{
    BeginStream();
    for (uint64_t number = 1; number <= 3; ++number) {
        const auto packets = ReceiveBlock();
        ASSERT_EQ(Sequence(Packets + 2), GetIds(packets));
        Bytes image;
        for (const StreamPacket &packet : packets) {
            EXPECT_EQ(0, packet.mStatus);
            EXPECT_EQ(number, packet.mBlock);
            EXPECT_FALSE(packet.mExtended);
            EXPECT_LE(packet.mSize, 500u - 28u);
            if (packet.mType == PayloadPacket) {
                image.insert(image.end(), packet.mData.begin(), packet.mData.end());
            }
        }
        const Bytes &leader = packets.front().mData;
        ASSERT_EQ(36u, leader.size());
        EXPECT_EQ(1, Get16(&leader[2])) << "image";
        EXPECT_EQ(0x01080001u, Get32(&leader[12])) << "Mono8";
        EXPECT_EQ(64u, Get32(&leader[16]));
        EXPECT_EQ(32u, Get32(&leader[20]));
        const Bytes &trailer = packets.back().mData;
        ASSERT_EQ(8u, trailer.size());
        EXPECT_EQ(1, Get16(&trailer[2]));
        EXPECT_EQ(32u, Get32(&trailer[4]));
        Bytes expected(64 * 32);
        mCamera.GetCamera().DrawFrame(number - 1, expected.data(), expected.size());
        EXPECT_EQ(expected, image);
    }
}

TEST_F(Stream, TimestampsAreThoseOfTheCameraAndFollowTheFrameRate)
{
    BeginStream();
    const auto first = ReceiveBlock();
    const auto second = ReceiveBlock();
    ASSERT_FALSE(first.empty() || second.empty());
    const uint64_t earlier = Get64(&first.front().mData[4]);
    const uint64_t later = Get64(&second.front().mData[4]);
    Bytes now;
    ASSERT_EQ(0, mClient->ReadMemory(Register::Timestamp, 8, now));
    EXPECT_LT(earlier, later);
    EXPECT_LT(later, Get64(now.data()));
    EXPECT_LT(Get64(now.data()) - earlier, 20'000'000'000u) << "nanoseconds of the same clock";
}

TEST_F(Stream, ExtendedIdsOnDemand)
{
    Begin();
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevGVSPConfiguration, 0x40000000));
    OpenChannel();
    StartAcquisition();
    const auto packets = ReceiveBlock();
    ASSERT_EQ(Sequence(Packets + 2), GetIds(packets));
    EXPECT_TRUE(packets.front().mExtended);
    EXPECT_EQ(452u, packets[1].mData.size());
    EXPECT_EQ(1u, packets.front().mBlock);
}

TEST_F(Stream, PacketSizeFollowsItsRegister)
{
    Begin(64, 32, 36 + 1024);
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ(Sequence(4), GetIds(ReceiveBlock())) << "two packets of 1024 bytes";
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCPS, 9000));
    EXPECT_TRUE(ReceiveBlockWith(Sequence(3)));
}

TEST_F(Stream, PacketSizeThatLeavesNoRoomIsRaised)
{
    Begin(64, 32, 0);
    OpenChannel();
    StartAcquisition();
    const auto packets = ReceiveBlock();
    ASSERT_FALSE(packets.empty());
    EXPECT_EQ(36u, packets[1].mData.size());
}

TEST_F(Stream, TestPacketHasTheSizeOfAPacket)
{
    Begin();
    OpenChannel();
    for (const uint32_t size : {576u, 1500u, 9000u}) {
        ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCPS, 0xC0000000 | size));
        const auto packet = ReceivePacket();
        ASSERT_TRUE(packet);
        EXPECT_EQ(size - 28, packet->mSize);
        EXPECT_EQ(0x40000000 | size, mClient->ReadRegister(Register::GevSCPS)) << "the request clears itself";
    }
    EXPECT_EQ(3u, mCamera.GetStreamStatistics().mTestPackets);
}

TEST_F(Stream, NothingIsSentBeforeTheChannelIsOpenAndAfterItIsClosed)
{
    Begin();
    ASSERT_EQ(0, mClient->WriteRegister(Register::CounterEventSource, 1));  // counts frames
    StartAcquisition();
    EXPECT_TRUE(WaitFor([this] { return mClient->ReadRegister(Register::CounterValue) > 2; }));
    EXPECT_EQ(0u, mCamera.GetStreamStatistics().mPackets);
    OpenChannel();
    EXPECT_FALSE(ReceiveBlock().empty());
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCP, 0));
    EXPECT_TRUE(WaitFor([this] { return !ReceivePacket(100ms); }));
    EXPECT_TRUE(mCamera.GetCamera().IsAcquiring());
}

TEST_F(Stream, ShowsItsSourcePort)
{
    BeginStream();
    DatagramOrigin origin;
    Bytes bytes(2000);
    ASSERT_TRUE(WaitFor([&] { return mReceiver.Receive(bytes.data(), bytes.size(), origin) > 0; }));
    EXPECT_EQ(origin.mSource.mPort, mClient->ReadRegister(Register::GevSCSP));
    EXPECT_EQ(Loopback, origin.mSource.mAddress);
}

TEST_F(Stream, BlockIdsBeginAnewWithEachAcquisition)
{
    BeginStream();
    EXPECT_EQ(1u, ReceiveBlock().at(0).mBlock);
    StopAcquisition();
    EXPECT_FALSE(mCamera.GetCamera().IsAcquiring());
    EXPECT_TRUE(WaitFor([this] { return !ReceivePacket(50ms); }));
    StartAcquisition();
    ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mType == LeaderPacket && aPacket.mBlock == 1; });
}

TEST_F(Stream, BlockIdsBeginAnewAlsoWhenTheNextAcquisitionFollowsAtOnce)
{
    BeginStream();
    for (int i = 0; i < 5; ++i) {
        ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mType == LeaderPacket && aPacket.mBlock == 2; });
        StopAcquisition();
        StartAcquisition();
        ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mType == LeaderPacket && aPacket.mBlock == 1; });
    }
}

TEST_F(Stream, SingleFrameIsOneBlock)
{
    Begin();
    OpenChannel();
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionMode, 1));
    for (int i = 0; i < 3; ++i) {
        StartAcquisition();
        const auto packets = ReceiveBlock();
        ASSERT_EQ(Packets + 2, packets.size());
        EXPECT_EQ(1u, packets.front().mBlock) << "also when nobody has stopped the acquisition before";
        EXPECT_FALSE(mCamera.GetCamera().IsAcquiring());
    }
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetStreamStatistics().mBlocks == 3; }));
}

TEST_F(Stream, PacketDelaySpreadsThePackets)
{
    Begin(64, 32, 500, 10);
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCPD, 5'000'000));  // 5 ms in ticks of 1 ns
    OpenChannel();
    const auto start = std::chrono::steady_clock::now();
    StartAcquisition();
    ReceiveUntil(IsTrailer);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 30ms) << "six packets behind the leader";
}

TEST_F(Stream, LosingControlEndsIt)
{
    BeginStream();
    EXPECT_FALSE(ReceiveBlock().empty());
    ASSERT_EQ(0, mClient->WriteRegister(0x0938, 500));
    EXPECT_TRUE(WaitFor([this] { return !mCamera.GetCamera().IsAcquiring(); }));
    EXPECT_EQ(1u, mCamera.GetControlStatistics().mExpired);
    EXPECT_EQ(0u, mClient->ReadRegister(Register::GevSCP));
}

TEST_F(Stream, ReleasingControlEndsIt)
{
    BeginStream();
    EXPECT_FALSE(ReceiveBlock().empty());
    ASSERT_EQ(0, mClient->WriteRegister(0x0A00, 0));
    EXPECT_FALSE(mCamera.GetCamera().IsAcquiring());
    EXPECT_EQ(0u, mClient->ReadRegister(Register::GevSCP));
}

// ---- Resend -------------------------------------------------------------------------------------------------------

TEST_F(Stream, PacketsAreSentAgainOnDemand)
{
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        if (!extended) {
            Begin();
        }
        ASSERT_EQ(0, mClient->WriteRegister(Register::GevGVSPConfiguration, extended ? 0x40000000 : 0));
        ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionMode, 1));
        OpenChannel();
        StartAcquisition();
        const auto packets = ReceiveBlock();
        ASSERT_EQ(Packets + 2, packets.size());
        AskResend(packets[0].mBlock, 1, 2, extended);
        AskResend(packets[0].mBlock, 0, 0, extended);
        AskResend(packets[0].mBlock, Packets + 1, Packets + 1, extended);
        for (const uint32_t id : {1u, 2u, 0u, Packets + 1}) {
            const auto again = ReceivePacket();
            ASSERT_TRUE(again);
            EXPECT_EQ(0x0100, again->mStatus);
            EXPECT_EQ(extended ? 1 : 0, again->mFlags);
            EXPECT_EQ(id, again->mId);
            EXPECT_EQ(packets[id].mType, again->mType);
            EXPECT_EQ(packets[id].mBlock, again->mBlock);
            EXPECT_EQ(packets[id].mData, again->mData);
        }
    }
}

TEST_F(Stream, ResendEndsWithTheBlock)
{
    Begin();
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionMode, 1));
    OpenChannel();
    StartAcquisition();
    ASSERT_EQ(Packets + 2, ReceiveBlock().size());
    AskResend(1, 3, 0xFFFFFF);
    const auto packets = ReceiveUntil(IsTrailer);
    EXPECT_EQ((std::vector<uint32_t>{3, 4, 5, 6}), GetIds(packets));
}

TEST_F(Stream, PacketsThatAreGoneAreSaidToBe)
{
    Begin();
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionMode, 1));
    OpenChannel();
    StartAcquisition();
    ASSERT_EQ(Packets + 2, ReceiveBlock().size());
    const auto ask = [this](uint64_t aBlock) {
        AskResend(aBlock, 4, 4);
        const auto packet = ReceivePacket();
        EXPECT_TRUE(packet);
        EXPECT_EQ(aBlock, packet.value_or(StreamPacket()).mBlock);
        EXPECT_EQ(4u, packet.value_or(StreamPacket()).mId);
        EXPECT_TRUE(packet.value_or(StreamPacket()).mData.empty());
        return packet.value_or(StreamPacket()).mStatus;
    };
    EXPECT_EQ(0x800C, ask(5000));
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevGVCPConfiguration, 0x4));
    EXPECT_EQ(0x8010, ask(5000)) << "not yet there, for who knows the finer codes";
}

TEST_F(Stream, SenselessResendRequestsAreIgnored)
{
    BeginStream();
    ASSERT_FALSE(ReceiveBlock().empty());
    AskResend(1, 5, 2);
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0040, mClient->NextId(), Bytes(8), 0x00));
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
    EXPECT_EQ(0u, mCamera.GetStreamStatistics().mResent);
}

TEST_F(Stream, ResendsCanBeDropped)
{
    BeginStream();
    Command("drop-resends 1");
    const auto packets = ReceiveBlock();
    ASSERT_FALSE(packets.empty());
    AskResend(packets[0].mBlock, 1, 2);
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetStreamStatistics().mResendRequests == 1; }));
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
    EXPECT_EQ(0u, mCamera.GetStreamStatistics().mResent);
}

// ---- Faults -------------------------------------------------------------------------------------------------------

TEST_F(Stream, DropsPacketsById)
{
    Begin();
    Command("drop-ids 2 4-5");
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 3, 6}), GetIds(ReceiveBlock()));
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetStreamStatistics().mDropped >= 3; }));
    Command("drop-ids");
    EXPECT_TRUE(ReceiveBlockWith(Sequence(Packets + 2)));
}

TEST_F(Stream, DropsLeadersAndTrailers)
{
    Begin();
    Command("drop-ids leader trailer");
    OpenChannel();
    StartAcquisition();
    const auto packets = ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mBlock == 3; });
    EXPECT_TRUE(std::all_of(packets.begin(), packets.end(),
                            [](const auto &aPacket) { return aPacket.mType == PayloadPacket; }));
}

TEST_F(Stream, DropsEveryNth)
{
    Begin();
    Command("drop-every 3");
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 3, 4, 6}), GetIds(ReceiveBlock()));
}

TEST_F(Stream, DropsAtRandomAsTheSeedSays)
{
    std::vector<uint32_t> ids[2];
    constexpr uint32_t blocks = 8;
    Begin();
    OpenChannel();
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionMode, 2));  // so many frames
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionFrameCount, blocks));
    for (uint64_t sent = blocks; std::vector<uint32_t> & run : ids) {
        Command("drop-random 500 3");
        StartAcquisition();
        ASSERT_TRUE(WaitFor([&] { return mCamera.GetStreamStatistics().mBlocks == sent; }));
        while (const auto packet = ReceivePacket(0ms)) {
            run.push_back(static_cast<uint32_t>(packet->mBlock) << 8 | packet->mId);
        }
        sent += blocks;
    }
    EXPECT_FALSE(ids[0].empty());
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_LT(ids[0].size(), blocks * (Packets + 2));
}

TEST_F(Stream, FaultsEndAfterSoManyBlocks)
{
    Begin();
    Command("drop-ids 1");
    Command("fault-blocks 1");
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ(Packets + 1, ReceiveBlock().size());
    EXPECT_EQ(Packets + 2, ReceiveBlock().size());
}

TEST_F(Stream, DuplicatesPackets)
{
    Begin();
    Command("duplicate-every 4");
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 2, 3, 3, 4, 5, 6}), GetIds(ReceiveBlock()));
}

TEST_F(Stream, ReordersPackets)
{
    Begin();
    Command("reorder-every 2");
    OpenChannel();
    StartAcquisition();
    EXPECT_EQ((std::vector<uint32_t>{0, 2, 1, 4, 3, 6}), GetIds(ReceiveBlock()));
}

TEST_F(Stream, TruncatesPackets)
{
    Begin();
    Command("truncate-every 2");
    OpenChannel();
    StartAcquisition();
    const auto packets = ReceiveBlock();
    ASSERT_EQ(Packets + 2, packets.size());
    EXPECT_EQ(232u, packets[1].mData.size());
    EXPECT_EQ(464u, packets[2].mData.size());
}

TEST_F(Stream, LeaderLiesAboutTheSize)
{
    Begin();
    Command("leader-size 4096 4096");
    OpenChannel();
    StartAcquisition();
    const auto packets = ReceiveBlock();
    ASSERT_EQ(Packets + 2, packets.size());
    EXPECT_EQ(4096u, Get32(&packets[0].mData[16]));
    EXPECT_EQ(4096u, Get32(&packets[0].mData[20]));
    Command("leader-size 0 0");
    EXPECT_FALSE(ReceiveUntil([](const StreamPacket &aPacket) {
                     return aPacket.mType == LeaderPacket && Get32(&aPacket.mData[16]) == 64;
                 }).empty());
}

TEST_F(Stream, GeometryChangesInMidStream)
{
    BeginStream();
    EXPECT_EQ(Packets + 2, ReceiveBlock().size());
    Command("geometry 128 64");
    const auto packets = ReceiveBlockWith(Sequence(18 + 2));
    ASSERT_TRUE(packets);
    EXPECT_EQ(128u, Get32(&packets->at(0).mData[16]));
    EXPECT_EQ(64u, Get32(&packets->at(0).mData[20]));
    EXPECT_TRUE(mCamera.GetCamera().IsAcquiring());
}

TEST_F(Stream, KilledStreamIsSilentWhileTheCameraAnswersAndResumes)
{
    BeginStream();
    EXPECT_FALSE(ReceiveBlock().empty());
    Command("kill-stream");
    EXPECT_TRUE(WaitFor([this] { return !ReceivePacket(100ms); }));
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
    EXPECT_TRUE(mCamera.GetCamera().IsAcquiring());
    Command("resume-stream");
    EXPECT_FALSE(ReceiveBlock().empty());
}

TEST_F(Stream, FrozenCameraStreamsNothing)
{
    BeginStream();
    EXPECT_FALSE(ReceiveBlock().empty());
    Command("freeze");
    EXPECT_TRUE(WaitFor([this] { return !ReceivePacket(100ms); }));
    Command("thaw");
    EXPECT_FALSE(ReceiveBlock().empty());
}

TEST_F(Stream, CameraStopsByItself)
{
    BeginStream();
    EXPECT_FALSE(ReceiveBlock().empty());
    Command("stop-acquisition");
    EXPECT_FALSE(mCamera.GetCamera().IsAcquiring());
    StartAcquisition();
    EXPECT_FALSE(ReceiveBlock().empty());
}

TEST_F(Stream, CommandsFromOtherThreadsAreSafe)
{
    BeginStream();
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevGVCPConfiguration, 1));  // no heartbeat while all this goes on
    std::atomic<bool> stop{false};
    std::thread control([&] {
        CommandChannel channel(mCamera);
        while (!stop) {
            for (const char *line : {"drop-every 5", "state", "geometry 32 32", "clear", "geometry 64 32",
                                     "kill-stream", "resume-stream", "freeze", "thaw"})
            {
                EXPECT_EQ(0u, channel.Execute(line).find("ok")) << line;
            }
        }
    });
    const auto countHandled = [this] {
        const ControlStatistics statistics = mCamera.GetControlStatistics();
        return statistics.mCommands + statistics.mIgnored;
    };
    for (int part = 0; part < 6; ++part) {  // no more at once than a socket keeps
        const uint64_t before = countHandled();
        for (int i = 0; i < 50; ++i) {
            AskResend(1, 0, 3);
        }
        EXPECT_TRUE(WaitFor([&] { return countHandled() == before + 50; }));
    }
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetStreamStatistics().mBlocks > 5; }));
    stop = true;
    control.join();
    mCamera.ClearFaults();
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
    mCamera.Stop();
}

}  // namespace
}  // namespace LxEmulator
