#include "LxBuffer/LxPixelSamples.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <vector>

#include "LxBuffer/PixelFormatTable.h"

using LxDetail::ImageLayout;
using LxDetail::PixelFormat;
using LxDetail::PixelPacking;

namespace
{

constexpr size_t MostSamples = 4;

LxResult NotSupported(const PixelFormat *aFormat)
{
    return LxResult(
        LxResultCode::PixelFormatNotSupported,
        "The samples of " + std::string(aFormat ? aFormat->mName : "an unknown format") + " cannot be read.");
}

std::vector<std::string_view> SplitOrder(std::string_view aOrder)
{
    std::vector<std::string_view> names;
    for (size_t start = 0; start < aOrder.size();) {
        const size_t end = std::min(aOrder.find(' ', start), aOrder.size());
        names.push_back(aOrder.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

bool HasDigit(std::string_view aName)
{
    return aName.back() >= '0' && aName.back() <= '9';
}

/// Which samples of a line make a pixel: their names and their positions.
struct Pixel
{
    std::vector<std::string_view> mNames;
    std::vector<uint64_t> mPositions;
};

// Mono and Bayer formats have one sample a pixel; those with numbered luma have groups of pixels.
Pixel FindSamples(const PixelFormat &aFormat, uint32_t aX, uint32_t aY)
{
    if (aFormat.mFamily == "mono") {
        return {{""}, {aX}};
    }
    if (aFormat.mFamily == "bayer") {
        return {{aFormat.mBayerTile.substr(aY % 2 * 2 + aX % 2, 1)}, {aX}};
    }
    const std::vector<std::string_view> order = SplitOrder(aFormat.mOrder);
    const auto pixels =
        std::max<uint64_t>(1, static_cast<uint64_t>(std::count_if(order.begin(), order.end(), HasDigit)));
    Pixel pixel;
    for (size_t i = 0; i < order.size(); ++i) {
        const bool isNumbered = HasDigit(order[i]);
        if (!isNumbered || order[i].back() - '0' == static_cast<int>(aX % pixels)) {
            pixel.mNames.push_back(order[i].substr(0, order[i].size() - (isNumbered ? 1 : 0)));
            pixel.mPositions.push_back(aX / pixels * order.size() + i);
        }
    }
    return pixel;
}

/// The bits from a position of a stream on that begins with the least significant bit of its first byte.
uint64_t ReadBits(const uint8_t *aLine, uint64_t aPosition, unsigned aCount)
{
    uint64_t value = 0;
    for (unsigned i = 0; i < aCount; ++i) {
        const uint64_t bit = aPosition + i;
        value |= uint64_t{aLine[bit / 8] >> bit % 8 & 1u} << i;
    }
    return value;
}

// Two samples in three bytes: the upper eight bits of each, the lower bits of both between them.
uint64_t ReadGigEPacked(const uint8_t *aLine, uint64_t aPosition, unsigned aBits)
{
    const uint8_t *group = aLine + aPosition / 2 * 3;
    const bool isSecond = aPosition % 2 != 0;
    const unsigned low = aBits - 8;
    return uint64_t{group[isSecond ? 2 : 0]} << low | (group[1] >> (isSecond ? 4 : 0) & ((1u << low) - 1));
}

}  // namespace

LxResult LxReadPixelSamples(const ILxImage *aImage, uint32_t aX, uint32_t aY, LxPixelSamples &aSamples)
{
    if (!aImage || !aImage->GetDataPointer()) {
        return LxResult(LxResultCode::InvalidArgument, "There is no image.");
    }
    if (aX >= aImage->GetWidth() || aY >= aImage->GetHeight()) {
        return LxResult(LxResultCode::OutOfRange, "The pixel is outside the image.");
    }
    const PixelFormat *format = LxDetail::FindPixelFormat(aImage->GetPixelType());
    ImageLayout layout;
    if (!format || !LxDetail::GetImageLayout(layout, format->mType, aImage->GetWidth(), aImage->GetHeight(),
                                             aImage->GetPaddingX(), aImage->GetPaddingY()))
    {
        return NotSupported(format);
    }
    if (aImage->GetDataSize() < layout.mSize) {
        return LxResult(LxResultCode::BufferTooSmall, "The data of the image are shorter than its geometry.");
    }
    unsigned bits = 0;
    const char *const end = format->mBits.data() + format->mBits.size();
    const auto parsed = std::from_chars(format->mBits.data(), end, bits);
    const bool isSigned = parsed.ptr != end && *parsed.ptr == 's';
    const bool isColour = format->mFamily.starts_with("rgb") || format->mFamily.starts_with("bgr") ||
                          format->mFamily.starts_with("yuv") || format->mFamily.starts_with("ycbcr");
    const bool isSingle = format->mFamily == "mono" || format->mFamily == "bayer";
    const bool isPlanar = format->mPacking == PixelPacking::Planar;
    const bool isPacked = format->mPacking == PixelPacking::LsbPacked || format->mPacking == PixelPacking::LsbPacked32;
    if (bits == 0 || (parsed.ptr != end && !isSigned) || !(isColour || isSingle) ||
        (format->mPacking == PixelPacking::GigEPacked && !isSingle) ||
        !(isPlanar || isPacked || format->mPacking == PixelPacking::Unpacked ||
          format->mPacking == PixelPacking::GigEPacked))
    {
        return NotSupported(format);
    }
    const auto *data = static_cast<const uint8_t *>(aImage->GetDataPointer());
    const uint8_t *line = data + layout.mPlanes[0].mOffset + aY * layout.mPlanes[0].mStride;
    const unsigned wholeBits = (bits + 7) / 8 * 8;
    Pixel pixel = isPlanar ? Pixel{{"R", "G", "B"}, {aX, aX, aX}} : FindSamples(*format, aX, aY);
    LxPixelSamples samples;
    samples.mCount = static_cast<uint32_t>(std::min(pixel.mNames.size(), MostSamples));
    for (uint32_t i = 0; i < samples.mCount; ++i) {
        const uint64_t position = pixel.mPositions[i];
        uint64_t value = 0;
        if (isPlanar) {
            const LxDetail::ImagePlane &plane = layout.mPlanes[i];
            value = ReadBits(data + plane.mOffset + aY * plane.mStride, position * wholeBits, bits);
        }
        else if (format->mPacking == PixelPacking::LsbPacked32) {
            value = ReadBits(line, uint64_t{aX} * 32 + i * bits, bits);
        }
        else if (format->mPacking == PixelPacking::GigEPacked) {
            value = ReadGigEPacked(line, position, bits);
        }
        else {
            value = ReadBits(line, position * (isPacked ? bits : wholeBits), bits);
        }
        const bool isNegative = isSigned && (value >> (bits - 1) & 1) != 0;
        samples.mValues[i] = static_cast<int64_t>(value) - (isNegative ? int64_t{1} << bits : 0);
        samples.mNames[i] = std::string(pixel.mNames[i]);
    }
    aSamples = samples;
    return LxResult();
}
