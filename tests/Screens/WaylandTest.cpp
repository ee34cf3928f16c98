// All windows on a Wayland compositor: they open, paint and close; what cannot be had there is said.

#include <QtCore/QTimer>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMenu>
#include <cstdio>

#include "Display/DisplayTest.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "SimulatedGrabber.h"

namespace
{

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *aWidget) { aWidget->installEventFilter(this); }
    int mPaints = 0;

private:
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        mPaints += aEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

/// Whether an image shows more than one colour.
bool ShowsSomething(const QImage &aImage)
{
    for (int y = 0; y < aImage.height(); ++y) {
        for (int x = 0; x < aImage.width(); ++x) {
            if (aImage.pixel(x, y) != aImage.pixel(0, 0)) {
                return true;
            }
        }
    }
    return false;
}

class Wayland : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("wayland")); }

    static void ExpectLife(LxWnd &aWindow)
    {
        for (int round = 0; round < 2; ++round) {
            ASSERT_TRUE(aWindow.ShowModeless().IsOK());
            QWidget *widget = aWindow.GetQWidget();
            PaintCounter paints(widget);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(widget, 20000)) << "the compositor shows it";
            EXPECT_TRUE(WaitForGui([&] { return paints.mPaints > 0; }));
            EXPECT_TRUE(ShowsSomething(Grab(widget)));
            EXPECT_TRUE(aWindow.Close().IsOK());
            EXPECT_FALSE(widget->isVisible());
            QCoreApplication::processEvents();
        }
    }

    const SimulatedGrabber mGrabber;
};

}  // namespace

TEST_F(Wayland, TheFinderLives)
{
    LxDeviceFinderWnd finder;
    ExpectLife(finder);
}

TEST_F(Wayland, TheFinderIsModal)
{
    LxDeviceFinderWnd finder;
    OnNextModal([&](QWidget *aWidget) {
        EXPECT_TRUE(WaitForGui([&] { return aWidget->windowHandle()->isExposed(); }));
        finder.Close();
    });
    EXPECT_EQ(finder.ShowModal().GetCode(), 0x4002u);
}

TEST_F(Wayland, TheFeatureBrowserLives)
{
    LxGenBrowserWnd browser;
    browser.SetGenParameterArray(mGrabber.GetDevice()->GetParameters());
    ExpectLife(browser);
}

TEST_F(Wayland, TheRegisterWindowLives)
{
    LxRegisterInterfaceWnd registers;
    registers.SetDevice(dynamic_cast<LxDeviceGEV *>(mGrabber.GetDevice()));
    ExpectLife(registers);
}

TEST_F(Wayland, TheTerminalLives)
{
    LxSerialTerminalWnd terminal;
    terminal.SetDevice(mGrabber.GetAdapter());
    ExpectLife(terminal);
}

TEST_F(Wayland, TheCameraBridgeManagerLives)
{
    LxCameraBridgeManagerWnd manager;
    manager.SetDevice(mGrabber.GetDevice());
    ExpectLife(manager);
}

TEST_F(Wayland, TheSerialBridgeManagerLives)
{
    LxSerialBridgeManagerWnd manager;
    manager.SetDevice(mGrabber.GetAdapter());
    ExpectLife(manager);
}

TEST_F(Wayland, TheDisplayShowsAPicture)
{
    LxDisplayWnd display;
    display.SetPosition(-1, -1, 300, 200);
    const auto picture = MakePicture(300, 200);
    EXPECT_TRUE(display.Display(*picture, false).IsOK());
    ExpectLife(display);
    display.ShowModeless();
    EXPECT_TRUE(display.Display(*picture, false).IsOK());
    EXPECT_TRUE(WaitForGui([&] { return Grab(display.GetQWidget()).pixel(200, 100) == PictureColor(200, 100); }));
    display.Close();
}

TEST_F(Wayland, TheDisplayShowsAPictureByOpenGLWhereThatIsGoodEnough)
{
    std::printf("OpenGL here: mode %d, %s, %s\n", static_cast<int>(LxDisplayWnd::GetHighestRendererMode()),
                LxDisplayWnd::GetRenderer().GetAscii(), LxDisplayWnd::GetRendererVersion().GetAscii());
    LxDisplayWnd display;
    display.SetPosition(-1, -1, 300, 200);
    const LxResult result = display.SetRendererMode(LxRendererModeOpenGL);
    if (LxDisplayWnd::GetHighestRendererMode() < LxRendererModeOpenGL) {
        EXPECT_EQ(result.GetCode(), 26u);
        return;
    }
    ASSERT_TRUE(result.IsOK());
    display.ShowModeless();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(display.GetQWidget(), 20000));
    const auto picture = MakePicture(300, 200);
    EXPECT_TRUE(WaitForGui([&] {
        display.Display(*picture, false);
        const QColor shown = Grab(display.GetQWidget()).pixelColor(200, 100);
        const QColor sent(PictureColor(200, 100));
        return std::abs(shown.red() - sent.red()) < 4 && std::abs(shown.green() - sent.green()) < 4;
    }));
    display.Close();
}

TEST_F(Wayland, TheDisplaysContextMenuOpens)
{
    LxDisplayWnd display;
    display.ShowModeless();
    QWidget *widget = display.GetQWidget();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(widget, 20000));
    bool opened = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
            opened = true;
            menu->close();
        }
    });
    timer.start(1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20), widget->mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(widget, &event);
    EXPECT_TRUE(opened);
    display.Close();
}

TEST_F(Wayland, EmbeddingReportsThatThereIsNoNativeHandle)
{
    const HWND parent = reinterpret_cast<HWND>(uintptr_t{0x4711});
    LxRegisterInterfaceWnd registers;
    EXPECT_EQ(registers.Create(parent, 0).GetCode(), 0x4001u);
    EXPECT_TRUE(registers.IsVisible()) << "a window of its own";
    EXPECT_TRUE(QTest::qWaitForWindowExposed(registers.GetQWidget(), 20000));
    LxRegisterInterfaceWnd modeless;
    EXPECT_EQ(modeless.ShowModeless(parent).GetCode(), 0u);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(modeless.GetQWidget(), 20000));
}
