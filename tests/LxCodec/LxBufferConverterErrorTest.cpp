#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "LimitedMemory.h"
#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/LxBufferConverter.h"

namespace
{

// An image that says of itself whatever a test wants: 4 x 3 pixels of Mono8 unless told otherwise, in memory of exactly
// the size that it says, so that the address sanitizer sees what is read beyond it.
class ClaimedImage : public ILxImage
{
public:
    uint32_t GetWidth() const override { return IsGone() ? mLaterWidth : mWidth; }
    uint32_t GetHeight() const override { return mHeight; }
    LxPixelType GetPixelType() const override { return mPixelType; }
    const void *GetDataPointer() const override { return IsGone() ? nullptr : mData; }
    uint64_t GetDataSize() const override { return IsGone() ? mLaterSize : mDataSize; }
    uint32_t GetPaddingX() const override { return mPaddingX; }
    uint32_t GetPaddingY() const override { return mPaddingY; }
    uint32_t GetOffsetX() const override { return 0; }
    uint32_t GetOffsetY() const override { return 0; }

    void SetSize(uint64_t aSize)
    {
        mMemory.reset(new uint8_t[aSize]());
        mData = mMemory.get();
        mDataSize = aSize;
    }

    uint32_t mWidth = 4;
    uint32_t mHeight = 3;
    LxPixelType mPixelType = LxPixelType::Mono8;
    std::unique_ptr<uint8_t[]> mMemory{new uint8_t[12]()};
    const void *mData = mMemory.get();
    uint64_t mDataSize = 12;
    uint32_t mPaddingX = 0;
    uint32_t mPaddingY = 0;
    int mGoneAfter = -1;  // questions for pointer, width or size that are answered before the image is gone; -1: all
    uint32_t mLaterWidth = 0;
    uint64_t mLaterSize = 0;

private:
    bool IsGone() const { return mGoneAfter >= 0 && mAsked++ >= mGoneAfter; }

    mutable int mAsked = 0;
};

constexpr uint32_t kMost = 0xFFFFFFFF;

struct BadInput
{
    const char *mName;
    void (*mSpoil)(ClaimedImage &aImage);
    LxResultCode mCode;
};

const BadInput kBadInputs[] = {
    {"null data", [](ClaimedImage &i) { i.mData = nullptr; }, LxResultCode::InvalidArgument},
    {"no width", [](ClaimedImage &i) { i.mWidth = 0; }, LxResultCode::InvalidArgument},
    {"no height", [](ClaimedImage &i) { i.mHeight = 0; }, LxResultCode::InvalidArgument},
    {"no pixel type", [](ClaimedImage &i) { i.mPixelType = LxPixelType::None; }, LxResultCode::PixelFormatNotSupported},
    {"a pixel type without bits", [](ClaimedImage &i) { i.mPixelType = static_cast<LxPixelType>(1); },
     LxResultCode::PixelFormatNotSupported},
    {"an unknown pixel type", [](ClaimedImage &i) { i.mPixelType = static_cast<LxPixelType>(0x81080001); },
     LxResultCode::PixelFormatNotSupported},
    {"a pixel type of ones", [](ClaimedImage &i) { i.mPixelType = static_cast<LxPixelType>(kMost); },
     LxResultCode::PixelFormatNotSupported},
    {"no bytes", [](ClaimedImage &i) { i.SetSize(0); }, LxResultCode::BufferTooSmall},
    {"a byte too few", [](ClaimedImage &i) { i.SetSize(11); }, LxResultCode::BufferTooSmall},
    {"lines shorter than their pixels", [](ClaimedImage &i) { i.mWidth = 5; }, LxResultCode::BufferTooSmall},
    {"a line too few", [](ClaimedImage &i) { i.mHeight = 4; }, LxResultCode::BufferTooSmall},
    {"packed lines without their last byte",
     [](ClaimedImage &i) {
         i.mPixelType = LxPixelType::Mono12p;  // 4.5 bytes a line
         i.mWidth = 3;
         i.SetSize(14);
     },
     LxResultCode::BufferTooSmall},
    {"a mosaic of words in half of its bytes", [](ClaimedImage &i) { i.mPixelType = LxPixelType::BayerRG16; },
     LxResultCode::BufferTooSmall},
    {"a second plane that is not there",
     [](ClaimedImage &i) { i.mPixelType = LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar; }, LxResultCode::BufferTooSmall},
    {"padding that is not there", [](ClaimedImage &i) { i.mPaddingX = 1; }, LxResultCode::BufferTooSmall},
    {"padding below that is not there", [](ClaimedImage &i) { i.mPaddingY = 1; }, LxResultCode::BufferTooSmall},
    {"padding of -1", [](ClaimedImage &i) { i.mPaddingX = kMost; }, LxResultCode::BufferTooSmall},
    {"padding below of -1", [](ClaimedImage &i) { i.mPaddingY = kMost; }, LxResultCode::BufferTooSmall},
    {"paddings whose size overflows 64 bits",
     [](ClaimedImage &i) {
         i.mWidth = i.mPaddingX = kMost;
         i.mHeight = kMost;
         i.mDataSize = UINT64_MAX;
     },
     LxResultCode::InvalidArgument},
    {"planes with padding",
     [](ClaimedImage &i) {
         i.mPixelType = LxPixelType::RGB8_Planar;
         i.mPaddingX = 1;
         i.SetSize(100);
     },
     LxResultCode::InvalidArgument},
    {"the most lines", [](ClaimedImage &i) { i.mHeight = kMost; }, LxResultCode::BufferTooSmall},
    {"the widest lines in too few bytes",
     [](ClaimedImage &i) {
         i.mWidth = 1u << 24;
         i.mHeight = kMost;
     },
     LxResultCode::BufferTooSmall},
    {"lines wider than that",
     [](ClaimedImage &i) {
         i.mWidth = (1u << 24) + 1;
         i.mHeight = 1;
     },
     LxResultCode::InvalidArgument},
    {"the largest width and height",
     [](ClaimedImage &i) {
         i.mWidth = i.mHeight = kMost;
         i.mDataSize = UINT64_MAX;
     },
     LxResultCode::InvalidArgument},
    {"the largest width and height of the longest pixels",
     [](ClaimedImage &i) {
         i.mPixelType = LxPixelType::RGBa16;
         i.mWidth = i.mHeight = kMost;
         i.mDataSize = UINT64_MAX;
     },
     LxResultCode::InvalidArgument},
    {"data that shrink behind the back",
     [](ClaimedImage &i) {
         i.mGoneAfter = 2;  // pointer and width
         i.mLaterSize = 11;
     },
     LxResultCode::BufferTooSmall},
    {"data that vanish behind the back", [](ClaimedImage &i) { i.mGoneAfter = 2; }, LxResultCode::BufferTooSmall},
    {"a width that vanishes behind the back", [](ClaimedImage &i) { i.mGoneAfter = 1; }, LxResultCode::InvalidArgument},
    {"a width that grows behind the back",
     [](ClaimedImage &i) {
         i.mGoneAfter = 1;
         i.mLaterWidth = 4000;
         i.mLaterSize = 12;
     },
     LxResultCode::BufferTooSmall},
};

// Converts into an output that is there already, of the right size or not, and checks that failures leave it alone.
class LxBufferConverterError : public testing::Test
{
protected:
    void SetUp() override { MakeOutput(4, 3, LxPixelType::BGRa8); }

    void MakeOutput(uint32_t aWidth, uint32_t aHeight, LxPixelType aType)
    {
        ASSERT_TRUE(mOutput.GetImage()->Alloc(aWidth, aHeight, aType).IsOK());
        std::memset(mOutput.GetDataPointer(), 0x5A, mOutput.GetImage()->GetDataSize());
    }

    auto OutputState() const
    {
        const LxImage &image = *mOutput.GetImage();
        const auto *const bytes = static_cast<const uint8_t *>(image.GetDataPointer());
        return std::tuple(image.GetWidth(), image.GetHeight(), image.GetPixelType(), image.GetDataPointer(),
                          std::vector<uint8_t>(bytes, bytes + image.GetDataSize()));
    }

    void ExpectRefused(const ILxImage *aInput, LxResultCode aCode)
    {
        const auto before = OutputState();
        for (const bool adapt : {false, true}) {
            const LxResult result = mConverter.Convert(aInput, &mOutput, adapt, false);
            EXPECT_EQ(result, aCode) << result.GetCodeString().GetAscii();
            EXPECT_FALSE(result.GetDescription().IsEmpty());
            EXPECT_EQ(OutputState(), before);
        }
    }

    ClaimedImage mInput;
    LxBuffer mOutput{LxPayloadType::Image};
    LxBufferConverter mConverter{0};
};

using LxBufferConverterOutput = LxBufferConverterError;

}  // namespace

TEST_F(LxBufferConverterError, WithoutAnInputImage)
{
    ExpectRefused(nullptr, LxResultCode::InvalidArgument);
    const LxImage empty;
    ExpectRefused(&empty, LxResultCode::InvalidArgument);
}

TEST_F(LxBufferConverterError, EachKindOfBadInputHasItsCode)
{
    for (const BadInput &bad : kBadInputs) {
        SCOPED_TRACE(bad.mName);
        const auto before = OutputState();
        for (const bool adapt : {false, true}) {
            for (const int threads : {1, 3}) {
                ClaimedImage image;
                bad.mSpoil(image);
                mConverter.SetThreadCount(threads);
                const LxResult result = mConverter.Convert(&image, &mOutput, adapt, false);
                EXPECT_EQ(result, bad.mCode) << result.GetCodeString().GetAscii();
                EXPECT_FALSE(result.GetDescription().IsEmpty());
                EXPECT_EQ(OutputState(), before);
            }
        }
    }
}

TEST_F(LxBufferConverterError, AnImageIsAskedOnceForEachOfItsProperties)
{
    mInput.mGoneAfter = 3;  // pointer, width, size
    EXPECT_TRUE(mConverter.Convert(&mInput, &mOutput, false, false).IsOK());
}

TEST_F(LxBufferConverterError, WithoutAnOutputImage)
{
    EXPECT_EQ(mConverter.Convert(&mInput, nullptr, true, false), LxResultCode::InvalidArgument);
    LxBuffer none(LxPayloadType::H264);
    EXPECT_EQ(mConverter.Convert(&mInput, &none, true, false), LxResultCode::InvalidArgument);
    EXPECT_EQ(mConverter.Convert(&mInput, &none, false, false), LxResultCode::InvalidArgument);
    EXPECT_EQ(none.GetImage(), nullptr);
}

TEST_F(LxBufferConverterError, WithAFormatThatIsNotSupported)
{
    std::vector<uint8_t> memory(4096);
    size_t count = 0;
    for (const LxDetail::PixelFormat &format : LxDetail::PixelFormats) {
        if (!LxBufferConverter::IsSupported(format.mType)) {
            ++count;
            mInput.mPixelType = format.mType;
            mInput.mData = memory.data();
            mInput.mDataSize = memory.size();
            const LxResult result = mConverter.Convert(&mInput, &mOutput, true, false);
            EXPECT_NE(result.GetDescription().GetString().find(format.mName), std::string::npos);
            ExpectRefused(&mInput, LxResultCode::PixelFormatNotSupported);
        }
    }
    EXPECT_EQ(count, 113u);
    for (const uint32_t number : {0u, 1u, 0x01080000u, 0x81080001u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(LxBufferConverter::IsSupported(static_cast<LxPixelType>(number)));
    }
}

TEST_F(LxBufferConverterError, WithAnOutputTooLargeToBeHad)
{
    mInput.mWidth = 1u << 20;
    mInput.mHeight = 1u << 22;
    mInput.mDataSize = UINT64_MAX;
    const auto before = OutputState();
    EXPECT_EQ(mConverter.Convert(&mInput, &mOutput, true, false), LxResultCode::InvalidArgument);
    EXPECT_EQ(OutputState(), before);
}

TEST_F(LxBufferConverterError, WithoutMemoryForTheOutput)
{
    // Addresses of its own for the input, so that it does not seem to share memory with the output. It is not read.
    constexpr size_t kSize = size_t{1} << 32;
    void *const addresses = mmap(nullptr, kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(addresses, MAP_FAILED);
    mInput.mWidth = 1u << 16;
    mInput.mHeight = 1u << 16;
    mInput.mData = addresses;
    mInput.mDataSize = kSize;
    const auto before = OutputState();
    LxResult result;
    {
        const LimitedMemory limit;
        result = mConverter.Convert(&mInput, &mOutput, true, false);
    }
    munmap(addresses, kSize);
    EXPECT_EQ(result, LxResultCode::NoMemory) << result.GetDescription().GetAscii();
    EXPECT_FALSE(result.GetDescription().IsEmpty());
    EXPECT_EQ(OutputState(), before);
}

TEST_F(LxBufferConverterError, WithAnOutputOfAnotherSizeThatMustNotChange)
{
    for (const auto &[width, height] : {std::pair(5u, 3u), std::pair(4u, 2u), std::pair(3u, 4u)}) {
        MakeOutput(width, height, LxPixelType::BGRa8);
        const auto before = OutputState();
        EXPECT_EQ(mConverter.Convert(&mInput, &mOutput, false, false), LxResultCode::SizeMismatch);
        EXPECT_EQ(OutputState(), before);
    }
    LxBuffer empty(LxPayloadType::Image);
    EXPECT_EQ(mConverter.Convert(&mInput, &empty, false, false), LxResultCode::SizeMismatch);
    EXPECT_EQ(empty.GetDataPointer(), nullptr);
}

TEST_F(LxBufferConverterError, WithAnOutputOfAnotherFormatThatMustNotChange)
{
    MakeOutput(4, 3, LxPixelType::RGBa8);
    const auto before = OutputState();
    EXPECT_EQ(mConverter.Convert(&mInput, &mOutput, false, false), LxResultCode::InvalidArgument);
    EXPECT_EQ(OutputState(), before);
}

TEST_F(LxBufferConverterError, WithAnInputInTheOutputsMemory)
{
    const auto before = OutputState();
    for (const bool adapt : {false, true}) {
        EXPECT_EQ(mConverter.Convert(mOutput.GetImage(), &mOutput, adapt, false), LxResultCode::InvalidArgument);
        mInput.mData = static_cast<uint8_t *>(mOutput.GetDataPointer()) + 47;
        EXPECT_EQ(mConverter.Convert(&mInput, &mOutput, adapt, false), LxResultCode::InvalidArgument);
        mInput.mData = static_cast<uint8_t *>(mOutput.GetDataPointer()) - 11;
        EXPECT_EQ(mConverter.Convert(&mInput, &mOutput, adapt, false), LxResultCode::InvalidArgument);
    }
    EXPECT_EQ(OutputState(), before);
}

TEST_F(LxBufferConverterError, DoesNotSpoilTheNextConversion)
{
    ExpectRefused(nullptr, LxResultCode::InvalidArgument);
    std::memset(mInput.mMemory.get(), 7, mInput.mDataSize);
    ASSERT_TRUE(mConverter.Convert(&mInput, &mOutput, false, false).IsOK());
    EXPECT_EQ(static_cast<uint8_t *>(mOutput.GetDataPointer())[46], 7);
}

TEST_F(LxBufferConverterOutput, IsMadeToFitWhenItMayBeAdapted)
{
    std::memset(mInput.mMemory.get(), 9, mInput.mDataSize);
    const auto expectAdapted = [this](LxBuffer &aOutput) {
        ASSERT_TRUE(mConverter.Convert(&mInput, &aOutput, true, true).IsOK());
        const LxImage &image = *aOutput.GetImage();
        EXPECT_EQ(image.GetWidth(), 4u);
        EXPECT_EQ(image.GetHeight(), 3u);
        EXPECT_EQ(image.GetPixelType(), LxPixelType::BGRa8);
        EXPECT_EQ(image.GetPaddingX(), 0u);
        EXPECT_EQ(image.GetPaddingY(), 0u);
        ASSERT_EQ(image.GetDataSize(), 48u);
        const auto *const bytes = static_cast<const uint8_t *>(image.GetDataPointer());
        for (uint32_t i = 0; i < 48; ++i) {
            EXPECT_EQ(bytes[i], i % 4 == 3 ? 255 : 9);
        }
    };
    LxBuffer output(LxPayloadType::Image);
    expectAdapted(output);
    for (const LxPixelType type : {LxPixelType::Mono8, LxPixelType::BGRa8, LxPixelType::RGBa16}) {
        for (const uint32_t size : {1u, 4u, 9u}) {
            ASSERT_TRUE(output.GetImage()->Alloc(size, size, type).IsOK());
            expectAdapted(output);
        }
    }
    ASSERT_TRUE(output.GetImage()->Alloc(4, 3, LxPixelType::BGRa8, 4, 4).IsOK());
    expectAdapted(output);
}

TEST_F(LxBufferConverterOutput, ThatFitsKeepsItsMemory)
{
    std::array<uint8_t, 48> memory = {};
    LxBuffer output(LxPayloadType::Image);
    ASSERT_TRUE(output.GetImage()->Attach(memory.data(), 4, 3, LxPixelType::BGRa8).IsOK());
    for (const bool adapt : {true, false}) {
        memory.fill(0);
        ASSERT_TRUE(mConverter.Convert(&mInput, &output, adapt, false).IsOK());
        EXPECT_EQ(output.GetDataPointer(), memory.data());
        EXPECT_EQ(memory[47], 255);
    }
}

TEST_F(LxBufferConverterOutput, IsMadeFromDataThatAreLongerThanTheGeometry)
{
    mInput.SetSize(64);
    EXPECT_TRUE(mConverter.Convert(&mInput, &mOutput, false, false).IsOK());
}
