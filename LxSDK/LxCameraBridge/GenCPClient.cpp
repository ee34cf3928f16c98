#include "LxCameraBridge/GenCPClient.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace LxDetail
{

using namespace GenCP;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace
{

constexpr unsigned Retries = 3;
// GenCP allows 300 ms for every register but the one that tells the time, and more than that after asking only.
constexpr uint32_t ShortestResponseTime = 300;
constexpr uint32_t LongestResponseTime = 5000;
constexpr uint32_t Margin = 50;
constexpr uint32_t LongestGap = 300;  // between two bytes of an acknowledge
constexpr uint32_t QuietTime = 20;
constexpr milliseconds LongestFlush{2000};
constexpr milliseconds LongestPending{60000};  // a camera that only ever asks for patience ends here
constexpr uint32_t SlowestByte = 1;            // milliseconds, at 9600 baud

LxResult ToResult(uint16_t aStatus)
{
    struct Entry
    {
        uint16_t mStatus;
        LxResultCode mCode;
        const char *mText;
    };
    static constexpr Entry entries[] = {
        {NotImplemented, LxResultCode::NotSupported, "The camera does not know the command."},
        {InvalidParameter, LxResultCode::InvalidParameter, "The camera rejected a parameter."},
        {InvalidAddress, LxResultCode::InvalidAddress, "The camera has no register at the address."},
        {WriteProtect, LxResultCode::WriteProtected, "The camera's register cannot be written."},
        {BadAlignment, LxResultCode::BadAlignment, "The camera rejected the alignment of the address."},
        {AccessDenied, LxResultCode::AccessDenied, "The camera denied access to the register."},
        {Busy, LxResultCode::Busy, "The camera is busy with another command."},
        {MsgTimeout, LxResultCode::Timeout, "The camera reports that it ran out of time."},
        {InvalidHeader, LxResultCode::ProtocolError, "The camera rejected the header of a command."},
        {WrongConfig, LxResultCode::InvalidState, "The camera is set so that the command is not possible."},
    };
    if ((aStatus & 0x8000) == 0) {
        return LxResult();  // a warning: the command was executed
    }
    for (const Entry &entry : entries) {
        if (entry.mStatus == aStatus) {
            return LxResult(entry.mCode, entry.mText);
        }
    }
    char text[64];
    std::snprintf(text, sizeof(text), "The camera reports the GenCP error 0x%04X.", aStatus);
    return LxResult(LxResultCode::ProtocolError, text);
}

}  // namespace

LxResult GenCPClient::Open()
{
    {
        std::lock_guard lock(mMutex);
        mNextRequestID = 0;  // the identifier of a first read, which is never answered from an older command
        mDecoder.Clear();
        if (const LxResult result = Flush(); !result.IsOK()) {
            return result;
        }
    }
    uint8_t bytes[4];
    LxResult result = Read(RegVersion, bytes, sizeof(bytes));
    if (result == LxResultCode::Timeout) {
        return LxResult(LxResultCode::Timeout,
                        "No camera that speaks GenCP answers at the serial port. Check that the camera has power and "
                        "that the speed of the port is that of the camera.");
    }
    if (result.IsOK() && Get16(bytes) != 1) {
        result = LxResult(LxResultCode::NotSupported,
                          "The camera speaks GenCP " + std::to_string(Get16(bytes)) + ", which is not known.");
    }
    if (result.IsOK()) {
        result = Read(RegMaxResponseTime, bytes, sizeof(bytes));
    }
    if (result.IsOK()) {
        std::lock_guard lock(mMutex);
        mResponseTime = std::clamp(Get32(bytes), ShortestResponseTime, LongestResponseTime);
    }
    return result;
}

LxResult GenCPClient::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    auto *data = static_cast<uint8_t *>(aData);
    for (size_t done = 0; done < aLength;) {
        const size_t size = std::min<size_t>(aLength - done, MaxReadSize);
        if (const LxResult result = ReadBlock(aAddress + done, data + done, size, Retries); !result.IsOK()) {
            return result;
        }
        done += size;
    }
    return LxResult();
}

LxResult GenCPClient::Ping()
{
    uint8_t bytes[4];
    return ReadBlock(RegVersion, bytes, sizeof(bytes), 0);
}

LxResult GenCPClient::ReadBlock(uint64_t aAddress, uint8_t *aData, size_t aLength, unsigned aRetries)
{
    Packet command;
    command.mCode = FlagRequestAck;
    command.mCommand = ReadMem;
    Append64(command.mData, aAddress);
    Append16(command.mData, 0);
    Append16(command.mData, static_cast<uint16_t>(aLength));
    Packet acknowledge;
    const LxResult result = Transact(command, acknowledge, aRetries);
    if (!result.IsOK()) {
        return result;
    }
    if (acknowledge.mData.size() != aLength) {
        return LxResult(LxResultCode::ProtocolError, "The camera sent " + std::to_string(acknowledge.mData.size()) +
                                                         " bytes of a register of " + std::to_string(aLength) + ".");
    }
    std::copy(acknowledge.mData.begin(), acknowledge.mData.end(), aData);
    return LxResult();
}

LxResult GenCPClient::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    const auto *data = static_cast<const uint8_t *>(aData);
    for (size_t done = 0; done < aLength;) {
        const size_t size = std::min<size_t>(aLength - done, MaxWriteSize);
        Packet command;
        command.mCode = FlagRequestAck;
        command.mCommand = WriteMem;
        Append64(command.mData, aAddress + done);
        command.mData.insert(command.mData.end(), data + done, data + done + size);
        Packet acknowledge;
        if (const LxResult result = Transact(command, acknowledge, Retries); !result.IsOK()) {
            return result;
        }
        done += size;
    }
    return LxResult();
}

LxResult GenCPClient::Transact(Packet &aCommand, Packet &aAcknowledge, unsigned aRetries)
{
    std::lock_guard lock(mMutex);
    if (mNextRequestID == 0 && aCommand.mCommand != ReadMem) {
        mNextRequestID = 1;  // 0 is for reading
    }
    aCommand.mRequestID = mNextRequestID;
    mNextRequestID = mNextRequestID == 0xFFFF ? 1 : static_cast<uint16_t>(mNextRequestID + 1);
    LxResult result;
    for (unsigned attempt = 0; attempt <= aRetries; ++attempt) {
        if (attempt > 0) {
            aCommand.mCode |= FlagResend;
        }
        const std::vector<uint8_t> bytes = Encode(aCommand);
        result = mPort->Write(bytes.data(), bytes.size());
        if (!result.IsOK()) {
            return result;
        }
        result = Receive(aCommand, bytes.size(), aAcknowledge);
        if (result.IsOK()) {
            return ToResult(aAcknowledge.mCode);
        }
        if (result != LxResultCode::Timeout && result != LxResultCode::ProtocolError) {
            return result;  // the port is gone
        }
        if (const LxResult flushed = Flush(); !flushed.IsOK()) {
            return flushed;
        }
    }
    return result;
}

LxResult GenCPClient::Receive(const Packet &aCommand, size_t aSent, Packet &aAcknowledge)
{
    const auto end = Clock::now() + LongestPending;
    auto deadline = Clock::now() + milliseconds(aSent * SlowestByte + mResponseTime + Margin);
    for (;;) {
        switch (mDecoder.Next(aAcknowledge)) {
            case Decoder::Found::Corrupt:
                return LxResult(LxResultCode::ProtocolError,
                                "What the camera sends arrives damaged. Check the cable and the speed of the port.");
            case Decoder::Found::Packet:
                if (aAcknowledge.mRequestID != aCommand.mRequestID) {
                    continue;  // the late acknowledge of an earlier command
                }
                if (aAcknowledge.mCommand == PendingAck && aAcknowledge.mData.size() == 4) {
                    deadline = Clock::now() + milliseconds(Get16(aAcknowledge.mData.data() + 2) + Margin);
                    deadline = std::min(deadline, end);
                    continue;
                }
                if (aAcknowledge.mCommand == aCommand.mCommand + 1) {
                    return LxResult();
                }
                continue;
            case Decoder::Found::Nothing:
                break;
        }
        const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now()).count();
        uint8_t bytes[MaxPacketSize];
        uint32_t read = 0;
        const LxResult result =
            mPort->Read(bytes, sizeof(bytes), read, static_cast<uint32_t>(std::max<int64_t>(left, 0)));
        if (result == LxResultCode::SerialTimeout) {
            return LxResult(LxResultCode::Timeout, "The camera does not answer.");
        }
        if (!result.IsOK()) {
            return result;
        }
        mDecoder.Add(bytes, read);
        deadline = std::max(deadline, Clock::now() + milliseconds(LongestGap));
        if (Clock::now() > end) {
            return LxResult(LxResultCode::Timeout, "The camera does not come to an end with its answer.");
        }
    }
}

LxResult GenCPClient::Flush()
{
    mDecoder.Clear();
    const auto end = Clock::now() + LongestFlush;
    while (Clock::now() < end) {
        uint8_t bytes[MaxPacketSize];
        uint32_t read = 0;
        const LxResult result = mPort->Read(bytes, sizeof(bytes), read, QuietTime);
        if (result == LxResultCode::SerialTimeout) {
            return LxResult();
        }
        if (!result.IsOK()) {
            return result;
        }
    }
    return LxResult(LxResultCode::ProtocolError, "Something else than a GenCP camera sends at the serial port.");
}

}  // namespace LxDetail
