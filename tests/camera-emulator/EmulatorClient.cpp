#include "EmulatorClient.h"

#include <poll.h>
#include <sys/socket.h>

#include <cstring>
#include <functional>

#include "Backends/Simulation/SimulatedRegisters.h"

namespace LxEmulator
{

namespace Register = LxDetail::SimulatedRegister;

namespace
{

bool WaitReadable(const UdpSocket &aSocket, std::chrono::milliseconds aTimeout)
{
    pollfd descriptor{aSocket.GetDescriptor(), POLLIN, 0};
    return poll(&descriptor, 1, static_cast<int>(aTimeout.count())) == 1;
}

}  // namespace

EmulatedCameraOptions MakeOptions(uint32_t aAddress)
{
    EmulatedCameraOptions options;
    options.mListenAddress = aAddress;
    options.mIdentity.mIPAddress = aAddress;
    options.mIdentity.mMACAddress = 0x020000000000 | (aAddress & 0xFFFFFF);
    return options;
}

Bytes Words(std::initializer_list<uint32_t> aWords)
{
    Bytes bytes;
    for (const uint32_t word : aWords) {
        bytes.resize(bytes.size() + 4);
        Put32(&bytes[bytes.size() - 4], word);
    }
    return bytes;
}

EmulatorClient::EmulatorClient(uint32_t aCamera, const std::string &aInterface, uint32_t aLocal) : mCamera(aCamera)
{
    const LxResult result = mSocket.Open(Endpoint{aLocal, 0}, aInterface);
    EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
}

void EmulatorClient::SendBytes(const Bytes &aBytes, uint32_t aTo)
{
    EXPECT_TRUE(mSocket.Send(Endpoint{aTo ? aTo : mCamera, 3956}, aBytes.data(), aBytes.size()));
}

std::optional<Bytes> EmulatorClient::ReceiveBytes(std::chrono::milliseconds aTimeout)
{
    Bytes bytes(2000);
    DatagramOrigin origin;
    const ptrdiff_t size = WaitReadable(mSocket, aTimeout) ? mSocket.Receive(bytes.data(), bytes.size(), origin) : -1;
    if (size < 0) {
        return std::nullopt;
    }
    bytes.resize(static_cast<size_t>(size));
    return bytes;
}

std::optional<Ack> EmulatorClient::Receive(std::chrono::milliseconds aTimeout)
{
    Bytes bytes(2000);
    DatagramOrigin origin;
    const ptrdiff_t size = WaitReadable(mSocket, aTimeout) ? mSocket.Receive(bytes.data(), bytes.size(), origin) : -1;
    if (size < 8) {
        return std::nullopt;
    }
    bytes.resize(static_cast<size_t>(size));
    EXPECT_EQ(bytes.size() - 8, Get16(&bytes[4]));
    return Ack{Get16(&bytes[0]), Get16(&bytes[2]),   Get16(&bytes[6]), Bytes(bytes.begin() + 8, bytes.end()),
               origin.mSource,   origin.mDestination};
}

Bytes EmulatorClient::MakeCommand(uint16_t aCode, uint16_t aId, const Bytes &aPayload, uint8_t aFlags)
{
    Bytes bytes(8 + aPayload.size());
    bytes[0] = 0x42;
    bytes[1] = aFlags;
    Put16(&bytes[2], aCode);
    Put16(&bytes[4], aPayload.size());
    Put16(&bytes[6], aId);
    std::copy(aPayload.begin(), aPayload.end(), bytes.begin() + 8);
    return bytes;
}

Ack EmulatorClient::Ask(uint16_t aCode, const Bytes &aPayload, uint8_t aFlags, uint32_t aTo)
{
    const uint16_t id = NextId();
    SendBytes(MakeCommand(aCode, id, aPayload, aFlags), aTo);
    const auto ack = Receive();
    EXPECT_TRUE(ack) << "no answer to command " << aCode;
    if (!ack) {
        return Ack{0xFFFF, 0, 0, {}, {}, 0};
    }
    EXPECT_EQ(id, ack->mId);
    EXPECT_EQ(aCode + 1, ack->mCode);
    return *ack;
}

bool EmulatorClient::IsSilent()
{
    const uint16_t id = NextId();
    SendBytes(MakeCommand(0x0002, id, {}));
    const auto ack = Receive();
    return ack && ack->mId == id && ack->mCode == 0x0003;
}

uint16_t EmulatorClient::ReadRegister(uint32_t aAddress, uint32_t &aValue)
{
    const Ack ack = Ask(0x0080, Words({aAddress}));
    aValue = ack.mPayload.size() == 4 ? Get32(ack.mPayload.data()) : 0;
    EXPECT_EQ(ack.mStatus == 0 ? 4u : 0u, ack.mPayload.size());
    return ack.mStatus;
}

uint32_t EmulatorClient::ReadRegister(uint32_t aAddress)
{
    uint32_t value = 0;
    EXPECT_EQ(0, ReadRegister(aAddress, value));
    return value;
}

uint16_t EmulatorClient::WriteRegister(uint32_t aAddress, uint32_t aValue)
{
    const Ack ack = Ask(0x0082, Words({aAddress, aValue}));
    EXPECT_EQ(4u, ack.mPayload.size());
    return ack.mStatus;
}

uint16_t EmulatorClient::ReadMemory(uint32_t aAddress, uint16_t aCount, Bytes &aData)
{
    const Ack ack = Ask(0x0084, Words({aAddress, aCount}));
    aData.clear();
    if (ack.mStatus == 0 && ack.mPayload.size() >= 4) {
        EXPECT_EQ(aAddress, Get32(ack.mPayload.data()));
        aData.assign(ack.mPayload.begin() + 4, ack.mPayload.end());
    }
    return ack.mStatus;
}

uint16_t EmulatorClient::WriteMemory(uint32_t aAddress, const Bytes &aData)
{
    Bytes payload = Words({aAddress});
    payload.insert(payload.end(), aData.begin(), aData.end());
    const Ack ack = Ask(0x0086, payload);
    EXPECT_EQ(4u, ack.mPayload.size());
    return ack.mStatus;
}

void StreamTest::Begin(uint32_t aWidth, uint32_t aHeight, uint32_t aPacketSize, uint32_t aFrameRate)
{
    const LxResult result = mCamera.Start();
    ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    ASSERT_TRUE(mReceiver.Open(Endpoint{Loopback, 0}).IsOK());
    const int size = 4 * 1024 * 1024;
    setsockopt(mReceiver.GetDescriptor(), SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
    mClient.emplace();
    mClient->TakeControl();
    ASSERT_EQ(0, mClient->WriteRegister(Register::Width, aWidth));
    ASSERT_EQ(0, mClient->WriteRegister(Register::Height, aHeight));
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCPS, aPacketSize));
    const double rate = aFrameRate;
    uint64_t bits = 0;
    std::memcpy(&bits, &rate, sizeof bits);
    Bytes bytes(8);
    Put64(bytes.data(), bits);
    // The exposure time limits the rate.
    const double exposure = 100;
    std::memcpy(&bits, &exposure, sizeof bits);
    Bytes exposureBytes(8);
    Put64(exposureBytes.data(), bits);
    ASSERT_EQ(0, mClient->WriteMemory(Register::ExposureTime, exposureBytes));
    ASSERT_EQ(0, mClient->WriteMemory(Register::AcquisitionFrameRate, bytes));
}

void StreamTest::OpenChannel()
{
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCDA, Loopback));
    ASSERT_EQ(0, mClient->WriteRegister(Register::GevSCP, mReceiver.GetLocal().mPort));
}

void StreamTest::StartAcquisition()
{
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionStart, 1));
}

void StreamTest::StopAcquisition()
{
    ASSERT_EQ(0, mClient->WriteRegister(Register::AcquisitionStop, 1));
}

std::optional<StreamPacket> StreamTest::ReceivePacket(std::chrono::milliseconds aTimeout)
{
    Bytes bytes(65536);
    DatagramOrigin origin;
    const ptrdiff_t size =
        WaitReadable(mReceiver, aTimeout) ? mReceiver.Receive(bytes.data(), bytes.size(), origin) : -1;
    if (size < 8) {
        return std::nullopt;
    }
    StreamPacket packet;
    packet.mSize = static_cast<size_t>(size);
    packet.mStatus = Get16(&bytes[0]);
    packet.mExtended = (bytes[4] & 0x80) != 0;
    packet.mType = bytes[4] & 0x7F;
    const ptrdiff_t header = packet.mExtended ? 20 : 8;
    packet.mFlags = packet.mExtended ? Get16(&bytes[2]) : 0;
    packet.mBlock = packet.mExtended ? Get64(&bytes[8]) : Get16(&bytes[2]);
    packet.mId = packet.mExtended ? Get32(&bytes[16]) : Get32(&bytes[4]) & 0x00FFFFFF;
    packet.mData.assign(bytes.begin() + header, bytes.begin() + size);
    return packet;
}

std::vector<StreamPacket> StreamTest::ReceiveUntil(const std::function<bool(const StreamPacket &)> &aCondition)
{
    std::vector<StreamPacket> packets;
    while (packets.empty() || !aCondition(packets.back())) {
        const auto packet = ReceivePacket();
        if (!packet) {
            ADD_FAILURE() << "the stream ended after " << packets.size() << " packets";
            return {};
        }
        packets.push_back(*packet);
    }
    return packets;
}

std::vector<StreamPacket> StreamTest::ReceiveBlock()
{
    std::vector<StreamPacket> packets =
        ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mType == LeaderPacket; });
    if (packets.empty()) {
        return {};
    }
    packets.erase(packets.begin(), packets.end() - 1);
    for (const StreamPacket &packet :
         ReceiveUntil([](const StreamPacket &aPacket) { return aPacket.mType == TrailerPacket; }))
    {
        packets.push_back(packet);
    }
    return packets;
}

void StreamTest::AskResend(uint64_t aBlock, uint32_t aFirst, uint32_t aLast, bool aExtended)
{
    Bytes payload(aExtended ? 20 : 12);
    Put32(&payload[4], aFirst);
    Put32(&payload[8], aLast);
    if (aExtended) {
        Put64(&payload[12], aBlock);
    }
    else {
        Put16(&payload[2], aBlock);
    }
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0040, mClient->NextId(), payload, aExtended ? 0x10 : 0x00));
}

}  // namespace LxEmulator
