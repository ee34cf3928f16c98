#pragma once

#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"
#include "LxSerial/LxSerialPortConfiguration.h"

class ILxDeviceAdapter;

/// Connects a serial port of a device with a COM port of the host, or offers it to other programs through the Camera
/// Link serial interface. Stopped by its destructor. All operations may be called from any thread.
class LX_API LxSerialBridge
{
public:
    LxSerialBridge();
    ~LxSerialBridge();
    LxSerialBridge(const LxSerialBridge &) = delete;
    LxSerialBridge &operator=(const LxSerialBridge &) = delete;

    /// Starts a bridge to a COM port. Errors: AlreadyOpen, NoSerialPort, NotFound (no such COM port), AccessDenied,
    /// Busy, InvalidArgument (null adapter, configuration that is not valid).
    LxResult Start(const LxString &aCOMPort, const LxSerialPortConfiguration &aConfiguration,
                   ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Offers the port under an ID to the Camera Link serial interface; with LxDeviceSerial::Invalid only the ID is
    /// registered.
    LxResult Start(const LxString &aPortID, ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Succeeds also on a bridge that was never started.
    LxResult Stop();

    /// The name of the open COM port; empty when none is open.
    LxString GetSerialPort() const;
    LxSerialPortConfiguration GetSerialPortConfiguration() const;
    LxResult SetSerialPortConfiguration(const LxSerialPortConfiguration &aConfiguration);
    /// The name under which a Camera Link bridge is offered.
    LxString GetName() const;

    /// The baud rates that the device's port can take, in the bridge's order; none before Start().
    uint32_t GetSupportedBaudRateCount() const;
    uint32_t GetSupportedBaudRate(uint32_t aIndex) const;
    uint32_t GetBaudRate() const;
    /// 0 when the baud rate follows the other program.
    uint32_t GetHardCodedBaudRate() const;
    LxResult SetHardCodedBaudRate(uint32_t aBaudRate);

    uint64_t GetBytesSentToDevice() const;
    uint64_t GetBytesReceivedFromDevice() const;
    void ResetStatistics();

private:
    class Data;
    std::unique_ptr<Data> mData;
};
