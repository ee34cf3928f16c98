#include <QtGui/QPainter>
#include <QtWidgets/QDialog>
#include <algorithm>
#include <atomic>
#include <thread>

#include "DisplayTest.h"
#include "LxGUI/LxDisplayWnd.h"

using namespace DisplayGeometry;

class DisplayWindow : public DisplayTest
{
};

TEST_F(DisplayWindow, AnEmptyDisplayShowsItsBackground)
{
    ShowAt(200, 100);
    EXPECT_EQ(Shot().pixel(100, 50), QColor(Qt::darkGray).rgb());
    EXPECT_EQ(mHost.styleSheet(), "background-color: rgb(128, 128, 128);");
    EXPECT_EQ(mDisplay.SetBackgroundColor(QColor(10, 20, 30)).GetCode(), 0u);
    EXPECT_EQ(mHost.styleSheet(), "background-color: rgb(10, 20, 30);");
    EXPECT_EQ(Shot().pixel(100, 50), qRgb(10, 20, 30));
}

TEST_F(DisplayWindow, ABackgroundSetBeforeTheWindowExistsIsApplied)
{
    mDisplay.SetBackgroundColor(QColor(1, 2, 3));
    ShowAt(200, 100);
    EXPECT_EQ(mHost.styleSheet(), "background-color: rgb(1, 2, 3);");
}

TEST_F(DisplayWindow, APictureIsFittedIntoTheWindowFromTheStart)
{
    mDisplay.SetBackgroundColor(QColor(0, 0, 0));
    ShowAt(200, 100);
    ShowPicture(100, 100);
    const QImage shot = Shot();
    EXPECT_EQ(shot.pixel(40, 50), qRgb(0, 0, 0));
    EXPECT_EQ(shot.pixel(160, 50), qRgb(0, 0, 0));
    EXPECT_EQ(shot.pixel(50, 0), PictureColor(0, 0));
    EXPECT_EQ(shot.pixel(149, 99), PictureColor(99, 99));
}

TEST_F(DisplayWindow, OneToOneShowsEveryPixelAsItIs)
{
    ShowAt(200, 100);
    ShowPicture(120, 60);
    mDisplay.OnMainZoom1To1();
    const QImage shot = Shot();
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 120; ++x) {
            ASSERT_EQ(shot.pixel(40 + x, 20 + y), PictureColor(x, y)) << x << ',' << y;
        }
    }
}

TEST_F(DisplayWindow, TransparentPixelsAreShownAllTheSame)
{
    ShowAt(100, 100);
    const auto picture = MakePicture(100, 100);
    auto *pixels = static_cast<QRgb *>(picture->GetDataPointer());
    for (int i = 0; i < 100 * 100; ++i) {
        pixels[i] &= 0x00FFFFFF;
    }
    ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
    EXPECT_EQ(Shot().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(DisplayWindow, FramesMayChangeTheirSize)
{
    ShowAt(200, 100);
    for (const QSize size : {QSize(100, 50), QSize(300, 10), QSize(1, 1), QSize(40, 90)}) {
        ShowPicture(size.width(), size.height());
        EXPECT_EQ(mDisplay.GetInternalBuffer().GetImage()->GetWidth(), static_cast<uint32_t>(size.width()));
        EXPECT_EQ(mDisplay.GetInternalBuffer().GetImage()->GetHeight(), static_cast<uint32_t>(size.height()));
        Shot();
    }
}

TEST_F(DisplayWindow, TheOverlayAppearsWithTheNextFrameOnly)
{
    ShowAt(400, 200);
    ShowPicture(400, 200);
    mDisplay.SetTextOverlay("Frame 12");
    EXPECT_EQ(mDisplay.GetTextOverlay(), "Frame 12");
    EXPECT_EQ(CountGreen(Shot(), {0, 0, 400, 60}), 0);
    ShowPicture(400, 200);
    EXPECT_GT(CountGreen(Shot(), {10, 10, 200, 40}), 20);
    EXPECT_EQ(CountGreen(Shot(), {0, 0, 400, 10}), 0) << "above the offset";
}

TEST_F(DisplayWindow, TheOverlayStartsAtItsOffsetFromThePicture)
{
    ShowAt(400, 200);
    mDisplay.SetTextOverlay("X");
    mDisplay.SetTextOverlayOffsetX(150);
    mDisplay.SetTextOverlayOffsetY(100);
    EXPECT_EQ(mDisplay.GetTextOverlayOffsetX(), 150);
    EXPECT_EQ(mDisplay.GetTextOverlayOffsetY(), 100);
    ShowPicture(200, 200);
    const QImage shot = Shot();
    EXPECT_EQ(CountGreen(shot, {0, 0, 250, 200}), 0);
    EXPECT_GT(CountGreen(shot, {250, 100, 60, 60}), 5);
}

TEST_F(DisplayWindow, TheOverlayIsDrawnToThePixelAsItsFontAndRectangleSay)
{
    const QString text = QStringLiteral("Frame 12, a line longer than the window\nsecond");
    class Expected : public QWidget
    {
    public:
        explicit Expected(QString aText) : mText(std::move(aText)) { resize(300, 60); }

    protected:
        void paintEvent(QPaintEvent *) override
        {
            QPainter painter(this);
            painter.fillRect(rect(), Qt::black);
            painter.translate(50, 0);
            painter.setPen(Qt::green);
            painter.setFont(QFont("Monospace", 11, 600, false));
            painter.drawText(QRect(20, 7, 300 - 20, 60 - 7), 0x21, mText);
        }

    private:
        const QString mText;
    } expected(text);
    ShowAt(300, 60);
    mDisplay.SetBackgroundColor(Qt::black);
    mDisplay.SetTextOverlay(text);
    mDisplay.SetTextOverlayOffsetX(20);
    mDisplay.SetTextOverlayOffsetY(7);
    const auto picture = MakePicture(200, 60);
    std::fill_n(static_cast<QRgb *>(picture->GetDataPointer()), 200 * 60, qRgb(0, 0, 0));
    ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
    const QImage shot = Shot();
    EXPECT_GT(CountGreen(shot, shot.rect()), 50);
    EXPECT_EQ(shot, Grab(&expected));
}

TEST_F(DisplayWindow, AnyOverlayOffsetIsTaken)
{
    ShowAt(200, 100);
    mDisplay.SetTextOverlay("HHHH");
    for (const unsigned offset : {0x80000000u, 0x7FFFFFFFu, 0xFFFFFFFFu, 5000u}) {
        mDisplay.SetTextOverlayOffsetX(offset);
        mDisplay.SetTextOverlayOffsetY(offset);
        ShowPicture(200, 100);
        EXPECT_EQ(mDisplay.GetTextOverlayOffsetX(), static_cast<int>(offset));
        EXPECT_EQ(mDisplay.GetTextOverlayOffsetY(), static_cast<int>(offset));
        EXPECT_EQ(Shot().pixel(150, 80), PictureColor(150, 80));
    }
}

TEST_F(DisplayWindow, ALargerOverlayFontCoversMore)
{
    ShowAt(400, 200);
    EXPECT_EQ(mDisplay.GetTextOverlaySize(), 11);
    mDisplay.SetTextOverlay("HHHH");
    ShowPicture(400, 200);
    const int small = CountGreen(Shot(), {0, 0, 400, 200});
    mDisplay.SetTextOverlaySize(30);
    EXPECT_EQ(mDisplay.GetTextOverlaySize(), 30);
    ShowPicture(400, 200);
    EXPECT_GT(CountGreen(Shot(), {0, 0, 400, 200}), 2 * small);
}

TEST_F(DisplayWindow, ClearRemovesPictureAndOverlay)
{
    ShowAt(400, 200);
    mDisplay.SetTextOverlay("HHHH");
    ShowPicture(400, 200);
    mDisplay.Clear();
    EXPECT_EQ(mDisplay.GetTextOverlay(), "");
    EXPECT_FALSE(mDisplay.HasOverlay());
    EXPECT_EQ(mDisplay.GetInternalBuffer().GetDataPointer(), nullptr);
    const QImage shot = Shot();
    EXPECT_EQ(shot.pixel(200, 100), QColor(Qt::darkGray).rgb());
    EXPECT_EQ(CountGreen(shot, shot.rect()), 0);
    ShowPicture(400, 200);
    EXPECT_EQ(Shot().pixel(200, 100), PictureColor(200, 100)) << "shows pictures again";
}

TEST_F(DisplayWindow, WhatIsSetAndShownBeforeThereIsAWidgetIsThereWithIt)
{
    ASSERT_TRUE(mDisplay.Display(*MakePicture(10, 10), false).IsOK());
    mDisplay.Clear();
    mDisplay.Refresh();
    mDisplay.SetTextOverlay("HHHH");
    ASSERT_TRUE(mDisplay.Display(*MakePicture(100, 50), false).IsOK());
    mDisplay.OnMainCenterHere();
    mDisplay.OnHorizontalScroll(0);
    mDisplay.OnMainZoom1To1();
    EXPECT_EQ(mDisplay.PictureAt({0, 0}), QPoint(-1, -1));
    EXPECT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
    Settle();
    ShowAt(200, 100);
    const QImage shot = Shot();
    EXPECT_EQ(shot.pixel(50 + 99, 25 + 49), PictureColor(99, 49));
    EXPECT_GT(CountGreen(shot, {60, 35, 60, 30}), 20);
}

TEST_F(DisplayWindow, ZoomBeforeTheFirstFrameChangesModeAndFactorOnly)
{
    ShowAt(400, 300);
    mDisplay.OnMainZoomIn();
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFree);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.5);
    EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
}

TEST_F(DisplayWindow, ZoomInFromFitOnASmallPictureMaySnapBackToFit)
{
    ShowAt(400, 300);
    ShowPicture(40, 30);
    mDisplay.OnMainZoomIn();
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFit) << "1.5 is still smaller than the window";
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 10.0);
    mDisplay.OnMainZoomIn();
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFree);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 15.0);
    EXPECT_FALSE(Bar("horizontalScrollBar")->isHidden());
}

TEST_F(DisplayWindow, BuildingTheContentAgainKeepsOnePairOfBars)
{
    ShowAt(400, 300);
    ShowPicture(1000, 800);
    ASSERT_TRUE(mDisplay.Create(&mHost).IsOK());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(mHost.findChildren<QScrollBar *>().size(), 2);
    mDisplay.OnMainZoom1To1();
    EXPECT_FALSE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_EQ(Shot().pixel(0, 0), PictureColor(309, 259));
}

TEST_F(DisplayWindow, BuildingTheContentAgainKeepsZoomAndScrollPosition)
{
    ShowAt(400, 300);
    ShowPicture(1000, 800);
    mDisplay.OnMainZoom1To1();
    Bar("horizontalScrollBar")->setValue(100);
    Bar("verticalScrollBar")->setValue(50);
    QWidget other;
    other.resize(400, 300);
    ASSERT_TRUE(mDisplay.Create(&other).IsOK());
    const auto *bar = other.findChild<QScrollBar *>("horizontalScrollBar");
    ASSERT_NE(bar, nullptr);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->geometry(), QRect(0, 282, 400, 18));
    EXPECT_EQ(bar->value(), 100);
    EXPECT_EQ(bar->maximum(), 1000 - 382);
    Settle();
    EXPECT_EQ(Grab(&other).pixel(0, 0), PictureColor(100, 50));
    ASSERT_TRUE(mDisplay.Create(&mHost).IsOK());  // `other` ends first
}

TEST_F(DisplayWindow, ItsWidgetTakesTheKeyboardAndAllSpace)
{
    ShowAt(200, 100);
    EXPECT_EQ(mHost.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(mHost.sizePolicy(), QSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding));
    EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_TRUE(Bar("verticalScrollBar")->isHidden());
    EXPECT_EQ(Bar("horizontalScrollBar")->geometry(), QRect(0, 82, 200, 18));
    EXPECT_EQ(Bar("verticalScrollBar")->geometry(), QRect(182, 0, 18, 100));
}

TEST_F(DisplayWindow, AFirstFrameThatCannotBeConvertedShowsNothing)
{
    ShowAt(100, 100);
    LxImage image;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(image.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_FALSE(mDisplay.Display(static_cast<const ILxImage *>(&image), false).IsOK());
    EXPECT_EQ(mDisplay.GetInternalBuffer().GetDataPointer(), nullptr);
    EXPECT_EQ(Shot().pixel(50, 50), QColor(Qt::darkGray).rgb());
}

TEST_F(DisplayWindow, AFrameThatCannotBeConvertedKeepsTheLastPicture)
{
    ShowAt(100, 100);
    ShowPicture(100, 100);
    LxImage image;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(image.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_FALSE(mDisplay.Display(static_cast<const ILxImage *>(&image), false).IsOK());
    EXPECT_EQ(Shot().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(DisplayWindow, APictureOfTheHostsOwnMakingIsShownOnlyWhenItCanBe)
{
    ShowAt(100, 100);
    ASSERT_TRUE(mDisplay.GetInternalBuffer().GetImage()->Alloc(100, 100, LxPixelType::Mono8).IsOK());
    EXPECT_EQ(Shot().pixel(50, 50), QColor(Qt::darkGray).rgb());
}

TEST_F(DisplayWindow, ARefreshFromAnotherThreadRepaints)
{
    ShowAt(100, 100);
    ShowPicture(100, 100);
    auto *pixels = static_cast<QRgb *>(mDisplay.GetInternalBuffer().GetImage()->GetDataPointer());
    std::fill_n(pixels, 100 * 100, qRgb(9, 8, 7));
    class Paints : public QObject
    {
    public:
        bool eventFilter(QObject *, QEvent *aEvent) override
        {
            mCount += aEvent->type() == QEvent::Paint;
            return false;
        }
        int mCount = 0;
    } paints;
    mHost.installEventFilter(&paints);
    std::thread([&] { mDisplay.Refresh(); }).join();
    EXPECT_EQ(paints.mCount, 0) << "nothing happens on the calling thread";
    EXPECT_TRUE(WaitForGui([&] { return paints.mCount > 0; }));
    EXPECT_EQ(Shot().pixel(50, 50), qRgb(9, 8, 7));
}

TEST_F(DisplayWindow, ManyFramesBetweenTwoPaintsCostOnePaint)
{
    ShowAt(100, 100);
    const auto picture = MakePicture(100, 100);
    int events = 0;
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
    }
    class Events : public QObject
    {
    public:
        explicit Events(int &aCount) : mCount(aCount) {}
        bool eventFilter(QObject *, QEvent *aEvent) override
        {
            mCount += aEvent->type() == 11244;
            return false;
        }
        int &mCount;
    } filter(events);
    mDisplay.installEventFilter(&filter);
    Settle();
    EXPECT_EQ(events, 1);
    ShowPicture(100, 100);
    EXPECT_EQ(events, 2) << "the next one comes through";
}

TEST_F(DisplayWindow, TheHostsWidgetMayDieFirst)
{
    auto host = std::make_unique<QWidget>();
    DisplayWnd display;
    ASSERT_TRUE(display.Create(host.get()).IsOK());
    host.reset();
    EXPECT_TRUE(display.Display(*MakePicture(10, 10), false).IsOK());
    QCoreApplication::sendPostedEvents(&display);
    display.OnMainZoomIn();
    display.OnMainCenterHere();
    display.SetBackgroundColor(Qt::red);
    display.Close();
}

TEST_F(DisplayWindow, AHostsWidgetIsFilledByQtAgainWhenTheDisplayLeavesIt)
{
    QWidget first;
    QWidget second;
    second.setAttribute(Qt::WA_OpaquePaintEvent);
    {
        DisplayWnd display;
        ASSERT_TRUE(display.Create(&first).IsOK());
        EXPECT_TRUE(first.testAttribute(Qt::WA_OpaquePaintEvent)) << "the display paints all of it";
        ASSERT_TRUE(display.Create(&second).IsOK());
        EXPECT_FALSE(first.testAttribute(Qt::WA_OpaquePaintEvent));
    }
    EXPECT_TRUE(second.testAttribute(Qt::WA_OpaquePaintEvent)) << "the host's own wish";
    {
        DisplayWnd display;
        ASSERT_TRUE(display.Create(&first).IsOK());
    }
    EXPECT_FALSE(first.testAttribute(Qt::WA_OpaquePaintEvent));
}

TEST_F(DisplayWindow, FramesMayComeFromAnotherThreadWhileTheWindowPaints)
{
    ShowAt(400, 300);
    const auto small = MakePicture(64, 48);
    const auto large = MakePicture(320, 240);
    std::atomic<bool> stop{false};
    std::atomic<int> failures{0};
    std::thread acquisition([&] {
        for (int i = 0; !stop; ++i) {
            mDisplay.SetTextOverlay(QString::number(i));
            failures += !mDisplay.Display(i % 2 ? *small : *large, i % 3 == 0).IsOK();
            if (i % 50 == 0) {
                mDisplay.Clear();
            }
        }
    });
    int paints = 0;
    WaitForGui([&] {
        mDisplay.OnMainZoomIn();
        mDisplay.SetTextOverlaySize(8 + paints % 5);
        Grab(&mHost);
        mDisplay.OnMainZoomFit();
        return ++paints > 40;
    });
    stop = true;
    acquisition.join();
    EXPECT_EQ(failures, 0);
}

TEST(DisplayFacade, TheOverlayColourCannotBeChanged)
{
    QWidget host;
    host.resize(300, 200);
    LxDisplayWnd display(5);
    ASSERT_TRUE(display.Create(&host).IsOK());
    display.SetTextOverlayColor(255, 0, 0);
    unsigned char red = 7;
    unsigned char green = 8;
    unsigned char blue = 9;
    display.GetTextOverlayColor(red, green, blue);
    EXPECT_EQ(red, 7);
    EXPECT_EQ(green, 8);
    EXPECT_EQ(blue, 9);
    display.SetTextOverlay("HHHH");
    ASSERT_TRUE(display.Display(*MakePicture(300, 200)).IsOK());
    QCoreApplication::processEvents();
    EXPECT_GT(CountGreen(Grab(&host), {10, 10, 200, 40}), 20);
}

TEST(DisplayFacade, AnyOverlaySizeIsTaken)
{
    LxDisplayWnd display;
    EXPECT_EQ(display.SetTextOverlaySize(0).GetCode(), 0u);
    EXPECT_EQ(display.SetTextOverlaySize(-5).GetCode(), 0u);
    EXPECT_EQ(display.SetTextOverlaySize(20).GetCode(), 0u);
    EXPECT_EQ(display.GetTextOverlaySize(), 20);
}

TEST(DisplayFacade, OverlayTextsTravelAsUTF8)
{
    LxDisplayWnd display;
    display.SetTextOverlay("K\xC3\xA4se\n2");
    EXPECT_STREQ(display.GetTextOverlay().GetAscii(), "K\xC3\xA4se\n2");
    display.Clear();
    EXPECT_STREQ(display.GetTextOverlay().GetAscii(), "");
}

TEST(DisplayFacade, DrawsInAModelessDialogToo)
{
    LxDisplayWnd display;
    display.SetPosition(1, 1, 320, 240);
    ASSERT_TRUE(display.ShowModeless().IsOK());
    ASSERT_TRUE(display.Display(*MakePicture(320, 240)).IsOK());
    QCoreApplication::processEvents();
    EXPECT_EQ(Grab(display.GetQWidget()).pixel(100, 100), PictureColor(100, 100));
    EXPECT_TRUE(display.Close().IsOK());
}
