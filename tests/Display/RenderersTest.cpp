// Both renderers show the same frames in the same way. On an X server.

#include <QtCore/QThread>
#include <QtWidgets/QDialog>
#include <atomic>

#include "FakePayloads.h"
#include "H264Stream.h"
#include "LxBuffer/GenDCDescriptor.h"
#include "LxBuffer/LxGenDCContainer.h"
#include "LxBuffer/PixelFormatTable.h"
#include "LxCodec/LxBufferConverter.h"
#include "LxCodec/LxH264Decoder.h"
#include "OpenGLTest.h"

namespace
{

class BothRenderers : public OpenGLTest, public testing::WithParamInterface<int>
{
protected:
    void SetUp() override
    {
        OpenGLTest::SetUp();
        ASSERT_EQ(mDisplay.SetRendererMode(GetParam()).GetCode(), 0u);
        mDisplay.SetBackgroundColor(QColor(90, 20, 40));
    }

    static constexpr QRgb Background = qRgb(90, 20, 40);
};

std::string RendererName(const testing::TestParamInfo<int> &aInfo)
{
    return aInfo.param ? "OpenGL" : "Software";
}

/// An image of any format with a pattern in its bytes.
std::unique_ptr<LxBuffer> MakePattern(uint32_t aWidth, uint32_t aHeight, LxPixelType aType, uint32_t aPaddingX = 0)
{
    auto buffer = std::make_unique<LxBuffer>(LxPayloadType::Image);
    EXPECT_TRUE(buffer->GetImage()->Alloc(aWidth, aHeight, aType, aPaddingX).IsOK());
    auto *bytes = static_cast<uint8_t *>(buffer->GetDataPointer());
    for (uint64_t i = 0; i < buffer->GetImage()->GetDataSize(); ++i) {
        bytes[i] = static_cast<uint8_t>(i * 31 + (i >> 8) * 17);
    }
    return buffer;
}

/// What it looks like: how formats are converted is tested with the converter.
std::unique_ptr<LxBuffer> Converted(const LxBuffer &aBuffer)
{
    auto picture = std::make_unique<LxBuffer>(LxPayloadType::Image);
    LxBufferConverter converter(1);
    EXPECT_TRUE(converter.Convert(aBuffer.GetImage(), picture.get(), true, false).IsOK());
    return picture;
}

/// An image that looks, whenever somebody wants its data, who that is and whether the display is locked meanwhile.
class WatchingImage : public ILxImage
{
public:
    WatchingImage(const LxImage &aImage, DisplayWnd &aDisplay) : mImage(aImage), mDisplay(aDisplay) {}
    uint32_t GetWidth() const override { return mImage.GetWidth(); }
    uint32_t GetHeight() const override { return mImage.GetHeight(); }
    LxPixelType GetPixelType() const override { return mImage.GetPixelType(); }
    const void *GetDataPointer() const override
    {
        if (mDisplay.ImageMutex().tryLock()) {
            mDisplay.ImageMutex().unlock();
            ++mUnlocked;
        }
        mOnGuiThread += QThread::currentThread() == mDisplay.thread();
        ++mAsked;
        return mImage.GetDataPointer();
    }
    uint64_t GetDataSize() const override { return mImage.GetDataSize(); }
    uint32_t GetPaddingX() const override { return mImage.GetPaddingX(); }
    uint32_t GetPaddingY() const override { return mImage.GetPaddingY(); }
    uint32_t GetOffsetX() const override { return mImage.GetOffsetX(); }
    uint32_t GetOffsetY() const override { return mImage.GetOffsetY(); }

    mutable std::atomic<int> mAsked{0};
    mutable std::atomic<int> mUnlocked{0};
    mutable std::atomic<int> mOnGuiThread{0};

private:
    const LxImage &mImage;
    DisplayWnd &mDisplay;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Renderer, BothRenderers, testing::Values(0, 1), RendererName);

TEST_P(BothRenderers, ShowAPictureAsLargeAsTheWindowPixelByPixel)
{
    ShowAt(200, 150);
    ShowPicture(200, 150);
    ExpectFitted(Screen(), *MakePicture(200, 150)->GetImage(), Background);
}

TEST_P(BothRenderers, EnlargePixelsWithoutBlurringThem)
{
    ShowAt(300, 200);
    ShowPicture(50, 50);
    ExpectFitted(Screen(), *MakePicture(50, 50)->GetImage(), Background);
}

TEST_P(BothRenderers, FitOddSizesCentredOnTheBackground)
{
    ShowAt(301, 203);
    for (const QSize size : {QSize(37, 23), QSize(641, 479), QSize(1, 77), QSize(301, 3), QSize(3, 2), QSize(1, 1)}) {
        SCOPED_TRACE(size.width());
        ShowPicture(size.width(), size.height());
        ExpectFitted(Screen(), *MakePicture(size.width(), size.height())->GetImage(), Background, 1);
    }
}

TEST_P(BothRenderers, TellThePixelUnderEveryPoint)
{
    for (const QSize &size : {QSize(200, 150), QSize(37, 23), QSize(101, 230), QSize(250, 61)}) {
        ShowAt(200, 150);
        ShowPicture(size.width(), size.height());
        const QImage screen = Screen();
        int inside = 0;
        int wrong = 0;
        for (int y = 0; y < 150; ++y) {
            for (int x = 0; x < 200; ++x) {
                const QPoint pixel = mDisplay.PictureAt(QPoint(x, y));
                const bool isPicture = pixel != QPoint(-1, -1);
                inside += isPicture;
                const QRgb expected = isPicture ? PictureColor(pixel.x(), pixel.y()) : Background;
                wrong += (screen.pixel(x, y) & 0xFFFFFF) != (expected & 0xFFFFFF);
            }
        }
        // between two pixels of the picture renderers may decide differently
        EXPECT_LE(wrong, GetParam() ? inside / 25 : 0) << size.width();
        EXPECT_GT(inside, 200 * 150 / 4);
        EXPECT_EQ(mDisplay.PictureAt(QPoint(-1, 0)), QPoint(-1, -1));
        EXPECT_EQ(mDisplay.PictureAt(QPoint(200, 0)), QPoint(-1, -1));
    }
    mDisplay.Clear();
    Settle();
    EXPECT_EQ(mDisplay.PictureAt(QPoint(100, 75)), QPoint(-1, -1));
}

TEST_P(BothRenderers, ShowOnePixel)
{
    ShowAt(120, 100);
    ShowPicture(1, 1);
    ExpectFitted(Screen(), *MakePicture(1, 1)->GetImage(), Background);
}

TEST_P(BothRenderers, ShowFramesOf8192Columns)
{
    ShowAt(1024, 256);
    ShowPicture(8192, 1024);
    ExpectFitted(Screen(), *MakePicture(8192, 1024)->GetImage(), Background, 5);
}

TEST_P(BothRenderers, ShowEveryPixelFormat)
{
    ShowAt(32, 24);
    int shown = 0;
    for (const LxDetail::PixelFormat &format : LxDetail::PixelFormats) {
        if (!LxBufferConverter::IsSupported(format.mType)) {
            continue;
        }
        SCOPED_TRACE(LxPixelTypeToString(format.mType).GetAscii());
        const auto buffer = MakePattern(32, 24, format.mType);
        ASSERT_TRUE(mDisplay.Display(*buffer, false).IsOK());
        ExpectFitted(Screen(), *Converted(*buffer)->GetImage(), Background);
        ++shown;
    }
    EXPECT_GT(shown, 100);
}

TEST_P(BothRenderers, SkipThePaddingOfLines)
{
    ShowAt(128, 96);
    const auto buffer = MakePattern(128, 96, LxPixelType::Mono8, 7);
    ASSERT_TRUE(mDisplay.Display(*buffer, false).IsOK());
    ExpectFitted(Screen(), *Converted(*buffer)->GetImage(), Background);
}

TEST_P(BothRenderers, ConvertFramesWhileNobodyElseMayUseTheDisplay)
{
    ShowAt(200, 150);
    const auto picture = MakePicture(200, 150);
    const WatchingImage image(*picture->GetImage(), mDisplay);
    // again where the machine was busy for longer than a frame waits
    for (int i = 0; i < 20 && image.mAsked == 0; ++i) {
        OnAnotherThread([&] { EXPECT_TRUE(mDisplay.Display(&image, false).IsOK()); });
    }
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
    EXPECT_GT(image.mAsked, 0);
    EXPECT_EQ(image.mUnlocked, 0);
    EXPECT_EQ(image.mOnGuiThread, GetParam() ? image.mAsked.load() : 0) << "OpenGL converts where it paints";
}

TEST_P(BothRenderers, FollowEveryResize)
{
    ShowAt(200, 150);
    const auto picture = MakePicture(100, 75);
    for (const QSize size : {QSize(400, 300), QSize(150, 300), QSize(333, 77), QSize(200, 150)}) {
        mHost.resize(size);
        ASSERT_TRUE(WaitForGui([&] { return mHost.size() == size && Screen().size() == size; }));
        ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
        // the server may ask for more repainting
        EXPECT_TRUE(WaitForGui([&] { return FindWrongPixels(Screen(), *picture->GetImage(), Background, 1).empty(); }));
    }
}

TEST_P(BothRenderers, KeepThePictureWhenTheWindowIsResizedWithoutANewFrame)
{
    ShowAt(200, 150);
    ShowPicture(100, 75);
    mHost.resize(400, 150);
    const auto picture = MakePicture(100, 75);
    EXPECT_TRUE(WaitForGui([&] {
        const QImage screen = Screen();
        return screen.width() == 400 && FindWrongPixels(screen, *picture->GetImage(), Background, 1).empty();
    }));
}

TEST_P(BothRenderers, ShowTheOverlayFromTheNextFrameOnAndLeaveNothingOfIt)
{
    ShowAt(400, 200);
    ShowPicture(400, 200);
    mDisplay.SetTextOverlay("Frame 12\nline 2");
    Screen();
    EXPECT_EQ(CountGreen(Screen(), {0, 0, 400, 200}), 0) << "not before the next frame";
    ShowPicture(400, 200);
    const QImage both = Screen();
    EXPECT_GT(CountGreen(both, {10, 10, 200, 20}), 20);
    EXPECT_GT(CountGreen(both, {10, 30, 200, 20}), 20) << "the second line";
    EXPECT_EQ(CountGreen(both, {0, 0, 400, 10}), 0) << "above the offset";
    EXPECT_EQ(CountGreen(both, {0, 0, 10, 200}), 0) << "left of the offset";
    EXPECT_EQ(both.pixel(300, 150), PictureColor(300, 150)) << "the picture is seen beside the text";

    mDisplay.SetTextOverlayOffsetX(250);
    mDisplay.SetTextOverlayOffsetY(120);
    ShowPicture(400, 200);
    const QImage moved = Screen();
    EXPECT_GT(CountGreen(moved, {250, 120, 150, 60}), 20);
    EXPECT_EQ(CountGreen(moved, {0, 0, 250, 120}), 0) << "nothing is left where it was";

    mDisplay.SetTextOverlay("");
    ShowPicture(400, 200);
    EXPECT_EQ(CountGreen(Screen(), {0, 0, 400, 200}), 0);
}

TEST_P(BothRenderers, PlaceTheOverlayRelativeToThePicture)
{
    ShowAt(400, 200);
    mDisplay.SetTextOverlay("X");
    ShowPicture(200, 200);
    const QImage shot = Screen();
    EXPECT_GT(CountGreen(shot, {110, 10, 40, 30}), 5);
    EXPECT_EQ(CountGreen(shot, {0, 0, 110, 200}), 0);
}

TEST_P(BothRenderers, ClearShowsTheBackgroundAndTheNextFrameAgain)
{
    ShowAt(200, 150);
    mDisplay.SetTextOverlay("HHHH");
    ShowPicture(200, 150);
    mDisplay.Clear();
    const QImage empty = Screen();
    EXPECT_EQ(empty.pixel(100, 75), Background);
    EXPECT_EQ(CountGreen(empty, empty.rect()), 0);
    ShowPicture(200, 150);
    ExpectFitted(Screen(), *MakePicture(200, 150)->GetImage(), Background);
}

TEST_P(BothRenderers, TheBackgroundMayChangeAtAnyTime)
{
    ShowAt(300, 100);
    EXPECT_EQ(Screen().pixel(150, 50), Background) << "before the first frame";
    ShowPicture(100, 100);
    mDisplay.SetBackgroundColor(QColor(1, 200, 3));
    EXPECT_EQ(Screen().pixel(10, 50), qRgb(1, 200, 3));
    ShowPicture(100, 100);
    ExpectFitted(Screen(), *MakePicture(100, 100)->GetImage(), qRgb(1, 200, 3));
}

TEST_P(BothRenderers, GoOnInANewDialog)
{
    mDisplay.SetPosition(5, 5, 200, 150);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(mDisplay.ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
        QWidget *dialog = mDisplay.GetQWidget();
        ASSERT_TRUE(WaitForScreen(*dialog));
        ASSERT_TRUE(WaitForGui([&] { return dialog->size() == QSize(200, 150); }));
        Settle();
        ShowPicture(200, 150);
        ExpectFitted(Screen(dialog), *MakePicture(200, 150)->GetImage(), Background);
        ASSERT_TRUE(mDisplay.Close().IsOK());
    }
}

TEST_P(BothRenderers, GoOnWhenTheHostMovesTheWidgetToAnotherWindow)
{
    ShowAt(200, 150);
    ShowPicture(200, 150);
    QWidget window;
    window.resize(260, 190);
    mHost.setParent(&window);
    mHost.setGeometry(30, 20, 200, 150);
    mHost.show();
    window.show();
    ASSERT_TRUE(WaitForScreen(window));
    Settle();
    ShowPicture(200, 150);
    ExpectFitted(Screen(&window).copy(30, 20, 200, 150), *MakePicture(200, 150)->GetImage(), Background);
    mHost.setParent(nullptr);
    mHost.show();
    ASSERT_TRUE(WaitForScreen(mHost));
    Settle();
    ShowPicture(200, 150);
    ExpectFitted(Screen(), *MakePicture(200, 150)->GetImage(), Background);
}

TEST_P(BothRenderers, ShowTheImageOfAGenDCContainer)
{
    ShowAt(100, 80);
    const auto inside = MakePicture(50, 40);
    const FakeGenDCImage image(inside->GetImage());
    FakePart part;
    part.mImage = &image;
    FakeComponent component;
    component.mParts = {&part};
    const auto container = std::make_shared<FakeContainer>();
    container->mComponents = {&component};
    const auto buffer = MakePicture(20, 10);
    buffer->SetGenDC(container);
    ASSERT_TRUE(mDisplay.Display(*buffer, false).IsOK());
    ExpectFitted(Screen(), *inside->GetImage(), Background);
}

TEST_P(BothRenderers, ShowTheFirstImageOfAContainerInMemory)
{
    namespace GenDC = LxDetail::GenDC;
    ShowAt(100, 80);
    const auto inside = MakePattern(50, 40, LxPixelType::RGB8, 3);
    GenDC::Part metadata;
    metadata.mHeaderType = 0x4000;
    metadata.mDataSize = 11;
    GenDC::Part image;
    image.mFormat = LxPixelType::RGB8;
    image.mSizeX = 50;
    image.mSizeY = 40;
    image.mPaddingX = 3;
    image.mDataSize = inside->GetImage()->GetDataSize();
    GenDC::Descriptor descriptor;
    descriptor.mComponents.resize(2);
    descriptor.mComponents[0].mParts = {metadata};
    descriptor.mComponents[1].mParts = {image};
    const auto bytes = std::make_shared<std::vector<uint8_t>>(GenDC::Build(descriptor));
    bytes->resize(bytes->size() + metadata.mDataSize);
    const auto *data = static_cast<const uint8_t *>(inside->GetDataPointer());
    bytes->insert(bytes->end(), data, data + image.mDataSize);
    std::shared_ptr<const LxGenDCContainer> container;
    ASSERT_TRUE(LxGenDCContainer::Parse({bytes, bytes->data()}, bytes->size(), container).IsOK());
    LxBuffer buffer(LxPayloadType::GenDC);
    buffer.SetGenDC(container);
    ASSERT_TRUE(mDisplay.Display(buffer, false).IsOK());
    ExpectFitted(Screen(), *Converted(*inside)->GetImage(), Background);
}

TEST_P(BothRenderers, AFailedAttachOfAGenDCImageGivesItsCode)
{
    ShowAt(100, 80);
    const auto picture = MakePicture(8, 8);
    FakeGenDCImage part(picture->GetImage());
    part.mNoData = true;
    EXPECT_EQ(mDisplay.Display(&part, false), LxResult(LxResultCode::InvalidArgument));
}

TEST_P(BothRenderers, RefuseFramesWithNothingToShow)
{
    ShowAt(100, 80);
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(nullptr), false).GetCode(), 16385u);
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxGenDCImage *>(nullptr), false).GetCode(), 16385u);
    EXPECT_EQ(mDisplay.Display(LxBuffer(LxPayloadType::Image), false).GetCode(), 1281u);
    EXPECT_EQ(mDisplay.Display(LxBuffer(LxPayloadType::Raw), false).GetCode(), 1281u);
}

TEST_P(BothRenderers, ShowDecodedFrames)
{
    DecodingDisplay display;
    ASSERT_EQ(display.SetRendererMode(GetParam()).GetCode(), 0u);
    QWidget host;
    host.resize(80, 60);
    ASSERT_TRUE(display.Create(&host).IsOK());
    ASSERT_TRUE(WaitForScreen(host));
    LxBuffer buffer(LxPayloadType::H264);
    buffer.SetH264AccessUnit(std::make_shared<FakeAccessUnit>());
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 16384u) << "no frame";
    display.mFrames = 2;
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 0u);
    EXPECT_EQ(display.mFrames, 0);
    EXPECT_EQ(Screen(&host).pixel(40, 30), qRgb(0x80, 0x80, 0x80));
    for (int i = 0; i < 3; ++i) {
        display.OnMainZoomIn();
    }
    EXPECT_EQ(host.findChild<QScrollBar *>("horizontalScrollBar")->isHidden(), GetParam() == LxRendererModeOpenGL)
        << "the picture is decoded into the buffer that software shows";
    display.mFrames = 1;
    display.mProcessResult = LxResult(LxResultCode::InvalidDataFormat);
    EXPECT_EQ(display.Display(buffer, false).GetCode(), 16384u);
    EXPECT_EQ(display.mFrames, 1) << "nothing is retrieved after a failure";
}

TEST_P(BothRenderers, ShowAnH264StreamAndKeepTheLastPictureWhereOneIsMissing)
{
    LX_NEEDS_H264_ENCODER();
    H264Settings settings;
    settings.mWidth = 80;
    settings.mHeight = 60;
    settings.mKeyInterval = 5;
    settings.mRange = AVCOL_RANGE_JPEG;
    const H264Units stream = EncodeH264(settings, 8, [](int aPicture, int aPlane, int aX, int aY) {
        return aPlane == 0 ? 40 + 20 * aPicture + aX / 8 * 4 : aPlane == 1 ? 100 + aY : 150;
    });
    ASSERT_EQ(stream.size(), 8u);
    ShowAt(80, 60);
    LxH264Decoder decoder;
    LxImage picture;
    for (size_t i = 0; i < stream.size(); ++i) {
        if (i == 2) {
            continue;  // lost
        }
        const auto unit = std::make_shared<H264Unit>(stream[i]);
        const bool isShown = decoder.Process(unit.get()).IsOK();
        EXPECT_EQ(isShown, i < 2 || i >= 5) << i;
        while (decoder.Retrieve(&picture).IsOK()) {
        }
        LxBuffer buffer(LxPayloadType::H264);
        buffer.SetH264AccessUnit(unit);
        EXPECT_EQ(mDisplay.Display(buffer, false).GetCode(), isShown ? 0u : 16384u) << i;
        ExpectFitted(Screen(), picture, Background);
    }
    // another size
    settings.mWidth = 40;
    settings.mHeight = 30;
    const H264Units smaller = EncodeH264(settings, 1, [](int, int, int aX, int) { return aX; });
    const auto unit = std::make_shared<H264Unit>(smaller.at(0));
    ASSERT_TRUE(decoder.Process(unit.get()).IsOK());
    ASSERT_TRUE(decoder.Retrieve(&picture).IsOK());
    LxBuffer buffer(LxPayloadType::H264);
    buffer.SetH264AccessUnit(unit);
    EXPECT_TRUE(mDisplay.Display(buffer, false).IsOK());
    ExpectFitted(Screen(), picture, Background);
}

TEST_P(BothRenderers, TheHostsWidgetMayDieFirst)
{
    auto host = std::make_unique<QWidget>();
    ASSERT_TRUE(mDisplay.Create(host.get()).IsOK());
    ASSERT_TRUE(mDisplay.Display(*MakePicture(10, 10), false).IsOK());
    host.reset();
    EXPECT_TRUE(mDisplay.Display(*MakePicture(10, 10), false).IsOK());
    Settle();
    mDisplay.Clear();
    mDisplay.SetBackgroundColor(Qt::red);
    Settle();
    EXPECT_EQ(mDisplay.SetRendererMode(1 - GetParam()).GetCode(), 0u);
    ShowAt(100, 100);
    ShowPicture(100, 100);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}
