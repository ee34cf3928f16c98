#pragma once

// Internal: the device's end of a serial bridge.

#include <atomic>
#include <cstdint>

#include "LxDevice/LxDeviceSerialPort.h"

namespace LxDetail
{

/// A device's serial port and what has gone through it. Thread-safe.
struct BridgedPort
{
    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten)
    {
        const LxResult result = mPort.Write(aData, aCount, aWritten);
        mSent += aWritten;
        return result;
    }
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout)
    {
        const LxResult result = mPort.Read(aData, aCapacity, aRead, aTimeout);
        mReceived += aRead;
        return result;
    }

    LxDeviceSerialPort mPort;
    std::atomic<uint64_t> mSent{0};
    std::atomic<uint64_t> mReceived{0};
};

}  // namespace LxDetail
