#pragma once

// Internal: the registers of a camera behind a serial port.

#include <cstdint>

#include "LxBase/LxResult.h"

namespace LxDetail
{

/// Thread-safe; calls from several threads follow one another.
class CameraRegisters
{
public:
    virtual ~CameraRegisters() = default;

    /// Timeout when the camera does not answer, after several attempts.
    virtual LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) = 0;
    virtual LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) = 0;
    /// Whether the camera answers, with one attempt.
    virtual LxResult Ping() = 0;
};

}  // namespace LxDetail
