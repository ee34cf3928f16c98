#pragma once

#include <cstdint>

#include "LxSDKExport.h"

/// One H.264 access unit in byte stream format (ITU-T H.264 Annex B). Valid as long as the buffer that holds it.
class LX_API ILxH264AccessUnit
{
public:
    virtual ~ILxH264AccessUnit();

    virtual const void *GetDataPointer() const = 0;
    /// In bytes.
    virtual uint64_t GetDataSize() const = 0;
};
