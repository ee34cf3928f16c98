#include "LxCameraBridge/GenCPPacket.h"

#include <gtest/gtest.h>

#include <string>

using namespace LxDetail::GenCP;

namespace
{

std::vector<uint8_t> Bytes(const std::string &aHex)
{
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < aHex.size(); i += aHex[i] == ' ' ? 1 : 2) {
        if (aHex[i] != ' ') {
            bytes.push_back(static_cast<uint8_t>(std::stoul(aHex.substr(i, 2), nullptr, 16)));
        }
    }
    return bytes;
}

Packet Make(uint16_t aCode, uint16_t aCommand, uint16_t aID, const std::string &aData)
{
    Packet packet;
    packet.mCode = aCode;
    packet.mCommand = aCommand;
    packet.mRequestID = aID;
    packet.mData = Bytes(aData);
    return packet;
}

}  // namespace

struct GenCPCase
{
    const char *mName;
    Packet mPacket;
    const char *mBytes;
};

class GenCPPacketTable : public testing::TestWithParam<GenCPCase>
{
};

TEST_P(GenCPPacketTable, IsEncoded)
{
    EXPECT_EQ(Encode(GetParam().mPacket), Bytes(GetParam().mBytes));
}

TEST_P(GenCPPacketTable, IsFoundByteByByteBehindGarbage)
{
    std::vector<uint8_t> bytes = Bytes("FF 01 01 00 00");
    const auto packet = Bytes(GetParam().mBytes);
    bytes.insert(bytes.end(), packet.begin(), packet.end());
    Decoder decoder;
    Packet found;
    for (size_t i = 0; i < bytes.size(); ++i) {
        decoder.Add(&bytes[i], 1);
        ASSERT_EQ(decoder.Next(found), i + 1 == bytes.size() ? Decoder::Found::Packet : Decoder::Found::Nothing) << i;
    }
    EXPECT_EQ(found.mCode, GetParam().mPacket.mCode);
    EXPECT_EQ(found.mCommand, GetParam().mPacket.mCommand);
    EXPECT_EQ(found.mRequestID, GetParam().mPacket.mRequestID);
    EXPECT_EQ(found.mData, GetParam().mPacket.mData);
    EXPECT_TRUE(decoder.IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Packets, GenCPPacketTable,
    testing::Values(GenCPCase{"ReadMem", Make(FlagRequestAck, ReadMem, 5, "00 00 00 00 00 00 01 D0 00 00 00 08"),
                              "01 00 B7 EE B6 16 00 00 40 00 08 00 00 0C 00 05 00 00 00 00 00 00 01 D0 00 00 00 08"},
                    GenCPCase{"ReadMemAck", Make(0, ReadMemAck, 5, "00 00 00 00 00 01 00 00"),
                              "01 00 F7 F1 F7 F0 00 00 00 00 08 01 00 08 00 05 00 00 00 00 00 01 00 00"},
                    GenCPCase{"FirstRead", Make(FlagRequestAck, ReadMem, 0, "00 00 00 00 00 00 00 00 00 00 00 04"),
                              "01 00 B7 F3 B7 EF 00 00 40 00 08 00 00 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 04"},
                    GenCPCase{"WriteMem", Make(FlagRequestAck, WriteMem, 6, "00 00 00 00 00 00 02 04 00 00 00 01"),
                              "01 00 B7 EB B5 E6 00 00 40 00 08 02 00 0C 00 06 00 00 00 00 00 00 02 04 00 00 00 01"},
                    GenCPCase{"WriteMemAck", Make(0, WriteMemAck, 6, "00 00 00 04"),
                              "01 00 F7 F2 F7 EE 00 00 00 00 08 03 00 04 00 06 00 00 00 04"},
                    GenCPCase{"PendingAck", Make(0, PendingAck, 6, "00 00 03 E8"),
                              "01 00 F7 F0 F4 08 00 00 00 00 08 05 00 04 00 06 00 00 03 E8"},
                    GenCPCase{"OddLength", Make(0, ReadMemAck, 7, "61 62 63"),
                              "01 00 F7 F4 33 92 00 00 00 00 08 01 00 03 00 07 61 62 63"},
                    GenCPCase{"ErrorWithoutData", Make(InvalidAddress, ReadMemAck, 8, ""),
                              "01 00 77 F3 77 F3 00 00 80 03 08 01 00 00 00 08"}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST(GenCPPacket, EveryDamagedByteIsNoticed)
{
    const auto good = Encode(Make(FlagRequestAck, WriteMem, 9, "00 00 00 00 00 02 00 00 00 00 02 80"));
    for (size_t i = 0; i < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            auto bytes = good;
            bytes[i] ^= static_cast<uint8_t>(1 << bit);
            Decoder decoder;
            decoder.Add(bytes.data(), bytes.size());
            Packet packet;
            EXPECT_NE(decoder.Next(packet), Decoder::Found::Packet) << "byte " << i << ", bit " << bit;
        }
    }
}

TEST(GenCPPacket, DamagedDataAreReportedAndTheNextPacketIsFound)
{
    auto bytes = Encode(Make(0, ReadMemAck, 3, "01 02 03 04"));
    bytes.back() ^= 1;
    const auto next = Encode(Make(0, ReadMemAck, 4, "05 06"));
    bytes.insert(bytes.end(), next.begin(), next.end());
    Decoder decoder;
    decoder.Add(bytes.data(), bytes.size());
    Packet packet;
    EXPECT_EQ(decoder.Next(packet), Decoder::Found::Corrupt);
    ASSERT_EQ(decoder.Next(packet), Decoder::Found::Packet);
    EXPECT_EQ(packet.mRequestID, 4);
    EXPECT_EQ(decoder.Next(packet), Decoder::Found::Nothing);
}

TEST(GenCPPacket, PreambleInsideDataIsNoPacket)
{
    const auto inner = Encode(Make(0, ReadMemAck, 3, "01 00 01 00"));
    Decoder decoder;
    decoder.Add(inner.data(), inner.size());
    Packet packet;
    EXPECT_EQ(decoder.Next(packet), Decoder::Found::Packet);
    EXPECT_EQ(packet.mData, Bytes("01 00 01 00"));
    EXPECT_EQ(decoder.Next(packet), Decoder::Found::Nothing);
}

TEST(GenCPPacket, LongerThanAllowedIsNotWaitedFor)
{
    Packet large;
    large.mCommand = ReadMemAck;
    large.mData.resize(MaxReadSize + 1);
    auto bytes = Encode(large);
    bytes.resize(HeaderSize);
    const auto next = Encode(Make(0, ReadMemAck, 4, "05 06"));
    bytes.insert(bytes.end(), next.begin(), next.end());
    Decoder decoder;
    decoder.Add(bytes.data(), bytes.size());
    Packet packet;
    ASSERT_EQ(decoder.Next(packet), Decoder::Found::Packet);
    EXPECT_EQ(packet.mRequestID, 4);
}
