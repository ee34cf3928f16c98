// What only the OpenGL renderer does. On an X server.

#include <gmock/gmock.h>

#include <QtCore/QElapsedTimer>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <atomic>
#include <thread>

#include "LxGUI/LxDisplayWnd.h"
#include "OpenGLTest.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using testing::ElementsAre;
using namespace DisplayGeometry;

namespace
{

const QRgb DarkGray = QColor(Qt::darkGray).rgb();

/// Spoils the OpenGL widgets that come into a host: no platform makes contexts of their kind.
class ContextSpoiler : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        if (aEvent->type() == QEvent::ChildAdded) {
            if (auto *widget = qobject_cast<GLDisplay *>(static_cast<QChildEvent *>(aEvent)->child())) {
                QSurfaceFormat format;
                format.setRenderableType(QSurfaceFormat::OpenVG);
                widget->setFormat(format);
            }
        }
        return false;
    }
};

/// Paints also when Qt would not, as nothing of it can be seen.
class PaintedByHand : public GLDisplay
{
public:
    using GLDisplay::GLDisplay;
    void Paint()
    {
        makeCurrent();
        paintGL();
        doneCurrent();
    }
};

}  // namespace

class OpenGLDisplay : public OpenGLTest
{
protected:
    bool IsFrameWaiting()
    {
        const QMutexLocker lock(&mDisplay.ImageMutex());
        return mDisplay.PendingImage() != nullptr;
    }

    /// Shows a picture on another thread; once it waits, calls the function, which has to take it. Again and again
    /// until one is taken, as a busy machine may need longer than a picture waits.
    template <typename Function>
    bool IsTakenFromAnotherThread(const LxBuffer &aPicture, Function aTake)
    {
        for (int i = 0; i < 20; ++i) {
            std::atomic<qint64> elapsed{-1};
            std::thread producer([&] {
                QElapsedTimer clock;
                clock.start();
                EXPECT_EQ(mDisplay.Display(aPicture, false).GetCode(), 0u);
                elapsed = clock.elapsed();
            });
            EXPECT_TRUE(WaitFor([&] { return IsFrameWaiting() || elapsed >= 0; }));
            mSpy.mUploads.clear();
            aTake();
            const bool isUploaded = !mSpy.mUploads.empty();
            producer.join();
            if (isUploaded && elapsed < 490) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(OpenGLDisplay, LargeFramesAreHalvedOnce)
{
    ShowAt(500, 300);
    ShowPicture(5000, 3001);
    EXPECT_EQ(GL()->FrameSize(), QSize(2500, 1500));
    const QRgb color = Screen().pixel(250, 150);
    EXPECT_NEAR(qRed(color), 2505 % 256, 10);
    EXPECT_EQ(qBlue(color), 77);
    ShowPicture(4096, 10);
    EXPECT_EQ(GL()->FrameSize(), QSize(4096, 10)) << "the limit itself is not halved";
    ShowPicture(4097, 1);
    EXPECT_EQ(GL()->FrameSize(), QSize(2048, 1));
}

TEST_F(OpenGLDisplay, FramesStillTooLargeAfterHalvingShowNothing)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    ASSERT_TRUE(mDisplay.Display(*MakePicture(10000, 100), false).IsOK());
    EXPECT_EQ(GL()->FrameSize(), QSize(2500, 25));
    EXPECT_EQ(Screen().pixel(100, 50), DarkGray);
    ASSERT_TRUE(mDisplay.Display(*MakePicture(1, 9000), false).IsOK());
    EXPECT_EQ(Screen().pixel(100, 50), DarkGray);
    ASSERT_TRUE(mDisplay.Display(*MakePicture(80000, 2), false).IsOK()) << "beyond every texture limit";
    EXPECT_EQ(Screen().pixel(100, 50), DarkGray);
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(100, 50), PictureColor(100, 50));
}

TEST_F(OpenGLDisplay, AFrameThatCannotBeConvertedIsShownAsNothingAndIsNoError)
{
    ShowAt(100, 100);
    ShowPicture(8, 8);
    LxImage image;
    uint8_t data[64 * 8] = {};
    ASSERT_TRUE(image.Attach(data, 8, 8, static_cast<LxPixelType>(0x8020FFFF)).IsOK());
    EXPECT_EQ(mDisplay.Display(static_cast<const ILxImage *>(&image), false).GetCode(), 0u);
    EXPECT_EQ(Screen().pixel(50, 50), DarkGray);
}

TEST_F(OpenGLDisplay, ANewFrameSizeMakesNewFrameObjectsAndAResizeOnlyOverlayObjects)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    Screen();
    EXPECT_EQ(GL()->LiveBufferCount(), 2u);
    EXPECT_EQ(GL()->LiveTextureCount(), 2u);
    mSpy.mBuffersMade = 0;
    mSpy.mTexturesMade = 0;
    ShowPicture(200, 100);
    Screen();
    EXPECT_EQ(mSpy.mBuffersMade, 0) << "the same size";
    ShowPicture(100, 50);
    Screen();
    EXPECT_EQ(mSpy.mBuffersMade, 1) << "the same ratio: the overlay stays";
    EXPECT_EQ(mSpy.mTexturesMade, 1);
    mHost.resize(400, 200);
    ASSERT_TRUE(WaitForGui([&] { return Screen().width() == 400 && mSpy.mBuffersMade > 1; }));
    EXPECT_EQ(mSpy.mBuffersMade, 2);
    EXPECT_EQ(mSpy.mTexturesMade, 2);
    EXPECT_EQ(GL()->FrameSize(), QSize(100, 50));
    EXPECT_EQ(GL()->LiveBufferCount(), 2u);
    EXPECT_EQ(GL()->LiveTextureCount(), 2u);
}

TEST_F(OpenGLDisplay, EveryFrameGetsNewMemorySoThatItNeedNotWaitForTheLast)
{
    ShowAt(200, 100);
    ShowPicture(20, 10);
    Screen();
    mSpy.mStorage.clear();
    ShowPicture(20, 10);
    ShowPicture(20, 10);
    Screen();
    EXPECT_THAT(mSpy.mStorage, ElementsAre(20 * 10 * 4, 20 * 10 * 4));
}

TEST_F(OpenGLDisplay, ClearDeletesEveryObject)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    Screen();
    const QPointer<GLDisplay> gl = GL();
    mDisplay.Clear();
    QCoreApplication::sendPostedEvents(&mDisplay);
    EXPECT_EQ(gl->LiveBufferCount(), 0u);
    EXPECT_EQ(gl->LiveTextureCount(), 0u);
    EXPECT_EQ(gl->FrameSize(), QSize(0, 0));
    ShowPicture(200, 100);
    Screen();
    EXPECT_EQ(gl->LiveBufferCount(), 2u);
}

TEST_F(OpenGLDisplay, AClearOnItsWayDoesNotTakeTheNextFrame)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    mDisplay.Clear();
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(OpenGLDisplay, AFrameThatWaitsWhileTheDisplayIsClearedIsShownAfterwards)
{
    ShowAt(200, 100);
    ShowPicture(300, 100);
    const auto picture = MakePicture(200, 100);
    EXPECT_TRUE(IsTakenFromAnotherThread(*picture, [&] {
        mDisplay.Clear();
        QCoreApplication::sendPostedEvents(&mDisplay);
        EXPECT_EQ(GL()->LiveBufferCount(), 0u) << "cleared";
        EXPECT_TRUE(WaitForGui([&] { return !mSpy.mUploads.empty() || !IsFrameWaiting(); }));
    }));
    EXPECT_EQ(GL()->FrameSize(), QSize(200, 100));
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(OpenGLDisplay, WithoutAFrameThereAreObjectsWithoutMemoryAndNothingIsDrawn)
{
    QCoreApplication::sendPostedEvents(&mDisplay);  // the change of the renderer clears
    mDisplay.SetTextOverlay("text");
    ShowAt(200, 100);
    EXPECT_EQ(Screen().pixel(100, 50), DarkGray);
    EXPECT_EQ(mSpy.mBuffersMade, 2);
    EXPECT_EQ(mSpy.mTexturesMade, 2);
    EXPECT_EQ(GL()->LiveBufferCount(), 2u);
    EXPECT_EQ(GL()->LiveTextureCount(), 2u);
    EXPECT_EQ(mSpy.mMaps, 0) << "mapping nothing is an error";
    EXPECT_EQ(mSpy.mQuads, 0);
    GL()->makeCurrent();
    EXPECT_EQ(GL()->context()->functions()->glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    GL()->doneCurrent();
}

TEST_F(OpenGLDisplay, AWidgetWithoutHeightTakesFramesAndDrawsNothing)
{
    ShowAt(200, 100);
    mDisplay.SetTextOverlay("text");
    PaintedByHand widget(mDisplay);
    widget.setParent(&mHost);
    widget.resize(200, 100);
    widget.show();
    widget.resize(200, 0);
    Screen();
    mSpy.mQuads = 0;
    const auto picture = MakePicture(60, 40);
    EXPECT_TRUE(IsTakenFromAnotherThread(*picture, [&] {
        widget.SetNewUpload(true);
        widget.Paint();
    }));
    EXPECT_THAT(mSpy.mUploads, ElementsAre(QSize(60, 40))) << "no overlay";
    EXPECT_EQ(mSpy.mQuads, 0);
    widget.resize(200, 100);
    mSpy.mQuads = 0;
    widget.Paint();
    EXPECT_EQ(mSpy.mQuads, 2);
}

TEST_F(OpenGLDisplay, ADisplayOnTheGuiThreadShowsItsFrameAtOnce)
{
    ShowAt(200, 100);
    const auto picture = MakePicture(200, 100);
    mSpy.mUploads.clear();
    for (int i = 1; i <= 5; ++i) {
        ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
        EXPECT_EQ(mSpy.mUploads.size(), static_cast<size_t>(i)) << "taken before the call returned";
    }
}

TEST_F(OpenGLDisplay, AFrameShownBeforeTheWindowIsOnTheScreenIsThereWhenItComes)
{
    mHost.resize(200, 100);
    ASSERT_TRUE(mDisplay.Create(&mHost).IsOK());
    ASSERT_TRUE(mDisplay.Display(*MakePicture(200, 100), false).IsOK());
    EXPECT_EQ(GL()->FrameSize(), QSize(200, 100));
    ASSERT_TRUE(WaitForScreen(mHost));
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(OpenGLDisplay, EveryFrameOfAnotherThreadIsTakenAlsoWhileTheWindowIsResized)
{
    ShowAt(200, 100);
    ShowPicture(10, 10);
    mSpy.mUploads.clear();
    constexpr int frames = 60;
    std::vector<std::unique_ptr<LxBuffer>> pictures;
    for (int i = 0; i < frames; ++i) {
        pictures.push_back(MakePicture(100 + i, 50));
    }
    std::atomic<int> shown{0};
    std::atomic<int> steps{0};  // of the GUI thread
    std::atomic<bool> isOver{false};
    std::thread producer([&] {
        for (const auto &picture : pictures) {
            // again where the GUI thread stood still for as long as a frame waits
            constexpr int stepsToTakeIt = 10;
            qint64 elapsed = 0;
            int before = 0;
            do {
                before = steps;
                QElapsedTimer clock;
                clock.start();
                EXPECT_TRUE(mDisplay.Display(*picture, false).IsOK());
                elapsed = clock.elapsed();
            } while (elapsed >= 490 && steps - before < stepsToTakeIt && !isOver);
            ++shown;
        }
    });
    EXPECT_TRUE(WaitForGui(
        [&] {
            const int step = ++steps;
            mHost.resize(200 + step % 50, 100 + step % 30);
            mHost.update();
            return shown == frames;
        },
        60000));
    isOver = true;
    producer.join();
    int taken = 0;
    for (const auto &picture : pictures) {
        const QSize frame(static_cast<int>(picture->GetImage()->GetWidth()), 50);
        taken += std::count(mSpy.mUploads.begin(), mSpy.mUploads.end(), frame) > 0;
    }
    EXPECT_EQ(taken, frames);
}

TEST_F(OpenGLDisplay, AFrameThatNobodyTakesIsDroppedAfterHalfASecond)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    mHost.hide();
    Settle();
    mSpy.mUploads.clear();
    const auto picture = MakePicture(200, 100);
    qint64 elapsed = 1000;
    // again where the machine was busy
    for (int i = 0; i < 20 && elapsed > 600; ++i) {
        OnAnotherThread([&] {
            QElapsedTimer clock;
            clock.start();
            EXPECT_EQ(mDisplay.Display(*picture, false).GetCode(), 0u);
            elapsed = clock.elapsed();
        });
        EXPECT_GE(elapsed, 490);
    }
    EXPECT_LE(elapsed, 600);
    EXPECT_TRUE(mSpy.mUploads.empty());
    EXPECT_EQ(mDisplay.PendingImage(), nullptr);
    mHost.show();
    ASSERT_TRUE(WaitForScreen(mHost));
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(OpenGLDisplay, SeveralProducersDoNotTakeEachOthersFramesAway)
{
    ShowAt(200, 100);
    const auto first = MakePicture(60, 40);
    const auto second = MakePicture(80, 40);
    std::atomic<int> done{0};
    std::vector<std::thread> producers;
    for (const LxBuffer *picture : {first.get(), second.get()}) {
        producers.emplace_back([&, picture] {
            for (int i = 0; i < 30; ++i) {
                EXPECT_TRUE(mDisplay.Display(*picture, false).IsOK());
            }
            ++done;
        });
    }
    EXPECT_TRUE(WaitForGui([&] { return done == 2; }));
    for (std::thread &producer : producers) {
        producer.join();
    }
    EXPECT_EQ(mDisplay.PendingImage(), nullptr);
}

TEST_F(OpenGLDisplay, AProducerThatGivesUpLeavesTheFrameOfAnotherAlone)
{
    ShowAt(200, 100);
    mHost.hide();
    Settle();
    const auto first = MakePicture(60, 40);
    const auto second = MakePicture(80, 40);
    const auto pending = [&] {
        const QMutexLocker lock(&mDisplay.ImageMutex());
        return mDisplay.PendingImage();
    };
    bool isProven = false;
    // again where the machine was busy for longer than a frame waits
    for (int i = 0; i < 20 && !isProven; ++i) {
        std::atomic<bool> firstDone{false};
        std::atomic<bool> secondDone{false};
        QElapsedTimer clock;
        clock.start();
        std::thread one([&] {
            mDisplay.Display(*first, false);
            firstDone = true;
        });
        EXPECT_TRUE(WaitFor([&] { return (pending() && clock.elapsed() > 200) || firstDone; }));
        std::thread two([&] {
            mDisplay.Display(*second, false);
            secondDone = true;
        });
        EXPECT_TRUE(WaitFor([&] { return firstDone.load(); }));
        const ILxImage *left = pending();
        isProven = !secondDone && left == second->GetImage();
        one.join();
        two.join();
    }
    EXPECT_TRUE(isProven);
    EXPECT_EQ(pending(), nullptr);
}

TEST_F(OpenGLDisplay, WithoutAnEntryPointNothingIsDrawnAndNobodyWaits)
{
    mSpy.mMissing = {"glMapBuffer"};
    ShowAt(200, 100);
    const auto picture = MakePicture(200, 100);
    OnAnotherThread([&] { EXPECT_EQ(mDisplay.Display(*picture, false).GetCode(), 0u); });
    EXPECT_EQ(mSpy.mBuffersMade, 0);
    EXPECT_EQ(mSpy.mTexturesMade, 0);
    EXPECT_TRUE(mSpy.mUploads.empty());
    EXPECT_EQ(GL()->LiveBufferCount(), 0u);
}

TEST_F(OpenGLDisplay, AFailedMappingDropsTheFrameAndNobodyWaits)
{
    ShowAt(200, 100);
    mDisplay.SetTextOverlay("HHHH");
    mSpy.mFailMaps = true;
    const auto picture = MakePicture(200, 100);
    std::atomic<int> shown{0};
    OnAnotherThread([&] {
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(mDisplay.Display(*picture, false).GetCode(), 0u);
            ++shown;
        }
    });
    EXPECT_EQ(shown, 3);
    mSpy.mFailMaps = false;
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(150, 80), PictureColor(150, 80));
}

TEST_F(OpenGLDisplay, WithoutAContextTheModeIsSetAndNothingIsDrawn)
{
    ASSERT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
    ShowAt(200, 100);
#ifdef __SANITIZE_ADDRESS__
    const __lsan::ScopedDisabler disabler;  // Qt loses a context that it cannot make
#endif
    ContextSpoiler spoiler;
    mHost.installEventFilter(&spoiler);
    EXPECT_EQ(mDisplay.SetRendererMode(1).GetCode(), 0u);
    EXPECT_EQ(mDisplay.GetRendererMode(), 1);
    ASSERT_NE(GL(), nullptr);
    EXPECT_EQ(mDisplay.Display(*MakePicture(200, 100), false).GetCode(), 0u);
    Screen();
    EXPECT_FALSE(GL()->isValid());
    EXPECT_EQ(mSpy.mBuffersMade, 0);
    EXPECT_EQ(mSpy.mQuads, 0);
    EXPECT_EQ(mDisplay.PendingImage(), nullptr);
    mDisplay.Clear();
    mDisplay.SetBackgroundColor(Qt::red);
    Settle();
    EXPECT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40)) << "software still draws";
}

TEST_F(OpenGLDisplay, TheSwapIntervalFollowsTheFlagOfTheLastFrame)
{
    mSpy.mPlatformExtensions = "GLX_EXT_something GLX_SGI_swap_control";
    ShowAt(200, 100);
    const auto picture = MakePicture(20, 10);
    mSpy.mSwapControl.clear();
    mDisplay.Display(*picture, true);
    mDisplay.Display(*picture, false);
    EXPECT_THAT(mSpy.mSwapControl, ElementsAre("SGI 1", "SGI 0"));
}

TEST_F(OpenGLDisplay, VerticalSynchronisationIsSwitchedOffTheWayThatCanDoIt)
{
    mSpy.mPlatformExtensions = "GLX_SGI_swap_control GLX_MESA_swap_control";
    ShowAt(200, 100);
    const auto picture = MakePicture(20, 10);
    mSpy.mSwapControl.clear();
    mDisplay.Display(*picture, true);
    mDisplay.Display(*picture, false);
    EXPECT_THAT(mSpy.mSwapControl, ElementsAre("SGI 1", "MESA 0"));
}

TEST_F(OpenGLDisplay, SwapControlThatThePlatformDoesNotNameIsNeverCalled)
{
    mSpy.mPlatformExtensions = "GLX_SGI_swap_control_tear GLX_ARB_multisample";
    ShowAt(200, 100);
    mDisplay.Display(*MakePicture(20, 10), true);
    EXPECT_TRUE(mSpy.mSwapControl.empty());
}

TEST_F(OpenGLDisplay, ZoomAndScrollBarsHaveNoEffect)
{
    ShowAt(200, 100);
    ShowPicture(400, 200);
    mDisplay.OnMainZoom1To1();
    mDisplay.OnMainZoomIn();
    QTest::keyClick(&mHost, Qt::Key_Plus);
    QWheelEvent wheel(QPointF(10, 10), mHost.mapToGlobal(QPointF(10, 10)), {}, QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&mHost, &wheel);
    mDisplay.OnMainCenterHere();
    EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_TRUE(Bar("verticalScrollBar")->isHidden());
    EXPECT_EQ(GL()->geometry(), QRect(0, 0, 200, 100));
    ExpectFitted(Screen(), *MakePicture(400, 200)->GetImage(), DarkGray, 1);
}

TEST_F(OpenGLDisplay, ClicksOnThePictureGiveTheWindowTheKeyboard)
{
    ShowAt(200, 100);
    ShowPicture(200, 100);
    mHost.activateWindow();
    mHost.clearFocus();
    QTest::mouseClick(GL(), Qt::LeftButton);
    EXPECT_TRUE(WaitForGui([&] { return QApplication::focusWidget() == &mHost || mHost.hasFocus(); }));
}

TEST_F(OpenGLDisplay, TheRendererMayBeChangedWhileItShows)
{
    ShowAt(200, 100);
    for (int i = 0; i < 3; ++i) {
        ShowPicture(200, 100);
        ASSERT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
        EXPECT_EQ(GL(), nullptr);
        EXPECT_EQ(Screen().pixel(100, 50), DarkGray) << "every change clears";
        ShowPicture(400, 200);
        mDisplay.OnMainZoom1To1();
        EXPECT_EQ(Screen().pixel(0, 0), PictureColor((400 - 182) / 2, (200 - 82) / 2));
        ASSERT_EQ(mDisplay.SetRendererMode(1).GetCode(), 0u);
        EXPECT_EQ(mDisplay.GetInternalBuffer().GetDataPointer(), nullptr);
        ASSERT_NE(GL(), nullptr);
        EXPECT_EQ(GL()->geometry(), QRect(0, 0, 200, 100));
        EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
        EXPECT_EQ(Screen().pixel(100, 50), DarkGray);
        ShowPicture(400, 200);
        ExpectFitted(Screen(), *MakePicture(400, 200)->GetImage(), DarkGray, 1);
    }
    EXPECT_EQ(mHost.findChildren<GLDisplay *>().size(), 1);
    EXPECT_EQ(mHost.findChildren<QScrollBar *>().size(), 2);
}

TEST_F(OpenGLDisplay, TheRendererMayBeChangedFromAnotherThread)
{
    ShowAt(200, 100);
    OnAnotherThread([&] {
        EXPECT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
        EXPECT_EQ(mDisplay.SetRendererMode(1).GetCode(), 0u);
        EXPECT_EQ(mDisplay.SetRendererMode(2).GetCode(), 26u);
    });
    ShowPicture(200, 100);
    EXPECT_EQ(Screen().pixel(30, 40), PictureColor(30, 40));
}

TEST_F(OpenGLDisplay, AChangeOfTheRendererLetsAWaitingFrameGo)
{
    ShowAt(200, 100);
    mHost.hide();
    Settle();
    const auto picture = MakePicture(200, 100);
    // again where the machine was busy for longer than a frame waits
    std::atomic<qint64> elapsed{-1};
    for (int i = 0; i < 20 && (elapsed < 0 || elapsed >= 490); ++i) {
        ASSERT_EQ(mDisplay.SetRendererMode(1).GetCode(), 0u);
        elapsed = -1;
        std::thread producer([&] {
            QElapsedTimer clock;
            clock.start();
            mDisplay.Display(*picture, false);
            elapsed = clock.elapsed();
        });
        EXPECT_TRUE(WaitFor([&] { return IsFrameWaiting() || elapsed >= 0; }));
        EXPECT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
        producer.join();
    }
    EXPECT_LT(elapsed, 490) << "the frame waited for a widget that was gone";
}

TEST_F(OpenGLDisplay, AWindowMayEndWhileAFrameWaits)
{
    int ended = 0;
    for (int i = 0; i < 50 && ended < 5; ++i) {
        QWidget host;
        host.resize(100, 100);
        auto display = std::make_unique<DisplayWnd>();
        ASSERT_EQ(display->SetRendererMode(1).GetCode(), 0u);
        ASSERT_TRUE(display->Create(&host).IsOK());
        host.hide();
        const auto picture = MakePicture(50, 50);
        std::atomic<bool> isBack{false};
        std::thread producer([&, window = display.get()] {
            EXPECT_TRUE(window->Display(*picture, false).IsOK());
            isBack = true;
        });
        // a busy machine may need longer than a frame waits
        EXPECT_TRUE(WaitFor([&] {
            const QMutexLocker lock(&display->ImageMutex());
            return display->PendingImage() != nullptr || isBack;
        }));
        ended += !isBack;
        display.reset();
        producer.join();
    }
    EXPECT_EQ(ended, 5);
}

TEST(OpenGLRenderer, AModeSetBeforeThereIsAWidgetIsUsedWhenThereIs)
{
    LxDisplayWnd display;
    ASSERT_EQ(display.SetRendererMode(LxRendererModeOpenGL).GetCode(), 0u);
    EXPECT_EQ(display.GetRendererMode(), LxRendererModeOpenGL);
    QWidget host;
    host.resize(100, 100);
    ASSERT_TRUE(display.Create(&host).IsOK());
    EXPECT_NE(host.findChild<GLDisplay *>(), nullptr);
    EXPECT_EQ(display.SetRendererMode(LxRendererModeReserved).GetCode(), 26u);
    EXPECT_EQ(display.SetRendererMode(static_cast<LxRendererMode>(7)).GetCode(), 16385u);
}

TEST(OpenGLRenderer, AHostsOwnWindowIsKeptWhenTheRendererChanges)
{
    // the first OpenGL widget may make Qt replace the native window of what it is put into
    QWidget window;
    window.resize(300, 200);
    QWidget inner(&window);
    inner.setGeometry(50, 50, 200, 100);
    window.show();
    DisplayWnd display;
    ASSERT_TRUE(display.Create(&inner).IsOK());
    ASSERT_TRUE(WaitForScreen(window));
    ASSERT_EQ(display.SetRendererMode(1).GetCode(), 0u);
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.size(), QSize(300, 200));
    ASSERT_TRUE(display.Display(*MakePicture(200, 100), false).IsOK());
    EXPECT_EQ(Grab(&window).pixel(50 + 30, 50 + 40), PictureColor(30, 40));
}
