#pragma once

#include <cstdint>

#include "LxSDKExport.h"

/// One H.264 access unit in byte stream format (ITU-T H.264 Annex B). Valid as long as the buffer that holds it.
/// @thread{any}
class LX_API ILxH264AccessUnit
{
public:
    virtual ~ILxH264AccessUnit();

    /// The first byte of the first start code, or null.
    virtual const void *GetDataPointer() const = 0;
    /// In bytes.
    virtual uint64_t GetDataSize() const = 0;
};
