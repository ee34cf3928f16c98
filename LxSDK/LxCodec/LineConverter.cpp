#include "LxCodec/LineConverter.h"

#include <cstring>

namespace LxDetail
{

namespace
{

// Scratch memory is divided into lines of one byte per pixel. Lines 0 to 3 hold samples, 4 to 6 luma and chroma, 7 to 9
// red, green and blue.
constexpr uint32_t kScratchLines = 10;
constexpr uint32_t kSamplesLine = 0;
constexpr uint32_t kYuvLine = 4;
constexpr uint32_t kRgbLine = 7;
// Room on both sides of a line: the mirrored neighbours of a mosaic, and lines apart from each other.
constexpr uint64_t kMargin = 16;

uint64_t ScratchStride(uint32_t aWidth)
{
    return uint64_t{aWidth} + 2 * kMargin;
}

}  // namespace

uint64_t LineConverter::GetScratchSize(uint32_t aWidth)
{
    return kScratchLines * ScratchStride(aWidth);
}

LineConverter::LineConverter(const Conversion &aConversion, uint8_t *aScratch)
    : mConversion(aConversion), mScratch(aScratch)
{
}

void LineConverter::Convert(uint32_t aFirst, uint32_t aEnd)
{
    switch (mConversion.mPlan.mModel) {
        case ColourModel::Packed:
            return ConvertPacked(aFirst, aEnd);
        case ColourModel::PlanarRgb:
            return ConvertPlanarRgb(aFirst, aEnd);
        case ColourModel::Yuv:
            return ConvertYuv(aFirst, aEnd);
        case ColourModel::SemiPlanarYuv:
            return ConvertSemiPlanarYuv(aFirst, aEnd);
        case ColourModel::Bayer:
            return ConvertBayer(aFirst, aEnd);
    }
}

const uint8_t *LineConverter::GetLine(uint32_t aPlane, uint64_t aLine) const
{
    const ImagePlane &plane = mConversion.mLayout.mPlanes[aPlane];
    return mConversion.mInput + plane.mOffset + aLine * plane.mStride;
}

uint8_t *LineConverter::GetOutputLine(uint32_t aLine) const
{
    return mConversion.mOutput + aLine * mConversion.mOutputStride;
}

uint8_t *LineConverter::GetScratchLine(uint32_t aIndex) const
{
    return mScratch + aIndex * ScratchStride(mConversion.mWidth) + kMargin;
}

// The samples of a line: in the line itself, or unpacked into aScratch.
const uint8_t *LineConverter::Unpack(const uint8_t *aLine, uint8_t *aScratch, size_t aCount) const
{
    if (!mConversion.mPlan.mUnpack) {
        return aLine;
    }
    mConversion.mPlan.mUnpack(aLine, aScratch, aCount);
    return aScratch;
}

void LineConverter::YuvLineToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, uint8_t *aOut)
{
    uint8_t *const red = GetScratchLine(kRgbLine);
    uint8_t *const green = GetScratchLine(kRgbLine + 1);
    uint8_t *const blue = GetScratchLine(kRgbLine + 2);
    YuvToPlanes(aY, aU, aV, *mConversion.mPlan.mMatrix, red, green, blue, mConversion.mWidth);
    PlanesToBgra(red, green, blue, aOut, mConversion.mWidth);
}

void LineConverter::ConvertPacked(uint32_t aFirst, uint32_t aEnd)
{
    const ConversionPlan &plan = mConversion.mPlan;
    const size_t count = size_t{mConversion.mWidth} * (plan.mSamplesPerTwoPixels / 2);
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        const uint8_t *const samples = Unpack(GetLine(0, line), GetScratchLine(kSamplesLine), count);
        plan.mPacked(samples, GetOutputLine(line), mConversion.mWidth);
    }
}

void LineConverter::ConvertPlanarRgb(uint32_t aFirst, uint32_t aEnd)
{
    const size_t width = mConversion.mWidth;
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        const uint8_t *colours[3];
        for (uint32_t i = 0; i < 3; ++i) {
            colours[i] = Unpack(GetLine(i, line), GetScratchLine(kRgbLine + i), width);
        }
        PlanesToBgra(colours[0], colours[1], colours[2], GetOutputLine(line), width);
    }
}

void LineConverter::ConvertYuv(uint32_t aFirst, uint32_t aEnd)
{
    const ConversionPlan &plan = mConversion.mPlan;
    const size_t count = (size_t{mConversion.mWidth} * plan.mSamplesPerTwoPixels + 1) / 2;
    uint8_t *const y = GetScratchLine(kYuvLine);
    uint8_t *const u = GetScratchLine(kYuvLine + 1);
    uint8_t *const v = GetScratchLine(kYuvLine + 2);
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        const uint8_t *const samples = Unpack(GetLine(0, line), GetScratchLine(kSamplesLine), count);
        plan.mSplit(samples, count, y, u, v, mConversion.mWidth);
        YuvLineToBgra(y, u, v, GetOutputLine(line));
    }
}

void LineConverter::ConvertSemiPlanarYuv(uint32_t aFirst, uint32_t aEnd)
{
    // A chroma line serves two lines of the image where the chroma plane has half as many.
    const uint32_t linesPerChroma = mConversion.mLayout.mPlanes[1].mHeight < mConversion.mHeight ? 2 : 1;
    uint8_t *const u = GetScratchLine(kYuvLine + 1);
    uint8_t *const v = GetScratchLine(kYuvLine + 2);
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        const uint8_t *const pairs = GetLine(1, line / linesPerChroma);
        if (mConversion.mPlan.mSwapChroma) {
            SplitChromaPairs(pairs, v, u, mConversion.mWidth);
        }
        else {
            SplitChromaPairs(pairs, u, v, mConversion.mWidth);
        }
        YuvLineToBgra(GetLine(0, line), u, v, GetOutputLine(line));
    }
}

// Unpacks a line with a mirrored sample on each side.
void LineConverter::UnpackBayerLine(uint32_t aLine, uint8_t *aSamples) const
{
    const uint32_t width = mConversion.mWidth;
    const uint8_t *const samples = Unpack(GetLine(0, aLine), aSamples, width);
    if (samples != aSamples) {
        std::memcpy(aSamples, samples, width);
    }
    aSamples[-1] = aSamples[MirrorIndex(-1, width)];
    aSamples[width] = aSamples[MirrorIndex(width, width)];
}

void LineConverter::ConvertBayer(uint32_t aFirst, uint32_t aEnd)
{
    const uint32_t width = mConversion.mWidth;
    const uint32_t height = mConversion.mHeight;
    uint8_t *const mask = GetScratchLine(kYuvLine);
    for (uint32_t i = 0; i <= width; ++i) {
        mask[i] = i % 2 == 0 ? 255 : 0;
    }
    uint8_t *const red = GetScratchLine(kRgbLine);
    uint8_t *const green = GetScratchLine(kRgbLine + 1);
    uint8_t *const blue = GetScratchLine(kRgbLine + 2);
    // Three unpacked lines go round: line n lies in slot n mod 3.
    const auto slot = [this](uint32_t aLine) { return GetScratchLine(kSamplesLine + aLine % 3); };
    if (aFirst > 0) {
        UnpackBayerLine(aFirst - 1, slot(aFirst - 1));
    }
    UnpackBayerLine(aFirst, slot(aFirst));
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        if (line + 1 < height) {
            UnpackBayerLine(line + 1, slot(line + 1));
        }
        BayerLine colours = mConversion.mPlan.mFirstLine;
        if (line % 2 != 0) {
            colours.mHasRed = !colours.mHasRed;
            colours.mStartsGreen = !colours.mStartsGreen;
        }
        DemosaicLine(slot(MirrorIndex(int64_t{line} - 1, height)), slot(line),
                     slot(MirrorIndex(int64_t{line} + 1, height)), colours, mask, red, green, blue, width);
        PlanesToBgra(red, green, blue, GetOutputLine(line), width);
    }
}

}  // namespace LxDetail
