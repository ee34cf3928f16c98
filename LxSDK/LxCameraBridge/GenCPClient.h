#pragma once

// Internal: the host's side of GenCP on a serial line (EMVA GenICam GenCP 1.3, chapter 3 "Operation").

#include <memory>
#include <mutex>

#include "LxCameraBridge/CameraRegisters.h"
#include "LxCameraBridge/CountedPort.h"
#include "LxCameraBridge/GenCPPacket.h"

namespace LxDetail
{

/// Reads and writes memory of a camera that speaks GenCP. One command at a time; what is not acknowledged, or comes
/// damaged, is sent again, up to three times; a pending acknowledge gives the camera the time that it asks for.
class GenCPClient : public CameraRegisters
{
public:
    explicit GenCPClient(std::shared_ptr<CountedPort> aPort) : mPort(std::move(aPort)) {}

    /// Asks whether the camera speaks GenCP 1 and how long it may take to answer.
    LxResult Open();

    /// Any length; split into packets. Errors: Timeout, InvalidAddress, WriteProtected, AccessDenied, Busy,
    /// BadAlignment, InvalidParameter, NotSupported, ProtocolError, those of the serial port.
    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    LxResult Ping() override;

private:
    LxResult ReadBlock(uint64_t aAddress, uint8_t *aData, size_t aLength, unsigned aRetries);
    /// Sends a command until it is acknowledged.
    LxResult Transact(GenCP::Packet &aCommand, GenCP::Packet &aAcknowledge, unsigned aRetries);
    /// Waits for the acknowledge of a command. ProtocolError when it came damaged.
    LxResult Receive(const GenCP::Packet &aCommand, size_t aSent, GenCP::Packet &aAcknowledge);
    /// Drops what comes until the line is quiet.
    LxResult Flush();

    const std::shared_ptr<CountedPort> mPort;
    std::mutex mMutex;  // held during a command; guards all members below
    GenCP::Decoder mDecoder;
    uint16_t mNextRequestID = 0;
    uint32_t mResponseTime = 300;  // milliseconds
};

}  // namespace LxDetail
