#pragma once

// Internal: whether a device still answers, asked beside its connection.

#include <chrono>
#include <cstdint>
#include <vector>

#include "GigEVision/GvcpSocket.h"
#include "LxBase/LxResult.h"

namespace LxDetail
{

/// Reads registers of a GigE Vision device over a socket of its own, so that it neither waits for nor disturbs who else
/// talks to the device. Needs no privilege and does not prolong anybody's control. Not thread-safe.
class LivenessProbe
{
public:
    /// @param aDevice the device's address, the first octet most significant.
    /// @param aLocal the address of this computer to ask from; 0 leaves it to the routes.
    explicit LivenessProbe(uint32_t aDevice, uint32_t aLocal = 0);

    /// Whether the device answers in time; an error status is an answer too.
    bool IsAlive(std::chrono::milliseconds aTimeout);
    /// Reads a register with one try.
    /// @return Timeout when nothing answers in time, ProtocolError for an answer that makes no sense, otherwise the
    /// result
    ///         for the device's status.
    LxResult Read(uint32_t aRegister, std::chrono::milliseconds aTimeout, uint32_t &aValue);

private:
    const uint32_t mDevice;
    const uint32_t mLocal;
    std::vector<GvcpSocket> mSocket;  // one, or none while it cannot be had
    uint16_t mRequestId;
};

}  // namespace LxDetail
