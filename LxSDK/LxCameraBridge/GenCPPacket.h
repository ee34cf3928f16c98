#pragma once

// Internal: packets of GenCP on a serial line (EMVA GenICam GenCP 1.3, chapters 4 "Packets" and "Serial").

#include <cstddef>
#include <cstdint>
#include <vector>

namespace LxDetail::GenCP
{

constexpr size_t PrefixSize = 8;   ///< Preamble, two checksums, channel ID.
constexpr size_t HeaderSize = 16;  ///< With the common command data.
constexpr size_t MaxPacketSize = 1024;
constexpr size_t MaxReadSize = MaxPacketSize - HeaderSize;       ///< Bytes of one ReadMem acknowledge.
constexpr size_t MaxWriteSize = MaxPacketSize - HeaderSize - 8;  ///< Bytes of one WriteMem command.

constexpr uint16_t FlagRequestAck = 0x4000;
constexpr uint16_t FlagResend = 0x8000;

constexpr uint16_t ReadMem = 0x0800;
constexpr uint16_t ReadMemAck = 0x0801;
constexpr uint16_t WriteMem = 0x0802;
constexpr uint16_t WriteMemAck = 0x0803;
constexpr uint16_t PendingAck = 0x0805;

// Status codes.
constexpr uint16_t Success = 0x0000;
constexpr uint16_t NotImplemented = 0x8001;
constexpr uint16_t InvalidParameter = 0x8002;
constexpr uint16_t InvalidAddress = 0x8003;
constexpr uint16_t WriteProtect = 0x8004;
constexpr uint16_t BadAlignment = 0x8005;
constexpr uint16_t AccessDenied = 0x8006;
constexpr uint16_t Busy = 0x8007;
constexpr uint16_t MsgTimeout = 0x800B;
constexpr uint16_t InvalidHeader = 0x800E;
constexpr uint16_t WrongConfig = 0x800F;
constexpr uint16_t GenericError = 0x8FFF;

// Bootstrap registers (chapter "Bootstrap Register Map"); big-endian on a serial line.
constexpr uint64_t RegVersion = 0x000;
constexpr uint64_t RegManufacturerName = 0x004;
constexpr uint64_t RegModelName = 0x044;
constexpr uint64_t RegFamilyName = 0x084;
constexpr uint64_t RegDeviceVersion = 0x0C4;
constexpr uint64_t RegManufacturerInfo = 0x104;
constexpr uint64_t RegSerialNumber = 0x144;
constexpr uint64_t RegUserDefinedName = 0x184;
constexpr uint64_t RegCapability = 0x1C4;
constexpr uint64_t RegMaxResponseTime = 0x1CC;
constexpr uint64_t RegManifestAddress = 0x1D0;
constexpr uint64_t RegSBRMAddress = 0x1D8;
constexpr uint64_t RegConfiguration = 0x1E0;
constexpr uint64_t RegHeartbeat = 0x1E8;
constexpr uint64_t RegAccessPrivilege = 0x204;
constexpr uint32_t StringSize = 64;

/// A command or an acknowledge.
struct Packet
{
    uint16_t mCode = 0;  ///< Flags of a command, status of an acknowledge.
    uint16_t mCommand = 0;
    uint16_t mRequestID = 0;
    std::vector<uint8_t> mData;  ///< The specific command data.
};

/// The checksum of GenCP: the one's complement of the one's complement sum of big-endian words, as that of UDP (RFC
/// 768). An odd byte at the end counts as the upper half of a word.
uint16_t Checksum(const uint8_t *aData, size_t aSize);

std::vector<uint8_t> Encode(const Packet &aPacket);

/// Finds packets in a stream of bytes.
class Decoder
{
public:
    enum class Found
    {
        Nothing,  ///< More bytes are needed.
        Packet,
        Corrupt,  ///< A packet whose specific command data do not fit their checksum.
    };

    void Add(const uint8_t *aData, size_t aSize);
    /// Takes the next packet out. Bytes that begin no packet are dropped: the preamble alone proves nothing, as it also
    /// occurs inside data.
    Found Next(Packet &aPacket);
    void Clear() { mBytes.clear(); }
    bool IsEmpty() const { return mBytes.empty(); }

private:
    std::vector<uint8_t> mBytes;
};

// Big-endian numbers.
uint16_t Get16(const uint8_t *aData);
uint32_t Get32(const uint8_t *aData);
uint64_t Get64(const uint8_t *aData);
void Append16(std::vector<uint8_t> &aData, uint16_t aValue);
void Append64(std::vector<uint8_t> &aData, uint64_t aValue);

}  // namespace LxDetail::GenCP
