#include "LxCodec/LxH264Decoder.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "H264DecoderTest.h"
#include "LxCodec/YuvSplit.h"

namespace
{

/// Blue, green and red of a sample by the formulas of the recommendations, in double precision.
std::array<double, 3> ToBGR(int aY, int aU, int aV, double aKr, double aKb, bool aIsFullRange, int aBits)
{
    const double one = 1 << (aBits - 8);
    const double y = aIsFullRange ? aY / (256 * one - 1) : (aY - 16 * one) / (219 * one);
    const double chroma = aIsFullRange ? 256 * one - 1 : 224 * one;
    const double u = (aU - 128 * one) / chroma;
    const double v = (aV - 128 * one) / chroma;
    const double red = y + 2 * (1 - aKr) * v;
    const double blue = y + 2 * (1 - aKb) * u;
    const double green = (y - aKr * red - aKb * blue) / (1 - aKr - aKb);
    const auto scale = [](double aValue) { return std::clamp(aValue, 0.0, 1.0) * 255; };
    return {scale(blue), scale(green), scale(red)};
}

}  // namespace

using LxH264Decoder_ = H264DecoderTest;

TEST_F(LxH264Decoder_, GivesAPictureForEveryUnitOfAWholeStream)
{
    EXPECT_EQ(TakeAll(MakeStream(25)),
              (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24}));
    EXPECT_EQ(mImage.GetWidth(), 64u);
    EXPECT_EQ(mImage.GetHeight(), 48u);
    EXPECT_EQ(mImage.GetPixelType(), LxPixelType::BGRa8);
    EXPECT_EQ(mImage.GetDataSize(), 64u * 48 * 4);
    EXPECT_EQ(mDecoder.Retrieve(&mImage), LxResultCode::NotFound);
}

TEST_F(LxH264Decoder_, UsesTheMemoryOfTheImageAgain)
{
    const H264Units stream = MakeStream(3);
    ASSERT_TRUE(Process(stream[0]).IsOK());
    ASSERT_TRUE(Retrieve());
    const void *memory = mImage.GetDataPointer();
    ASSERT_TRUE(Process(stream[1]).IsOK());
    ASSERT_TRUE(Retrieve());
    EXPECT_EQ(mImage.GetDataPointer(), memory);
}

TEST_F(LxH264Decoder_, TakesSlicesOfOnePictureAndOtherStartCodes)
{
    H264Settings settings;
    settings.mOptions = "slices=3";
    H264Units stream = MakeStream(3, settings);
    // start codes of three bytes only, and zeros behind the unit
    for (auto &unit : stream) {
        for (size_t i = 0; i + 3 < unit.size(); ++i) {
            if (unit[i] == 0 && unit[i + 1] == 0 && unit[i + 2] == 0 && unit[i + 3] == 1) {
                unit.erase(unit.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
        unit.insert(unit.end(), 3, 0);
    }
    EXPECT_EQ(TakeAll(stream), (std::vector{0, 1, 2}));
}

TEST_F(LxH264Decoder_, GivesPicturesInTheOrderOfShowing)
{
    H264Settings settings;
    settings.mBPictures = 2;
    settings.mKeyInterval = 9;
    const std::vector<int> pictures = TakeAll(MakeStream(24, settings));
    EXPECT_GE(pictures.size(), 20u) << "the last wait for more";
    for (size_t i = 0; i < pictures.size(); ++i) {
        EXPECT_EQ(pictures[i], static_cast<int>(i));
    }
}

TEST_F(LxH264Decoder_, KeepsAtMostSixteenPictures)
{
    for (const auto &unit : MakeStream(20)) {
        ASSERT_TRUE(Process(unit).IsOK());
    }
    EXPECT_EQ(Retrieve(), 4);
    for (int i = 5; i < 20; ++i) {
        EXPECT_EQ(Retrieve(), i);
    }
    EXPECT_EQ(Retrieve(), std::nullopt);
}

TEST_F(LxH264Decoder_, FollowsTheSizeOfThePictures)
{
    for (const auto &[width, height] : {std::pair{64, 48}, std::pair{128, 96}, std::pair{50, 38}, std::pair{16, 16}}) {
        H264Settings settings;
        settings.mWidth = width;
        settings.mHeight = height;
        EXPECT_EQ(TakeAll(MakeStream(2, settings)), (std::vector{0, 1}));
        EXPECT_EQ(mImage.GetWidth(), static_cast<uint32_t>(width));
        EXPECT_EQ(mImage.GetHeight(), static_cast<uint32_t>(height));
        EXPECT_EQ(mImage.GetDataSize(), static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4);
    }
}

TEST_F(LxH264Decoder_, CropsPicturesAtEverySide)
{
    for (const AVPixelFormat format : {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV444P}) {
        for (const auto &[left, top] : {std::pair{0, 4}, std::pair{2, 0}, std::pair{6, 2}, std::pair{32, 16}}) {
            H264Settings settings;
            settings.mFormat = format;
            settings.mRange = AVCOL_RANGE_JPEG;
            settings.mOptions = "crop-rect=" + std::to_string(left) + "," + std::to_string(top) + ",4,2";
            const H264Units stream = EncodeH264(
                settings, 1, [](int, int aPlane, int aX, int aY) { return aPlane == 0 ? 30 + 2 * aX + aY : 128; });
            ASSERT_EQ(stream.size(), 1u);
            ASSERT_TRUE(Process(stream[0]).IsOK());
            ASSERT_TRUE(mDecoder.Retrieve(&mImage).IsOK());
            EXPECT_EQ(mImage.GetWidth(), static_cast<uint32_t>(64 - 4 - left));
            EXPECT_EQ(mImage.GetHeight(), static_cast<uint32_t>(48 - 2 - top));
            EXPECT_NEAR(*static_cast<const uint8_t *>(mImage.GetDataPointer()), 30 + 2 * left + top, 3);
        }
    }
}

TEST_F(LxH264Decoder_, HonoursRangeMatrixAndFormat)
{
    struct Case
    {
        const char *mName;
        AVPixelFormat mFormat;
        int mBits;
        AVColorRange mRange;
        AVColorSpace mMatrix;
        double mKr;
        double mKb;
        int mWidth = 64;
        int mHeight = 48;
    };
    constexpr auto limited = AVCOL_RANGE_MPEG;
    constexpr auto full = AVCOL_RANGE_JPEG;
    constexpr auto none = AVCOL_SPC_UNSPECIFIED;
    const Case cases[] = {
        {"420 limited 601", AV_PIX_FMT_YUV420P, 8, limited, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"420 limited 601 of 625 lines", AV_PIX_FMT_YUV420P, 8, limited, AVCOL_SPC_BT470BG, 0.299, 0.114},
        {"420 full 601", AV_PIX_FMT_YUV420P, 8, full, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"420 limited 709", AV_PIX_FMT_YUV420P, 8, limited, AVCOL_SPC_BT709, 0.2126, 0.0722},
        {"420 full 709", AV_PIX_FMT_YUV420P, 8, full, AVCOL_SPC_BT709, 0.2126, 0.0722},
        {"420 limited 2020", AV_PIX_FMT_YUV420P, 8, limited, AVCOL_SPC_BT2020_NCL, 0.2627, 0.0593},
        {"420 full 2020", AV_PIX_FMT_YUV420P, 8, full, AVCOL_SPC_BT2020_NCL, 0.2627, 0.0593},
        {"420 limited FCC", AV_PIX_FMT_YUV420P, 8, limited, AVCOL_SPC_FCC, 0.30, 0.11},
        {"420 nothing said", AV_PIX_FMT_YUV420P, 8, AVCOL_RANGE_UNSPECIFIED, none, 0.299, 0.114},
        {"420 full, no matrix", AV_PIX_FMT_YUV420P, 8, full, none, 0.299, 0.114},
        {"420 of 576 lines, no matrix", AV_PIX_FMT_YUV420P, 8, limited, none, 0.299, 0.114, 64, 576},
        {"420 of 592 lines, no matrix", AV_PIX_FMT_YUV420P, 8, limited, none, 0.2126, 0.0722, 64, 592},
        {"420 of 1280 columns, no matrix", AV_PIX_FMT_YUV420P, 8, limited, none, 0.2126, 0.0722, 1280, 64},
        {"422 limited 709", AV_PIX_FMT_YUV422P, 8, limited, AVCOL_SPC_BT709, 0.2126, 0.0722},
        {"422 full 601", AV_PIX_FMT_YUV422P, 8, full, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"444 limited 601", AV_PIX_FMT_YUV444P, 8, limited, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"444 full 709", AV_PIX_FMT_YUV444P, 8, full, AVCOL_SPC_BT709, 0.2126, 0.0722},
        {"420 of 10 bits limited 709", AV_PIX_FMT_YUV420P10LE, 10, limited, AVCOL_SPC_BT709, 0.2126, 0.0722},
        {"420 of 10 bits full 601", AV_PIX_FMT_YUV420P10LE, 10, full, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"422 of 10 bits limited 601", AV_PIX_FMT_YUV422P10LE, 10, limited, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
        {"444 RGB", AV_PIX_FMT_YUV444P, 8, full, AVCOL_SPC_RGB, 0, 0},
        {"grey", AV_PIX_FMT_GRAY8, 8, limited, AVCOL_SPC_SMPTE170M, 0.299, 0.114},
    };
    // left and right half
    const int samples[2][3] = {{180, 90, 160}, {70, 150, 110}};
    for (const Case &one : cases) {
        H264Settings settings;
        settings.mWidth = one.mWidth;
        settings.mHeight = one.mHeight;
        settings.mFormat = one.mFormat;
        settings.mRange = one.mRange;
        settings.mMatrix = one.mMatrix;
        const int scale = 1 << (one.mBits - 8);
        const bool hasHalfChroma = one.mFormat != AV_PIX_FMT_YUV444P;
        const H264Units stream = EncodeH264(settings, 1, [&](int, int aPlane, int aX, int) {
            const int half = one.mWidth / (aPlane > 0 && hasHalfChroma ? 4 : 2);
            return samples[aX < half ? 0 : 1][aPlane] * scale;
        });
        ASSERT_EQ(stream.size(), 1u) << one.mName;
        ASSERT_TRUE(Process(stream[0]).IsOK()) << one.mName;
        ASSERT_TRUE(mDecoder.Retrieve(&mImage).IsOK()) << one.mName;
        const auto *pixels = static_cast<const uint8_t *>(mImage.GetDataPointer());
        for (int half = 0; half < 2; ++half) {
            const int *sample = samples[half];
            const bool isGrey = one.mFormat == AV_PIX_FMT_GRAY8;
            const std::array<double, 3> planes = {double(sample[1]), double(sample[0]), double(sample[2])};
            const auto expected =
                one.mMatrix == AVCOL_SPC_RGB
                    ? planes  // green, blue and red
                    : ToBGR(sample[0] * scale, (isGrey ? 128 : sample[1]) * scale, (isGrey ? 128 : sample[2]) * scale,
                            one.mKr, one.mKb, one.mRange == full, one.mBits);
            const int x = one.mWidth / 4 + half * one.mWidth / 2;
            const uint8_t *pixel = pixels + 4 * (one.mHeight / 2 * one.mWidth + x);
            for (size_t i = 0; i < 3; ++i) {
                EXPECT_NEAR(pixel[i], expected[i], 3) << one.mName << " half " << half << " byte " << i;
            }
            EXPECT_EQ(pixel[3], 255) << one.mName;
        }
        EXPECT_TRUE(std::all_of(pixels, pixels + mImage.GetDataSize(), [&pixels](const uint8_t &aByte) {
            return (&aByte - pixels) % 4 != 3 || aByte == 255;
        })) << one.mName;
    }
}

TEST_F(LxH264Decoder_, RefusesWhatIsNoUnit)
{
    EXPECT_EQ(mDecoder.Process(nullptr), LxResultCode::InvalidArgument);
    EXPECT_EQ(mDecoder.Retrieve(nullptr), LxResultCode::InvalidArgument);
    EXPECT_EQ(mDecoder.Retrieve(&mImage), LxResultCode::NotFound);
    EXPECT_EQ(mImage.GetDataPointer(), nullptr);

    class OddUnit : public ILxH264AccessUnit
    {
    public:
        const void *GetDataPointer() const override { return mData; }
        uint64_t GetDataSize() const override { return mSize; }

        const void *mData = nullptr;
        uint64_t mSize = 0;
    } unit;
    EXPECT_EQ(mDecoder.Process(&unit), LxResultCode::InvalidArgument);
    unit.mData = "x";
    unit.mSize = uint64_t{1} << 30;
    EXPECT_EQ(mDecoder.Process(&unit), LxResultCode::TooLong);
}

TEST_F(LxH264Decoder_, DecodersAreIndependent)
{
    const H264Units stream = MakeStream(3);
    LxH264Decoder other;
    ASSERT_TRUE(Process(stream[0]).IsOK());
    const H264Unit second(stream[1]);
    EXPECT_FALSE(other.Process(&second).IsOK());
    ASSERT_TRUE(Process(stream[1]).IsOK());
    EXPECT_EQ(Retrieve(), 0);
    EXPECT_EQ(Retrieve(), 1);
}

TEST(HalfChroma, IsWithinOneOfTheExactColour)
{
    constexpr uint32_t width = 511;  // odd: the last pixel has its chroma alone
    std::vector<uint8_t> y(width);
    std::vector<uint8_t> u((width + 1) / 2);
    std::vector<uint8_t> v(u.size());
    std::vector<uint8_t> out(4 * width);
    uint32_t state = 1;
    const auto random = [&state] { return static_cast<uint8_t>((state = state * 1664525 + 1013904223) >> 24); };
    for (const auto &[kr, kb] : {std::pair{0.299, 0.114}, std::pair{0.2126, 0.0722}, std::pair{0.2627, 0.0593},
                                 std::pair{0.30, 0.11}, std::pair{0.212, 0.087}})
    {
        for (const bool full : {false, true}) {
            const LxDetail::HalfChromaFactors factors = LxDetail::MakeHalfChromaFactors(kr, kb, full);
            for (int line = 0; line < 200; ++line) {
                std::generate(y.begin(), y.end(), random);
                std::generate(u.begin(), u.end(), random);
                std::generate(v.begin(), v.end(), random);
                if (line == 0) {  // the corners
                    for (size_t i = 0; i < u.size(); ++i) {
                        y[2 * i % width] = i % 2 ? 255 : 0;
                        u[i] = i / 2 % 2 ? 255 : 0;
                        v[i] = i / 4 % 2 ? 255 : 0;
                    }
                }
                LxDetail::GetScalarKernels().mHalfChroma(y.data(), u.data(), v.data(), factors, out.data(), width);
                for (size_t x = 0; x < width; ++x) {
                    const auto exact = ToBGR(y[x], u[x / 2], v[x / 2], kr, kb, full, 8);
                    for (size_t i = 0; i < 3; ++i) {
                        ASSERT_NEAR(out[4 * x + i], exact[i], 1.0) << x << ' ' << i << ' ' << full << ' ' << kr;
                    }
                    ASSERT_EQ(out[4 * x + 3], 255);
                }
            }
        }
    }
}
