#pragma once

#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"

class ILxDeviceAdapter;

/// A serial port of a device, opened for reading and writing bytes. Closed by its destructor.
///
/// All operations may be called from any thread, also at the same time; bytes of two Write() calls at the same time may
/// mix, and of two Read() calls each byte goes to one.
/// @thread{any}
class LX_API LxDeviceSerialPort
{
public:
    LxDeviceSerialPort();
    ~LxDeviceSerialPort();
    LxDeviceSerialPort(const LxDeviceSerialPort &) = delete;
    LxDeviceSerialPort &operator=(const LxDeviceSerialPort &) = delete;

    /// Whether the device has the port. False for a null adapter and for values outside 0 to 9.
    static bool IsSupported(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);

    /// The adapter is used during the call only; the device must stay until the port is closed. Bytes that came before
    /// are not delivered. Errors: NoSerialPort, AlreadyOpen, InvalidArgument (null adapter), Busy (another object has
    /// it open), NotConnected, AccessDenied (the device is connected for reading only).
    LxResult Open(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Ends every Read() and Write() that waits; idempotent. Not to be called by the peer of a simulated port.
    LxResult Close();
    /// Whether the port is open.
    bool IsOpened() const;

    /// Writes all bytes, blocking for as long as the port takes none. aWritten is how many were taken, also on failure.
    /// A count of 0 succeeds. Errors: InvalidState (not open), Aborted (the port was closed meanwhile), NotConnected,
    /// InvalidArgument, the device's.
    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten);
    /// Waits for at least one byte, then returns what is there, up to the capacity.
    /// @param aTimeout in milliseconds; 0 does not wait.
    /// @return SerialTimeout (30) when nothing came, InvalidState (not open), Aborted (the port was closed meanwhile),
    ///         NotConnected, InvalidArgument (no place for a byte), the device's.
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
