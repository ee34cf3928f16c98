#pragma once

#include <cstdint>

#include "LxBuffer/LxPixelType.h"

/// The image of a part of a GenDC container: the same view as ILxImage, a class of its own so that calls can tell the
/// two apart.
/// @thread{any}
class LX_API ILxGenDCImage
{
public:
    virtual ~ILxGenDCImage();

    /// In pixels.
    virtual uint32_t GetWidth() const = 0;
    /// In lines.
    virtual uint32_t GetHeight() const = 0;
    /// By the numbers of the PFNC.
    virtual LxPixelType GetPixelType() const = 0;
    /// The first byte of the first line; owned by the container.
    virtual const void *GetDataPointer() const = 0;
    /// The bytes that may be read from GetDataPointer() on.
    virtual uint64_t GetDataSize() const = 0;
    /// Bytes behind each line.
    virtual uint32_t GetPaddingX() const = 0;
    /// Bytes behind the last line.
    virtual uint32_t GetPaddingY() const = 0;
};

/// A part of a component (GenICam GenDC).
/// @thread{any}
class LX_API ILxGenDCPart
{
public:
    virtual ~ILxGenDCPart();

    /// The GenDC header type of the part, for example 0x4200 for a two-dimensional image.
    virtual uint16_t GetHeaderType() const = 0;
    /// The part's image, or null when the part is none.
    virtual const ILxGenDCImage *GetImage() const = 0;
};

/// A component of a container: the data of one kind and source.
/// @thread{any}
class LX_API ILxGenDCComponent
{
public:
    virtual ~ILxGenDCComponent();

    /// The component's type by the numbers of the SFNC feature ComponentIDValue (1 Intensity, 4 Range, ...).
    virtual uint64_t GetTypeID() const = 0;
    /// The number of parts.
    virtual uint32_t GetPartCount() const = 0;
    /// The part at an index of 0 to GetPartCount() - 1, else null.
    virtual const ILxGenDCPart *GetPart(uint32_t aIndex) const = 0;
};

/// A GenDC container. Valid as long as the buffer that holds it.
/// @thread{any}
class LX_API ILxGenDCContainer
{
public:
    virtual ~ILxGenDCContainer();

    /// The number of components, those that the device calls invalid included.
    virtual uint32_t GetComponentCount() const = 0;
    /// The component at an index of 0 to GetComponentCount() - 1, else null.
    virtual const ILxGenDCComponent *GetComponent(uint32_t aIndex) const = 0;
};
