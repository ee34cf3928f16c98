#include "LxCameraBridge/GenCPPacket.h"

namespace LxDetail::GenCP
{

namespace
{

constexpr uint8_t Preamble[] = {0x01, 0x00};
constexpr size_t ChannelOffset = 6;

}  // namespace

uint16_t Get16(const uint8_t *aData)
{
    return static_cast<uint16_t>(aData[0] << 8 | aData[1]);
}

uint32_t Get32(const uint8_t *aData)
{
    return uint32_t{Get16(aData)} << 16 | Get16(aData + 2);
}

uint64_t Get64(const uint8_t *aData)
{
    return uint64_t{Get32(aData)} << 32 | Get32(aData + 4);
}

void Append16(std::vector<uint8_t> &aData, uint16_t aValue)
{
    aData.push_back(static_cast<uint8_t>(aValue >> 8));
    aData.push_back(static_cast<uint8_t>(aValue));
}

void Append64(std::vector<uint8_t> &aData, uint64_t aValue)
{
    for (int shift = 48; shift >= 0; shift -= 16) {
        Append16(aData, static_cast<uint16_t>(aValue >> shift));
    }
}

uint16_t Checksum(const uint8_t *aData, size_t aSize)
{
    uint32_t sum = 0;
    for (size_t i = 0; i < aSize; i += 2) {
        sum += static_cast<uint32_t>(aData[i] << 8 | (i + 1 < aSize ? aData[i + 1] : 0));
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    return static_cast<uint16_t>(~sum);
}

std::vector<uint8_t> Encode(const Packet &aPacket)
{
    std::vector<uint8_t> covered;  // what the checksums cover: channel 0, then the data
    Append16(covered, 0);
    Append16(covered, aPacket.mCode);
    Append16(covered, aPacket.mCommand);
    Append16(covered, static_cast<uint16_t>(aPacket.mData.size()));
    Append16(covered, aPacket.mRequestID);
    const uint16_t header = Checksum(covered.data(), covered.size());
    covered.insert(covered.end(), aPacket.mData.begin(), aPacket.mData.end());

    std::vector<uint8_t> bytes(Preamble, Preamble + sizeof(Preamble));
    Append16(bytes, header);
    Append16(bytes, Checksum(covered.data(), covered.size()));
    bytes.insert(bytes.end(), covered.begin(), covered.end());
    return bytes;
}

void Decoder::Add(const uint8_t *aData, size_t aSize)
{
    mBytes.insert(mBytes.end(), aData, aData + aSize);
}

Decoder::Found Decoder::Next(Packet &aPacket)
{
    size_t start = 0;
    Found found = Found::Nothing;
    for (; start + HeaderSize <= mBytes.size(); ++start) {
        const uint8_t *bytes = mBytes.data() + start;
        if (bytes[0] != Preamble[0] || bytes[1] != Preamble[1] ||
            Checksum(bytes + ChannelOffset, HeaderSize - ChannelOffset) != Get16(bytes + 2))
        {
            continue;
        }
        const size_t size = HeaderSize + Get16(bytes + 12);
        if (size > MaxPacketSize) {
            continue;
        }
        if (start + size > mBytes.size()) {
            break;
        }
        aPacket.mCode = Get16(bytes + 8);
        aPacket.mCommand = Get16(bytes + 10);
        aPacket.mRequestID = Get16(bytes + 14);
        aPacket.mData.assign(bytes + HeaderSize, bytes + size);
        const bool good = Checksum(bytes + ChannelOffset, size - ChannelOffset) == Get16(bytes + 4);
        found = good ? Found::Packet : Found::Corrupt;
        start += size;
        break;
    }
    mBytes.erase(mBytes.begin(), mBytes.begin() + static_cast<std::ptrdiff_t>(start));
    return found;
}

}  // namespace LxDetail::GenCP
