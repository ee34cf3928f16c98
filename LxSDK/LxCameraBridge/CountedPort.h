#pragma once

// Internal: a serial port whose traffic is counted.

#include <atomic>
#include <memory>

#include "LxDevice/LxDeviceSerialPort.h"

namespace LxDetail
{

/// Bytes to and from a camera; outlives the connections. Thread-safe.
struct Traffic
{
    std::atomic<uint64_t> mSent{0};
    std::atomic<uint64_t> mReceived{0};
};

/// A serial port to a camera. Thread-safe as LxDeviceSerialPort.
class CountedPort
{
public:
    explicit CountedPort(std::shared_ptr<Traffic> aTraffic) : mTraffic(std::move(aTraffic)) {}

    LxResult Open(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort) { return mPort.Open(aAdapter, aPort); }
    void Close() { mPort.Close(); }

    LxResult Write(const uint8_t *aData, size_t aCount)
    {
        uint32_t written = 0;
        const LxResult result = mPort.Write(aData, static_cast<uint32_t>(aCount), written);
        mTraffic->mSent += written;
        return result;
    }
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout)
    {
        const LxResult result = mPort.Read(aData, aCapacity, aRead, aTimeout);
        mTraffic->mReceived += aRead;
        return result;
    }

private:
    const std::shared_ptr<Traffic> mTraffic;
    LxDeviceSerialPort mPort;
};

}  // namespace LxDetail
