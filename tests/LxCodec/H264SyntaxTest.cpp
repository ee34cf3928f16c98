#include "LxCodec/H264Syntax.h"

#include <gtest/gtest.h>

#include <bitset>
#include <string>

#include "H264Stream.h"

namespace
{

namespace H264 = LxDetail::H264;
using Bytes = std::vector<uint8_t>;

std::vector<H264::NalUnit> Split(const Bytes &aStream)
{
    std::vector<H264::NalUnit> units;
    H264::Split(aStream, units);
    return units;
}

bool Take(H264::FrameOrder &aOrder, const Bytes &aUnit)
{
    return aOrder.Take(Split(aUnit));
}

/// A NAL unit with a start code.
Bytes MakeUnit(uint8_t aHeader, const std::string &aBits)
{
    Bytes unit = {0, 0, 1, aHeader};
    const std::string bits = aBits + "1";  // the stop bit
    for (size_t i = 0; i < bits.size(); i += 8) {
        std::string byte = bits.substr(i, 8);
        byte.resize(8, '0');
        unit.push_back(static_cast<uint8_t>(std::bitset<8>(byte).to_ulong()));
    }
    return unit;
}

Bytes Joined(const std::vector<Bytes> &aUnits)
{
    Bytes joined;
    for (const Bytes &unit : aUnits) {
        joined.insert(joined.end(), unit.begin(), unit.end());
    }
    return joined;
}

H264Units MakeStream(int aCount, int aKeyInterval, int aBPictures = 0)
{
    H264Settings settings;
    settings.mKeyInterval = aKeyInterval;
    settings.mBPictures = aBPictures;
    return EncodeH264(settings, aCount,
                      [](int aPicture, int aPlane, int, int) { return aPlane == 0 ? 30 + aPicture % 200 : 128; });
}

}  // namespace

TEST(H264Split, FindsTheUnitsBetweenStartCodes)
{
    struct Case
    {
        const char *mName;
        Bytes mStream;
        std::vector<Bytes> mUnits;
    };
    const Case cases[] = {
        {"nothing", {}, {}},
        {"no start code", {1, 2, 3, 4}, {}},
        {"zeros only", Bytes(100, 0), {}},
        {"a start code alone", {0, 0, 1}, {}},
        {"one unit", {0, 0, 1, 0x65, 9}, {{0x65, 9}}},
        {"four bytes of start code", {0, 0, 0, 1, 0x65, 9}, {{0x65, 9}}},
        {"garbage before the first", {7, 8, 0, 0, 1, 0x65}, {{0x65}}},
        {"two units", {0, 0, 0, 1, 0x67, 5, 0, 0, 1, 0x68, 6}, {{0x67, 5}, {0x68, 6}}},
        {"zeros behind a unit", {0, 0, 1, 0x67, 5, 0, 0, 0, 0, 0, 1, 0x68, 0, 0}, {{0x67, 5}, {0x68}}},
        {"start codes in a row", {0, 0, 1, 0, 0, 1, 0x67}, {{0x67}}},
        {"emulation prevention is no start code", {0, 0, 1, 0x67, 0, 0, 3, 1}, {{0x67, 0, 0, 3, 1}}},
    };
    for (const Case &one : cases) {
        const auto units = Split(one.mStream);
        ASSERT_EQ(units.size(), one.mUnits.size()) << one.mName;
        for (size_t i = 0; i < units.size(); ++i) {
            EXPECT_EQ(Bytes(units[i].mBytes.begin(), units[i].mBytes.end()), one.mUnits[i]) << one.mName;
            EXPECT_EQ(units[i].mType, one.mUnits[i][0] & 0x1F) << one.mName;
            EXPECT_EQ(units[i].mRefIdc, one.mUnits[i][0] >> 5) << one.mName;
        }
    }
}

TEST(H264NalUnit, KnowsRecoveryPoints)
{
    EXPECT_TRUE(Split({0, 0, 1, 6, 6, 1, 0x84, 0x80})[0].HasRecoveryPoint());
    EXPECT_TRUE(Split({0, 0, 1, 6, 1, 2, 9, 9, 6, 1, 0x84, 0x80})[0].HasRecoveryPoint()) << "behind another message";
    EXPECT_FALSE(Split({0, 0, 1, 6, 5, 2, 6, 1, 0x80})[0].HasRecoveryPoint()) << "within another message";
    EXPECT_FALSE(Split({0, 0, 1, 6, 0xFF})[0].HasRecoveryPoint()) << "cut";
    EXPECT_FALSE(Split({0, 0, 1, 6})[0].HasRecoveryPoint()) << "empty";
    EXPECT_FALSE(Split({0, 0, 1, 1, 6, 1, 0x84, 0x80})[0].HasRecoveryPoint()) << "no SEI";
}

TEST(H264FrameOrder, AWholeStreamIsInOrder)
{
    LX_NEEDS_H264_ENCODER();
    // longer than the frame numbers last
    for (const auto &[interval, bPictures] : {std::pair{1, 0}, std::pair{10, 0}, std::pair{600, 0}, std::pair{30, 2}}) {
        const H264Units stream = MakeStream(300, interval, bPictures);
        ASSERT_EQ(stream.size(), 300u);
        H264::FrameOrder order;
        for (size_t i = 0; i < stream.size(); ++i) {
            EXPECT_TRUE(Take(order, stream[i])) << interval << ' ' << i;
        }
    }
}

TEST(H264FrameOrder, AMissingPictureIsSeenAtTheNextOne)
{
    LX_NEEDS_H264_ENCODER();
    const H264Units stream = MakeStream(40, 20);
    for (size_t missing = 1; missing < 39; ++missing) {
        H264::FrameOrder order;
        for (size_t i = 0; i < stream.size(); ++i) {
            if (i == missing) {
                continue;
            }
            // before the key frame nothing matters that is missing
            const bool expected = i != missing + 1 || i == 20;
            EXPECT_EQ(Take(order, stream[i]), expected) << missing << ' ' << i;
            if (!expected) {
                order.Restart();
            }
        }
    }
}

// Where every second picture is a key frame, the pictures before and behind a missing one have the same number.
TEST(H264FrameOrder, AFrameHasAnotherNumberThanTheReferenceBeforeIt)
{
    LX_NEEDS_H264_ENCODER();
    const H264Units stream = MakeStream(6, 2);
    H264::FrameOrder order;
    EXPECT_TRUE(Take(order, stream[0]));
    EXPECT_TRUE(Take(order, stream[1]));
    EXPECT_FALSE(Take(order, stream[3])) << "the key frame is missing";
    EXPECT_TRUE(Take(order, stream[4]));
    EXPECT_TRUE(Take(order, stream[5]));
    EXPECT_FALSE(Take(order, stream[5])) << "twice";
}

TEST(H264FrameOrder, TheTwoFieldsOfAFrameShareItsNumber)
{
    const Bytes sets = Joined({MakeUnit(0x67, std::bitset<24>(77 << 16 | 10).to_string() +  // profile, level
                                                  "1"
                                                  "1"
                                                  "1"
                                                  "1"
                                                  "010"
                                                  "0"  // numbers of 4 bits, order type 0
                                                  "1"
                                                  "1"
                                                  "0"),  // size, fields
                               MakeUnit(0x68,
                                        "1"
                                        "1")});
    const auto field = [](uint8_t aHeader, unsigned aNumber, bool aIsBottom) {
        return MakeUnit(aHeader,
                        "1"
                        "1"
                        "1" +
                            std::bitset<4>(aNumber).to_string() + "1" + (aIsBottom ? "1" : "0"));
    };
    H264::FrameOrder order;
    EXPECT_TRUE(Take(order, Joined({sets, field(0x65, 0, false)})));
    EXPECT_TRUE(Take(order, field(0x41, 0, true)));
    EXPECT_TRUE(Take(order, field(0x41, 1, true)));
    EXPECT_TRUE(Take(order, field(0x01, 1, false))) << "nobody refers to it";
    EXPECT_TRUE(Take(order, field(0x41, 2, false)));
    EXPECT_FALSE(Take(order, field(0x41, 2, false))) << "the same field";
    order.Restart();
    EXPECT_TRUE(Take(order, field(0x41, 3, false)));
    EXPECT_TRUE(Take(order, field(0x41, 3, true)));
    EXPECT_FALSE(Take(order, field(0x41, 3, false))) << "a third";
}

TEST(H264FrameOrder, BrokenParameterSetsAreNoParameterSets)
{
    LX_NEEDS_H264_ENCODER();
    const H264Units stream = MakeStream(3, 10);
    for (size_t size = 0; size < stream[0].size(); ++size) {
        H264::FrameOrder order;
        Take(order, Bytes(stream[0].begin(), stream[0].begin() + static_cast<std::ptrdiff_t>(size)));
        Take(order, stream[2]);
    }
    H264::FrameOrder order;
    EXPECT_TRUE(Take(order, stream[2])) << "without parameter sets every number passes";
}
