#pragma once

// Internal: converts some lines of an image.

#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/ConversionPlan.h"

namespace LxDetail
{

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
};

/// Converts lines of one image, one after the other. Lines do not depend on which object converts them, so that an
/// image may be shared between several, one for each thread.
class LineConverter
{
public:
    /// Bytes of memory that an object needs for its work.
    static uint64_t GetScratchSize(uint32_t aWidth);

    /// @param aScratch GetScratchSize() bytes, used as long as the object lives.
    LineConverter(const Conversion &aConversion, uint8_t *aScratch);

    /// Converts the lines aFirst to aEnd - 1.
    void Convert(uint32_t aFirst, uint32_t aEnd);

private:
    const uint8_t *GetLine(uint32_t aPlane, uint64_t aLine) const;
    uint8_t *GetOutputLine(uint32_t aLine) const;
    uint8_t *GetScratchLine(uint32_t aIndex) const;
    const uint8_t *Unpack(const uint8_t *aLine, uint8_t *aScratch, size_t aCount) const;
    void YuvLineToBgra(const uint8_t *aY, const uint8_t *aU, const uint8_t *aV, uint8_t *aOut);

    void ConvertPacked(uint32_t aFirst, uint32_t aEnd);
    void ConvertPlanarRgb(uint32_t aFirst, uint32_t aEnd);
    void ConvertYuv(uint32_t aFirst, uint32_t aEnd);
    void ConvertSemiPlanarYuv(uint32_t aFirst, uint32_t aEnd);
    void ConvertBayer(uint32_t aFirst, uint32_t aEnd);
    void UnpackBayerLine(uint32_t aLine, uint8_t *aSamples) const;

    const Conversion &mConversion;
    uint8_t *const mScratch;
};

}  // namespace LxDetail
