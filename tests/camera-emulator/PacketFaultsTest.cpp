#include "PacketFaults.h"

#include <gtest/gtest.h>

namespace LxEmulator
{
namespace
{

std::vector<uint32_t> PlanIds(PacketPlanner &aPlanner, uint32_t aCount)
{
    uint32_t dropped = 0;
    std::vector<uint32_t> ids;
    for (const PlannedPacket &packet : aPlanner.PlanBlock(aCount, dropped)) {
        ids.push_back(packet.mId);
    }
    return ids;
}

TEST(PacketFaults, NoFaultsSendEverythingInOrder)
{
    PacketPlanner planner;
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 2, 3}), PlanIds(planner, 4));
}

TEST(PacketFaults, DropEveryCountsAcrossBlocks)
{
    PacketFaults faults;
    faults.mDropEvery = 3;
    PacketPlanner planner(faults);
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 3}), PlanIds(planner, 4));
    EXPECT_EQ((std::vector<uint32_t>{0, 2, 3}), PlanIds(planner, 4));
}

TEST(PacketFaults, DropIdsKnowsLeaderAndTrailer)
{
    PacketFaults faults;
    faults.mDropIds = {{0, 0}, {2, 3}, {PacketRange::Trailer, PacketRange::Trailer}};
    PacketPlanner planner(faults);
    uint32_t dropped = 0;
    const auto plan = planner.PlanBlock(6, dropped);
    EXPECT_EQ((std::vector<PlannedPacket>{{1, false}, {4, false}}), plan);
    EXPECT_EQ(4u, dropped);
}

TEST(PacketFaults, RandomDropsRepeatWithTheSeed)
{
    PacketFaults faults;
    faults.mDropPermille = 300;
    faults.mDropSeed = 7;
    PacketPlanner first(faults);
    PacketPlanner second(faults);
    const auto ids = PlanIds(first, 1000);
    EXPECT_EQ(ids, PlanIds(second, 1000));
    EXPECT_GT(ids.size(), 600u);
    EXPECT_LT(ids.size(), 800u);
    faults.mDropSeed = 8;
    PacketPlanner other(faults);
    EXPECT_NE(ids, PlanIds(other, 1000));
}

TEST(PacketFaults, AThousandOfAThousandDropsAll)
{
    PacketFaults faults;
    faults.mDropPermille = 1000;
    PacketPlanner planner(faults);
    EXPECT_TRUE(PlanIds(planner, 100).empty());
}

TEST(PacketFaults, DuplicatesFollowTheirOriginal)
{
    PacketFaults faults;
    faults.mDuplicateEvery = 2;
    PacketPlanner planner(faults);
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 1, 2, 3, 3}), PlanIds(planner, 4));
}

TEST(PacketFaults, ReorderedPacketsComeAfterTheirSuccessor)
{
    PacketFaults faults;
    faults.mReorderEvery = 2;
    PacketPlanner planner(faults);
    EXPECT_EQ((std::vector<uint32_t>{0, 2, 1, 3}), PlanIds(planner, 4)) << "the last has no successor";
}

TEST(PacketFaults, TruncatesEveryNth)
{
    PacketFaults faults;
    faults.mTruncateEvery = 2;
    PacketPlanner planner(faults);
    uint32_t dropped = 0;
    EXPECT_EQ((std::vector<PlannedPacket>{{0, false}, {1, true}, {2, false}}), planner.PlanBlock(3, dropped));
    EXPECT_EQ(0u, dropped);
}

TEST(PacketFaults, EndAfterSoManyBlocks)
{
    PacketFaults faults;
    faults.mDropIds = {{1, 1}};
    faults.mBlocks = 2;
    PacketPlanner planner(faults);
    EXPECT_EQ((std::vector<uint32_t>{0, 2}), PlanIds(planner, 3));
    EXPECT_EQ((std::vector<uint32_t>{0, 2}), PlanIds(planner, 3));
    EXPECT_EQ((std::vector<uint32_t>{0, 1, 2}), PlanIds(planner, 3));
    EXPECT_TRUE(planner.GetFaults().mDropIds.empty());
}

}  // namespace
}  // namespace LxEmulator
