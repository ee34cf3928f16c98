#include "GvspBlock.h"

#include <gtest/gtest.h>

namespace LxEmulator
{
namespace
{

using Bytes = std::vector<uint8_t>;

Bytes Flatten(const GvspPacket &aPacket)
{
    Bytes bytes(aPacket.mHeader.begin(), aPacket.mHeader.begin() + static_cast<ptrdiff_t>(aPacket.mHeaderSize));
    bytes.insert(bytes.end(), aPacket.mData.begin(), aPacket.mData.end());
    return bytes;
}

GvspBlock MakeBlock(bool aExtendedIds)
{
    GvspBlock block;
    block.mId = 0x1234;
    block.mExtendedIds = aExtendedIds;
    block.mPacketSize = 28 + (aExtendedIds ? 20 : 8) + 4;  // four bytes of data a packet
    block.mTimestamp = 0x0102030405060708;
    block.mPixelFormat = 0x01080001;
    block.mSizeX = 5;
    block.mSizeY = 2;
    block.mOffsetX = 3;
    block.mOffsetY = 4;
    block.mData = {10, 11, 12, 13, 14, 15, 16, 17, 18, 19};
    return block;
}

// Bytes as the tables of GigE Vision give them, written out by hand.

TEST(GvspBlock, LeaderWithStandardIds)
{
    const Bytes expected = {0, 0, 0x12, 0x34, 1, 0, 0, 0,                                      // header
                            0, 0, 0,    1,    1, 2, 3, 4, 5, 6, 7, 8,                          // type, timestamp
                            1, 8, 0,    1,    0, 0, 0, 5, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4,  // format, sizes, offsets
                            0, 0, 0,    0};                                                    // padding
    EXPECT_EQ(expected, Flatten(MakeBlock(false).MakePacket(0, false)));
}

TEST(GvspBlock, LeaderAndTrailerOfAGenDCContainerTellNoGeometry)
{
    GvspBlock block = MakeBlock(false);
    block.mIsGenDC = true;
    EXPECT_EQ((Bytes{0, 0, 0x12, 0x34, 1, 0, 0, 0, 0, 0, 0, 11, 1, 2, 3, 4, 5, 6, 7, 8}),
              Flatten(block.MakePacket(0, false)));
    EXPECT_EQ((Bytes{0, 0, 0x12, 0x34, 2, 0, 0, 4, 0, 0, 0, 11, 0, 0, 0, 0}), Flatten(block.MakePacket(4, false)));
}

TEST(GvspBlock, PayloadWithStandardIds)
{
    const GvspBlock block = MakeBlock(false);
    EXPECT_EQ(5u, block.GetPacketCount());
    EXPECT_EQ((Bytes{0, 0, 0x12, 0x34, 3, 0, 0, 1, 10, 11, 12, 13}), Flatten(block.MakePacket(1, false)));
    EXPECT_EQ((Bytes{0, 0, 0x12, 0x34, 3, 0, 0, 3, 18, 19}), Flatten(block.MakePacket(3, false)))
        << "the last is short";
}

TEST(GvspBlock, TrailerWithStandardIds)
{
    EXPECT_EQ((Bytes{0, 0, 0x12, 0x34, 2, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 2}),
              Flatten(MakeBlock(false).MakePacket(4, false)));
}

TEST(GvspBlock, PayloadWithExtendedIds)
{
    const GvspBlock block = MakeBlock(true);
    EXPECT_EQ(5u, block.GetPacketCount());
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0x83, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x34, 0, 0, 0, 2, 14, 15, 16, 17}),
              Flatten(block.MakePacket(2, false)));
}

TEST(GvspBlock, ResentPacketsSaySo)
{
    EXPECT_EQ((Bytes{1, 0, 0x12, 0x34, 3, 0, 0, 1, 10, 11, 12, 13}), Flatten(MakeBlock(false).MakePacket(1, true)));
    EXPECT_EQ((Bytes{1, 0, 0, 1, 0x83, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x34, 0, 0, 0, 1, 10, 11, 12, 13}),
              Flatten(MakeBlock(true).MakePacket(1, true)));
}

TEST(GvspBlock, PacketsThatAreGoneAreHeadersWithAStatus)
{
    EXPECT_EQ((Bytes{0x80, 0x0C, 0x12, 0x34, 3, 0, 0, 9}),
              Flatten(GvspBlock::MakeEmptyPacket(0x1234, false, 9, LxDetail::Gvcp::Status::PacketUnavailable)));
}

TEST(GvspBlock, FullLastPacketNeedsNoOther)
{
    GvspBlock block = MakeBlock(false);
    block.mData.resize(8);
    EXPECT_EQ(4u, block.GetPacketCount());
    block.mData.clear();
    EXPECT_EQ(2u, block.GetPacketCount());
}

TEST(GvspBlock, PacketSizeCountsAllHeaders)
{
    GvspBlock block = MakeBlock(false);
    block.mPacketSize = 1080;  // 1052 bytes of UDP data, 1044 of them image
    EXPECT_EQ(1044u, block.GetDataBytesPerPacket());
}

}  // namespace
}  // namespace LxEmulator
