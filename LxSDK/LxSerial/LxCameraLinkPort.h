#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

/// A serial port that a bridge of this process offers through the Camera Link serial interface (LxSerialBridge), from
/// the side of its user. The operations are those of the serial part of the Camera Link standard (clSerialInit,
/// clSerialRead, clSerialWrite, clGetSupportedBaudRates, clSetBaudRate). Closed by its destructor.
///
/// All operations may be called from any thread, also at the same time.
/// @thread{any}
class LX_API LxCameraLinkPort
{
public:
    LxCameraLinkPort();
    ~LxCameraLinkPort();
    LxCameraLinkPort(const LxCameraLinkPort &) = delete;
    LxCameraLinkPort &operator=(const LxCameraLinkPort &) = delete;

    /// @param aPortID one of LxGenParameterArrayCL::GetPortIDs(). Bytes that came before are not delivered.
    /// Errors: AlreadyOpen, NotFound (no such port, or only its ID is registered), Busy (it has another user),
    /// NotConnected (the bridge has stopped).
    LxResult Open(const LxString &aPortID);
    /// Idempotent. A Read() that waits goes on to its time-out.
    LxResult Close();
    /// Whether the port is open; true also when the bridge has stopped.
    bool IsOpened() const;

    /// As LxDeviceSerialPort::Write(); NotConnected when the bridge has stopped.
    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten);
    /// As LxDeviceSerialPort::Read(); NotConnected when the bridge has stopped.
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout);

    /// The rates that SetBaudRate() takes, in baud; none when the device tells none.
    uint32_t GetSupportedBaudRateCount() const;
    /// 0 beyond the last.
    uint32_t GetSupportedBaudRate(uint32_t aIndex) const;
    /// Sets the speed of the device's port. NotSupported: it has no such rate, or the bridge's is fixed.
    LxResult SetBaudRate(uint32_t aBaudRate);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
