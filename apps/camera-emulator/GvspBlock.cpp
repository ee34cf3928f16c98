#include "GvspBlock.h"

#include <algorithm>

#include "BigEndian.h"

namespace LxEmulator
{

namespace
{

enum class PacketType : uint8_t
{
    Leader = 1,
    Trailer = 2,
    Payload = 3,
};

constexpr uint16_t ImagePayload = 0x0001;
constexpr uint16_t GenDCPayload = 0x000B;
constexpr uint8_t ExtendedIdFlag = 0x80;
constexpr uint16_t Resent = 0x0100;        // status of a packet that is sent again
constexpr uint16_t RepeatedFlag = 0x0001;  // of extended headers

GvspPacket MakeHeader(uint64_t aBlockId, bool aExtendedIds, uint32_t aPacketId, PacketType aType, uint16_t aStatus)
{
    GvspPacket packet;
    packet.mHeader.fill(0);
    uint8_t *header = packet.mHeader.data();
    Put16(header, aStatus);
    const auto type = static_cast<uint8_t>(aType);
    if (aExtendedIds) {
        Put16(header + 2, aStatus == Resent ? RepeatedFlag : 0);
        header[4] = static_cast<uint8_t>(ExtendedIdFlag | type);
        Put64(header + 8, aBlockId);
        Put32(header + 16, aPacketId);
    }
    else {
        Put16(header + 2, aBlockId);
        Put32(header + 4, aPacketId & 0x00FFFFFF);
        header[4] = type;
    }
    packet.mHeaderSize = GvspBlock::GetHeaderSize(aExtendedIds);
    return packet;
}

}  // namespace

uint32_t GvspBlock::GetPacketCount() const
{
    const uint64_t bytes = GetDataBytesPerPacket();
    return static_cast<uint32_t>((mData.size() + bytes - 1) / bytes) + 2;
}

GvspPacket GvspBlock::MakePacket(uint32_t aPacketId, bool aResent) const
{
    const uint16_t status = aResent ? Resent : 0;
    if (aPacketId == 0) {
        return MakeLeader(mSizeX, mSizeY, aResent);
    }
    if (aPacketId == GetPacketCount() - 1) {
        GvspPacket packet = MakeHeader(mId, mExtendedIds, aPacketId, PacketType::Trailer, status);
        uint8_t *trailer = packet.mHeader.data() + packet.mHeaderSize;
        Put16(trailer + 2, mIsGenDC ? GenDCPayload : ImagePayload);
        if (!mIsGenDC) {
            Put32(trailer + 4, mSizeY);
        }
        packet.mHeaderSize += 8;
        return packet;
    }
    GvspPacket packet = MakeHeader(mId, mExtendedIds, aPacketId, PacketType::Payload, status);
    const size_t bytes = GetDataBytesPerPacket();
    const size_t offset = (aPacketId - 1) * bytes;
    packet.mData = std::span(mData).subspan(offset, std::min(bytes, mData.size() - offset));
    return packet;
}

GvspPacket GvspBlock::MakeLeader(uint32_t aSizeX, uint32_t aSizeY, bool aResent) const
{
    GvspPacket packet = MakeHeader(mId, mExtendedIds, 0, PacketType::Leader, aResent ? Resent : 0);
    uint8_t *leader = packet.mHeader.data() + packet.mHeaderSize;
    Put16(leader + 2, mIsGenDC ? GenDCPayload : ImagePayload);
    Put64(leader + 4, mTimestamp);
    if (mIsGenDC) {
        packet.mHeaderSize += 12;
        return packet;
    }
    Put32(leader + 12, mPixelFormat);
    Put32(leader + 16, aSizeX);
    Put32(leader + 20, aSizeY);
    Put32(leader + 24, mOffsetX);
    Put32(leader + 28, mOffsetY);
    packet.mHeaderSize += 36;
    return packet;
}

GvspPacket GvspBlock::MakeEmptyPacket(uint64_t aBlockId, bool aExtendedIds, uint32_t aPacketId,
                                      LxDetail::Gvcp::Status aStatus)
{
    return MakeHeader(aBlockId, aExtendedIds, aPacketId, PacketType::Payload, static_cast<uint16_t>(aStatus));
}

}  // namespace LxEmulator
