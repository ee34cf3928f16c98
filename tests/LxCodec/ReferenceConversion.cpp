#include "ReferenceConversion.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

namespace
{

struct Definition
{
    std::string mBits;
    std::string mPacking;
    std::string mTile;
    std::string mFamily;
    std::string mOrder;
};

const Definition &DefinitionOf(LxPixelType aType)
{
    static const std::map<LxPixelType, Definition> definitions = {
#define LX_PIXEL_FORMAT(name, value, bits, packing, bayer, family, order, gev1Name) \
    {LxPixelType::name, {bits, #packing, bayer, family, order}},
#include "LxBuffer/LxPixelFormats.inc"
#undef LX_PIXEL_FORMAT
    };
    return definitions.at(aType);
}

uint64_t Bytes(uint64_t aBits)
{
    return (aBits + 7) / 8;
}

bool StartsWith(const std::string &aText, const std::string &aStart)
{
    return aText.compare(0, aStart.size(), aStart) == 0;
}

bool EndsWith(const std::string &aText, const std::string &aEnd)
{
    return aText.size() >= aEnd.size() && aText.compare(aText.size() - aEnd.size(), aEnd.size(), aEnd) == 0;
}

// 8 bits of a sample: its first 8, or its bits over and over.
unsigned EightBits(unsigned aValue, unsigned aBits)
{
    unsigned result = 0;
    for (unsigned i = 0; i < 8; ++i) {
        const unsigned bit = aBits - 1 - i % aBits;
        result = result << 1 | (aValue >> bit & 1);
    }
    return result;
}

int64_t Mirror(int64_t aIndex, int64_t aCount)
{
    if (aCount == 1) {
        return 0;
    }
    const int64_t folded = std::abs(aIndex);
    return folded < aCount ? folded : 2 * (aCount - 1) - folded;
}

double Limited(double aValue)
{
    return std::clamp(aValue, 0.0, 255.0);
}

}  // namespace

ReferenceConversion::ReferenceConversion(LxPixelType aType, const uint8_t *aData, uint32_t aWidth, uint32_t aHeight,
                                         uint32_t aPaddingX)
    : mType(aType), mData(aData), mWidth(aWidth), mHeight(aHeight)
{
    const Definition &definition = DefinitionOf(aType);
    mPacking = definition.mPacking;
    mBits = definition.mBits;
    mTile = definition.mTile;
    mFamily = definition.mFamily;
    std::istringstream order(definition.mOrder);
    for (std::string word; order >> word;) {
        mOrder.push_back(word);
    }
    mPlanes = PlanesOf(aType, aWidth, aHeight, aPaddingX, nullptr);
}

uint64_t ReferenceConversion::SizeOf(LxPixelType aType, uint32_t aWidth, uint32_t aHeight, uint32_t aPaddingX,
                                     uint32_t aPaddingY)
{
    uint64_t size = 0;
    PlanesOf(aType, aWidth, aHeight, aPaddingX, &size);
    return size + aPaddingY;
}

std::vector<ReferenceConversion::Plane> ReferenceConversion::PlanesOf(LxPixelType aType, uint32_t aWidth,
                                                                      uint32_t aHeight, uint32_t aPaddingX,
                                                                      uint64_t *aSize)
{
    const Definition &definition = DefinitionOf(aType);
    const uint64_t bitsPerPixel = static_cast<uint32_t>(aType) >> 16 & 0xFF;
    std::vector<Plane> planes;
    uint64_t size = 0;
    if (definition.mPacking == "Planar") {
        const uint64_t line = definition.mBits == "8" ? aWidth : 2 * uint64_t{aWidth};
        for (int i = 0; i < 3; ++i) {
            planes.push_back({size, line, aWidth});
            size += line * aHeight;
        }
    }
    else if (definition.mPacking == "SemiPlanar") {
        const bool halfHeight = definition.mFamily == "ycbcr420";
        const uint64_t chromaLine = 2 * ((uint64_t{aWidth} + 1) / 2);
        planes.push_back({0, aWidth, aWidth});
        planes.push_back({uint64_t{aWidth} * aHeight, chromaLine, chromaLine});
        size = planes[1].mOffset + chromaLine * (halfHeight ? (uint64_t{aHeight} + 1) / 2 : aHeight);
    }
    else {
        const uint64_t line = Bytes(aWidth * bitsPerPixel);
        uint64_t samples = aWidth;
        if (definition.mOrder.find("Y3") != std::string::npos) {
            samples = line;  // 8-bit samples, 6 for 4 pixels
        }
        else if (definition.mOrder.find("Y1") != std::string::npos) {
            samples = 2 * uint64_t{aWidth};
        }
        else if (definition.mOrder != "-") {
            samples = aWidth *
                      (1 + static_cast<uint64_t>(std::count(definition.mOrder.begin(), definition.mOrder.end(), ' ')));
        }
        planes.push_back({0, line + aPaddingX, samples});
        size = (line + aPaddingX) * aHeight;
    }
    if (aSize) {
        *aSize = size;
    }
    return planes;
}

// A bit of a byte stream that fills each byte from its least significant bit.
unsigned ReferenceConversion::Bit(uint64_t aByte, uint64_t aBit) const
{
    return mData[aByte + aBit / 8] >> (aBit % 8) & 1u;
}

unsigned ReferenceConversion::Sample(uint32_t aPlane, uint32_t aLine, uint64_t aIndex) const
{
    const uint64_t line = mPlanes[aPlane].mOffset + aLine * mPlanes[aPlane].mStride;
    const auto bitsAt = [this, line](uint64_t aFirst, unsigned aCount) {
        unsigned value = 0;
        for (unsigned i = 0; i < aCount; ++i) {
            value |= Bit(line, aFirst + i) << i;
        }
        return value;
    };
    if (mBits == "8s") {
        return static_cast<unsigned>(static_cast<int8_t>(mData[line + aIndex]) + 128);
    }
    if (mBits == "5,6,5") {
        constexpr unsigned kFirst[] = {0, 5, 11};
        constexpr unsigned kCount[] = {5, 6, 5};
        const uint64_t component = aIndex % 3;
        return EightBits(bitsAt(aIndex / 3 * 16 + kFirst[component], kCount[component]), kCount[component]);
    }
    const auto bits = static_cast<unsigned>(std::stoi(mBits));
    unsigned value = 0;
    if (mType == LxPixelType::RGB10V1Packed) {
        // Low bits of the components in the first byte; high bits of the first component in the last byte.
        const uint64_t component = aIndex % 3;
        const uint64_t pixel = aIndex / 3 * 4;
        value = static_cast<unsigned>(mData[line + pixel + 3 - component]) << 2 | bitsAt(pixel * 8 + component * 2, 2);
    }
    else if (Is("GigEPacked")) {
        const uint64_t triple = aIndex / 2 * 3;
        const unsigned low = bits - 8;
        value = static_cast<unsigned>(mData[line + triple + (aIndex % 2) * 2]) << low |
                bitsAt((triple + 1) * 8 + (aIndex % 2) * 4, low);
    }
    else if (Is("LsbPacked")) {
        value = bitsAt(aIndex * bits, bits);
    }
    else if (Is("LsbPacked32")) {
        value = bitsAt(aIndex / 3 * 32 + aIndex % 3 * 10, 10);
    }
    else {
        const unsigned container = bits == 32 ? 32 : bits > 8 ? 16 : 8;
        value = bitsAt(aIndex * container, bits);
    }
    return EightBits(value, bits);
}

// A component of a pixel by its place in the order of samples.
unsigned ReferenceConversion::Component(uint32_t aX, uint32_t aY, const std::string &aName) const
{
    const auto place = std::find(mOrder.begin(), mOrder.end(), aName) - mOrder.begin();
    return Sample(0, aY, aX * mOrder.size() + static_cast<uint64_t>(place));
}

// A chroma sample that a pixel shares with those of its group; of the group before where the line ends too early.
unsigned ReferenceConversion::Chroma(uint32_t aX, uint32_t aY, const std::string &aName) const
{
    const uint32_t pixels = mOrder.size() == 3 ? 1 : mOrder.size() == 4 ? 2 : 4;
    const auto place = static_cast<uint64_t>(std::find(mOrder.begin(), mOrder.end(), aName) - mOrder.begin());
    const uint32_t group = aX / pixels;
    if (group * mOrder.size() + place < mPlanes[0].mSamples) {
        return Sample(0, aY, group * mOrder.size() + place);
    }
    return group == 0 ? 128 : Sample(0, aY, (group - 1) * mOrder.size() + place);
}

ReferencePixel ReferenceConversion::Yuv(unsigned aY, unsigned aU, unsigned aV) const
{
    double kr = 0.299;
    double kb = 0.114;
    if (EndsWith(mFamily, "-709")) {
        kr = 0.2126;
        kb = 0.0722;
    }
    else if (EndsWith(mFamily, "-2020")) {
        kr = 0.2627;
        kb = 0.0593;
    }
    const bool limited = mFamily.find('-') != std::string::npos;
    const double y = limited ? (aY - 16.0) / 219.0 : aY / 255.0;
    const double u = (aU - 128.0) / (limited ? 224.0 : 255.0);
    const double v = (aV - 128.0) / (limited ? 224.0 : 255.0);
    const double red = y + 2 * (1 - kr) * v;
    const double blue = y + 2 * (1 - kb) * u;
    const double green = (y - kr * red - kb * blue) / (1 - kr - kb);
    return {Limited(255 * blue), Limited(255 * green), Limited(255 * red), 0.501};
}

char ReferenceConversion::TileColour(int64_t aX, int64_t aY) const
{
    return mTile[static_cast<size_t>((aY & 1) * 2 + (aX & 1))];
}

// The mean of the nearest samples of a colour: the pixel itself, else those beside, above and below, else those at the
// corners.
unsigned ReferenceConversion::BayerColour(uint32_t aX, uint32_t aY, char aColour) const
{
    const auto mean = [&](const std::vector<std::pair<int, int>> &aSteps) {
        unsigned sum = 0;
        unsigned count = 0;
        for (const auto &[dx, dy] : aSteps) {
            if (TileColour(int64_t{aX} + dx, int64_t{aY} + dy) == aColour) {
                sum += Sample(0, static_cast<uint32_t>(Mirror(int64_t{aY} + dy, mHeight)),
                              static_cast<uint64_t>(Mirror(int64_t{aX} + dx, mWidth)));
                ++count;
            }
        }
        return count == 0 ? -1 : static_cast<int>((sum + count / 2) / count);
    };
    int result = mean({{0, 0}});
    if (result < 0) {
        result = mean({{-1, 0}, {1, 0}, {0, -1}, {0, 1}});
    }
    if (result < 0) {
        result = mean({{-1, -1}, {1, -1}, {-1, 1}, {1, 1}});
    }
    return static_cast<unsigned>(result);
}

ReferencePixel ReferenceConversion::GetPixel(uint32_t aX, uint32_t aY) const
{
    const auto exactly = [](unsigned aBlue, unsigned aGreen, unsigned aRed) {
        return ReferencePixel{double(aBlue), double(aGreen), double(aRed), 0.0};
    };
    if (mFamily == "mono") {
        const unsigned grey = Sample(0, aY, aX);
        return exactly(grey, grey, grey);
    }
    if (mFamily == "bayer") {
        return exactly(BayerColour(aX, aY, 'B'), BayerColour(aX, aY, 'G'), BayerColour(aX, aY, 'R'));
    }
    if (Is("Planar")) {
        return exactly(Sample(2, aY, aX), Sample(1, aY, aX), Sample(0, aY, aX));
    }
    if (Is("SemiPlanar")) {
        const uint32_t chromaLine = mFamily == "ycbcr420" ? aY / 2 : aY;
        const unsigned first = Sample(1, chromaLine, aX / 2 * 2);
        const unsigned second = Sample(1, chromaLine, aX / 2 * 2 + 1);
        const bool redFirst = mOrder.back() == "Cb";
        return Yuv(Sample(0, aY, aX), redFirst ? second : first, redFirst ? first : second);
    }
    if (StartsWith(mFamily, "yuv") || StartsWith(mFamily, "ycbcr")) {
        const bool isYuv = StartsWith(mFamily, "yuv");
        unsigned luma = 0;
        if (mOrder.size() == 3) {
            luma = Component(aX, aY, "Y");
        }
        else {
            const uint32_t pixels = mOrder.size() == 4 ? 2 : 4;
            const auto place =
                std::find(mOrder.begin(), mOrder.end(), "Y" + std::to_string(aX % pixels)) - mOrder.begin();
            luma = Sample(0, aY, aX / pixels * mOrder.size() + static_cast<uint64_t>(place));
        }
        return Yuv(luma, Chroma(aX, aY, isYuv ? "U" : "Cb"), Chroma(aX, aY, isYuv ? "V" : "Cr"));
    }
    return exactly(Component(aX, aY, "B"), Component(aX, aY, "G"), Component(aX, aY, "R"));
}
