#include "Backends/Simulation/PixelEncoder.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "LxBuffer/PixelFormatTable.h"

namespace LxDetail
{

namespace
{

bool IsOneOf(std::string_view aText, std::initializer_list<const char *> aTexts)
{
    for (const char *text : aTexts) {
        if (aText == text) {
            return true;
        }
    }
    return false;
}

uint16_t Clamp(int aValue)
{
    return static_cast<uint16_t>(aValue < 0 ? 0 : aValue > 65535 ? 65535 : aValue);
}

}  // namespace

PixelEncoder::PixelEncoder(LxPixelType aType)
{
    const PixelFormat *format = FindPixelFormat(aType);
    if (format == nullptr || !IsOneOf(format->mFamily, {"mono", "bayer", "rgb", "bgr", "yuv422", "yuv444"}) ||
        format->mBits.find_first_not_of("0123456789") != std::string_view::npos)
    {
        return;
    }
    mBits = static_cast<uint32_t>(std::stoi(std::string(format->mBits)));
    mPackedLsb = format->mPacking == PixelPacking::LsbPacked;
    mPackedGigE = format->mPacking == PixelPacking::GigEPacked;
    if (mBits < 8 || mBits > 16 || (!mPackedLsb && !mPackedGigE && format->mPacking != PixelPacking::Unpacked)) {
        return;
    }
    const std::string_view family = format->mFamily;
    std::vector<Slot> slots;
    if (family == "bayer") {
        mTile = format->mBayerTile;
        for (int line = 0; line < 2; ++line) {
            for (uint8_t column = 0; column < 2; ++column) {
                const char color = mTile[static_cast<size_t>(line) * 2 + column];
                mSlots[line].push_back({color == 'R'   ? Sample::Red
                                        : color == 'G' ? Sample::Green
                                                       : Sample::Blue,
                                        column});
            }
        }
        mGroup = 2;
    }
    else {
        std::istringstream order(family == "mono" ? "Y" : std::string(format->mOrder));
        for (std::string name; order >> name;) {
            const Sample sample = name[0] == 'R'   ? Sample::Red
                                  : name[0] == 'G' ? Sample::Green
                                  : name[0] == 'B' ? Sample::Blue
                                  : name[0] == 'U' ? Sample::U
                                  : name[0] == 'V' ? Sample::V
                                                   : Sample::Luminance;
            const uint8_t pixel = name.size() > 1 ? static_cast<uint8_t>(name[1] - '0') : uint8_t(0);
            mGroup = std::max<uint32_t>(mGroup, pixel + 1u);
            slots.push_back({sample, pixel});
        }
        mSlots[0] = mSlots[1] = slots;
    }
    // Repeat the group until it fills whole bytes, and pairs of samples where these are packed together.
    const size_t samples = mSlots[0].size();
    const uint32_t pixels = mGroup;
    const auto bitsOf = [&] {
        return mPackedGigE  ? mSlots[0].size() * 12
               : mPackedLsb ? mSlots[0].size() * mBits
                            : mSlots[0].size() * (mBits > 8 ? 16 : 8);
    };
    while (bitsOf() % 8 != 0 || (mPackedGigE && mSlots[0].size() % 2 != 0)) {
        for (auto &line : mSlots) {
            for (size_t i = 0; i < samples; ++i) {
                line.push_back({line[i].mSample, static_cast<uint8_t>(line[i].mPixel + mGroup)});
            }
        }
        mGroup += pixels;
    }
    mGroupBytes = static_cast<uint32_t>(bitsOf() / 8);
    mSupported = !(mPackedGigE && mBits != 10 && mBits != 12) && mGroup <= 4;
}

uint32_t PixelEncoder::GetColorFilter() const
{
    return mTile == "RGGB" ? 1 : mTile == "GBRG" ? 2 : mTile == "GRBG" ? 3 : mTile == "BGGR" ? 4 : 0;
}

uint16_t PixelEncoder::Take(const Slot &aSlot, const Color16 *aPixels) const
{
    const Color16 &pixel = aPixels[aSlot.mPixel];
    const int red = pixel.mRed;
    const int green = pixel.mGreen;
    const int blue = pixel.mBlue;
    // ITU-R BT.601 in full range.
    const int luminance = (red * 299 + green * 587 + blue * 114) / 1000;
    switch (aSlot.mSample) {
        case Sample::Red:
            return pixel.mRed;
        case Sample::Green:
            return pixel.mGreen;
        case Sample::Blue:
            return pixel.mBlue;
        case Sample::U:
            return Clamp(32768 + (blue - luminance) * 564 / 1000);
        case Sample::V:
            return Clamp(32768 + (red - luminance) * 713 / 1000);
        case Sample::Luminance:
            break;
    }
    return static_cast<uint16_t>(luminance);
}

void PixelEncoder::Encode(const Color16 *aPixels, uint32_t aCount, bool aOddLine, uint8_t *aData) const
{
    const std::vector<Slot> &slots = mSlots[aOddLine ? 1 : 0];
    const uint32_t shift = 16 - mBits;
    for (uint32_t at = 0; at + mGroup <= aCount; at += mGroup, aData += mGroupBytes) {
        const Color16 *pixels = aPixels + at;
        uint8_t *data = aData;
        if (mPackedGigE) {
            for (size_t i = 0; i + 1 < slots.size(); i += 2) {
                const uint32_t first = Take(slots[i], pixels) >> shift;
                const uint32_t second = Take(slots[i + 1], pixels) >> shift;
                const uint32_t low = mBits - 8;  // bits in the shared middle byte
                const uint32_t mask = (1u << low) - 1;
                *data++ = static_cast<uint8_t>(first >> low);
                *data++ = static_cast<uint8_t>((first & mask) | (second & mask) << 4);
                *data++ = static_cast<uint8_t>(second >> low);
            }
        }
        else if (mPackedLsb) {
            uint32_t stream = 0;
            uint32_t bits = 0;
            for (const Slot &slot : slots) {
                stream |= static_cast<uint32_t>(Take(slot, pixels) >> shift) << bits;
                for (bits += mBits; bits >= 8; bits -= 8, stream >>= 8) {
                    *data++ = static_cast<uint8_t>(stream);
                }
            }
        }
        else {
            for (const Slot &slot : slots) {
                const auto value = static_cast<uint16_t>(Take(slot, pixels) >> shift);
                *data++ = static_cast<uint8_t>(value);
                if (mBits > 8) {
                    *data++ = static_cast<uint8_t>(value >> 8);
                }
            }
        }
    }
}

}  // namespace LxDetail
