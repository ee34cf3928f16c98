#pragma once

// Internal: the speed of a device's serial port.

#include <cstdint>
#include <vector>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"

class ILxDeviceAdapter;

namespace LxDetail
{

/// The baud rate of a device's serial port through the features "Uart0BaudRate", "Uart1BaudRate" or "BulkBaudRate", of
/// either kind. Of an enumeration the entries count whose names end in a number ("Baud9600"). For a bulk port
/// "BulkSelector" is set to it for the time of a call. The adapter must outlive the object.
class PortSpeed
{
public:
    PortSpeed(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort) : mAdapter(aAdapter), mPort(aPort) {}

    /// The rates that can be set, in the device's order: the available entries, or the standard rates within the
    /// limits. None when there is no such feature.
    std::vector<uint32_t> GetSupported() const;
    /// 0 when it is not known.
    uint32_t Get() const;
    /// NotSupported when there is no such feature or no such rate.
    LxResult Set(uint32_t aBaudRate) const;

private:
    class Selection;

    ILxDeviceAdapter *mAdapter;
    LxDeviceSerial mPort;
};

}  // namespace LxDetail
