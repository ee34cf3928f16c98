#include "GigEVision/GvcpPacket.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Gvcp = LxDetail::Gvcp;

namespace
{

using Data = std::vector<uint8_t>;

Gvcp::Discovery MakeDiscovery()
{
    Gvcp::Discovery discovery;
    discovery.mVersionMajor = 2;
    discovery.mVersionMinor = 1;
    discovery.mDeviceMode = 0x80000001;
    discovery.mMACAddress = 0x0011223344AB;
    discovery.mIPConfigurationOptions = 0x7;
    discovery.mIPConfigurationCurrent = 0x6;
    discovery.mIPAddress = 0xC0A80142;
    discovery.mSubnetMask = 0xFFFFFF00;
    discovery.mDefaultGateway = 0xC0A80101;
    discovery.mManufacturerName = "Maker";
    discovery.mModelName = "Model";
    discovery.mDeviceVersion = "1.2";
    discovery.mManufacturerInfo = "info";
    discovery.mSerialNumber = "S-1";
    discovery.mUserDefinedName = "left eye";
    return discovery;
}

std::string Clean(const std::string &aText)
{
    const Data field(aText.begin(), aText.end());
    return Gvcp::CleanText(field);
}

}  // namespace

TEST(GvcpPacket, DiscoveryCommandHasTheBytesOfTheStandard)
{
    EXPECT_EQ(Gvcp::BuildCommand(Gvcp::Command::Discovery, Gvcp::flagAckRequired | Gvcp::flagBroadcastAck, 0x0102),
              (Data{0x42, 0x11, 0x00, 0x02, 0x00, 0x00, 0x01, 0x02}));
}

TEST(GvcpPacket, ReadRegisterCommandHasTheBytesOfTheStandard)
{
    const uint32_t address = Gvcp::Register::controlChannelPrivilege;
    const Data payload = Gvcp::BuildWords({&address, 1});
    EXPECT_EQ(Gvcp::BuildCommand(Gvcp::Command::ReadRegister, Gvcp::flagAckRequired, 7, payload),
              (Data{0x42, 0x01, 0x00, 0x80, 0x00, 0x04, 0x00, 0x07, 0x00, 0x00, 0x0A, 0x00}));
}

TEST(GvcpPacket, ForceIPCommandHasItsFieldsAtTheOffsetsOfTheStandard)
{
    const Data payload = Gvcp::BuildForceIP({0x0A0B0C0D0E0F, 0xC0A80105, 0xFFFFFF00, 0xC0A80101});
    ASSERT_EQ(payload.size(), 56U);
    Data expected(56);
    const auto put = [&expected](size_t aOffset, const Data &aBytes) {
        std::copy(aBytes.begin(), aBytes.end(), expected.begin() + static_cast<std::ptrdiff_t>(aOffset));
    };
    put(2, {0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F});
    put(20, {192, 168, 1, 5});
    put(36, {255, 255, 255, 0});
    put(52, {192, 168, 1, 1});
    EXPECT_EQ(payload, expected);
}

TEST(GvcpPacket, CommandsComeBackFromTheirBytes)
{
    const Data payload{1, 2, 3, 4};
    const Data packet = Gvcp::BuildCommand(Gvcp::Command::WriteMemory, 0x01, 0xFFFF, payload);
    const auto command = Gvcp::ParseCommand(packet);
    ASSERT_TRUE(command);
    EXPECT_TRUE(command->Is(Gvcp::Command::WriteMemory));
    EXPECT_TRUE(command->IsAckRequired());
    EXPECT_EQ(command->mRequestId, 0xFFFF);
    EXPECT_EQ(Data(command->mPayload.begin(), command->mPayload.end()), payload);
}

TEST(GvcpPacket, AcknowledgesComeBackFromTheirBytes)
{
    const Data packet = Gvcp::BuildAck(Gvcp::Status::AccessDenied, Gvcp::Ack::WriteRegister, 9, Gvcp::BuildWriteAck(3));
    EXPECT_EQ(packet, (Data{0x80, 0x06, 0x00, 0x83, 0x00, 0x04, 0x00, 0x09, 0, 0, 0, 3}));
    const auto ack = Gvcp::ParseAck(packet);
    ASSERT_TRUE(ack);
    EXPECT_FALSE(ack->IsSuccess());
    EXPECT_EQ(ack->mStatus, 0x8006);
    EXPECT_TRUE(ack->Answers(Gvcp::Command::WriteRegister, 9));
    EXPECT_FALSE(ack->Answers(Gvcp::Command::WriteRegister, 8));
    EXPECT_FALSE(ack->Answers(Gvcp::Command::WriteMemory, 9));
    EXPECT_EQ(Gvcp::ParseWriteAck(ack->mPayload), 3);
}

TEST(GvcpPacket, HeadersThatAreCutShortAreRefused)
{
    const Data packet = Gvcp::BuildCommand(Gvcp::Command::Discovery, 0x11, 1);
    const Data ack = Gvcp::BuildAck(Gvcp::Status::Success, Gvcp::Ack::ForceIP, 1);
    for (size_t size = 0; size < Gvcp::headerSize; ++size) {
        EXPECT_FALSE(Gvcp::ParseCommand(Gvcp::Bytes(packet).first(size))) << size;
        EXPECT_FALSE(Gvcp::ParseAck(Gvcp::Bytes(ack).first(size))) << size;
    }
    EXPECT_TRUE(Gvcp::ParseCommand(packet));
    EXPECT_TRUE(Gvcp::ParseAck(ack));
}

TEST(GvcpPacket, CommandsWithAnotherKeyOrRequestIdZeroAreRefused)
{
    Data packet = Gvcp::BuildCommand(Gvcp::Command::Discovery, 0x11, 1);
    packet[0] = 0x43;
    EXPECT_FALSE(Gvcp::ParseCommand(packet));
    EXPECT_FALSE(Gvcp::ParseCommand(Gvcp::BuildCommand(Gvcp::Command::Discovery, 0x11, 0)));
}

TEST(GvcpPacket, LengthsBeyondTheDatagramOrTheProtocolAreRefused)
{
    Data packet = Gvcp::BuildCommand(Gvcp::Command::ReadRegister, 1, 1, Data(4));
    packet[5] = 5;
    EXPECT_FALSE(Gvcp::ParseCommand(packet));
    EXPECT_FALSE(Gvcp::ParseAck(packet));
    packet[4] = packet[5] = 0xFF;
    EXPECT_FALSE(Gvcp::ParseCommand(packet));
    EXPECT_FALSE(Gvcp::ParseAck(packet));
    packet.resize(Gvcp::headerSize + 0xFFFF);
    EXPECT_FALSE(Gvcp::ParseCommand(packet));
    EXPECT_FALSE(Gvcp::ParseAck(packet));
}

TEST(GvcpPacket, BytesBehindThePayloadAreIgnored)
{
    Data packet = Gvcp::BuildAck(Gvcp::Status::Success, Gvcp::Ack::ReadRegister, 1, Data{0, 0, 0, 5});
    packet.push_back(0xEE);
    const auto ack = Gvcp::ParseAck(packet);
    ASSERT_TRUE(ack);
    EXPECT_EQ(Gvcp::ParseWords(ack->mPayload), std::vector<uint32_t>{5});
}

TEST(GvcpPacket, PayloadsAreCutAtTheLargestDatagram)
{
    EXPECT_EQ(Gvcp::BuildAck(Gvcp::Status::Success, Gvcp::Ack::ReadMemory, 1, Data(1000)).size(), Gvcp::maxPacket);
}

TEST(GvcpPacket, DiscoveryComesBackFromItsBytes)
{
    const Gvcp::Discovery discovery = MakeDiscovery();
    const Data payload = Gvcp::BuildDiscovery(discovery);
    ASSERT_EQ(payload.size(), 248U);
    EXPECT_EQ(Gvcp::ParseDiscovery(payload), discovery);
}

TEST(GvcpPacket, DiscoveryFieldsAreAtTheOffsetsOfTheBootstrapRegisters)
{
    Data payload(248);
    payload[1] = 2;
    payload[3] = 1;
    payload[4] = 0x80;
    payload[0x0A] = 0x02;
    payload[0x0F] = 0x07;
    payload[0x13] = 7;
    payload[0x17] = 5;
    payload[0x24] = 10;
    payload[0x27] = 1;
    payload[0x34] = 255;
    payload[0x47] = 9;
    payload[0x48] = 'a';
    payload[0x68] = 'b';
    payload[0x88] = 'c';
    payload[0xA8] = 'd';
    payload[0xD8] = 'e';
    payload[0xE8] = 'f';
    const auto discovery = Gvcp::ParseDiscovery(payload);
    ASSERT_TRUE(discovery);
    EXPECT_EQ(discovery->mVersionMajor, 2);
    EXPECT_EQ(discovery->mVersionMinor, 1);
    EXPECT_EQ(discovery->mDeviceMode, 0x80000000U);
    EXPECT_EQ(discovery->mMACAddress, 0x020000000007U);
    EXPECT_EQ(discovery->mIPConfigurationOptions, 7U);
    EXPECT_EQ(discovery->mIPConfigurationCurrent, 5U);
    EXPECT_EQ(discovery->mIPAddress, 0x0A000001U);
    EXPECT_EQ(discovery->mSubnetMask, 0xFF000000U);
    EXPECT_EQ(discovery->mDefaultGateway, 9U);
    EXPECT_EQ(discovery->mManufacturerName + discovery->mModelName + discovery->mDeviceVersion +
                  discovery->mManufacturerInfo + discovery->mSerialNumber + discovery->mUserDefinedName,
              "abcdef");
}

TEST(GvcpPacket, ShortDiscoveryIsRefusedAndALongOneIsRead)
{
    Data payload = Gvcp::BuildDiscovery(MakeDiscovery());
    for (size_t size = 0; size < payload.size(); ++size) {
        EXPECT_FALSE(Gvcp::ParseDiscovery(Gvcp::Bytes(payload).first(size))) << size;
    }
    payload.resize(260, 0xFF);
    EXPECT_EQ(Gvcp::ParseDiscovery(payload), MakeDiscovery());
}

TEST(GvcpPacket, TextsThatFillTheirFieldNeedNoTermination)
{
    Gvcp::Discovery discovery = MakeDiscovery();
    discovery.mSerialNumber = "0123456789ABCDEF";
    discovery.mManufacturerInfo = std::string(48, 'x');
    const auto parsed = Gvcp::ParseDiscovery(Gvcp::BuildDiscovery(discovery));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->mSerialNumber, "0123456789ABCDEF");
    EXPECT_EQ(parsed->mManufacturerInfo, std::string(48, 'x'));
    EXPECT_EQ(parsed->mUserDefinedName, "left eye");
}

TEST(GvcpPacket, TextsThatAreTooLongAreCutToTheirField)
{
    Gvcp::Discovery discovery = MakeDiscovery();
    discovery.mSerialNumber = "0123456789ABCDEFtoo long";
    const auto parsed = Gvcp::ParseDiscovery(Gvcp::BuildDiscovery(discovery));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->mSerialNumber, "0123456789ABCDEF");
    EXPECT_EQ(parsed->mUserDefinedName, "left eye");
}

TEST(GvcpPacket, TextsEndAtTheFirstNulAndLoseBlanksAround)
{
    EXPECT_EQ(Clean(std::string("  abc \0def", 10)), "abc");
    EXPECT_EQ(Clean(std::string("\0abc", 4)), "");
    EXPECT_EQ(Clean("    "), "");
    EXPECT_EQ(Clean(""), "");
}

TEST(GvcpPacket, BytesThatAreNoUtf8BecomeReplacementCharacters)
{
    EXPECT_EQ(Clean("Gr\xC3\xBC\xC3\x9F"), "Gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(Clean("\xE2\x82\xAC \xF0\x9F\x93\xB7"), "\xE2\x82\xAC \xF0\x9F\x93\xB7");
    EXPECT_EQ(Clean("M\xFCnchen"), "M\xEF\xBF\xBDnchen");                      // Latin-1
    EXPECT_EQ(Clean("\xC3"), "\xEF\xBF\xBD");                                  // cut in the middle
    EXPECT_EQ(Clean("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");                  // overlong
    EXPECT_EQ(Clean("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");  // surrogate
    EXPECT_EQ(Clean("\xF4\x90\x80\x80").size(), 12U);                          // above U+10FFFF
    EXPECT_EQ(Clean(std::string(16, '\xFF')).size(), 48U);
}

TEST(GvcpPacket, ControlCharactersInTextsBecomeBlanks)
{
    EXPECT_EQ(Clean("a\nb\tc\x7F"
                    "d\x1B[1m"),
              "a b c d [1m");
}

TEST(GvcpPacket, RegisterCommandsComeBackFromTheirBytes)
{
    const std::vector<uint32_t> words{0, 0xFFFFFFFF, 0x0A00};
    EXPECT_EQ(Gvcp::ParseWords(Gvcp::BuildWords(words)), words);
    const std::vector<Gvcp::RegisterValue> values{{0x0A00, 2}, {0x0938, 3000}};
    EXPECT_EQ(Gvcp::ParseWriteRegister(Gvcp::BuildWriteRegister(values)), values);
    EXPECT_EQ(Gvcp::ParseReadMemory(Gvcp::BuildReadMemory({0x0200, 512})), (Gvcp::ReadMemory{0x0200, 512}));
    EXPECT_EQ(Gvcp::ParsePendingAck(Gvcp::BuildPendingAck(1500)), 1500);
    const Data data{9, 8, 7, 6};
    const Data packet = Gvcp::BuildMemoryData(0x1234, data);
    const auto memory = Gvcp::ParseMemoryData(packet);
    ASSERT_TRUE(memory);
    EXPECT_EQ(memory->mAddress, 0x1234U);
    EXPECT_EQ(Data(memory->mData.begin(), memory->mData.end()), data);
}

TEST(GvcpPacket, RegisterPayloadsOfOddLengthAreRefused)
{
    for (const size_t size : {0, 1, 2, 3, 5, 7, 541}) {
        EXPECT_FALSE(Gvcp::ParseWords(Data(size))) << size;
        EXPECT_FALSE(Gvcp::ParseWriteRegister(Data(size))) << size;
    }
    EXPECT_FALSE(Gvcp::ParseWriteRegister(Data(4)));
    EXPECT_FALSE(Gvcp::ParseReadMemory(Data(7)));
    EXPECT_FALSE(Gvcp::ParseMemoryData(Data(3)));
    EXPECT_FALSE(Gvcp::ParseWriteAck(Data(3)));
    EXPECT_FALSE(Gvcp::ParsePendingAck(Data(3)));
    EXPECT_FALSE(Gvcp::ParseForceIP(Data(55)));
}

TEST(GvcpPacket, ForceIPComesBackFromItsBytes)
{
    const Gvcp::ForceIP forceIP{0x0A0B0C0D0E0F, 1, 2, 3};
    EXPECT_EQ(Gvcp::ParseForceIP(Gvcp::BuildForceIP(forceIP)), forceIP);
}

TEST(GvcpPacket, PacketResendHasAFormForEachWidthOfBlockIds)
{
    const Gvcp::PacketResend resend{1, 0x1234, 5, 0x00FFFFFF};
    const Data narrow = Gvcp::BuildPacketResend(resend, false);
    EXPECT_EQ(narrow, (Data{0, 1, 0x12, 0x34, 0, 0, 0, 5, 0, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Gvcp::ParsePacketResend(narrow, false), resend);
    EXPECT_FALSE(Gvcp::ParsePacketResend(narrow, true));
    const Gvcp::PacketResend wide{1, 0x123456789ABCDEF0, 5, 0xFFFFFFFF};
    const Data extended = Gvcp::BuildPacketResend(wide, true);
    ASSERT_EQ(extended.size(), 20U);
    EXPECT_EQ(Gvcp::ParsePacketResend(extended, true), wide);
    EXPECT_FALSE(Gvcp::ParsePacketResend(Data(11), false));
}

TEST(GvcpPacket, RequestIdsSkipZero)
{
    EXPECT_EQ(Gvcp::GetNextRequestId(0), 1);
    EXPECT_EQ(Gvcp::GetNextRequestId(1), 2);
    EXPECT_EQ(Gvcp::GetNextRequestId(0xFFFF), 1);
}
