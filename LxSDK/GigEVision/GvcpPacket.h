#pragma once

// Internal: packets of the GigE Vision Control Protocol (GVCP), both directions, as pure functions over bytes.
//
// Everything on the wire is big-endian. Parsers never read beyond the bytes that they are given and return nothing for
// a packet that the protocol does not allow. IP addresses are numbers with the first octet most significant, MAC
// addresses are the low 48 bits of a number.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace LxDetail::Gvcp
{

using Bytes = std::span<const uint8_t>;

constexpr uint16_t port = 3956;
constexpr uint8_t commandKey = 0x42;
constexpr size_t headerSize = 8;
/// A control datagram has at most 576 bytes with its IP, UDP and GVCP headers.
constexpr size_t maxPayload = 540;
constexpr size_t maxPacket = headerSize + maxPayload;
/// How many bytes one READMEM or WRITEMEM may carry.
constexpr size_t maxReadMemory = maxPayload - 4;
constexpr size_t maxWriteMemory = maxPayload - 4;
constexpr size_t maxReadRegisters = maxPayload / 4;
constexpr size_t maxWriteRegisters = maxPayload / 8;

enum class Command : uint16_t
{
    Discovery = 0x0002,
    ForceIP = 0x0004,
    PacketResend = 0x0040,
    ReadRegister = 0x0080,
    WriteRegister = 0x0082,
    ReadMemory = 0x0084,
    WriteMemory = 0x0086,
    Event = 0x00C0,
    EventData = 0x00C2,
    Action = 0x0100,
};

enum class Ack : uint16_t
{
    Discovery = 0x0003,
    ForceIP = 0x0005,
    ReadRegister = 0x0081,
    WriteRegister = 0x0083,
    ReadMemory = 0x0085,
    WriteMemory = 0x0087,
    Pending = 0x0089,  ///< "the answer takes longer"; answers no command of its own
    Event = 0x00C1,
    EventData = 0x00C3,
    Action = 0x0101,
};

/// The acknowledge that answers a command.
constexpr Ack GetAck(Command aCommand)
{
    return static_cast<Ack>(static_cast<uint16_t>(aCommand) + 1);
}

constexpr uint8_t flagAckRequired = 0x01;
constexpr uint8_t flagBroadcastAck = 0x10;  ///< DISCOVERY and FORCEIP: the acknowledge may be broadcast
constexpr uint8_t flagExtendedIds = 0x10;   ///< PACKETRESEND, EVENT, EVENTDATA: 64-bit block ids

enum class Status : uint16_t
{
    Success = 0x0000,
    NotImplemented = 0x8001,
    InvalidParameter = 0x8002,
    InvalidAddress = 0x8003,
    WriteProtect = 0x8004,
    BadAlignment = 0x8005,
    AccessDenied = 0x8006,
    Busy = 0x8007,
    LocalProblem = 0x8008,
    MessageMismatch = 0x8009,
    InvalidProtocol = 0x800A,
    NoMessage = 0x800B,
    PacketUnavailable = 0x800C,
    DataOverrun = 0x800D,
    InvalidHeader = 0x800E,
    WrongConfiguration = 0x800F,
    PacketNotYetAvailable = 0x8010,
    PacketAndPreviousRemoved = 0x8011,
    PacketRemoved = 0x8012,
    Error = 0x8FFF,
};

/// Bootstrap registers.
namespace Register
{
constexpr uint32_t version = 0x0000;
constexpr uint32_t deviceMode = 0x0004;
constexpr uint32_t macAddressHigh = 0x0008;
constexpr uint32_t macAddressLow = 0x000C;
constexpr uint32_t ipConfigurationOptions = 0x0010;
constexpr uint32_t ipConfigurationCurrent = 0x0014;
constexpr uint32_t ipAddress = 0x0024;
constexpr uint32_t subnetMask = 0x0034;
constexpr uint32_t defaultGateway = 0x0044;
constexpr uint32_t manufacturerName = 0x0048;
constexpr uint32_t modelName = 0x0068;
constexpr uint32_t deviceVersion = 0x0088;
constexpr uint32_t manufacturerInfo = 0x00A8;
constexpr uint32_t serialNumber = 0x00D8;
constexpr uint32_t userDefinedName = 0x00E8;
constexpr uint32_t xmlUrl = 0x0200;
constexpr uint32_t secondXmlUrl = 0x0400;
constexpr uint32_t capability = 0x0934;
constexpr uint32_t heartbeatTimeout = 0x0938;
constexpr uint32_t controlChannelPrivilege = 0x0A00;
constexpr uint32_t streamChannelPort = 0x0D00;
constexpr uint32_t streamChannelPacketSize = 0x0D04;
constexpr uint32_t streamChannelPacketDelay = 0x0D08;
constexpr uint32_t streamChannelDestination = 0x0D18;
constexpr uint32_t streamChannelSourcePort = 0x0D1C;
}  // namespace Register

constexpr size_t manufacturerNameSize = 32;
constexpr size_t modelNameSize = 32;
constexpr size_t deviceVersionSize = 32;
constexpr size_t manufacturerInfoSize = 48;
constexpr size_t serialNumberSize = 16;
constexpr size_t userDefinedNameSize = 16;

/// Bits of the registers ipConfigurationOptions and ipConfigurationCurrent.
constexpr uint32_t ipConfigurationPersistent = 0x1;
constexpr uint32_t ipConfigurationDHCP = 0x2;
constexpr uint32_t ipConfigurationLLA = 0x4;

/// Bits of the register controlChannelPrivilege.
constexpr uint32_t privilegeExclusive = 0x1;
constexpr uint32_t privilegeControl = 0x2;
constexpr uint32_t privilegeSwitchover = 0x4;

// ---- Packets -------------------------------------------------------------------------------------------------------

struct CommandPacket
{
    uint8_t mFlags = 0;
    uint16_t mCode = 0;  ///< a Command, or a number that this code does not know
    uint16_t mRequestId = 0;
    Bytes mPayload;  ///< part of the bytes that were parsed

    bool Is(Command aCommand) const { return mCode == static_cast<uint16_t>(aCommand); }
    bool IsAckRequired() const { return (mFlags & flagAckRequired) != 0; }
};

struct AckPacket
{
    uint16_t mStatus = 0;  ///< a Status, or a number that this code does not know
    uint16_t mCode = 0;    ///< an Ack, or a number that this code does not know
    uint16_t mAckId = 0;   ///< the request id of the command that it answers
    Bytes mPayload;        ///< part of the bytes that were parsed

    bool Is(Ack aAck) const { return mCode == static_cast<uint16_t>(aAck); }
    bool IsSuccess() const { return mStatus == static_cast<uint16_t>(Status::Success); }
    /// Whether it answers a command with this code and request id (a pending acknowledge does not).
    bool Answers(Command aCommand, uint16_t aRequestId) const { return Is(GetAck(aCommand)) && mAckId == aRequestId; }
};

/// Refuses: fewer bytes than a header, another key than 0x42, request id 0, a payload length that exceeds the datagram
/// or maxPayload. Bytes behind the payload are ignored.
std::optional<CommandPacket> ParseCommand(Bytes aPacket);
/// Refuses: fewer bytes than a header, a payload length that exceeds the datagram or maxPayload.
std::optional<AckPacket> ParseAck(Bytes aPacket);

std::vector<uint8_t> BuildCommand(Command aCommand, uint8_t aFlags, uint16_t aRequestId, Bytes aPayload = {});
std::vector<uint8_t> BuildAck(Status aStatus, Ack aAck, uint16_t aAckId, Bytes aPayload = {});

/// The request id after another: 1 to 0xFFFF, never 0.
constexpr uint16_t GetNextRequestId(uint16_t aRequestId)
{
    return aRequestId == 0xFFFF ? 1 : static_cast<uint16_t>(aRequestId + 1);
}

// ---- DISCOVERY -----------------------------------------------------------------------------------------------------

/// The payload of a discovery acknowledge: the bootstrap registers 0x0000 to 0x00F7.
struct Discovery
{
    uint16_t mVersionMajor = 0;
    uint16_t mVersionMinor = 0;
    uint32_t mDeviceMode = 0;
    uint64_t mMACAddress = 0;
    uint32_t mIPConfigurationOptions = 0;
    uint32_t mIPConfigurationCurrent = 0;
    uint32_t mIPAddress = 0;
    uint32_t mSubnetMask = 0;
    uint32_t mDefaultGateway = 0;
    std::string mManufacturerName;
    std::string mModelName;
    std::string mDeviceVersion;
    std::string mManufacturerInfo;
    std::string mSerialNumber;
    std::string mUserDefinedName;

    bool operator==(const Discovery &) const = default;
};

constexpr size_t discoverySize = 248;

/// Texts are cleaned with CleanText(). Nothing when the payload is shorter than discoverySize; more is ignored.
std::optional<Discovery> ParseDiscovery(Bytes aPayload);
/// Texts that do not fit their register are cut, not terminated.
std::vector<uint8_t> BuildDiscovery(const Discovery &aDiscovery);

/// The text in a register of fixed size: the bytes before the first NUL, without blanks around, as valid UTF-8. Each
/// byte that is not part of a valid sequence becomes U+FFFD, and each control character a blank.
std::string CleanText(Bytes aField);

// ---- FORCEIP -------------------------------------------------------------------------------------------------------

struct ForceIP
{
    uint64_t mMACAddress = 0;
    uint32_t mIPAddress = 0;
    uint32_t mSubnetMask = 0;
    uint32_t mDefaultGateway = 0;

    bool operator==(const ForceIP &) const = default;
};

constexpr size_t forceIPSize = 56;

std::optional<ForceIP> ParseForceIP(Bytes aPayload);
std::vector<uint8_t> BuildForceIP(const ForceIP &aForceIP);

// ---- Registers and memory ------------------------------------------------------------------------------------------

/// READREG and its acknowledge: addresses or values. Nothing when there is none or the length is no multiple of 4.
std::optional<std::vector<uint32_t>> ParseWords(Bytes aPayload);
std::vector<uint8_t> BuildWords(std::span<const uint32_t> aWords);

struct RegisterValue
{
    uint32_t mAddress = 0;
    uint32_t mValue = 0;

    bool operator==(const RegisterValue &) const = default;
};

/// WRITEREG. Nothing when there is none or the length is no multiple of 8.
std::optional<std::vector<RegisterValue>> ParseWriteRegister(Bytes aPayload);
std::vector<uint8_t> BuildWriteRegister(std::span<const RegisterValue> aValues);

/// The acknowledge of WRITEREG and WRITEMEM: how many registers or bytes were written, or on error the index of the
/// register that failed.
std::optional<uint16_t> ParseWriteAck(Bytes aPayload);
std::vector<uint8_t> BuildWriteAck(uint16_t aIndex);

struct ReadMemory
{
    uint32_t mAddress = 0;
    uint16_t mCount = 0;

    bool operator==(const ReadMemory &) const = default;
};

std::optional<ReadMemory> ParseReadMemory(Bytes aPayload);
std::vector<uint8_t> BuildReadMemory(const ReadMemory &aReadMemory);

/// WRITEMEM, and the acknowledge of READMEM.
struct MemoryData
{
    uint32_t mAddress = 0;
    Bytes mData;
};

std::optional<MemoryData> ParseMemoryData(Bytes aPayload);
std::vector<uint8_t> BuildMemoryData(uint32_t aAddress, Bytes aData);

/// PENDING_ACK: in how many milliseconds the answer comes.
std::optional<uint16_t> ParsePendingAck(Bytes aPayload);
std::vector<uint8_t> BuildPendingAck(uint16_t aMilliseconds);

// ---- PACKETRESEND --------------------------------------------------------------------------------------------------

/// A request for packets of the stream, both ends included.
struct PacketResend
{
    uint16_t mStreamChannel = 0;
    uint64_t mBlockId = 0;
    uint32_t mFirstPacketId = 0;
    uint32_t mLastPacketId = 0;

    bool operator==(const PacketResend &) const = default;
};

/// @param aExtendedIds whether the command has flagExtendedIds.
std::optional<PacketResend> ParsePacketResend(Bytes aPayload, bool aExtendedIds);
std::vector<uint8_t> BuildPacketResend(const PacketResend &aResend, bool aExtendedIds);

}  // namespace LxDetail::Gvcp
