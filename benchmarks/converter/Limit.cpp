#include "Limit.h"

#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Limit.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE
{

namespace hn = hwy::HWY_NAMESPACE;

template <bool kStream>
void Pass(const uint8_t *aIn, size_t aBitsPerPixel, uint8_t *aOut, size_t aPixels)
{
    const hn::ScalableTag<uint8_t> bytes;
    const size_t step = hn::Lanes(bytes);
    const size_t groupBytes = 8 * aBitsPerPixel;
    for (size_t group = 0; group < aPixels / 64; ++group) {
        const uint8_t *const in = aIn + group * groupBytes;
        auto all = hn::Zero(bytes);
        size_t i = 0;
        for (; i + step <= groupBytes; i += step) {
            all = hn::Or(all, hn::LoadU(bytes, in + i));
        }
        if (i < groupBytes) {  // a vector that ends where the group ends
            all = hn::Or(all, hn::LoadU(bytes, in + groupBytes - step));
        }
        uint8_t *const out = aOut + 256 * group;
        for (size_t k = 0; k < 256; k += step) {
            if (kStream) {
                hn::Stream(all, bytes, out + k);
            }
            else {
                hn::Store(all, bytes, out + k);
            }
        }
    }
    if (kStream) {
        hwy::FlushStream();
    }
}

void PassEitherWay(const uint8_t *aIn, size_t aBitsPerPixel, uint8_t *aOut, size_t aPixels, bool aStream)
{
    (aStream ? Pass<true> : Pass<false>)(aIn, aBitsPerPixel, aOut, aPixels);
}

}  // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(PassEitherWay);

void PassOverImage(const uint8_t *aIn, size_t aBitsPerPixel, uint8_t *aOut, size_t aPixels, bool aStream)
{
    HWY_DYNAMIC_DISPATCH(PassEitherWay)(aIn, aBitsPerPixel, aOut, aPixels, aStream);
}

#endif
