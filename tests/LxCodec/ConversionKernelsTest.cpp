#include "LxCodec/ConversionKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "GuardedMemory.h"
#include "LxCodec/YuvSplit.h"
#include "VectorTargets.h"

using LxDetail::ConversionKernels;
using LxDetail::SampleLayout;

namespace
{

// Two of the longest vectors and all that may be left behind them.
constexpr size_t kMostPixels = 2 * 64 + 63;

// Runs on every kind of vector unit that this machine has.
class Kernels : public testing::TestWithParam<int64_t>
{
protected:
    const ConversionKernels &mScalar = LxDetail::GetScalarKernels();
    OnVectorTarget mTarget{GetParam()};
    const ConversionKernels &mKernels = LxDetail::GetConversionKernels();
    const ConversionKernels &mStreaming = LxDetail::GetStreamingKernels();
    std::minstd_rand mRandom{42};

    std::vector<uint8_t> RandomBytes(size_t aCount)
    {
        std::vector<uint8_t> bytes(aCount);
        for (uint8_t &byte : bytes) {
            byte = static_cast<uint8_t>(mRandom() >> 8);
        }
        return bytes;
    }

    // Calls aKernel(kernels, in, out, width) with the bytes of every width between forbidden pages, at both of their
    // ends, and compares what it writes with what the scalar kernel writes.
    void CheckWidths(const std::function<size_t(size_t)> &aInSize, const std::function<size_t(size_t)> &aOutSize,
                     const std::function<void(const ConversionKernels &, const uint8_t *, uint8_t *, size_t)> &aKernel)
    {
        GuardedMemory in(aInSize(kMostPixels));
        GuardedMemory out(aOutSize(kMostPixels));
        for (size_t width = 0; width <= kMostPixels; ++width) {
            SCOPED_TRACE(width);
            const size_t inSize = aInSize(width);
            const size_t outSize = aOutSize(width);
            const std::vector<uint8_t> bytes = RandomBytes(inSize);
            std::vector<uint8_t> expected(outSize);
            aKernel(mScalar, bytes.data(), expected.data(), width);
            for (const bool atStart : {true, false}) {
                uint8_t *const from = atStart ? in.AtStart() : in.AtEnd(inSize);
                uint8_t *const to = atStart ? out.AtStart() : out.AtEnd(outSize);
                std::copy(bytes.begin(), bytes.end(), from);
                std::memset(to, 0x5A, outSize);
                aKernel(mKernels, from, to, width);
                ASSERT_EQ(std::vector<uint8_t>(to, to + outSize), expected);
                if (atStart) {  // where the output is aligned
                    std::memset(to, 0x5A, outSize);
                    aKernel(mStreaming, from, to, width);
                    mStreaming.mFlush();
                    ASSERT_EQ(std::vector<uint8_t>(to, to + outSize), expected) << "past the caches";
                }
            }
        }
    }
};

struct Layout
{
    const char *mName;
    SampleLayout mLayout;
    unsigned mBits;
    // bit of the stream at which a bit of a sample lies
    size_t (*mPlace)(size_t aSample, unsigned aBit);
    size_t (*mSize)(size_t aSamples);
};

template <unsigned kBits>
size_t StreamPlace(size_t aSample, unsigned aBit)
{
    return aSample * kBits + aBit;
}

template <unsigned kBits>
size_t StreamSize(size_t aSamples)
{
    return (aSamples * kBits + 7) / 8;
}

// High 8 bits in the first or third byte of a pair, the others in the low or high half of the byte between.
template <unsigned kBits>
size_t PairPlace(size_t aSample, unsigned aBit)
{
    constexpr unsigned kLow = kBits - 8;
    const size_t pair = aSample / 2 * 24;
    return aBit < kLow ? pair + 8 + aSample % 2 * 4 + aBit : pair + aSample % 2 * 16 + aBit - kLow;
}

size_t PairSize(size_t aSamples)
{
    return aSamples / 2 * 3 + aSamples % 2;  // the byte between holds nothing of the top 8 bits
}

size_t WordPlace(size_t aSample, unsigned aBit)
{
    return aSample * 16 + aBit;
}

size_t WordSize(size_t aSamples)
{
    return aSamples * 2;
}

const Layout kLayouts[] = {
    {"Stream10", SampleLayout::Stream10, 10, StreamPlace<10>, StreamSize<10>},
    {"Stream12", SampleLayout::Stream12, 12, StreamPlace<12>, StreamSize<12>},
    {"Stream14", SampleLayout::Stream14, 14, StreamPlace<14>, StreamSize<14>},
    {"PairsPacked with 10 bits", SampleLayout::PairsPacked, 10, PairPlace<10>, PairSize},
    {"PairsPacked with 12 bits", SampleLayout::PairsPacked, 12, PairPlace<12>, PairSize},
    {"Words10", SampleLayout::Words10, 10, WordPlace, WordSize},
    {"Words12", SampleLayout::Words12, 12, WordPlace, WordSize},
    {"Words14", SampleLayout::Words14, 14, WordPlace, WordSize},
    {"Words16", SampleLayout::Words16, 16, WordPlace, WordSize},
};

// Where the two ends of a sample lie: its lowest bits, and those from its first bit that does not follow the one
// before.
class Place
{
public:
    Place(const Layout &aLayout, size_t aSample) : mLowBits(aLayout.mBits), mBits(aLayout.mBits)
    {
        for (unsigned bit = 1; bit < mBits; ++bit) {
            if (aLayout.mPlace(aSample, bit) != aLayout.mPlace(aSample, bit - 1) + 1) {
                mLowBits = bit;
                break;
            }
        }
        mLow = aLayout.mPlace(aSample, 0);
        mHigh = mLowBits < mBits ? aLayout.mPlace(aSample, mLowBits) : 0;
    }
    void Set(uint8_t *aLine, unsigned aValue) const
    {
        SetBits(aLine, mLow, aValue, mLowBits);
        if (mLowBits < mBits) {
            SetBits(aLine, mHigh, aValue >> mLowBits, mBits - mLowBits);
        }
    }

private:
    static void SetBits(uint8_t *aLine, size_t aBit, unsigned aValue, unsigned aCount)
    {
        const unsigned mask = ((1u << aCount) - 1) << aBit % 8;
        const unsigned value = aValue << aBit % 8;
        for (size_t i = 0; mask >> 8 * i != 0; ++i) {
            uint8_t &byte = aLine[aBit / 8 + i];
            byte = static_cast<uint8_t>((byte & ~(mask >> 8 * i)) | ((value & mask) >> 8 * i));
        }
    }

    unsigned mLowBits;
    unsigned mBits;
    size_t mLow = 0;
    size_t mHigh = 0;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(OnEveryTarget, Kernels, testing::ValuesIn(GetVectorTargets()), NameOf);

TEST_P(Kernels, AreThoseOfTheTarget)
{
    EXPECT_EQ(mKernels.mRgb == mScalar.mRgb, GetParam() == HWY_SCALAR);
    EXPECT_EQ(mKernels.mDemosaic == mScalar.mDemosaic, GetParam() == HWY_SCALAR);
    EXPECT_EQ(mStreaming.mDemosaic == mKernels.mDemosaic, GetParam() == HWY_SCALAR);
}

TEST_P(Kernels, UnpackEveryValueAtEveryPosition)
{
    constexpr size_t kSamples = 128 + 8;  // two vectors, and a group that the scalar code does
    for (const Layout &layout : kLayouts) {
        SCOPED_TRACE(layout.mName);
        std::vector<uint8_t> line(layout.mPlace(kSamples - 1, layout.mBits - 1) / 8 + 1);
        std::vector<uint8_t> samples(kSamples);
        std::vector<Place> places;
        for (size_t i = 0; i < kSamples; ++i) {
            places.emplace_back(layout, i);
        }
        const unsigned values = 1u << layout.mBits;
        // of the longest samples, some values: a prime apart, so that every bit changes at every position
        for (unsigned step = 0; step<values; step += layout.mBits> 12 ? 7 : 1) {
            const auto valueAt = [step, values](size_t aIndex) {
                return static_cast<unsigned>((step + aIndex * 0x9E37u) % values);
            };
            for (size_t i = 0; i < kSamples; ++i) {
                places[i].Set(line.data(), valueAt(i));
            }
            mKernels.mUnpack[static_cast<size_t>(layout.mLayout)](line.data(), samples.data(), kSamples);
            for (size_t i = 0; i < kSamples; ++i) {
                ASSERT_EQ(samples[i], valueAt(i) >> (layout.mBits - 8)) << i << " of line " << step;
            }
        }
    }
}

TEST_P(Kernels, UnpackAnyNumberOfSamplesAndTouchNothingElse)
{
    for (const Layout &layout : kLayouts) {
        SCOPED_TRACE(layout.mName);
        CheckWidths(
            layout.mSize, [](size_t aWidth) { return aWidth; },
            [&layout](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                aKernels.mUnpack[static_cast<size_t>(layout.mLayout)](aIn, aOut, aWidth);
            });
    }
}

TEST_P(Kernels, ConvertInterleavedPixels)
{
    const auto check = [this](LxDetail::PackedColourKernel ConversionKernels::*aKernel, size_t aComponents) {
        CheckWidths([aComponents](size_t aWidth) { return aComponents * aWidth; },
                    [](size_t aWidth) { return 4 * aWidth; },
                    [aKernel](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                        (aKernels.*aKernel)(aIn, aOut, aWidth);
                    });
    };
    check(&ConversionKernels::mRgb, 3);
    check(&ConversionKernels::mBgr, 3);
    check(&ConversionKernels::mRgba, 4);
    check(&ConversionKernels::mBgra, 4);
}

TEST_P(Kernels, ConvertMonoAsItLiesInMemory)
{
    std::vector<Layout> layouts(std::begin(kLayouts), std::end(kLayouts));
    layouts.push_back({"Bytes", SampleLayout::Bytes, 8, nullptr, [](size_t aSamples) { return aSamples; }});
    for (const Layout &layout : layouts) {
        SCOPED_TRACE(layout.mName);
        const auto index = static_cast<size_t>(layout.mLayout);
        if (GetParam() != HWY_SCALAR) {
            ASSERT_NE(mKernels.mMono[index], nullptr);
        }
        CheckWidths(
            layout.mSize, [](size_t aWidth) { return 4 * aWidth; },
            [index](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                if (aKernels.mMono[index]) {
                    aKernels.mMono[index](aIn, aOut, aWidth);
                }
                else {
                    std::vector<uint8_t> samples(aWidth);
                    aKernels.mUnpack[index](aIn, samples.data(), aWidth);
                    aKernels.mMono[static_cast<size_t>(SampleLayout::Bytes)](samples.data(), aOut, aWidth);
                }
            });
    }
}

TEST_P(Kernels, ConvertPlanes)
{
    CheckWidths([](size_t aWidth) { return 3 * aWidth; }, [](size_t aWidth) { return 4 * aWidth; },
                [](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                    aKernels.mPlanes(aIn, aIn + aWidth, aIn + 2 * aWidth, aOut, aWidth);
                });
}

TEST_P(Kernels, ConvertLumaAndChroma)
{
    CheckWidths([](size_t aWidth) { return 3 * aWidth; }, [](size_t aWidth) { return 4 * aWidth; },
                [](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                    aKernels.mYuv(aIn, aIn + aWidth, aIn + 2 * aWidth, LxDetail::kMatrix709, aOut, aWidth);
                });
    for (const auto kernel : {&ConversionKernels::mUyvy, &ConversionKernels::mYuyv}) {
        CheckWidths([](size_t aWidth) { return 2 * aWidth; }, [](size_t aWidth) { return 4 * aWidth; },
                    [kernel](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                        (aKernels.*kernel)(aIn, LxDetail::kMatrixFullRange, aOut, aWidth);
                    });
    }
}

TEST_P(Kernels, ConvertHalfChroma)
{
    for (const bool isFullRange : {false, true}) {
        const LxDetail::HalfChromaFactors factors = LxDetail::MakeHalfChromaFactors(0.2126, 0.0722, isFullRange);
        CheckWidths([](size_t aWidth) { return aWidth + (aWidth + 1) / 2 * 2; },
                    [](size_t aWidth) { return 4 * aWidth; },
                    [&factors](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                        const uint8_t *const u = aIn + aWidth;
                        aKernels.mHalfChroma(aIn, u, u + (aWidth + 1) / 2, factors, aOut, aWidth);
                    });
    }
}

TEST_P(Kernels, ConvertEveryHalfChromaLikeTheScalarOnes)
{
    constexpr size_t kLine = 256;
    std::vector<uint8_t> y(kLine);
    std::vector<uint8_t> u(kLine / 2);
    std::vector<uint8_t> v(kLine / 2);
    std::vector<uint8_t> got(4 * kLine);
    std::vector<uint8_t> expected(4 * kLine);
    for (const bool isFullRange : {false, true}) {
        const LxDetail::HalfChromaFactors factors = LxDetail::MakeHalfChromaFactors(0.2627, 0.0593, isFullRange);
        for (unsigned first = 0; first < 256; ++first) {
            for (unsigned luma = 0; luma < 256; luma += 15) {
                for (unsigned i = 0; i < kLine; ++i) {
                    y[i] = static_cast<uint8_t>(luma + i % 2);
                    u[i / 2] = static_cast<uint8_t>(first);
                    v[i / 2] = static_cast<uint8_t>(i + luma % 2);
                }
                mScalar.mHalfChroma(y.data(), u.data(), v.data(), factors, expected.data(), kLine);
                mKernels.mHalfChroma(y.data(), u.data(), v.data(), factors, got.data(), kLine);
                ASSERT_EQ(got, expected);
            }
        }
    }
}

TEST_P(Kernels, ConvertEveryChromaPairLikeTheScalarOnes)
{
    constexpr size_t kLine = 256;
    for (const LxDetail::YuvMatrix *matrix :
         {&LxDetail::kMatrixFullRange, &LxDetail::kMatrix601, &LxDetail::kMatrix709, &LxDetail::kMatrix2020})
    {
        std::vector<uint8_t> y(kLine);
        std::vector<uint8_t> u(kLine);
        std::vector<uint8_t> v(kLine);
        std::vector<uint8_t> pairs(2 * kLine);
        std::vector<uint8_t> got(4 * kLine);
        std::vector<uint8_t> expected(4 * kLine);
        for (unsigned luma = 0; luma < 256; luma += 17) {
            for (unsigned first = 0; first < 256; ++first) {
                for (unsigned i = 0; i < kLine; ++i) {
                    y[i] = static_cast<uint8_t>(luma + i % 2);
                    u[i] = static_cast<uint8_t>(first);
                    v[i] = static_cast<uint8_t>(i);
                    pairs[2 * i] = i % 2 == 0 ? u[i] : static_cast<uint8_t>(i / 2 * 2 + luma % 2);
                    pairs[2 * i + 1] = y[i];
                }
                mScalar.mYuv(y.data(), u.data(), v.data(), *matrix, expected.data(), kLine);
                mKernels.mYuv(y.data(), u.data(), v.data(), *matrix, got.data(), kLine);
                ASSERT_EQ(got, expected);
                mScalar.mUyvy(pairs.data(), *matrix, expected.data(), kLine);
                mKernels.mUyvy(pairs.data(), *matrix, got.data(), kLine);
                ASSERT_EQ(got, expected);
            }
        }
    }
}

TEST_P(Kernels, InterpolateMosaics)
{
    for (unsigned code = 0; code < 16; ++code) {
        const LxDetail::BayerLine colours = {(code & 1) != 0, (code & 2) != 0};
        const LxDetail::LineEnds ends = {(code & 4) != 0, (code & 8) != 0};
        SCOPED_TRACE(code);
        // samples beside the piece only where it is not an end of the line
        const size_t before = ends.mFirst ? 0 : 1;
        const size_t beside = before + (ends.mLast ? 0 : 1);
        CheckWidths([=](size_t aWidth) { return aWidth == 0 ? 0 : 3 * (aWidth + beside); },
                    [](size_t aWidth) { return 4 * aWidth; },
                    [=](const ConversionKernels &aKernels, const uint8_t *aIn, uint8_t *aOut, size_t aWidth) {
                        const size_t stride = aWidth + beside;
                        const uint8_t *const in = aIn + before;
                        aKernels.mDemosaic(in, in + stride, in + 2 * stride, colours, ends, aOut, aWidth);
                    });
    }
}

TEST_P(Kernels, RoundEveryMeanOfFourSamples)
{
    // All remainders of four samples modulo 4, at low, middle and high values: beside, above and below a pixel of every
    // second column, and at its corners.
    constexpr size_t kWidth = 64;
    for (const unsigned base : {0u, 126u, 252u}) {
        for (unsigned code = 0; code < 256; ++code) {
            const auto sample = [base, code](unsigned aIndex) {
                return static_cast<uint8_t>(base + (code >> 2 * aIndex & 3));
            };
            uint8_t lines[3][kWidth + 2];
            for (size_t i = 0; i < kWidth + 2; ++i) {
                const unsigned side = i / 2 % 2;
                lines[0][i] = sample(i % 2 == 0 ? side : 2);
                lines[1][i] = sample(side);
                lines[2][i] = sample(i % 2 == 0 ? 2 + side : 3);
            }
            for (const bool startsGreen : {false, true}) {
                std::vector<uint8_t> got(4 * kWidth);
                std::vector<uint8_t> expected(4 * kWidth);
                mScalar.mDemosaic(lines[0] + 1, lines[1] + 1, lines[2] + 1, {true, startsGreen}, {false, false},
                                  expected.data(), kWidth);
                mKernels.mDemosaic(lines[0] + 1, lines[1] + 1, lines[2] + 1, {true, startsGreen}, {false, false},
                                   got.data(), kWidth);
                ASSERT_EQ(got, expected) << base << " " << code;
            }
        }
    }
}

TEST_P(Kernels, CopyPastTheCaches)
{
    alignas(64) uint8_t out[4 * LxDetail::kStreamUnit];
    const std::vector<uint8_t> in = RandomBytes(sizeof(out) + 1);
    for (size_t size = 0; size <= 2 * LxDetail::kStreamUnit; size += LxDetail::kStreamUnit) {
        std::memset(out, 0x5A, sizeof(out));
        mKernels.mStream(in.data() + 1, out + LxDetail::kStreamUnit, size);
        mKernels.mFlush();
        EXPECT_EQ(std::memcmp(out + LxDetail::kStreamUnit, in.data() + 1, size), 0);
        EXPECT_EQ(out[LxDetail::kStreamUnit - 1], 0x5A);
        EXPECT_EQ(out[LxDetail::kStreamUnit + size], 0x5A);
    }
}
