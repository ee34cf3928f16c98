#include "LxCodec/ConversionPlan.h"

#include <string_view>

namespace LxDetail
{

namespace
{

struct PackedRow
{
    std::string_view mFamily;
    uint32_t mComponents;
    PackedColourKernel mKernel;
};

constexpr PackedRow kPackedRows[] = {
    {"mono", 1, GreyToBgra}, {"rgb", 3, RgbToBgra},   {"bgr", 3, BgrToBgra},
    {"rgba", 4, RgbaToBgra}, {"bgra", 4, BgraToBgra},
};

struct YuvRow
{
    std::string_view mOrder;
    uint32_t mSamplesPerTwoPixels;
    YuvSplitKernel mKernel;
};

constexpr YuvRow kYuvRows[] = {
    {"U Y V", 6, SplitUyv},
    {"Cb Y Cr", 6, SplitUyv},
    {"Y Cb Cr", 6, SplitYuv},
    {"U Y0 V Y1", 4, SplitUyvy},
    {"Cb Y0 Cr Y1", 4, SplitUyvy},
    {"Y0 U Y1 V", 4, SplitYuyv},
    {"Y0 Cb Y1 Cr", 4, SplitYuyv},
    {"U Y0 Y1 V Y2 Y3", 3, SplitUyyvyy},
    {"Cb Y0 Y1 Cr Y2 Y3", 3, SplitUyyvyy},
    {"Y0 Y1 Cb Y2 Y3 Cr", 3, SplitYyuyyv},
};

const YuvMatrix *FindMatrix(std::string_view aFamily)
{
    if (!aFamily.starts_with("yuv") && !aFamily.starts_with("ycbcr")) {
        return nullptr;
    }
    if (aFamily.ends_with("-601")) {
        return &kMatrix601;
    }
    if (aFamily.ends_with("-709")) {
        return &kMatrix709;
    }
    if (aFamily.ends_with("-2020")) {
        return &kMatrix2020;
    }
    return &kMatrixFullRange;
}

bool FindPacked(const PixelFormat &aFormat, ConversionPlan &aPlan)
{
    for (const PackedRow &row : kPackedRows) {
        if (row.mFamily == aFormat.mFamily) {
            aPlan.mModel = ColourModel::Packed;
            aPlan.mSamplesPerTwoPixels = 2 * row.mComponents;
            aPlan.mPacked = row.mKernel;
            return true;
        }
    }
    return false;
}

bool FindYuv(const PixelFormat &aFormat, ConversionPlan &aPlan)
{
    for (const YuvRow &row : kYuvRows) {
        if (row.mOrder == aFormat.mOrder) {
            aPlan.mModel = ColourModel::Yuv;
            aPlan.mSamplesPerTwoPixels = row.mSamplesPerTwoPixels;
            aPlan.mSplit = row.mKernel;
            return true;
        }
    }
    return false;
}

}  // namespace

bool FindConversionPlan(LxPixelType aType, ConversionPlan &aPlan)
{
    const PixelFormat *const format = FindPixelFormat(aType);
    if (!format) {
        return false;
    }
    const Unpacking unpacking = FindUnpacking(*format);
    if (!unpacking.mIsKnown) {
        return false;
    }
    ConversionPlan plan;
    plan.mUnpack = unpacking.mKernel;
    plan.mMatrix = FindMatrix(format->mFamily);
    bool found = false;
    if (format->mPacking == PixelPacking::Planar) {
        plan.mModel = ColourModel::PlanarRgb;
        found = format->mFamily == "rgb";
    }
    else if (format->mPacking == PixelPacking::SemiPlanar) {
        plan.mModel = ColourModel::SemiPlanarYuv;
        plan.mSwapChroma = format->mOrder == "plane Y; plane Cr Cb";
        found = plan.mMatrix && (plan.mSwapChroma || format->mOrder == "plane Y; plane Cb Cr");
    }
    else if (format->mFamily == "bayer") {
        const std::string_view tile = format->mBayerTile;
        plan.mModel = ColourModel::Bayer;
        plan.mFirstLine.mHasRed = tile.substr(0, 2).find('R') != tile.npos;
        plan.mFirstLine.mStartsGreen = tile.front() == 'G';
        found = true;
    }
    else {
        found = plan.mMatrix ? FindYuv(*format, plan) : FindPacked(*format, plan);
    }
    if (found) {
        aPlan = plan;
    }
    return found;
}

}  // namespace LxDetail
