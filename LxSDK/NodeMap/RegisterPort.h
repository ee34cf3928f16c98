#pragma once

// Internal: the register space of a device, as the GenICam node engine sees it.

#include <cstdint>
#include <functional>

#include "LxBase/LxResult.h"

namespace LxDetail
{

/// Reads and writes bytes of a device's register space. Thread-safe.
class RegisterPort
{
public:
    virtual ~RegisterPort() = default;

    virtual LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) = 0;
    virtual LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) = 0;

    /// OK while the device answers as far as is known; otherwise the result that every access gives at once (Timeout
    /// while the device is suspect, NotConnected once it is lost). Never blocks.
    virtual LxResult GetState() const { return LxResult(); }
    /// Whether writing is allowed at all (the application controls the device).
    virtual bool IsWritable() const { return true; }
    /// Called with a function that the port runs, on any thread, whenever GetState() changes. One listener at a time;
    /// an empty function removes it, and when that call returns the old one neither runs nor will.
    virtual void SetStateListener(std::function<void()> aListener) { static_cast<void>(aListener); }
};

}  // namespace LxDetail
