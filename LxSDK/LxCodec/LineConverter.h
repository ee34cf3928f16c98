#pragma once

// Internal: converts some lines of an image.

#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/ConversionPlan.h"
#include "LxCodec/StreamWriter.h"

namespace LxDetail
{

/// Pixels of a line at most: far more than any sensor has, and few enough for every product to fit.
constexpr uint32_t kMostLinePixels = 1u << 24;

/// An image that is to be converted, and where it goes.
struct Conversion
{
    ConversionPlan mPlan;
    ImageLayout mLayout;
    const uint8_t *mInput = nullptr;
    uint32_t mWidth = 0;
    uint32_t mHeight = 0;
    uint8_t *mOutput = nullptr;
    uint64_t mOutputStride = 0;
    bool mStream = false;  ///< Write past the caches.
};

/// Converts lines of one image, one after the other, in pieces that stay in the innermost cache. Lines do not depend on
/// which object converts them, so that an image may be shared between several, one for each thread.
class LineConverter
{
public:
    /// Bytes of memory that an object needs for its work.
    static uint64_t GetScratchSize(const Conversion &aConversion);

    /// @param aScratch GetScratchSize() bytes, used as long as the object lives.
    LineConverter(const Conversion &aConversion, uint8_t *aScratch);

    /// Converts the lines aFirst to aEnd - 1.
    void Convert(uint32_t aFirst, uint32_t aEnd);

private:
    /// Pixels of a piece: a multiple of what every packing repeats after. The last piece of a line takes up to
    /// kMostRest more, so that none is without a whole group of chroma before it.
    static constexpr size_t kPiece = 512;
    static constexpr size_t kMostRest = 16;
    static constexpr size_t kMostPiece = kPiece + kMostRest;
    /// Lines of a mosaic in the cache: above, here, below, and the next.
    static constexpr uint32_t kBayerSlots = 4;
    static_assert(4 * kMostPiece <= StreamWriter::kMostBytes);

    const uint8_t *GetLine(uint32_t aPlane, uint64_t aLine) const;
    const uint8_t *GetPiece(const uint8_t *aLine, size_t aFirst, size_t aCount) const;
    const uint8_t *GetSamples(const uint8_t *aLine, size_t aFirst, size_t aPixels, uint8_t *aScratch,
                              size_t aCount) const;
    size_t GetPieceSize(size_t aFirst) const;
    uint64_t GetPieceCount() const;
    template <typename Piece>
    void ConvertInPieces(uint32_t aLine, const Piece &aPiece);

    void ConvertMono(uint32_t aLine);
    void ConvertPacked(uint32_t aLine);
    void ConvertPlanarRgb(uint32_t aLine);
    void ConvertYuv(uint32_t aLine);
    void ConvertYuvPairs(uint32_t aLine);
    void ConvertSemiPlanarYuv(uint32_t aLine);
    void ConvertBayer(uint32_t aLine);
    uint8_t *GetBayerSlot(uint32_t aLine) const;
    const uint8_t *GetBayerLine(uint32_t aLine) const;
    void UnpackAhead(uint32_t aLine, size_t aFirst);

    const Conversion &mConversion;
    const ConversionPlan &mPlan;
    const bool mIsAligned;  // every line of the output may be written past the caches by the kernels themselves
    const uint8_t *const mInputEnd;
    const ConversionKernels &mKernels;
    const UnpackKernel mUnpack;
    StreamWriter mWriter;
    alignas(kStreamUnit) uint8_t mSamples[4 * kMostPiece];
    alignas(kStreamUnit) uint8_t mPlanes[3][kMostPiece];
    uint8_t *const mBayerLines;  // unpacked lines that go round: line n lies in slot n mod kBayerSlots
    uint64_t mBayerNext = 0;     // the first piece that is not unpacked, counted from the first of the image
    uint64_t mBayerEnd = 0;      // behind the last piece that is needed
};

}  // namespace LxDetail
