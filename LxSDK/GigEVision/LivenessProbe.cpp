#include "GigEVision/LivenessProbe.h"

#include "GigEVision/GvcpClient.h"

namespace LxDetail
{

LivenessProbe::LivenessProbe(uint32_t aDevice, uint32_t aLocal)
    : mDevice(aDevice), mLocal(aLocal), mRequestId(MakeRequestId())
{
}

bool LivenessProbe::IsAlive(std::chrono::milliseconds aTimeout)
{
    // a register that every device has and that means nothing to the heartbeat
    uint32_t version = 0;
    return Read(Gvcp::Register::version, aTimeout, version) != LxResultCode::Timeout;
}

LxResult LivenessProbe::Read(uint32_t aRegister, std::chrono::milliseconds aTimeout, uint32_t &aValue)
{
    const auto end = std::chrono::steady_clock::now() + aTimeout;
    const LxResult silence(LxResultCode::Timeout, "The device does not answer.");
    if (!mSocket.empty() && mSocket.front().IsBroken()) {
        mSocket.clear();
    }
    if (mSocket.empty()) {
        auto socket = GvcpSocket::OpenRouted(mLocal);
        if (!socket) {
            return silence;  // the adapter has lost the address: the device cannot be reached
        }
        mSocket.push_back(std::move(*socket));
    }
    mRequestId = Gvcp::GetNextRequestId(mRequestId);
    const auto packet = Gvcp::BuildCommand(Gvcp::Command::ReadRegister, Gvcp::flagAckRequired, mRequestId,
                                           Gvcp::BuildWords({&aRegister, 1}));
    mSocket.front().Send(packet, mDevice);
    for (;;) {
        while (const auto datagram = mSocket.front().Receive()) {
            const auto ack = Gvcp::ParseAck(datagram->mData);
            if (!ack || !ack->Answers(Gvcp::Command::ReadRegister, mRequestId)) {
                continue;
            }
            if (!ack->IsSuccess()) {
                return GetStatusResult(ack->mStatus);
            }
            const auto values = Gvcp::ParseWords(ack->mPayload);
            if (!values || values->size() != 1) {
                return LxResult(LxResultCode::ProtocolError, "The device answers with a packet that makes no sense.");
            }
            aValue = values->front();
            return LxResult();
        }
        if (std::chrono::steady_clock::now() >= end) {
            return silence;
        }
        WaitForDatagram(mSocket, -1, end);
    }
}

}  // namespace LxDetail
