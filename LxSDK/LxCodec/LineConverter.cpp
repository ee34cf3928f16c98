#include "LxCodec/LineConverter.h"

#include <hwy/cache_control.h>

#include <algorithm>

namespace LxDetail
{

namespace
{

// Bytes from one unpacked mosaic line to the next. The same place of three lines is far apart within pages of 4096
// bytes, because processors take a load for one of what was just stored at the same place of another page.
uint64_t BayerStride(uint32_t aWidth)
{
    constexpr uint64_t kPage = 4096;
    constexpr uint64_t kApart = 1408;
    return (uint64_t{aWidth} + kPage - 1) / kPage * kPage + kApart;
}

// The line that stands for line aIndex, which is -1 to aCount, of aCount lines: mirrored at the first and the last, so
// that the colours of the mosaic are kept. A single line stands for its neighbours too.
uint32_t MirrorLine(int64_t aIndex, uint32_t aCount)
{
    if (aCount == 1) {
        return 0;
    }
    if (aIndex < 0) {
        return 1;
    }
    return aIndex < aCount ? static_cast<uint32_t>(aIndex) : aCount - 2;
}

// Asks for memory that is read soon. While stores past the caches wait for the memory, a load that must wait for it too
// is late.
void Prefetch(const uint8_t *aFrom, size_t aSize)
{
    constexpr size_t kCacheLine = 64;
    for (size_t i = 0; i < aSize; i += kCacheLine) {
        hwy::Prefetch(aFrom + i);
    }
}

}  // namespace

uint64_t LineConverter::GetScratchSize(const Conversion &aConversion)
{
    return aConversion.mPlan.mModel == ColourModel::Bayer && aConversion.mPlan.mLayout != SampleLayout::Bytes
               ? kBayerSlots * BayerStride(aConversion.mWidth)
               : 0;
}

LineConverter::LineConverter(const Conversion &aConversion, uint8_t *aScratch)
    : mConversion(aConversion),
      mPlan(aConversion.mPlan),
      mIsAligned(reinterpret_cast<uintptr_t>(aConversion.mOutput) % kStreamUnit == 0 &&
                 aConversion.mOutputStride % kStreamUnit == 0),
      mInputEnd(aConversion.mInput + aConversion.mLayout.mSize),
      mKernels(aConversion.mStream && mIsAligned ? GetStreamingKernels() : GetConversionKernels()),
      mUnpack(mKernels.mUnpack[static_cast<size_t>(mPlan.mLayout)]),
      mWriter(mKernels),
      mBayerLines(aScratch)
{
}

void LineConverter::Convert(uint32_t aFirst, uint32_t aEnd)
{
    using Method = void (LineConverter::*)(uint32_t);
    constexpr Method kMethods[] = {&LineConverter::ConvertMono,      &LineConverter::ConvertPacked,
                                   &LineConverter::ConvertPlanarRgb, &LineConverter::ConvertYuv,
                                   &LineConverter::ConvertYuvPairs,  &LineConverter::ConvertSemiPlanarYuv,
                                   &LineConverter::ConvertBayer};
    mBayerNext = (aFirst > 0 ? aFirst - 1 : 0) * GetPieceCount();
    mBayerEnd = std::min(uint64_t{aEnd} + 1, uint64_t{mConversion.mHeight}) * GetPieceCount();
    const Method method = kMethods[static_cast<size_t>(mPlan.mModel)];
    for (uint32_t line = aFirst; line < aEnd; ++line) {
        (this->*method)(line);
    }
    if (mConversion.mStream) {
        mWriter.Finish();
    }
}

const uint8_t *LineConverter::GetLine(uint32_t aPlane, uint64_t aLine) const
{
    const ImagePlane &plane = mConversion.mLayout.mPlanes[aPlane];
    return mConversion.mInput + plane.mOffset + aLine * plane.mStride;
}

// The piece of aCount pixels of a line of the first plane that begins at pixel aFirst. What lies a few pieces further
// on is asked for.
const uint8_t *LineConverter::GetPiece(const uint8_t *aLine, size_t aFirst, size_t aCount) const
{
    constexpr size_t kAhead = 3072;
    const uint8_t *const start = aLine + aFirst * mPlan.mBitsPerPixel / 8;
    const size_t size = aCount * mPlan.mBitsPerPixel / 8;
    if (mConversion.mStream && static_cast<size_t>(mInputEnd - start) >= kAhead + size) {
        Prefetch(start + kAhead, size);
    }
    return start;
}

// The samples of a piece that begins at pixel aFirst: in the line itself, or unpacked into aScratch.
const uint8_t *LineConverter::GetSamples(const uint8_t *aLine, size_t aFirst, size_t aPixels, uint8_t *aScratch,
                                         size_t aCount) const
{
    const uint8_t *const start = GetPiece(aLine, aFirst, aPixels);
    if (mPlan.mLayout == SampleLayout::Bytes) {
        return start;
    }
    mUnpack(start, aScratch, aCount);
    return aScratch;
}

// Pixels of the piece that begins at pixel aFirst.
size_t LineConverter::GetPieceSize(size_t aFirst) const
{
    const size_t left = mConversion.mWidth - aFirst;
    return left <= kMostPiece ? left : kPiece;
}

// Pieces of a line.
uint64_t LineConverter::GetPieceCount() const
{
    return mConversion.mWidth <= kMostPiece ? 1 : (mConversion.mWidth - kMostRest + kPiece - 1) / kPiece;
}

// Calls aPiece(first pixel, number of pixels, output) for every piece of a line.
template <typename Piece>
void LineConverter::ConvertInPieces(uint32_t aLine, const Piece &aPiece)
{
    uint8_t *const out = mConversion.mOutput + aLine * mConversion.mOutputStride;
    size_t count = 0;
    for (size_t first = 0; first < mConversion.mWidth; first += count) {
        count = GetPieceSize(first);
        if (mConversion.mStream && !mIsAligned) {
            aPiece(first, count, mWriter.GetRoom());
            mWriter.Write(out + 4 * first, 4 * count);
        }
        else {
            aPiece(first, count, out + 4 * first);
        }
    }
}

void LineConverter::ConvertMono(uint32_t aLine)
{
    const uint8_t *const line = GetLine(0, aLine);
    const PackedColourKernel direct = mKernels.mMono[static_cast<size_t>(mPlan.mLayout)];
    ConvertInPieces(aLine, [this, line, direct](size_t aFirst, size_t aCount, uint8_t *aOut) {
        if (direct) {
            direct(GetPiece(line, aFirst, aCount), aOut, aCount);
        }
        else {
            const uint8_t *const samples = GetSamples(line, aFirst, aCount, mSamples, aCount);
            mKernels.mMono[static_cast<size_t>(SampleLayout::Bytes)](samples, aOut, aCount);
        }
    });
}

void LineConverter::ConvertPacked(uint32_t aLine)
{
    const uint8_t *const line = GetLine(0, aLine);
    ConvertInPieces(aLine, [this, line](size_t aFirst, size_t aCount, uint8_t *aOut) {
        const size_t count = aCount * (mPlan.mSamplesPerTwoPixels / 2);
        (mKernels.*mPlan.mPacked)(GetSamples(line, aFirst, aCount, mSamples, count), aOut, aCount);
    });
}

void LineConverter::ConvertPlanarRgb(uint32_t aLine)
{
    ConvertInPieces(aLine, [this, aLine](size_t aFirst, size_t aCount, uint8_t *aOut) {
        const uint8_t *colours[3];
        for (uint32_t i = 0; i < 3; ++i) {
            colours[i] = GetSamples(GetLine(i, aLine), aFirst, aCount, mPlanes[i], aCount);
        }
        mKernels.mPlanes(colours[0], colours[1], colours[2], aOut, aCount);
    });
}

void LineConverter::ConvertYuv(uint32_t aLine)
{
    const uint8_t *const line = GetLine(0, aLine);
    ConvertInPieces(aLine, [this, line](size_t aFirst, size_t aCount, uint8_t *aOut) {
        const size_t count = (aCount * mPlan.mSamplesPerTwoPixels + 1) / 2;
        const uint8_t *const samples = GetSamples(line, aFirst, aCount, mSamples, count);
        mPlan.mSplit(samples, count, mPlanes[0], mPlanes[1], mPlanes[2], aCount);
        mKernels.mYuv(mPlanes[0], mPlanes[1], mPlanes[2], *mPlan.mMatrix, aOut, aCount);
    });
}

void LineConverter::ConvertYuvPairs(uint32_t aLine)
{
    const uint8_t *const line = GetLine(0, aLine);
    ConvertInPieces(aLine, [this, line](size_t aFirst, size_t aCount, uint8_t *aOut) {
        (mKernels.*mPlan.mPairs)(GetSamples(line, aFirst, aCount, mSamples, 2 * aCount), *mPlan.mMatrix, aOut, aCount);
    });
}

void LineConverter::ConvertSemiPlanarYuv(uint32_t aLine)
{
    // A chroma line serves two lines of the image where the chroma plane has half as many.
    const uint32_t linesPerChroma = mConversion.mLayout.mPlanes[1].mHeight < mConversion.mHeight ? 2 : 1;
    const uint8_t *const luma = GetLine(0, aLine);
    const uint8_t *const chroma = GetLine(1, aLine / linesPerChroma);
    ConvertInPieces(aLine, [this, luma, chroma](size_t aFirst, size_t aCount, uint8_t *aOut) {
        SplitChromaPairs(chroma + aFirst, mPlanes[0], mPlanes[1], aCount);
        mKernels.mYuv(luma + aFirst, mPlanes[mPlan.mSwapChroma ? 1 : 0], mPlanes[mPlan.mSwapChroma ? 0 : 1],
                      *mPlan.mMatrix, aOut, aCount);
    });
}

uint8_t *LineConverter::GetBayerSlot(uint32_t aLine) const
{
    return mBayerLines + aLine % kBayerSlots * BayerStride(mConversion.mWidth);
}

// The samples of a mosaic line: in the image itself, or unpacked by now.
const uint8_t *LineConverter::GetBayerLine(uint32_t aLine) const
{
    return mPlan.mLayout == SampleLayout::Bytes ? GetLine(0, aLine) : GetBayerSlot(aLine);
}

void LineConverter::ConvertBayer(uint32_t aLine)
{
    const uint32_t height = mConversion.mHeight;
    BayerLine colours = mPlan.mFirstLine;
    if (aLine % 2 != 0) {
        colours.mHasRed = !colours.mHasRed;
        colours.mStartsGreen = !colours.mStartsGreen;
    }
    const uint8_t *const above = GetBayerLine(MirrorLine(int64_t{aLine} - 1, height));
    const uint8_t *const line = GetBayerLine(aLine);
    const uint8_t *const below = GetBayerLine(MirrorLine(int64_t{aLine} + 1, height));
    ConvertInPieces(aLine, [&](size_t aFirst, size_t aCount, uint8_t *aOut) {
        if (mPlan.mLayout != SampleLayout::Bytes) {
            UnpackAhead(aLine, aFirst);
        }
        else if (height - aLine > 3) {
            Prefetch(GetLine(0, aLine + 3) + aFirst, aCount);
        }
        const LineEnds ends = {aFirst == 0, aFirst + aCount == mConversion.mWidth};
        mKernels.mDemosaic(above + aFirst, line + aFirst, below + aFirst, colours, ends, aOut, aCount);
    });
}

// Unpacks what the interpolation of the piece that begins at pixel aFirst reads, the piece below and to the right, and
// two more. What was stored lately is slow to read in other portions while stores past the caches wait before it.
void LineConverter::UnpackAhead(uint32_t aLine, size_t aFirst)
{
    constexpr uint64_t kAhead = 4;
    const uint64_t count = GetPieceCount();
    const uint64_t end = std::min({(uint64_t{aLine} + 1) * count + aFirst / kPiece + kAhead,
                                   (uint64_t{aLine} + kBayerSlots - 1) * count, mBayerEnd});
    for (; mBayerNext < end; ++mBayerNext) {
        const auto line = static_cast<uint32_t>(mBayerNext / count);
        const size_t first = mBayerNext % count * kPiece;
        const size_t size = GetPieceSize(first);
        const uint8_t *const in = GetLine(0, line) + first * mPlan.mBitsPerPixel / 8;
        mUnpack(in, GetBayerSlot(line) + first, size);
        if (line + 1 < mConversion.mHeight) {
            Prefetch(in + mConversion.mLayout.mPlanes[0].mStride, size * mPlan.mBitsPerPixel / 8);
        }
    }
}

}  // namespace LxDetail
