#pragma once

#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"

class ILxDeviceAdapter;

/// A serial port of a device, opened for reading and writing bytes.
///
/// IsOpened(), Read() and Write() may be called from any thread, also at the same time.
class LX_API LxDeviceSerialPort
{
public:
    LxDeviceSerialPort();
    ~LxDeviceSerialPort();
    LxDeviceSerialPort(const LxDeviceSerialPort &) = delete;
    LxDeviceSerialPort &operator=(const LxDeviceSerialPort &) = delete;

    /// Whether the device has the port. False for a null adapter and for values outside 0 to 9.
    static bool IsSupported(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);

    /// Errors: NoSerialPort, AlreadyOpen, InvalidArgument, Busy (another object has it open), NotConnected.
    LxResult Open(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Ends a Read() that waits; idempotent.
    LxResult Close();
    bool IsOpened() const;

    /// Writes all bytes, blocking. aWritten is how many were taken, also on failure. A count of 0 succeeds.
    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten);
    /// Waits for at least one byte, then returns what is there, up to the capacity.
    /// @param aTimeout in milliseconds; 0 does not wait.
    /// @return SerialTimeout (30) when nothing came, Aborted when the port was closed, NotConnected.
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
