#include "LxBuffer/PixelFormatTable.h"

#include <algorithm>

namespace LxDetail
{

namespace
{

// Sets aResult to a * b + c unless that exceeds 64 bits.
bool MultiplyAdd(uint64_t &aResult, uint64_t aA, uint64_t aB, uint64_t aC)
{
    uint64_t product;
    return !__builtin_mul_overflow(aA, aB, &product) && !__builtin_add_overflow(product, aC, &aResult);
}

uint64_t BytesOfBits(uint64_t aBits)
{
    return aBits / 8 + (aBits % 8 ? 1 : 0);
}

// Adds a plane behind the ones that the layout has.
bool AddPlane(ImageLayout &aLayout, uint64_t aLineSize, uint32_t aPaddingX, uint32_t aHeight)
{
    ImagePlane &plane = aLayout.mPlanes[aLayout.mPlaneCount++];
    plane.mOffset = aLayout.mSize;
    plane.mLineSize = aLineSize;
    plane.mStride = aLineSize + aPaddingX;  // at most 2^32 pixels of 255 bits and 2^32 bytes: fits
    plane.mHeight = aHeight;
    return MultiplyAdd(aLayout.mSize, plane.mStride, aHeight, aLayout.mSize);
}

uint32_t PlaneCount(const PixelFormat &aFormat)
{
    return 1 + static_cast<uint32_t>(std::count(aFormat.mOrder.begin(), aFormat.mOrder.end(), ';'));
}

}  // namespace

const PixelFormat *FindPixelFormat(LxPixelType aType)
{
    const auto found = std::find_if(std::begin(PixelFormats), std::end(PixelFormats),
                                    [aType](const PixelFormat &aFormat) { return aFormat.mType == aType; });
    return found == std::end(PixelFormats) ? nullptr : found;
}

bool GetImageLayout(ImageLayout &aLayout, LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                    uint32_t aPaddingY)
{
    const uint64_t bitsPerPixel = LxPixelTypeGetBitsPerPixel(aType);
    if (bitsPerPixel == 0 || aWidth == 0 || aHeight == 0) {
        return false;
    }
    ImageLayout layout;
    bool fits = true;
    const PixelFormat *format = FindPixelFormat(aType);
    const PixelPacking packing = format ? format->mPacking : PixelPacking::Unknown;
    if (packing == PixelPacking::Planar || packing == PixelPacking::PlanarLsbPacked) {
        const uint32_t count = PlaneCount(*format);
        for (uint32_t i = 0; i < count; ++i) {
            fits = fits && AddPlane(layout, BytesOfBits(aWidth * (bitsPerPixel / count)), 0, aHeight);
        }
    }
    else if (packing == PixelPacking::SemiPlanar) {
        // A plane of luma, then one of chroma pairs for every two pixels; 12 bits per pixel: every two lines too.
        const uint64_t chromaLine = (uint64_t{aWidth} + 1) / 2 * 2;
        const uint32_t chromaHeight = bitsPerPixel == 12 ? aHeight / 2 + aHeight % 2 : aHeight;
        fits = AddPlane(layout, aWidth, 0, aHeight) && AddPlane(layout, chromaLine, 0, chromaHeight);
    }
    else {
        fits = AddPlane(layout, BytesOfBits(aWidth * bitsPerPixel), aPaddingX, aHeight) &&
               MultiplyAdd(layout.mSize, layout.mSize, 1, aPaddingY);
    }
    if (!fits || (layout.mPlaneCount > 1 && (aPaddingX != 0 || aPaddingY != 0))) {
        return false;
    }
    aLayout = layout;
    return true;
}

}  // namespace LxDetail
