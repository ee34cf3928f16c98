#include "LxBuffer/LxPixelType.h"

#include <cstdio>

#include "LxBuffer/PixelFormatTable.h"

uint32_t LxPixelTypeGetBitsPerPixel(LxPixelType aType)
{
    return (static_cast<uint32_t>(aType) >> 16) & 0xFF;
}

LxString LxPixelTypeToString(LxPixelType aType)
{
    if (aType == LxPixelType::None) {
        return "None";
    }
    if (const LxDetail::PixelFormat *format = LxDetail::FindPixelFormat(aType)) {
        return std::string(format->mName);
    }
    char text[11];
    std::snprintf(text, sizeof(text), "0x%08X", static_cast<uint32_t>(aType));
    return text;
}

LxPixelType LxPixelTypeFromString(const LxString &aName)
{
    if (aName == "-") {  // the table's mark for "no GigE Vision 1.x name"
        return LxPixelType::None;
    }
    for (const LxDetail::PixelFormat &format : LxDetail::PixelFormats) {
        if (format.mName == aName.GetString() || format.mGev1Name == aName.GetString()) {
            return format.mType;
        }
    }
    return LxPixelType::None;
}

uint64_t LxPixelTypeGetLineSize(LxPixelType aType, uint32_t aWidth)
{
    LxDetail::ImageLayout layout;
    return LxDetail::GetImageLayout(layout, aType, aWidth, 1, 0, 0) ? layout.mPlanes[0].mLineSize : 0;
}

uint64_t LxPixelTypeGetImageSize(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                                 uint32_t aPaddingY)
{
    LxDetail::ImageLayout layout;
    return LxDetail::GetImageLayout(layout, aType, aWidth, aHeight, aPaddingX, aPaddingY) ? layout.mSize : 0;
}
