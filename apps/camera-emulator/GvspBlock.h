#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "GigEVision/GvcpPacket.h"

namespace LxEmulator
{

/// The headers of one packet and the image bytes that follow them, which belong to the block.
struct GvspPacket
{
    std::array<uint8_t, 64> mHeader;
    size_t mHeaderSize = 0;
    std::span<const uint8_t> mData;

    size_t GetSize() const { return mHeaderSize + mData.size(); }
};

/// One image on its way to a receiver: what its leader and trailer say, its bytes, and how these are cut into packets
/// of the GigE Vision streaming protocol. Packet 0 is the leader, the last one the trailer.
class GvspBlock
{
public:
    static constexpr uint32_t UdpOverhead = 28;  // IP and UDP headers, which the packet size of the registers counts
    static constexpr uint32_t MaxPacketSize = 65535;

    uint64_t mId = 1;
    bool mExtendedIds = false;
    uint32_t mPacketSize = 1500;  ///< IP, UDP and GVSP headers and data
    uint64_t mTimestamp = 0;
    bool mIsGenDC = false;  ///< The data are a GenDC container, whose leader tells no geometry.
    uint32_t mPixelFormat = 0;
    uint32_t mSizeX = 0;
    uint32_t mSizeY = 0;
    uint32_t mOffsetX = 0;
    uint32_t mOffsetY = 0;
    std::vector<uint8_t> mData;

    static uint32_t GetHeaderSize(bool aExtendedIds) { return aExtendedIds ? 20 : 8; }
    /// Room for the headers, the leader and at least four bytes of data.
    static uint32_t GetMinPacketSize(bool aExtendedIds) { return UdpOverhead + GetHeaderSize(aExtendedIds) + 36; }

    uint32_t GetDataBytesPerPacket() const { return mPacketSize - UdpOverhead - GetHeaderSize(mExtendedIds); }
    /// Leader and trailer included.
    uint32_t GetPacketCount() const;
    /// @param aResent whether the packet is sent again on demand, which it then says.
    GvspPacket MakePacket(uint32_t aPacketId, bool aResent) const;
    /// A leader that states this size, be it true or not.
    GvspPacket MakeLeader(uint32_t aSizeX, uint32_t aSizeY, bool aResent) const;
    /// A payload packet without data that says why it has none.
    static GvspPacket MakeEmptyPacket(uint64_t aBlockId, bool aExtendedIds, uint32_t aPacketId,
                                      LxDetail::Gvcp::Status aStatus);
};

}  // namespace LxEmulator
