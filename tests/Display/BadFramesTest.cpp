// What is wrong with a frame decides the result, in either renderer; nothing behind its data is read, which the address
// sanitizer sees, because the memory is exactly as large as the frame says. On an X server.

#include <QtCore/QElapsedTimer>
#include <cstring>
#include <functional>
#include <memory>

#include "OpenGLTest.h"

namespace
{

constexpr QRgb Background = qRgb(90, 20, 40);
constexpr uint32_t Most = 0xFFFFFFFF;
constexpr auto UnknownType = static_cast<LxPixelType>(0x8020FFFF);
constexpr auto TypeWithoutSize = static_cast<LxPixelType>(0x8000FFFF);

/// A frame that says of itself what a test tells it to: 8 x 8 pixels of Mono8 in 64 bytes unless told otherwise.
template <typename Interface>
class BadFrame : public Interface
{
public:
    uint32_t GetWidth() const override { return Shrinking(mWidth); }
    uint32_t GetHeight() const override { return Shrinking(mHeight); }
    LxPixelType GetPixelType() const override { return mType; }
    const void *GetDataPointer() const override { return mData.get(); }
    uint64_t GetDataSize() const override { return mSize; }
    uint32_t GetPaddingX() const override { return mPaddingX; }
    uint32_t GetPaddingY() const override { return mPaddingY; }

    void SetData(uint64_t aSize)
    {
        mSize = aSize;
        mData.reset(new uint8_t[aSize]());
    }

    uint32_t mWidth = 8;
    uint32_t mHeight = 8;
    LxPixelType mType = LxPixelType::Mono8;
    uint32_t mPaddingX = 0;
    uint32_t mPaddingY = 0;
    std::unique_ptr<uint8_t[]> mData{new uint8_t[64]()};
    uint64_t mSize = 64;
    int mShrinksAfter = -1;  // questions for its size, from which on it has half of each; -1: never

private:
    uint32_t Shrinking(uint32_t aLength) const
    {
        const bool isSmall = mShrinksAfter >= 0 && mAsked++ >= mShrinksAfter;
        return isSmall ? aLength / 2 : aLength;
    }

    mutable int mAsked = 0;
};

class BadImage : public BadFrame<ILxImage>
{
public:
    uint32_t GetOffsetX() const override { return 0; }
    uint32_t GetOffsetY() const override { return 0; }
};

using BadGenDCImage = BadFrame<ILxGenDCImage>;

/// What the display shows after the frame.
enum class Then
{
    Last,     ///< The last good picture.
    Nothing,  ///< The background alone.
};

struct Row
{
    const char *mName;
    std::function<void(BadImage &)> mSpoilImage;
    std::function<void(BadGenDCImage &)> mSpoilGenDC;
    LxResultCode mSoftware;
    LxResultCode mGenDC;  ///< Of the same as part of a container, in software.
    Then mOpenGL;         ///< OpenGL has no code for what goes wrong after the first look.
};

constexpr auto NoImage = LxResultCode::NoImage;
constexpr auto Invalid = LxResultCode::InvalidArgument;
constexpr auto TooSmall = LxResultCode::BufferTooSmall;
constexpr auto NotSupported = LxResultCode::PixelFormatNotSupported;

#define LX_BAD(...) [](BadImage &f) { __VA_ARGS__; }, [](BadGenDCImage &f) { __VA_ARGS__; }

const Row Rows[] = {
    {"no width", LX_BAD(f.mWidth = 0), NoImage, NoImage, Then::Last},
    {"no height", LX_BAD(f.mHeight = 0), NoImage, NoImage, Then::Last},
    {"no pixel type", LX_BAD(f.mType = LxPixelType::None), NoImage, NoImage, Then::Last},
    {"an unknown pixel type", LX_BAD(f.mType = UnknownType; f.SetData(256)), NotSupported, NotSupported, Then::Nothing},
    {"a pixel type without a size", LX_BAD(f.mType = TypeWithoutSize), NotSupported, Invalid, Then::Nothing},
    {"no data", LX_BAD(f.mData.reset(); f.mSize = 0), Invalid, Invalid, Then::Last},
    {"no data but a size", LX_BAD(f.mData.reset()), Invalid, Invalid, Then::Last},
    {"a byte short", LX_BAD(f.SetData(63)), TooSmall, TooSmall, Then::Nothing},
    {"a column short", LX_BAD(f.mWidth = 9), TooSmall, TooSmall, Then::Nothing},
    {"a line short", LX_BAD(f.mHeight = 9), TooSmall, TooSmall, Then::Nothing},
    {"a type that needs more", LX_BAD(f.mType = LxPixelType::RGB8), TooSmall, TooSmall, Then::Nothing},
    {"a packed type that needs more", LX_BAD(f.mType = LxPixelType::Mono12p), TooSmall, TooSmall, Then::Nothing},
    {"padding that is not there", LX_BAD(f.mPaddingX = 1), TooSmall, TooSmall, Then::Nothing},
    {"padding below that is not there", LX_BAD(f.mPaddingY = 1), TooSmall, TooSmall, Then::Nothing},
    {"lines shorter than their pixels", LX_BAD(f.mPaddingX = static_cast<uint32_t>(-4)), TooSmall, TooSmall,
     Then::Nothing},
    {"lines as long as a number can be", LX_BAD(f.mPaddingX = Most), TooSmall, TooSmall, Then::Nothing},
    {"padding below as large as a number can be", LX_BAD(f.mPaddingY = Most), TooSmall, TooSmall, Then::Nothing},
    {"paddings whose size overflows", LX_BAD(f.mHeight = f.mPaddingX = f.mPaddingY = Most), Invalid, Invalid,
     Then::Nothing},
    {"as many lines as a number can say", LX_BAD(f.mWidth = 1; f.mHeight = Most), TooSmall, TooSmall, Then::Nothing},
    {"as many columns as a number can say", LX_BAD(f.mWidth = Most; f.mHeight = 1), Invalid, TooSmall, Then::Nothing},
    {"all numbers as large as can be",
     LX_BAD(f.mWidth = f.mHeight = f.mPaddingX = f.mPaddingY = Most; f.mType = LxPixelType::BGRa8), Invalid, Invalid,
     Then::Nothing},
    {"too large for OpenGL and its data", LX_BAD(f.mWidth = 5000), TooSmall, TooSmall, Then::Nothing},
    {"planes with padding", LX_BAD(f.mType = LxPixelType::RGB8_Planar; f.mPaddingX = 1; f.SetData(1000)), Invalid,
     Invalid, Then::Nothing},
};

}  // namespace

class BadFrames : public OpenGLTest
{
protected:
    void ShowGood(int aRendererMode)
    {
        ASSERT_EQ(mDisplay.SetRendererMode(aRendererMode).GetCode(), 0u);
        mDisplay.SetBackgroundColor(QColor(Background));
        ShowAt(100, 100);
        ShowPicture(100, 100);
        ASSERT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
    }
};

TEST_F(BadFrames, GiveTheirCodeAndKeepTheLastPictureInSoftware)
{
    ShowGood(LxRendererModeSoftware);
    for (const Row &row : Rows) {
        SCOPED_TRACE(row.mName);
        BadImage image;
        row.mSpoilImage(image);
        EXPECT_EQ(mDisplay.Display(&image, false), LxResult(row.mSoftware));
        EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
        BadGenDCImage part;
        row.mSpoilGenDC(part);
        EXPECT_EQ(mDisplay.Display(&part, false), LxResult(row.mGenDC));
        EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
    }
}

TEST_F(BadFrames, LeaveAnEmptyDisplayEmpty)
{
    mDisplay.SetRendererMode(LxRendererModeSoftware);
    mDisplay.SetBackgroundColor(QColor(Background));
    ShowAt(100, 100);
    for (const Row &row : Rows) {
        SCOPED_TRACE(row.mName);
        BadImage image;
        row.mSpoilImage(image);
        EXPECT_FALSE(mDisplay.Display(&image, false).IsOK());
        EXPECT_EQ(mDisplay.GetInternalBuffer().GetDataPointer(), nullptr);
        EXPECT_EQ(Screen().pixel(30, 40), Background);
    }
}

TEST_F(BadFrames, AreNoErrorByOpenGLOnceTheyAreHandedOver)
{
    ShowGood(LxRendererModeOpenGL);
    for (const Row &row : Rows) {
        SCOPED_TRACE(row.mName);
        ShowPicture(100, 100);
        BadImage image;
        row.mSpoilImage(image);
        EXPECT_EQ(mDisplay.Display(&image, false), LxResult(row.mSoftware == NoImage ? NoImage : LxResultCode::OK));
        EXPECT_EQ(Screen().pixel(30, 40), row.mOpenGL == Then::Last ? PictureColor(30, 40) : Background);
    }
}

TEST_F(BadFrames, WithoutDataAreNotTakenByOpenGLSoThatTheirCallerWaitsInVain)
{
    ShowGood(LxRendererModeOpenGL);
    mSpy.mUploads.clear();
    mSpy.mQuads = 0;
    BadImage image;
    image.mData.reset();
    // again where the machine was busy for longer than a frame waits
    for (int i = 0; i < 20 && mSpy.mQuads == 0; ++i) {
        qint64 elapsed = 0;
        OnAnotherThread([&] {
            QElapsedTimer clock;
            clock.start();
            EXPECT_EQ(mDisplay.Display(&image, false).GetCode(), 0u);
            elapsed = clock.elapsed();
        });
        EXPECT_GE(elapsed, 490);
    }
    EXPECT_GT(mSpy.mQuads, 0) << "painted meanwhile";
    EXPECT_TRUE(mSpy.mUploads.empty());
    EXPECT_EQ(mDisplay.PendingImage(), nullptr);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

// The memory is that of the small size.
TEST_F(BadFrames, MayShrinkBetweenTheQuestionsForTheirSizeAndTheirData)
{
    for (const int mode : {LxRendererModeSoftware, LxRendererModeOpenGL}) {
        ASSERT_EQ(mDisplay.SetRendererMode(mode).GetCode(), 0u);
        ShowAt(100, 100);
        for (const auto &[width, height] : {std::pair(16u, 16u), std::pair(5000u, 8u)}) {
            for (int questions = 0; questions < 20; ++questions) {
                BadImage image;
                image.mWidth = width;
                image.mHeight = height;
                image.SetData(uint64_t{width} / 2 * (height / 2));
                image.mShrinksAfter = questions;
                const LxResult result = mDisplay.Display(&image, false);
                EXPECT_TRUE(result.IsOK() || result == LxResult(TooSmall)) << result.GetCode();
                Screen();
            }
        }
        mDisplay.Clear();
    }
}

TEST_F(BadFrames, GoodOnesAreReadToTheirLastByteOnly)
{
    for (const int mode : {LxRendererModeSoftware, LxRendererModeOpenGL}) {
        ASSERT_EQ(mDisplay.SetRendererMode(mode).GetCode(), 0u);
        ShowAt(100, 100);
        for (const LxPixelType type :
             {LxPixelType::Mono8, LxPixelType::Mono16, LxPixelType::Mono10p, LxPixelType::Mono12p,
              LxPixelType::Mono12Packed, LxPixelType::RGB8, LxPixelType::BGRa8, LxPixelType::YUV422_8,
              LxPixelType::YUV422_8_UYVY, LxPixelType::BayerRG8, LxPixelType::BayerBG12p, LxPixelType::BayerRG16})
        {
            for (const auto &[width, height] : {std::pair(17u, 5u), std::pair(1u, 1u), std::pair(4099u, 3u)}) {
                BadImage image;
                image.mType = type;
                image.mWidth = width;
                image.mHeight = height;
                image.SetData(LxPixelTypeGetImageSize(type, width, height));
                EXPECT_TRUE(mDisplay.Display(&image, false).IsOK()) << LxPixelTypeToString(type).GetAscii() << width;
                Settle();
            }
        }
    }
}
