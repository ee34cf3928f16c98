#pragma once

// Internal: what a device that has serial ports offers to LxDeviceSerialPort.

#include <cstdint>
#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"

class ILxDeviceAdapter;

namespace LxDetail
{

/// An open serial port of a device. Thread-safe.
class SerialPortChannel
{
public:
    virtual ~SerialPortChannel() = default;

    /// As the operations of LxDeviceSerialPort.
    virtual LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten) = 0;
    virtual LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout) = 0;
    /// Ends the calls above, which answer Aborted from now on, and waits for what the port does on its own. Idempotent.
    virtual void Close() = 0;
};

/// Implemented by device classes that have serial ports, and by adapters that bring ports of their own;
/// LxDeviceSerialPort finds it by dynamic_cast.
class SerialPortSource
{
public:
    virtual ~SerialPortSource() = default;

    virtual bool HasSerialPort(LxDeviceSerial aPort) const = 0;
    /// Errors: NoSerialPort, Busy, NotConnected, AccessDenied.
    virtual LxResult OpenSerialPort(LxDeviceSerial aPort, std::shared_ptr<SerialPortChannel> &aChannel) = 0;
};

/// The ports that an adapter leads to: its own, or those of its device; null when there are none.
SerialPortSource *FindSerialPortSource(ILxDeviceAdapter *aAdapter);

}  // namespace LxDetail
