// Internal: how vectors become pixels in memory; included by VectorKernels.cpp once for each kind of
// processor, so there is no "pragma once".

HWY_BEFORE_NAMESPACE();
namespace LxDetail
{
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<uint8_t>;
using ByteVector = hn::Vec<Bytes>;

// Every kernel does what fills vectors and leaves the rest of a line to the scalar kernel. With kStream it writes past
// the caches, to an output that is aligned.

template <bool kStream>
HWY_INLINE void Put(ByteVector aPixels, uint8_t *aOut)
{
    const Bytes bytes;
    if constexpr (kStream) {
        hn::Stream(aPixels, bytes, aOut);
    }
    else {
        hn::StoreU(aPixels, bytes, aOut);
    }
}

// The 32-bit words of a vector so that what interleaving them in groups, within blocks of 16 bytes, makes of them is in
// order.
template <size_t kGroup = 1, class Vector>
HWY_INLINE Vector SpreadOverBlocks(Vector aVector)
{
    if constexpr (HWY_MAX_BYTES == 16) {
        return aVector;
    }
    else {
        constexpr size_t kBlocks = HWY_MAX_BYTES / 16;
        struct Order
        {
            alignas(64) uint32_t mWords[4 * kBlocks] = {};
            constexpr Order()
            {
                for (size_t i = 0; i < 4 * kBlocks; ++i) {
                    mWords[i] = static_cast<uint32_t>(i % 4 / kGroup * kGroup * kBlocks + i / 4 * kGroup + i % kGroup);
                }
            }
        };
        static constexpr Order kOrder;
        const hn::ScalableTag<uint32_t> words;
        const auto indices = hn::SetTableIndices(words, kOrder.mWords);
        return hn::BitCast(hn::DFromV<Vector>(), hn::TableLookupLanes(hn::BitCast(words, aVector), indices));
    }
}

template <bool kStream>
HWY_INLINE void PutPixels(ByteVector aRed, ByteVector aGreen, ByteVector aBlue, uint8_t *aOut)
{
    const Bytes bytes;
    const hn::ScalableTag<uint16_t> halves;
    const size_t step = hn::Lanes(bytes);
    const auto red = SpreadOverBlocks(aRed);
    const auto green = SpreadOverBlocks(aGreen);
    const auto blue = SpreadOverBlocks(aBlue);
    const auto alpha = hn::Set(bytes, 255);
    const auto lowerBG = hn::BitCast(halves, hn::InterleaveLower(bytes, blue, green));
    const auto lowerRA = hn::BitCast(halves, hn::InterleaveLower(bytes, red, alpha));
    const auto upperBG = hn::BitCast(halves, hn::InterleaveUpper(bytes, blue, green));
    const auto upperRA = hn::BitCast(halves, hn::InterleaveUpper(bytes, red, alpha));
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveLower(halves, lowerBG, lowerRA)), aOut);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveUpper(halves, lowerBG, lowerRA)), aOut + step);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveLower(halves, upperBG, upperRA)), aOut + 2 * step);
    Put<kStream>(hn::BitCast(bytes, hn::InterleaveUpper(halves, upperBG, upperRA)), aOut + 3 * step);
}

}  // namespace HWY_NAMESPACE
}  // namespace LxDetail
HWY_AFTER_NAMESPACE();
