#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace LxEmulator
{

/// An inclusive range of packet ids of a block.
struct PacketRange
{
    /// Stands for the trailer, whatever its id is.
    static constexpr uint32_t Trailer = 0xFFFFFFFF;

    uint32_t mFirst = 0;
    uint32_t mLast = 0;
};

/// What goes wrong with the packets of a stream. "Every n-th" counts over the whole stream; 0: never.
struct PacketFaults
{
    uint32_t mDropEvery = 0;
    uint32_t mDropPermille = 0;  ///< at random, of 1000 packets
    uint32_t mDropSeed = 1;
    std::vector<PacketRange> mDropIds;
    uint32_t mDuplicateEvery = 0;
    uint32_t mReorderEvery = 0;   ///< swapped with its successor
    uint32_t mTruncateEvery = 0;  ///< half of its data is cut off
    uint32_t mBlocks = 0;         ///< all of these end after so many blocks; 0: they do not
    bool mDropResends = false;    ///< requests for packets are not answered
    /// The leader lies: it says this size instead of the true one. 0: it does not.
    uint32_t mLeaderSizeX = 0;
    uint32_t mLeaderSizeY = 0;
};

struct PlannedPacket
{
    uint32_t mId = 0;
    bool mTruncated = false;

    bool operator==(const PlannedPacket &) const = default;
};

/// Decides which packets of a block are sent, and in which order. The same faults and seed give the same decisions.
class PacketPlanner
{
public:
    explicit PacketPlanner(const PacketFaults &aFaults = PacketFaults());

    const PacketFaults &GetFaults() const { return mFaults; }
    /// Plans the next block, of so many packets, and says how many of them are not sent.
    std::vector<PlannedPacket> PlanBlock(uint32_t aPacketCount, uint32_t &aDropped);

private:
    bool IsDropped(uint32_t aId, uint32_t aPacketCount);

    PacketFaults mFaults;
    std::mt19937 mRandom;
    uint64_t mPackets = 0;
    uint32_t mBlocks = 0;
};

}  // namespace LxEmulator
