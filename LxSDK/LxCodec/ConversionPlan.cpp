#include "LxCodec/ConversionPlan.h"

#include <string_view>

namespace LxDetail
{

namespace
{

struct LayoutRow
{
    PixelPacking mPacking;
    std::string_view mBits;
    SampleLayout mLayout;
};

constexpr LayoutRow kLayoutRows[] = {
    {PixelPacking::Unpacked, "8", SampleLayout::Bytes},
    {PixelPacking::Unpacked, "8s", SampleLayout::SignedBytes},
    {PixelPacking::Unpacked, "10", SampleLayout::Words10},
    {PixelPacking::Unpacked, "12", SampleLayout::Words12},
    {PixelPacking::Unpacked, "14", SampleLayout::Words14},
    {PixelPacking::Unpacked, "16", SampleLayout::Words16},
    {PixelPacking::Unpacked, "32", SampleLayout::DoubleWords},
    {PixelPacking::LsbPacked, "1", SampleLayout::Stream1},
    {PixelPacking::LsbPacked, "2", SampleLayout::Stream2},
    {PixelPacking::LsbPacked, "4", SampleLayout::Stream4},
    {PixelPacking::LsbPacked, "10", SampleLayout::Stream10},
    {PixelPacking::LsbPacked, "12", SampleLayout::Stream12},
    {PixelPacking::LsbPacked, "14", SampleLayout::Stream14},
    {PixelPacking::LsbPacked, "5,6,5", SampleLayout::Triples565},
    {PixelPacking::LsbPacked32, "10", SampleLayout::Triples10},
    {PixelPacking::GigEPacked, "10", SampleLayout::PairsPacked},
    {PixelPacking::GigEPacked, "12", SampleLayout::PairsPacked},
    {PixelPacking::Planar, "8", SampleLayout::Bytes},
    {PixelPacking::Planar, "10", SampleLayout::Words10},
    {PixelPacking::Planar, "12", SampleLayout::Words12},
    {PixelPacking::Planar, "16", SampleLayout::Words16},
    {PixelPacking::SemiPlanar, "8", SampleLayout::Bytes},
};

bool FindLayout(const PixelFormat &aFormat, SampleLayout &aLayout)
{
    if (aFormat.mType == LxPixelType::RGB10V1Packed) {  // the one "Packed" format that is not made of pairs
        aLayout = SampleLayout::TriplesV1;
        return true;
    }
    for (const LayoutRow &row : kLayoutRows) {
        if (row.mPacking == aFormat.mPacking && row.mBits == aFormat.mBits) {
            aLayout = row.mLayout;
            return true;
        }
    }
    return false;
}

struct PackedRow
{
    std::string_view mFamily;
    uint32_t mComponents;
    PackedColourKernel ConversionKernels::*mKernel;
};

constexpr PackedRow kPackedRows[] = {
    {"rgb", 3, &ConversionKernels::mRgb},
    {"bgr", 3, &ConversionKernels::mBgr},
    {"rgba", 4, &ConversionKernels::mRgba},
    {"bgra", 4, &ConversionKernels::mBgra},
};

struct SplitRow
{
    std::string_view mOrder;
    uint32_t mSamplesPerTwoPixels;
    YuvSplitKernel mKernel;
};

constexpr SplitRow kSplitRows[] = {
    {"U Y V", 6, SplitUyv},
    {"Cb Y Cr", 6, SplitUyv},
    {"Y Cb Cr", 6, SplitYuv},
    {"U Y0 Y1 V Y2 Y3", 3, SplitUyyvyy},
    {"Cb Y0 Y1 Cr Y2 Y3", 3, SplitUyyvyy},
    {"Y0 Y1 Cb Y2 Y3 Cr", 3, SplitYyuyyv},
};

struct PairsRow
{
    std::string_view mOrder;
    YuvPairsKernel ConversionKernels::*mKernel;
};

constexpr PairsRow kPairsRows[] = {
    {"U Y0 V Y1", &ConversionKernels::mUyvy},
    {"Cb Y0 Cr Y1", &ConversionKernels::mUyvy},
    {"Y0 U Y1 V", &ConversionKernels::mYuyv},
    {"Y0 Cb Y1 Cr", &ConversionKernels::mYuyv},
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
    for (const SplitRow &row : kSplitRows) {
        if (row.mOrder == aFormat.mOrder) {
            aPlan.mModel = ColourModel::Yuv;
            aPlan.mSamplesPerTwoPixels = row.mSamplesPerTwoPixels;
            aPlan.mSplit = row.mKernel;
            return true;
        }
    }
    for (const PairsRow &row : kPairsRows) {
        if (row.mOrder == aFormat.mOrder) {
            aPlan.mModel = ColourModel::YuvPairs;
            aPlan.mSamplesPerTwoPixels = 4;
            aPlan.mPairs = row.mKernel;
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
    ConversionPlan plan;
    if (!FindLayout(*format, plan.mLayout)) {
        return false;
    }
    plan.mBitsPerPixel = LxPixelTypeGetBitsPerPixel(aType);
    plan.mMatrix = FindMatrix(format->mFamily);
    bool found = false;
    if (format->mPacking == PixelPacking::Planar) {
        plan.mModel = ColourModel::PlanarRgb;
        plan.mBitsPerPixel = plan.mLayout == SampleLayout::Bytes ? 8 : 16;
        found = format->mFamily == "rgb";
    }
    else if (format->mPacking == PixelPacking::SemiPlanar) {
        plan.mModel = ColourModel::SemiPlanarYuv;
        plan.mBitsPerPixel = 8;
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
    else if (format->mFamily == "mono") {
        plan.mModel = ColourModel::Mono;
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
