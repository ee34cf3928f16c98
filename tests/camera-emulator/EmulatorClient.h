#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "BigEndian.h"
#include "EmulatedCamera.h"

namespace LxEmulator
{

using Bytes = std::vector<uint8_t>;

constexpr uint32_t Loopback = 0x7F000001;

/// Options of a camera on an address of the loopback interface.
EmulatedCameraOptions MakeOptions(uint32_t aAddress = Loopback);

/// An acknowledge as it came.
struct Ack
{
    uint16_t mStatus = 0;
    uint16_t mCode = 0;
    uint16_t mId = 0;
    Bytes mPayload;
    Endpoint mFrom;
    uint32_t mTo = 0;  ///< the address that it was sent to
};

/// An application that speaks GVCP through a socket, packet by packet.
class EmulatorClient
{
public:
    /// @param aInterface to send and hear broadcasts on.
    explicit EmulatorClient(uint32_t aCamera = Loopback, const std::string &aInterface = std::string(),
                            uint32_t aLocal = 0);

    Endpoint GetLocal() const { return mSocket.GetLocal(); }
    uint16_t NextId() { return mId = mId == 0xFFFF ? 1 : static_cast<uint16_t>(mId + 1); }

    void SendBytes(const Bytes &aBytes, uint32_t aTo = 0);
    /// The next datagram, nothing when none comes in time.
    std::optional<Bytes> ReceiveBytes(std::chrono::milliseconds aTimeout = std::chrono::seconds(10));
    std::optional<Ack> Receive(std::chrono::milliseconds aTimeout = std::chrono::seconds(10));
    static Bytes MakeCommand(uint16_t aCode, uint16_t aId, const Bytes &aPayload, uint8_t aFlags = 0x01);
    /// Sends a command and returns the next acknowledge, whatever it is.
    Ack Ask(uint16_t aCode, const Bytes &aPayload, uint8_t aFlags = 0x01, uint32_t aTo = 0);
    /// True when a command that is surely answered is answered first: whatever was sent before it is not.
    bool IsSilent();

    uint16_t ReadRegister(uint32_t aAddress, uint32_t &aValue);
    uint32_t ReadRegister(uint32_t aAddress);
    /// The status.
    uint16_t WriteRegister(uint32_t aAddress, uint32_t aValue);
    uint16_t ReadMemory(uint32_t aAddress, uint16_t aCount, Bytes &aData);
    uint16_t WriteMemory(uint32_t aAddress, const Bytes &aData);
    void TakeControl(uint32_t aValue = 2) { EXPECT_EQ(0, WriteRegister(0x0A00, aValue)); }

private:
    UdpSocket mSocket;
    uint32_t mCamera;
    uint16_t mId = 0;
};

Bytes Words(std::initializer_list<uint32_t> aWords);

/// The packet of a stream, taken apart by hand.
struct StreamPacket
{
    uint16_t mStatus = 0;
    bool mExtended = false;
    uint16_t mFlags = 0;
    uint8_t mType = 0;
    uint64_t mBlock = 0;
    uint32_t mId = 0;
    size_t mSize = 0;
    Bytes mData;  ///< behind the header
};

constexpr uint8_t LeaderPacket = 1;
constexpr uint8_t TrailerPacket = 2;
constexpr uint8_t PayloadPacket = 3;

/// A camera on the loopback interface with an application that controls it and receives its stream.
class StreamTest : public testing::Test
{
protected:
    /// Width and height of the images are small, so that a block has few packets.
    void Begin(uint32_t aWidth = 64, uint32_t aHeight = 32, uint32_t aPacketSize = 500, uint32_t aFrameRate = 100);
    void OpenChannel();
    void StartAcquisition();
    void StopAcquisition();
    std::optional<StreamPacket> ReceivePacket(std::chrono::milliseconds aTimeout = std::chrono::seconds(10));
    /// All packets of the next block that begins, up to its trailer, in the order in which they came.
    std::vector<StreamPacket> ReceiveBlock();
    /// Packets of a block up to a condition on one of them.
    std::vector<StreamPacket> ReceiveUntil(const std::function<bool(const StreamPacket &)> &aCondition);
    void AskResend(uint64_t aBlock, uint32_t aFirst, uint32_t aLast, bool aExtended = false);

    EmulatedCamera mCamera{MakeOptions()};
    std::optional<EmulatorClient> mClient;
    UdpSocket mReceiver;
};

}  // namespace LxEmulator
