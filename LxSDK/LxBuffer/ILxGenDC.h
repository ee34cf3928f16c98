#pragma once

#include <cstdint>

#include "LxBuffer/LxPixelType.h"

/// The image of a part of a GenDC container: the same view as ILxImage, a class of its own so that calls can tell the
/// two apart.
class LX_API ILxGenDCImage
{
public:
    virtual ~ILxGenDCImage();

    virtual uint32_t GetWidth() const = 0;
    virtual uint32_t GetHeight() const = 0;
    virtual LxPixelType GetPixelType() const = 0;
    virtual const void *GetDataPointer() const = 0;
    virtual uint64_t GetDataSize() const = 0;
    virtual uint32_t GetPaddingX() const = 0;
    virtual uint32_t GetPaddingY() const = 0;
};

/// A part of a component (GenICam GenDC).
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
class LX_API ILxGenDCComponent
{
public:
    virtual ~ILxGenDCComponent();

    /// The component's type by the numbers of the SFNC feature ComponentIDValue (1 Intensity, 4 Range, ...).
    virtual uint64_t GetTypeID() const = 0;
    virtual uint32_t GetPartCount() const = 0;
    /// The part at an index of 0 to GetPartCount() - 1, else null.
    virtual const ILxGenDCPart *GetPart(uint32_t aIndex) const = 0;
};

/// A GenDC container. Valid as long as the buffer that holds it.
class LX_API ILxGenDCContainer
{
public:
    virtual ~ILxGenDCContainer();

    virtual uint32_t GetComponentCount() const = 0;
    /// The component at an index of 0 to GetComponentCount() - 1, else null.
    virtual const ILxGenDCComponent *GetComponent(uint32_t aIndex) const = 0;
};
