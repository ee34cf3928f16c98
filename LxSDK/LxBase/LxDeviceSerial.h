#pragma once

#include <cstdint>

#include "LxBase/LxString.h"

/// A serial port of a device. Any 32-bit value may be cast to it; values outside 0 to 9 name no port.
/// Bulk ports are addressed through the device feature "BulkSelector".
enum class LxDeviceSerial : uint32_t
{
    Serial0 = 0,
    Serial1 = 1,
    Bulk0 = 2,
    Bulk1 = 3,
    Bulk2 = 4,
    Bulk3 = 5,
    Bulk4 = 6,
    Bulk5 = 7,
    Bulk6 = 8,
    Bulk7 = 9,
    Invalid = 0xFFFFFFFF,
};

/// "Serial0", "Serial1", "Bulk0" to "Bulk7"; "Invalid" for every other value.
/// @thread{any}
LX_API LxString LxDeviceSerialToString(LxDeviceSerial aPort);
