#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

#include "LimitedMemory.h"
#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/LxBufferConverter.h"

namespace
{

// An image that says of itself whatever a test wants.
class ClaimedImage : public ILxImage
{
public:
    uint32_t GetWidth() const override { return mWidth; }
    uint32_t GetHeight() const override { return mHeight; }
    LxPixelType GetPixelType() const override { return mPixelType; }
    const void *GetDataPointer() const override { return mData; }
    uint64_t GetDataSize() const override { return mDataSize; }
    uint32_t GetPaddingX() const override { return mPaddingX; }
    uint32_t GetPaddingY() const override { return mPaddingY; }
    uint32_t GetOffsetX() const override { return 0; }
    uint32_t GetOffsetY() const override { return 0; }

    uint32_t mWidth = 4;
    uint32_t mHeight = 3;
    LxPixelType mPixelType = LxPixelType::Mono8;
    std::array<uint8_t, 64> mMemory = {};
    const void *mData = mMemory.data();
    uint64_t mDataSize = 12;
    uint32_t mPaddingX = 0;
    uint32_t mPaddingY = 0;
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
    mInput.mData = nullptr;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
}

TEST_F(LxBufferConverterError, WithoutPixels)
{
    mInput.mWidth = 0;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
    mInput.mWidth = 4;
    mInput.mHeight = 0;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
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
    for (const LxDetail::PixelFormat &format : LxDetail::kPixelFormats) {
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
        mInput.mPixelType = static_cast<LxPixelType>(number);
        ExpectRefused(&mInput, LxResultCode::PixelFormatNotSupported);
    }
}

TEST_F(LxBufferConverterError, WithDataThatAreTooShort)
{
    mInput.mDataSize = 11;
    ExpectRefused(&mInput, LxResultCode::BufferTooSmall);
    mInput.mDataSize = 0;
    ExpectRefused(&mInput, LxResultCode::BufferTooSmall);
    mInput.mDataSize = 12;
    mInput.mPaddingX = 1;
    ExpectRefused(&mInput, LxResultCode::BufferTooSmall);
    mInput.mPaddingX = 0;
    mInput.mPaddingY = 1;
    ExpectRefused(&mInput, LxResultCode::BufferTooSmall);
    mInput.mPaddingY = 0;
    mInput.mWidth = 1u << 24;
    mInput.mHeight = 0xFFFFFFFF;
    ExpectRefused(&mInput, LxResultCode::BufferTooSmall);
}

TEST_F(LxBufferConverterError, WithAGeometryThatHasNoSize)
{
    mInput.mWidth = mInput.mHeight = 0xFFFFFFFF;
    mInput.mDataSize = UINT64_MAX;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
    mInput.mPixelType = LxPixelType::RGBa16;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
    mInput.mPixelType = LxPixelType::Mono8;
    mInput.mWidth = (1u << 24) + 1;
    mInput.mHeight = 1;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
    mInput.mWidth = 4;
    mInput.mHeight = 3;
    mInput.mPixelType = LxPixelType::RGB8_Planar;
    mInput.mPaddingX = 1;
    ExpectRefused(&mInput, LxResultCode::InvalidArgument);
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
    mInput.mMemory.fill(7);
    ASSERT_TRUE(mConverter.Convert(&mInput, &mOutput, false, false).IsOK());
    EXPECT_EQ(static_cast<uint8_t *>(mOutput.GetDataPointer())[46], 7);
}

TEST_F(LxBufferConverterOutput, IsMadeToFitWhenItMayBeAdapted)
{
    mInput.mMemory.fill(9);
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
    mInput.mDataSize = 64;
    EXPECT_TRUE(mConverter.Convert(&mInput, &mOutput, false, false).IsOK());
}
