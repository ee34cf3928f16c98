#include "LxCodec/LxBufferConverter.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>

#include "LxCodec/BandPool.h"
#include "LxCodec/LineConverter.h"

using LxDetail::Conversion;
using LxDetail::LineConverter;

namespace
{

constexpr uint32_t kMostThreads = 256;
// Below this many pixels for each, threads are not worth waking, even on a machine that has nothing else to do.
constexpr uint64_t kLeastPixelsPerThread = 1 << 15;
// Below this one thread is as fast as two on a machine that is busy too.
constexpr uint64_t kLeastChosenPixelsPerThread = 1 << 18;
// Threads share an image in bands: enough of them that all threads end together though one began late, each long enough
// not to notice where it ends.
constexpr uint32_t kBandsPerThread = 8;
constexpr uint64_t kLeastBandPixels = 1 << 15;
// Images from here on do not stay in the cache until somebody reads them, and are written past it.
constexpr uint64_t kLeastStreamedPixels = 1 << 18;

uint32_t GetThreadsFor(int aThreadCount, uint64_t aPixels)
{
    static const uint32_t processors = std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
    const bool isChosen = aThreadCount < 0;
    const uint32_t threads = isChosen ? processors : std::clamp(static_cast<uint32_t>(aThreadCount), 1u, kMostThreads);
    const uint64_t most = aPixels / (isChosen ? kLeastChosenPixelsPerThread : kLeastPixelsPerThread);
    return static_cast<uint32_t>(std::clamp<uint64_t>(most, 1, threads));
}

uint32_t GetBandCount(uint32_t aThreads, uint64_t aPixels, uint32_t aHeight)
{
    if (aThreads == 1) {
        return 1;
    }
    const uint64_t most = std::min<uint64_t>(aPixels / kLeastBandPixels, uint64_t{kBandsPerThread} * aThreads);
    return static_cast<uint32_t>(std::min<uint64_t>(most, aHeight));
}

std::string SizeText(uint32_t aWidth, uint32_t aHeight)
{
    return std::to_string(aWidth) + " x " + std::to_string(aHeight);
}

// Whether two pieces of memory have a byte in common.
bool Overlap(const void *aA, uint64_t aSizeA, const void *aB, uint64_t aSizeB)
{
    const auto a = reinterpret_cast<uintptr_t>(aA);
    const auto b = reinterpret_cast<uintptr_t>(aB);
    return aB && (a < b ? b - a < aSizeA : a - b < aSizeB);
}

// Checks the input and describes its conversion, all but the output. Every property is asked for once: an image of the
// application's own may answer otherwise the next time.
LxResult DescribeInput(const ILxImage *aInput, Conversion &aConversion)
{
    if (aInput) {
        aConversion.mInput = static_cast<const uint8_t *>(aInput->GetDataPointer());
        aConversion.mWidth = aInput->GetWidth();
        aConversion.mHeight = aInput->GetHeight();
    }
    if (!aConversion.mInput || aConversion.mWidth == 0 || aConversion.mHeight == 0) {
        return LxResult(LxResultCode::InvalidArgument, "There is no image to convert.");
    }
    const LxPixelType type = aInput->GetPixelType();
    if (!LxDetail::FindConversionPlan(type, aConversion.mPlan)) {
        return LxResult(LxResultCode::PixelFormatNotSupported,
                        "The pixel format " + LxPixelTypeToString(type).GetString() + " cannot be converted.");
    }
    if (aConversion.mWidth > LxDetail::kMostLinePixels ||
        !LxDetail::GetImageLayout(aConversion.mLayout, type, aConversion.mWidth, aConversion.mHeight,
                                  aInput->GetPaddingX(), aInput->GetPaddingY()))
    {
        return LxResult(LxResultCode::InvalidArgument,
                        "An image of " + SizeText(aConversion.mWidth, aConversion.mHeight) +
                            " pixels is too large, or has padding that its pixel format does not allow.");
    }
    if (const uint64_t size = aInput->GetDataSize(); size < aConversion.mLayout.mSize) {
        return LxResult(LxResultCode::BufferTooSmall, "The image needs " + std::to_string(aConversion.mLayout.mSize) +
                                                          " bytes of data and has " + std::to_string(size) + ".");
    }
    return LxResult();
}

bool HasSize(const LxImage &aImage, const Conversion &aConversion)
{
    return aImage.GetWidth() == aConversion.mWidth && aImage.GetHeight() == aConversion.mHeight;
}

LxResult CheckOutput(LxBuffer *aOutput, bool aAdapt, const Conversion &aConversion)
{
    if (!aOutput || !aOutput->GetImage()) {
        return LxResult(LxResultCode::InvalidArgument, "There is no image buffer to convert into.");
    }
    const LxImage &image = *aOutput->GetImage();
    if (Overlap(aConversion.mInput, aConversion.mLayout.mSize, image.GetDataPointer(), image.GetDataSize())) {
        return LxResult(LxResultCode::InvalidArgument, "The input and the output image share memory.");
    }
    if (aAdapt) {
        return LxResult();
    }
    if (!HasSize(image, aConversion)) {
        return LxResult(LxResultCode::SizeMismatch,
                        "The input has " + SizeText(aConversion.mWidth, aConversion.mHeight) + " pixels, the output " +
                            SizeText(image.GetWidth(), image.GetHeight()) + ".");
    }
    if (image.GetPixelType() != LxPixelType::BGRa8) {
        return LxResult(LxResultCode::InvalidArgument, "The output image must have the pixel format BGRa8, not " +
                                                           LxPixelTypeToString(image.GetPixelType()).GetString() + ".");
    }
    return LxResult();
}

LxResult AdaptOutput(LxImage &aImage, const Conversion &aConversion)
{
    const bool fits = aImage.GetPixelType() == LxPixelType::BGRa8 && HasSize(aImage, aConversion) &&
                      aImage.GetPaddingX() == 0 && aImage.GetPaddingY() == 0;
    return fits ? LxResult() : aImage.Alloc(aConversion.mWidth, aConversion.mHeight, LxPixelType::BGRa8);
}

}  // namespace

class LX_NO_EXPORT LxBufferConverter::Data
{
public:
    LxResult Convert(const ILxImage *aInput, LxBuffer *aOutput, bool aAdapt);

    int mThreadCount = -1;
    LxDetail::BandPool mPool;

private:
    std::unique_ptr<uint8_t[]> mScratch;  // of all threads
    uint64_t mScratchSize = 0;
};

LxResult LxBufferConverter::Data::Convert(const ILxImage *aInput, LxBuffer *aOutput, bool aAdapt)
{
    Conversion conversion;
    LxResult result = DescribeInput(aInput, conversion);
    if (!result.IsOK()) {
        return result;
    }
    result = CheckOutput(aOutput, aAdapt, conversion);
    if (!result.IsOK()) {
        return result;
    }
    const uint64_t pixels = uint64_t{conversion.mWidth} * conversion.mHeight;
    const uint32_t threads = GetThreadsFor(mThreadCount, pixels);
    const uint32_t bands = GetBandCount(threads, pixels, conversion.mHeight);
    // All that can fail comes before the output is touched.
    const uint64_t scratchSize = LineConverter::GetScratchSize(conversion);
    if (mScratchSize < threads * scratchSize) {
        mScratchSize = 0;
        mScratch.reset();
        mScratch.reset(new uint8_t[threads * scratchSize]);
        mScratchSize = threads * scratchSize;
    }
    const auto convertBand = [&conversion, this, bands, scratchSize](uint32_t aBand, uint32_t aThread) {
        LineConverter lines(conversion, mScratch.get() + aThread * scratchSize);
        lines.Convert(static_cast<uint32_t>(uint64_t{conversion.mHeight} * aBand / bands),
                      static_cast<uint32_t>(uint64_t{conversion.mHeight} * (aBand + 1) / bands));
    };
    LxImage &image = *aOutput->GetImage();
    if (aAdapt) {
        result = AdaptOutput(image, conversion);
        if (!result.IsOK()) {
            return result;
        }
    }
    conversion.mOutput = static_cast<uint8_t *>(image.GetDataPointer());
    conversion.mOutputStride = LxPixelTypeGetLineSize(LxPixelType::BGRa8, conversion.mWidth) + image.GetPaddingX();
    conversion.mStream = pixels >= kLeastStreamedPixels;
    mPool.Run(threads, bands, std::cref(convertBand));  // by reference: a copy would be put on the heap
    return LxResult();
}

LxBufferConverter::LxBufferConverter(int aThreadCount) : mData(std::make_unique<Data>())
{
    mData->mThreadCount = aThreadCount;
}

LxBufferConverter::~LxBufferConverter() = default;

bool LxBufferConverter::IsSupported(LxPixelType aType)
{
    LxDetail::ConversionPlan plan;
    return LxDetail::FindConversionPlan(aType, plan);
}

LxResult LxBufferConverter::Convert(const ILxImage *aInput, LxBuffer *aOutput, bool aAdapt, bool /*aReserved*/)
{
    try {
        return mData->Convert(aInput, aOutput, aAdapt);
    }
    catch (const std::bad_alloc &) {
        return LxResult(LxResultCode::NoMemory, "There is no memory to convert the image.");
    }
    catch (const std::exception &exception) {
        return LxResult(LxResultCode::Failed, exception.what());
    }
}

int LxBufferConverter::GetThreadCount() const
{
    return mData->mThreadCount;
}

void LxBufferConverter::SetThreadCount(int aThreadCount)
{
    if (aThreadCount != mData->mThreadCount) {
        mData->mThreadCount = aThreadCount;
        mData->mPool.Stop();
    }
}
