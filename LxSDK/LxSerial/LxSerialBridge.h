#pragma once

#include <memory>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"
#include "LxSerial/LxSerialPortConfiguration.h"

class ILxDeviceAdapter;
class LxStringList;

/// Connects a serial port of a device with a COM port of the host, or offers it to other software through the Camera
/// Link serial interface (LxCameraLinkPort). Stopped by its destructor. All operations may be called from any thread.
///
/// The adapter and its device must stay until the bridge is stopped. The speed of the device's port is read and set
/// through the device's features; to reach those of a bulk port the bridge sets "BulkSelector" for a moment.
/// @thread{any}
class LX_API LxSerialBridge
{
public:
    /// Gives a tty of this host a COM name, for Start() in the whole process: where ports are called otherwise, users
    /// and configurations may still say "COM3". A name that has one already gets the new path; an empty path takes it
    /// away.
    static void SetCOMPortPath(const LxString &aCOMPort, const LxString &aPath);
    /// Replaces the list by the names that SetCOMPortPath() gave, in alphabetical order.
    static void GetCOMPortNames(LxStringList &aNames);

    LxSerialBridge();
    ~LxSerialBridge();
    LxSerialBridge(const LxSerialBridge &) = delete;
    LxSerialBridge &operator=(const LxSerialBridge &) = delete;

    /// Starts a bridge to a COM port, whose configuration is set and whose baud rate the device's port gets too if it
    /// supports it. Another program on the line then talks to the device. When the COM port is unplugged, the bridge
    /// carries nothing more; while the device is away, what is sent to it is lost.
    /// @param aCOMPort a name that SetCOMPortPath() gave, the name of a tty under /dev ("ttyUSB0", "pts/3") or a path.
    /// Errors: AlreadyOpen, NoSerialPort, NotFound (no such COM port), AccessDenied, Busy (the COM port or the device's
    /// port is in use), InvalidArgument (null adapter, configuration that is not valid), NotSupported (the COM port
    /// cannot be set like that), NotConnected.
    LxResult Start(const LxString &aCOMPort, const LxSerialPortConfiguration &aConfiguration,
                   ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Offers the port under an ID to the Camera Link serial interface; with LxDeviceSerial::Invalid only the ID is
    /// registered. Errors: AlreadyOpen, Busy (the ID is taken, or the device's port is in use), NoSerialPort,
    /// InvalidArgument (null adapter, empty ID), NotConnected.
    LxResult Start(const LxString &aPortID, ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort);
    /// Succeeds also on a bridge that was never started.
    LxResult Stop();

    /// The name of the open COM port; empty when none is open, also because it has been unplugged.
    LxString GetSerialPort() const;
    /// The default one when no COM port is open.
    LxSerialPortConfiguration GetSerialPortConfiguration() const;
    /// InvalidState: no COM port is open. InvalidArgument, NotSupported: as Start(), and nothing changes.
    LxResult SetSerialPortConfiguration(const LxSerialPortConfiguration &aConfiguration);
    /// The name under which a Camera Link bridge is offered; else empty.
    LxString GetName() const;

    /// The baud rates that the device's port can take, in the bridge's order; none before Start().
    uint32_t GetSupportedBaudRateCount() const;
    /// 0 beyond the last.
    uint32_t GetSupportedBaudRate(uint32_t aIndex) const;
    /// The rate in use: the hard-coded one, else that of the device's port, else that of the COM port; 0 when none is
    /// known. May ask the device.
    uint32_t GetBaudRate() const;
    /// 0 when the baud rate follows the other program.
    uint32_t GetHardCodedBaudRate() const;
    /// Fixes the rate of a Camera Link bridge, whatever the other program asks for, and sets the device's port if it
    /// has rates at all. 0 lets the other program choose. InvalidState: no Camera Link bridge is started; NotSupported:
    /// the device's port has rates, but not this one; the device's errors.
    LxResult SetHardCodedBaudRate(uint32_t aBaudRate);

    /// Bytes since Start() or ResetStatistics().
    uint64_t GetBytesSentToDevice() const;
    /// The same for the other direction.
    uint64_t GetBytesReceivedFromDevice() const;
    /// Sets both counts to 0.
    void ResetStatistics();

private:
    class Data;
    std::unique_ptr<Data> mData;
};
