#pragma once

// Internal: LxPixelFormats.inc as values, for everything that must know how a format lies in memory.

#include <cstddef>
#include <string_view>

#include "LxBuffer/LxPixelType.h"

namespace LxDetail
{

/// How the samples of a format lie in memory; LxPixelFormats.inc says what each means. Unknown: deprecated formats
/// whose layout is not published.
enum class PixelPacking : uint8_t
{
    Unpacked,
    LsbPacked,
    LsbPacked32,
    GigEPacked,
    Planar,
    PlanarLsbPacked,
    SemiPlanar,
    Unknown,
};

/// One line of LxPixelFormats.inc.
struct PixelFormat
{
    std::string_view mName;
    LxPixelType mType;
    std::string_view mBits;
    PixelPacking mPacking;
    std::string_view mBayerTile;
    std::string_view mFamily;
    std::string_view mOrder;
    std::string_view mGev1Name;
};

inline constexpr PixelFormat PixelFormats[] = {
#define LX_PIXEL_FORMAT(name, value, bits, packing, bayer, family, order, gev1Name) \
    {#name, LxPixelType::name, bits, PixelPacking::packing, bayer, family, order, gev1Name},
#include "LxBuffer/LxPixelFormats.inc"
#undef LX_PIXEL_FORMAT
};

/// The line of a format, or null for a number without one.
const PixelFormat *FindPixelFormat(LxPixelType aType);

/// Where one plane of an image lies. Formats that are not planar have one plane.
struct ImagePlane
{
    uint64_t mOffset = 0;    ///< Of its first line, in bytes from the start of the image.
    uint64_t mLineSize = 0;  ///< Bytes of a line that carry pixels.
    uint64_t mStride = 0;    ///< Bytes from line to line.
    uint32_t mHeight = 0;    ///< Lines.
};

/// How an image lies in memory, and how much memory it needs.
///
/// The one place that knows where lines begin. Every line begins on a byte: where the bits of a line of a packed format
/// do not fill its last byte, the rest of that byte is not used. So the size of an image does not depend on how lines
/// are grouped, line padding in bytes stays meaningful and lines can be read independently.
struct ImageLayout
{
    ImagePlane mPlanes[3];
    uint32_t mPlaneCount = 0;
    uint64_t mSize = 0;  ///< Of the whole image with its paddings, in bytes.
};

/// Describes an image. False (and the layout as it was) when the geometry has no size: width, height or bits per pixel
/// are 0, the size exceeds 64 bits, or a planar format comes with padding.
bool GetImageLayout(ImageLayout &aLayout, LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                    uint32_t aPaddingY);

}  // namespace LxDetail
