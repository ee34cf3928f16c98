#pragma once

#include <cstdint>

#include "LxBuffer/LxPixelType.h"

/// A read-only view of an image.
///
/// The pixels lie in lines of LxPixelTypeGetLineSize() bytes, each followed by GetPaddingX() bytes; GetPaddingY() bytes
/// follow the last line. Owned by who hands it out; not synchronised.
/// @thread{any; one object by one thread at a time}
class LX_API ILxImage
{
public:
    virtual ~ILxImage();

    /// In pixels; 0 when there is no image.
    virtual uint32_t GetWidth() const = 0;
    /// In lines; 0 when there is no image.
    virtual uint32_t GetHeight() const = 0;
    /// By the numbers of the PFNC; LxPixelType::None when there is no image.
    virtual LxPixelType GetPixelType() const = 0;
    /// The first byte of the first line, or null.
    virtual const void *GetDataPointer() const = 0;
    /// The bytes that may be read from GetDataPointer() on.
    virtual uint64_t GetDataSize() const = 0;
    /// Bytes behind each line.
    virtual uint32_t GetPaddingX() const = 0;
    /// Bytes behind the last line.
    virtual uint32_t GetPaddingY() const = 0;
    /// Where the image begins on the sensor, in pixels from the left.
    virtual uint32_t GetOffsetX() const = 0;
    /// The same downwards, in lines.
    virtual uint32_t GetOffsetY() const = 0;
};
