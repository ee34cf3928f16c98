#pragma once

// Internal: writes pixels in a camera's format.

#include <cstdint>
#include <string>
#include <vector>

#include "LxBuffer/LxPixelType.h"

namespace LxDetail
{

/// A colour with 16 bits a channel.
struct Color16
{
    uint16_t mRed = 0;
    uint16_t mGreen = 0;
    uint16_t mBlue = 0;
};

/// Writes lines of pixels in one of the PFNC formats that cameras send: Mono, Bayer, RGB, BGR, YUV 4:2:2 and 4:4:4, 8
/// to 16 bits, unpacked, "p" and "Packed".
class PixelEncoder
{
public:
    explicit PixelEncoder(LxPixelType aType);

    /// False when the format is none of those above.
    bool IsSupported() const { return mSupported; }
    /// Pixels in the smallest piece of a line that is whole bytes and whole groups of samples: 1, 2 or 4.
    uint32_t GetGroup() const { return mGroup; }
    uint32_t GetGroupBytes() const { return mGroupBytes; }
    /// 0 none, else as the entries of PixelColorFilter: 1 RG, 2 GB, 3 GR, 4 BG.
    uint32_t GetColorFilter() const;
    uint32_t GetBitsPerSample() const { return mBits; }

    /// Writes aCount pixels, a multiple of the group, of a line that begins at an even column.
    void Encode(const Color16 *aPixels, uint32_t aCount, bool aOddLine, uint8_t *aData) const;

private:
    enum class Sample : uint8_t
    {
        Luminance,
        Red,
        Green,
        Blue,
        U,
        V,
    };
    struct Slot
    {
        Sample mSample;
        uint8_t mPixel;  // of the group
    };

    uint16_t Take(const Slot &aSlot, const Color16 *aPixels) const;

    bool mSupported = false;
    bool mPackedLsb = false;
    bool mPackedGigE = false;
    uint32_t mBits = 8;
    uint32_t mGroup = 1;
    uint32_t mGroupBytes = 1;
    std::string mTile;
    std::vector<Slot> mSlots[2];  // of a group in even and odd lines
};

}  // namespace LxDetail
