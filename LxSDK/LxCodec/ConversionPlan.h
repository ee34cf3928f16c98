#pragma once

// Internal: which kernels convert a pixel format.

#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/ConversionKernels.h"
#include "LxCodec/YuvSplit.h"

namespace LxDetail
{

/// How the lines of a format become colour.
enum class ColourModel : uint8_t
{
    Mono,           ///< Grey.
    Packed,         ///< Interleaved components: mPacked.
    PlanarRgb,      ///< A plane each for red, green and blue.
    Yuv,            ///< Interleaved luma and chroma: mSplit, mMatrix.
    YuvPairs,       ///< Interleaved luma and chroma, two pixels to a pair of chroma samples: mPairs, mMatrix.
    SemiPlanarYuv,  ///< A plane of luma, a plane of chroma pairs: mMatrix, mSwapChroma.
    Bayer,          ///< A mosaic: mFirstLine.
};

/// The way from a pixel format to BGRa8, chosen from the format's line in LxPixelFormats.inc, so that a new format of a
/// known kind needs that line only.
struct ConversionPlan
{
    SampleLayout mLayout = SampleLayout::Bytes;
    ColourModel mModel = ColourModel::Packed;
    uint32_t mSamplesPerTwoPixels = 2;  ///< In a line of the first plane.
    uint32_t mBitsPerPixel = 8;         ///< In a line of the first plane.
    PackedColourKernel ConversionKernels::*mPacked = nullptr;
    YuvSplitKernel mSplit = nullptr;
    YuvPairsKernel ConversionKernels::*mPairs = nullptr;
    const YuvMatrix *mMatrix = nullptr;
    bool mSwapChroma = false;  ///< Cr comes before Cb.
    BayerLine mFirstLine = {};
};

/// Fills in the plan of a format; false when the format cannot be converted.
bool FindConversionPlan(LxPixelType aType, ConversionPlan &aPlan);

}  // namespace LxDetail
