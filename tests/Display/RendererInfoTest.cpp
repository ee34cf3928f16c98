// What the display finds out about OpenGL, in a process without an application at first. How good the OpenGL of the
// machine is, LXGUI_EXPECTED_RENDERER_MODE says. On an X server.

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QScreen>
#include <QtGui/QSurfaceFormat>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <atomic>
#include <memory>
#include <thread>

#include "GuiTest.h"
#include "LxGUI/Display/RendererInfo.h"
#include "LxGUI/LxDisplayWnd.h"
#include "OpenGLTest.h"

namespace
{

int sArgumentCount = 1;
char sName[] = "test";
char *sArguments[] = {sName, nullptr};

/// An application that ends before it does what other threads ask of it.
class EndingApplication : public QApplication
{
public:
    EndingApplication() : QApplication(sArgumentCount, sArguments) {}
    bool event(QEvent *aEvent) override { return aEvent->type() == QEvent::MetaCall || QApplication::event(aEvent); }
};

int ExpectedMode()
{
    return qEnvironmentVariableIntValue("LXGUI_EXPECTED_RENDERER_MODE");
}

}  // namespace

// One test, as its steps build on each other: a process finds out only once.
TEST(RendererInfo, IsAskedOnceThereIsAnApplicationAndOutlivesIt)
{
    EXPECT_STREQ(LxDisplayWnd::GetRenderer().GetAscii(), "OpenGL Default");
    EXPECT_STREQ(LxDisplayWnd::GetRendererVersion().GetAscii(), "N/A");
    EXPECT_EQ(LxDisplayWnd::GetHighestRendererMode(), LxRendererModeSoftware);
    {
        QCoreApplication application(sArgumentCount, sArguments);
        EXPECT_STREQ(LxDisplayWnd::GetRendererVersion().GetAscii(), "N/A") << "no windows, no OpenGL";
    }
    {
        EndingApplication application;
        std::atomic<bool> done{false};
        std::thread other([&] {
            EXPECT_STREQ(LxDisplayWnd::GetRendererVersion().GetAscii(), "N/A");
            done = true;
        });
        EXPECT_TRUE(WaitForGui([&] { return done.load(); }));
        other.join();
    }
    std::string renderer;
    {
        QApplication application(sArgumentCount, sArguments);
        std::atomic<bool> done{false};
        std::thread other([&] {
            EXPECT_EQ(LxDisplayWnd::GetHighestRendererMode(), static_cast<LxRendererMode>(ExpectedMode()));
            done = true;
        });
        EXPECT_TRUE(WaitForGui([&] { return done.load(); }));
        other.join();
        renderer = LxDisplayWnd::GetRenderer().GetAscii();
        EXPECT_EQ(renderer.rfind("OpenGL ", 0), 0u);
        EXPECT_STRNE(LxDisplayWnd::GetRendererVersion().GetAscii(), "N/A");
        std::printf("%s, version %s\n", renderer.c_str(), LxDisplayWnd::GetRendererVersion().GetAscii());
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            EXPECT_FALSE(widget->isVisible());
            EXPECT_FALSE(widget->testAttribute(Qt::WA_QuitOnClose)) << "must not keep an application going";
        }
        LxDisplayWnd display;
        EXPECT_EQ(display.SetRendererMode(LxRendererModeOpenGL).GetCode(), ExpectedMode() == 1 ? 0u : 26u);
        EXPECT_EQ(display.SetRendererMode(LxRendererModeReserved).GetCode(), 26u);
        EXPECT_EQ(display.GetRendererMode(), static_cast<LxRendererMode>(ExpectedMode()));
    }
    EXPECT_EQ(LxDisplayWnd::GetRenderer().GetAscii(), renderer) << "without an application again";
    QApplication application(sArgumentCount, sArguments);
    EXPECT_EQ(LxDisplayWnd::GetRenderer().GetAscii(), renderer);
    {
        QWidget host;
        host.resize(100, 80);
        LxDisplayWnd display;
        display.SetRendererMode(LxDisplayWnd::GetHighestRendererMode());
        ASSERT_TRUE(display.Create(&host).IsOK());
        ASSERT_TRUE(WaitForScreen(host));
        ASSERT_TRUE(display.Display(*MakePicture(100, 80)).IsOK());
        QCoreApplication::processEvents();
        EXPECT_EQ(Grab(&host).pixel(30, 40), PictureColor(30, 40));
    }
    // as the loop of an application does; else the next application finds what this one has not deleted
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A refresh that was on its way ends with the application.
TEST(DisplayWithoutItsFirstApplication, ShowsFramesInTheNextOne)
{
    auto application = std::make_unique<QApplication>(sArgumentCount, sArguments);
    LxDisplayWnd display;
    ASSERT_TRUE(display.Display(*MakePicture(100, 80)).IsOK());
    application.reset();
    application = std::make_unique<QApplication>(sArgumentCount, sArguments);
    QWidget host;
    host.resize(100, 80);
    ASSERT_TRUE(display.Create(&host).IsOK());
    ASSERT_TRUE(WaitForScreen(host));
    const auto isOnScreen = [&](QRgb aColor) {
        return WaitForGui([&] { return host.screen()->grabWindow(host.winId()).toImage().pixel(30, 40) == aColor; },
                          5000);
    };
    EXPECT_TRUE(isOnScreen(PictureColor(30, 40)));
    ASSERT_TRUE(display.Display(*MakePicture(50, 40)).IsOK());
    EXPECT_TRUE(isOnScreen(PictureColor(15, 20)));
}
