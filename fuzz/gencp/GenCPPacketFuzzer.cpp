// The decoder of GenCP packets, and the simulated camera behind it, on arbitrary bytes.

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <vector>

#include "LxCameraBridge/GenCPPacket.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"

namespace GenCP = LxDetail::GenCP;

namespace
{

using Packets = std::vector<GenCP::Packet>;

void Require(bool aCondition)
{
    if (!aCondition) {
        std::abort();
    }
}

bool IsSame(const GenCP::Packet &aOne, const GenCP::Packet &aOther)
{
    const auto all = [](const GenCP::Packet &aPacket) {
        return std::tie(aPacket.mCode, aPacket.mCommand, aPacket.mRequestID, aPacket.mData);
    };
    return all(aOne) == all(aOther);
}

/// The undamaged packets in bytes that arrive in portions.
Packets Decode(const uint8_t *aData, size_t aSize, size_t aPortion)
{
    Packets packets;
    GenCP::Decoder decoder;
    for (size_t done = 0; done < aSize; done += aPortion) {
        decoder.Add(aData + done, std::min(aPortion, aSize - done));
        GenCP::Packet packet;
        for (;;) {
            const GenCP::Decoder::Found found = decoder.Next(packet);
            if (found == GenCP::Decoder::Found::Nothing) {
                break;
            }
            if (found == GenCP::Decoder::Found::Packet) {
                packets.push_back(packet);
            }
        }
    }
    return packets;
}

/// The line that the camera answers on.
class Line : public LxSimulatedSerialLine
{
public:
    uint32_t Send(const uint8_t *aData, uint32_t aCount) override
    {
        const Packets packets = Decode(aData, aCount, aCount);
        Require(packets.size() == 1 && GenCP::Encode(packets[0]).size() == aCount && aCount <= GenCP::MaxPacketSize);
        ++mAnswers;
        return aCount;
    }
    uint32_t GetBaudRate() const override { return 9600; }
    bool IsOpen() const override { return true; }

    int mAnswers = 0;
};

LxSimulatedGenCPValues MakeValues()
{
    LxSimulatedGenCPValues values;
    values.mXML = "<RegisterDescription/>";
    values.mZipped = false;
    return values;
}

/// A command whose fields are the bytes, and whose checksums are right, so that the camera looks at it.
void TryFields(const uint8_t *aData, size_t aSize)
{
    constexpr size_t fields = 6;
    if (aSize < fields || aSize - fields > GenCP::MaxReadSize) {
        return;
    }
    GenCP::Packet command;
    command.mCode = GenCP::Get16(aData) | GenCP::FlagRequestAck;
    command.mCommand = GenCP::Get16(aData + 2);
    command.mRequestID = GenCP::Get16(aData + 4);
    command.mData.assign(aData + fields, aData + aSize);
    const std::vector<uint8_t> bytes = GenCP::Encode(command);
    LxSimulatedGenCPCamera camera(MakeValues());
    Line line;
    camera.OnReceive(bytes.data(), static_cast<uint32_t>(bytes.size()), line);
    Require(camera.GetCommandCount() == 1 && line.mAnswers == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    const Packets packets = Decode(aData, aSize, std::max<size_t>(aSize, 1));
    const Packets single = Decode(aData, aSize, 1);
    Require(std::equal(packets.begin(), packets.end(), single.begin(), single.end(), IsSame));
    for (const GenCP::Packet &packet : packets) {
        const std::vector<uint8_t> bytes = GenCP::Encode(packet);
        const Packets again = Decode(bytes.data(), bytes.size(), bytes.size());
        Require(again.size() == 1 && IsSame(again[0], packet));
    }
    LxSimulatedGenCPCamera camera(MakeValues());
    Line line;
    camera.OnReceive(aData, static_cast<uint32_t>(aSize), line);
    Require(camera.GetCommandCount() == packets.size());
    TryFields(aData, aSize);
    return 0;
}
