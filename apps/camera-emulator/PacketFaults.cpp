#include "PacketFaults.h"

#include <algorithm>
#include <utility>

namespace LxEmulator
{

namespace
{

bool IsNth(uint64_t aNumber, uint32_t aEvery)
{
    return aEvery != 0 && aNumber % aEvery == 0;
}

}  // namespace

PacketPlanner::PacketPlanner(const PacketFaults &aFaults) : mFaults(aFaults), mRandom(aFaults.mDropSeed) {}

bool PacketPlanner::IsDropped(uint32_t aId, uint32_t aPacketCount)
{
    // The random number is drawn first, so that the other rules do not change the sequence.
    bool dropped = mFaults.mDropPermille != 0 && mRandom() % 1000 < mFaults.mDropPermille;
    dropped = dropped || IsNth(mPackets, mFaults.mDropEvery);
    const bool trailer = aId == aPacketCount - 1;
    return dropped || std::any_of(mFaults.mDropIds.begin(), mFaults.mDropIds.end(), [&](const PacketRange &aRange) {
               return (aId >= aRange.mFirst && aId <= aRange.mLast) ||
                      (trailer && aRange.mLast == PacketRange::Trailer);
           });
}

std::vector<PlannedPacket> PacketPlanner::PlanBlock(uint32_t aPacketCount, uint32_t &aDropped)
{
    if (mFaults.mBlocks != 0 && mBlocks++ == mFaults.mBlocks) {
        mFaults = PacketFaults();
    }
    std::vector<PlannedPacket> plan;
    plan.reserve(aPacketCount + 1);
    aDropped = 0;
    bool swapWithNext = false;
    for (uint32_t id = 0; id < aPacketCount; ++id) {
        ++mPackets;
        if (IsDropped(id, aPacketCount)) {
            ++aDropped;
            continue;
        }
        const PlannedPacket packet{id, IsNth(mPackets, mFaults.mTruncateEvery)};
        plan.push_back(packet);
        if (std::exchange(swapWithNext, IsNth(mPackets, mFaults.mReorderEvery)) && plan.size() >= 2) {
            std::swap(plan[plan.size() - 1], plan[plan.size() - 2]);
        }
        if (IsNth(mPackets, mFaults.mDuplicateEvery)) {
            plan.push_back(packet);
        }
    }
    return plan;
}

}  // namespace LxEmulator
