#pragma once

#include <cstdint>

#include "LxSDKExport.h"

/// Parity of a serial port, by the numbers that configurations store.
enum class LxSerialParity : uint32_t
{
    None = 0,
    Even = 1,
    Odd = 2,
};

/// How a serial port is set: 9600 baud, no parity, 8 bits, 1 stop bit from the start. A value type.
/// @thread{any; one object by one thread at a time}
struct LX_API LxSerialPortConfiguration
{
    uint32_t mBaudRate = 9600;                      ///< In baud; not 0.
    LxSerialParity mParity = LxSerialParity::None;  ///< One of LxSerialParity.
    uint32_t mByteSize = 8;                         ///< Data bits, 5 to 8.
    uint32_t mStopBits = 1;                         ///< 1 or 2.

    /// Whether every member is in its range.
    bool IsValid() const;
};
