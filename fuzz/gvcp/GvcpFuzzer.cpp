// Every parser of GVCP packets, on arbitrary bytes.

#include <cstdlib>

#include "GigEVision/GvcpPacket.h"

namespace Gvcp = LxDetail::Gvcp;

namespace
{

void Require(bool aCondition)
{
    if (!aCondition) {
        std::abort();
    }
}

// What was parsed is built and parsed again to the same.
void TryPayload(Gvcp::Bytes aPayload)
{
    if (const auto discovery = Gvcp::ParseDiscovery(aPayload)) {
        const auto again = Gvcp::ParseDiscovery(Gvcp::BuildDiscovery(*discovery));
        Require(again && again->mMACAddress == discovery->mMACAddress && again->mIPAddress == discovery->mIPAddress);
    }
    if (const auto words = Gvcp::ParseWords(aPayload)) {
        Require(Gvcp::ParseWords(Gvcp::BuildWords(*words)) == words);
    }
    if (const auto values = Gvcp::ParseWriteRegister(aPayload)) {
        Require(Gvcp::ParseWriteRegister(Gvcp::BuildWriteRegister(*values)) == values);
    }
    if (const auto forceIP = Gvcp::ParseForceIP(aPayload)) {
        Require(Gvcp::ParseForceIP(Gvcp::BuildForceIP(*forceIP)) == forceIP);
    }
    if (const auto memory = Gvcp::ParseReadMemory(aPayload)) {
        Require(Gvcp::ParseReadMemory(Gvcp::BuildReadMemory(*memory)) == memory);
    }
    if (const auto data = Gvcp::ParseMemoryData(aPayload)) {
        Require(data->mData.size() + 4 == aPayload.size());
    }
    for (const bool extended : {false, true}) {
        if (const auto resend = Gvcp::ParsePacketResend(aPayload, extended)) {
            Require(Gvcp::ParsePacketResend(Gvcp::BuildPacketResend(*resend, extended), extended) == resend);
        }
    }
    if (const auto index = Gvcp::ParseWriteAck(aPayload)) {
        Require(Gvcp::ParseWriteAck(Gvcp::BuildWriteAck(*index)) == index);
        Require(Gvcp::ParsePendingAck(aPayload) == index);
    }
    Require(Gvcp::CleanText(aPayload).size() <= 3 * aPayload.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    const Gvcp::Bytes packet(aData, aSize);
    TryPayload(packet);
    if (const auto command = Gvcp::ParseCommand(packet)) {
        Require(command->mPayload.size() <= Gvcp::maxPayload);
        TryPayload(command->mPayload);
    }
    if (const auto ack = Gvcp::ParseAck(packet)) {
        Require(ack->mPayload.size() <= Gvcp::maxPayload);
        TryPayload(ack->mPayload);
    }
    return 0;
}
