#include "GigEVision/GvcpPacket.h"

#include <algorithm>

namespace LxDetail::Gvcp
{

namespace
{

constexpr uint32_t packetIdMask = 0x00FFFFFF;
// where the fields of a FORCEIP command are
constexpr size_t forceIPMAC = 2;
constexpr size_t forceIPAddress = 20;
constexpr size_t forceIPMask = 36;
constexpr size_t forceIPGateway = 52;
// the registers of the MAC address have two unused bytes before it
constexpr size_t discoveryMAC = Register::macAddressHigh + 2;
constexpr size_t macSize = 6;

uint64_t Get(Bytes aBytes, size_t aOffset, size_t aCount)
{
    uint64_t value = 0;
    for (size_t i = 0; i < aCount; ++i) {
        value = value << 8 | aBytes[aOffset + i];
    }
    return value;
}

uint16_t Get16(Bytes aBytes, size_t aOffset)
{
    return static_cast<uint16_t>(Get(aBytes, aOffset, 2));
}

uint32_t Get32(Bytes aBytes, size_t aOffset)
{
    return static_cast<uint32_t>(Get(aBytes, aOffset, 4));
}

void Put(std::vector<uint8_t> &aBytes, size_t aOffset, size_t aCount, uint64_t aValue)
{
    for (size_t i = 0; i < aCount; ++i) {
        aBytes[aOffset + i] = static_cast<uint8_t>(aValue >> 8 * (aCount - 1 - i));
    }
}

void PutText(std::vector<uint8_t> &aBytes, size_t aOffset, size_t aSize, const std::string &aText)
{
    std::copy_n(aText.begin(), std::min(aText.size(), aSize), aBytes.begin() + static_cast<std::ptrdiff_t>(aOffset));
}

// Checks the payload length of a header against the datagram.
std::optional<Bytes> GetPayload(Bytes aPacket)
{
    const size_t length = Get16(aPacket, 4);
    if (length > maxPayload || length > aPacket.size() - headerSize) {
        return std::nullopt;
    }
    return aPacket.subspan(headerSize, length);
}

std::vector<uint8_t> Build(uint16_t aFirst, uint16_t aCode, uint16_t aId, Bytes aPayload)
{
    const size_t length = std::min(aPayload.size(), maxPayload);
    std::vector<uint8_t> packet(headerSize + length);
    Put(packet, 0, 2, aFirst);
    Put(packet, 2, 2, aCode);
    Put(packet, 4, 2, length);
    Put(packet, 6, 2, aId);
    std::copy_n(aPayload.begin(), length, packet.begin() + headerSize);
    return packet;
}

// The length of the valid UTF-8 sequence at the start, 0 when there is none (RFC 3629).
size_t GetSequenceLength(Bytes aText)
{
    const uint8_t first = aText[0];
    if (first < 0x80) {
        return 1;
    }
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || aText.size() < length) {
        return 0;
    }
    // the second byte excludes overlong forms, surrogates and numbers above U+10FFFF
    const uint8_t lowest = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const uint8_t highest = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    if (aText[1] < lowest || aText[1] > highest) {
        return 0;
    }
    for (size_t i = 2; i < length; ++i) {
        if ((aText[i] & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

}  // namespace

std::optional<CommandPacket> ParseCommand(Bytes aPacket)
{
    if (aPacket.size() < headerSize || aPacket[0] != commandKey) {
        return std::nullopt;
    }
    const auto payload = GetPayload(aPacket);
    const uint16_t requestId = Get16(aPacket, 6);
    if (!payload || requestId == 0) {
        return std::nullopt;
    }
    return CommandPacket{aPacket[1], Get16(aPacket, 2), requestId, *payload};
}

std::optional<AckPacket> ParseAck(Bytes aPacket)
{
    if (aPacket.size() < headerSize) {
        return std::nullopt;
    }
    const auto payload = GetPayload(aPacket);
    if (!payload) {
        return std::nullopt;
    }
    return AckPacket{Get16(aPacket, 0), Get16(aPacket, 2), Get16(aPacket, 6), *payload};
}

std::vector<uint8_t> BuildCommand(Command aCommand, uint8_t aFlags, uint16_t aRequestId, Bytes aPayload)
{
    return Build(static_cast<uint16_t>(commandKey << 8 | aFlags), static_cast<uint16_t>(aCommand), aRequestId,
                 aPayload);
}

std::vector<uint8_t> BuildAck(Status aStatus, Ack aAck, uint16_t aAckId, Bytes aPayload)
{
    return Build(static_cast<uint16_t>(aStatus), static_cast<uint16_t>(aAck), aAckId, aPayload);
}

std::optional<Discovery> ParseDiscovery(Bytes aPayload)
{
    if (aPayload.size() < discoverySize) {
        return std::nullopt;
    }
    const auto text = [aPayload](uint32_t aRegister, size_t aSize) {
        return CleanText(aPayload.subspan(aRegister, aSize));
    };
    Discovery discovery;
    discovery.mVersionMajor = Get16(aPayload, Register::version);
    discovery.mVersionMinor = Get16(aPayload, Register::version + 2);
    discovery.mDeviceMode = Get32(aPayload, Register::deviceMode);
    discovery.mMACAddress = Get(aPayload, discoveryMAC, macSize);
    discovery.mIPConfigurationOptions = Get32(aPayload, Register::ipConfigurationOptions);
    discovery.mIPConfigurationCurrent = Get32(aPayload, Register::ipConfigurationCurrent);
    discovery.mIPAddress = Get32(aPayload, Register::ipAddress);
    discovery.mSubnetMask = Get32(aPayload, Register::subnetMask);
    discovery.mDefaultGateway = Get32(aPayload, Register::defaultGateway);
    discovery.mManufacturerName = text(Register::manufacturerName, manufacturerNameSize);
    discovery.mModelName = text(Register::modelName, modelNameSize);
    discovery.mDeviceVersion = text(Register::deviceVersion, deviceVersionSize);
    discovery.mManufacturerInfo = text(Register::manufacturerInfo, manufacturerInfoSize);
    discovery.mSerialNumber = text(Register::serialNumber, serialNumberSize);
    discovery.mUserDefinedName = text(Register::userDefinedName, userDefinedNameSize);
    return discovery;
}

std::vector<uint8_t> BuildDiscovery(const Discovery &aDiscovery)
{
    std::vector<uint8_t> payload(discoverySize);
    Put(payload, Register::version, 2, aDiscovery.mVersionMajor);
    Put(payload, Register::version + 2, 2, aDiscovery.mVersionMinor);
    Put(payload, Register::deviceMode, 4, aDiscovery.mDeviceMode);
    Put(payload, discoveryMAC, macSize, aDiscovery.mMACAddress);
    Put(payload, Register::ipConfigurationOptions, 4, aDiscovery.mIPConfigurationOptions);
    Put(payload, Register::ipConfigurationCurrent, 4, aDiscovery.mIPConfigurationCurrent);
    Put(payload, Register::ipAddress, 4, aDiscovery.mIPAddress);
    Put(payload, Register::subnetMask, 4, aDiscovery.mSubnetMask);
    Put(payload, Register::defaultGateway, 4, aDiscovery.mDefaultGateway);
    PutText(payload, Register::manufacturerName, manufacturerNameSize, aDiscovery.mManufacturerName);
    PutText(payload, Register::modelName, modelNameSize, aDiscovery.mModelName);
    PutText(payload, Register::deviceVersion, deviceVersionSize, aDiscovery.mDeviceVersion);
    PutText(payload, Register::manufacturerInfo, manufacturerInfoSize, aDiscovery.mManufacturerInfo);
    PutText(payload, Register::serialNumber, serialNumberSize, aDiscovery.mSerialNumber);
    PutText(payload, Register::userDefinedName, userDefinedNameSize, aDiscovery.mUserDefinedName);
    return payload;
}

std::string CleanText(Bytes aField)
{
    const auto end = std::find(aField.begin(), aField.end(), uint8_t{0});
    Bytes rest = aField.first(static_cast<size_t>(end - aField.begin()));
    std::string text;
    while (!rest.empty()) {
        const size_t length = GetSequenceLength(rest);
        if (length == 0) {
            text += "\xEF\xBF\xBD";
        }
        else if (length == 1) {
            const bool control = rest[0] < 0x20 || rest[0] == 0x7F;
            text += control ? ' ' : static_cast<char>(rest[0]);
        }
        else {
            text.append(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length));
        }
        rest = rest.subspan(std::max<size_t>(length, 1));
    }
    const size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<ForceIP> ParseForceIP(Bytes aPayload)
{
    if (aPayload.size() < forceIPSize) {
        return std::nullopt;
    }
    return ForceIP{Get(aPayload, forceIPMAC, macSize), Get32(aPayload, forceIPAddress), Get32(aPayload, forceIPMask),
                   Get32(aPayload, forceIPGateway)};
}

std::vector<uint8_t> BuildForceIP(const ForceIP &aForceIP)
{
    std::vector<uint8_t> payload(forceIPSize);
    Put(payload, forceIPMAC, macSize, aForceIP.mMACAddress);
    Put(payload, forceIPAddress, 4, aForceIP.mIPAddress);
    Put(payload, forceIPMask, 4, aForceIP.mSubnetMask);
    Put(payload, forceIPGateway, 4, aForceIP.mDefaultGateway);
    return payload;
}

std::optional<std::vector<uint32_t>> ParseWords(Bytes aPayload)
{
    if (aPayload.empty() || aPayload.size() % 4 != 0) {
        return std::nullopt;
    }
    std::vector<uint32_t> words(aPayload.size() / 4);
    for (size_t i = 0; i < words.size(); ++i) {
        words[i] = Get32(aPayload, 4 * i);
    }
    return words;
}

std::vector<uint8_t> BuildWords(std::span<const uint32_t> aWords)
{
    std::vector<uint8_t> payload(4 * aWords.size());
    for (size_t i = 0; i < aWords.size(); ++i) {
        Put(payload, 4 * i, 4, aWords[i]);
    }
    return payload;
}

std::optional<std::vector<RegisterValue>> ParseWriteRegister(Bytes aPayload)
{
    if (aPayload.empty() || aPayload.size() % 8 != 0) {
        return std::nullopt;
    }
    std::vector<RegisterValue> values(aPayload.size() / 8);
    for (size_t i = 0; i < values.size(); ++i) {
        values[i] = {Get32(aPayload, 8 * i), Get32(aPayload, 8 * i + 4)};
    }
    return values;
}

std::vector<uint8_t> BuildWriteRegister(std::span<const RegisterValue> aValues)
{
    std::vector<uint8_t> payload(8 * aValues.size());
    for (size_t i = 0; i < aValues.size(); ++i) {
        Put(payload, 8 * i, 4, aValues[i].mAddress);
        Put(payload, 8 * i + 4, 4, aValues[i].mValue);
    }
    return payload;
}

std::optional<uint16_t> ParseWriteAck(Bytes aPayload)
{
    if (aPayload.size() < 4) {
        return std::nullopt;
    }
    return Get16(aPayload, 2);
}

std::vector<uint8_t> BuildWriteAck(uint16_t aIndex)
{
    std::vector<uint8_t> payload(4);
    Put(payload, 2, 2, aIndex);
    return payload;
}

std::optional<ReadMemory> ParseReadMemory(Bytes aPayload)
{
    if (aPayload.size() < 8) {
        return std::nullopt;
    }
    return ReadMemory{Get32(aPayload, 0), Get16(aPayload, 6)};
}

std::vector<uint8_t> BuildReadMemory(const ReadMemory &aReadMemory)
{
    std::vector<uint8_t> payload(8);
    Put(payload, 0, 4, aReadMemory.mAddress);
    Put(payload, 6, 2, aReadMemory.mCount);
    return payload;
}

std::optional<MemoryData> ParseMemoryData(Bytes aPayload)
{
    if (aPayload.size() < 4) {
        return std::nullopt;
    }
    return MemoryData{Get32(aPayload, 0), aPayload.subspan(4)};
}

std::vector<uint8_t> BuildMemoryData(uint32_t aAddress, Bytes aData)
{
    std::vector<uint8_t> payload(4 + aData.size());
    Put(payload, 0, 4, aAddress);
    std::copy(aData.begin(), aData.end(), payload.begin() + 4);
    return payload;
}

std::optional<uint16_t> ParsePendingAck(Bytes aPayload)
{
    return ParseWriteAck(aPayload);  // the same layout: two unused bytes, then the number
}

std::vector<uint8_t> BuildPendingAck(uint16_t aMilliseconds)
{
    return BuildWriteAck(aMilliseconds);
}

std::optional<PacketResend> ParsePacketResend(Bytes aPayload, bool aExtendedIds)
{
    if (aPayload.size() < (aExtendedIds ? 20U : 12U)) {
        return std::nullopt;
    }
    PacketResend resend;
    resend.mStreamChannel = Get16(aPayload, 0);
    resend.mBlockId = aExtendedIds ? Get(aPayload, 12, 8) : Get16(aPayload, 2);
    resend.mFirstPacketId = Get32(aPayload, 4);
    resend.mLastPacketId = Get32(aPayload, 8);
    if (!aExtendedIds) {
        resend.mFirstPacketId &= packetIdMask;
        resend.mLastPacketId &= packetIdMask;
    }
    return resend;
}

std::vector<uint8_t> BuildPacketResend(const PacketResend &aResend, bool aExtendedIds)
{
    std::vector<uint8_t> payload(aExtendedIds ? 20 : 12);
    Put(payload, 0, 2, aResend.mStreamChannel);
    Put(payload, 4, 4, aExtendedIds ? aResend.mFirstPacketId : aResend.mFirstPacketId & packetIdMask);
    Put(payload, 8, 4, aExtendedIds ? aResend.mLastPacketId : aResend.mLastPacketId & packetIdMask);
    if (aExtendedIds) {
        Put(payload, 12, 8, aResend.mBlockId);
    }
    else {
        Put(payload, 2, 2, aResend.mBlockId);
    }
    return payload;
}

}  // namespace LxDetail::Gvcp
