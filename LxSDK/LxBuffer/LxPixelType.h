#pragma once

#include <cstdint>

#include "LxBase/LxString.h"

/// A pixel format by its number in the GenICam Pixel Format Naming Convention (PFNC). 0 is none; any 32-bit number can
/// travel, bit 31 marks a maker's own format.
enum class LxPixelType : uint32_t
{
    None = 0,  ///< No format.
#define LX_PIXEL_FORMAT(name, value, bits, packing, bayer, family, order, gev1Name) name = value,
#include "LxBuffer/LxPixelFormats.inc"
#undef LX_PIXEL_FORMAT
};

/// Bits per pixel, from bits 23 to 16 of the PFNC number: averages for formats that share samples between pixels.
/// @thread{any}
LX_API uint32_t LxPixelTypeGetBitsPerPixel(LxPixelType aType);
/// The PFNC name, for example "BayerRG12p"; "0x%08X" for a number without a name; "None" for 0.
/// @thread{any}
LX_API LxString LxPixelTypeToString(LxPixelType aType);
/// The format of a PFNC name or of a GigE Vision 1.x name, exactly written; None when there is no such name.
/// @thread{any}
LX_API LxPixelType LxPixelTypeFromString(const LxString &aName);
/// Bytes of one line without padding: width * bits per pixel, rounded up to whole bytes, because every line begins on a
/// byte: what the bits of a packed format leave of the last byte of a line is not used. For planar and semiplanar
/// formats the line of the first plane. 0 for a format without bits per pixel.
/// @thread{any}
LX_API uint64_t LxPixelTypeGetLineSize(LxPixelType aType, uint32_t aWidth);
/// Bytes of a whole image: (line size + aPaddingX) * height + aPaddingY; for planar and semiplanar formats the sum of
/// their planes, in which case paddings must be 0. Chroma planes of an odd width or height are rounded up. 0 for what
/// has no size: width, height or bits per pixel of 0, padding with a planar format, more than 64 bits.
/// @thread{any}
LX_API uint64_t LxPixelTypeGetImageSize(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX = 0,
                                        uint32_t aPaddingY = 0);
