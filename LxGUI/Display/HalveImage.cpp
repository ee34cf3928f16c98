#include "LxGUI/Display/HalveImage.h"

#include <algorithm>
#include <cstring>

bool IsHalvedForUpload(uint32_t aWidth, uint32_t aHeight)
{
    return aWidth > MaxUploadLength || aHeight > MaxUploadLength;
}

bool HalveImage(const ILxImage &aImage, LxImage &aHalved)
{
    const uint64_t pixelSize = LxPixelTypeGetBitsPerPixel(aImage.GetPixelType()) / 8;
    const uint64_t stride = aImage.GetWidth() * pixelSize + aImage.GetPaddingX();
    const uint32_t width = aImage.GetWidth() / 2;
    const uint32_t height = std::max(aImage.GetHeight() / 2, 1u);
    const auto *input = static_cast<const uint8_t *>(aImage.GetDataPointer());
    if (pixelSize == 0 || !input || aImage.GetHeight() == 0) {
        return false;
    }
    // up to the last pixel that is read
    const uint64_t needed = 2 * (uint64_t{height} - 1) * stride + (2 * uint64_t{width} - 1) * pixelSize;
    if (width == 0 || aImage.GetDataSize() < needed || !aHalved.Alloc(width, height, aImage.GetPixelType()).IsOK()) {
        return false;
    }
    auto *output = static_cast<uint8_t *>(aHalved.GetDataPointer());
    for (uint32_t y = 0; y < height; ++y) {
        const uint8_t *line = input + 2 * y * stride;
        for (uint32_t x = 0; x < width; ++x) {
            std::memcpy(output, line + 2 * x * pixelSize, pixelSize);
            output += pixelSize;
        }
    }
    // packed pixels have more bits than were copied
    const auto *const start = static_cast<const uint8_t *>(aHalved.GetDataPointer());
    std::memset(output, 0, aHalved.GetDataSize() - static_cast<uint64_t>(output - start));
    return true;
}
