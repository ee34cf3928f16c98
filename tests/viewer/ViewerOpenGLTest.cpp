// The viewer with the picture drawn by OpenGL, on an X server.

#include <QtTest/QTest>
#include <QtWidgets/QMenu>

#include "LxGenICam/LxGenParameterArray.h"
#include "ViewerTest.h"

TEST_F(Viewer, DrawnByOpenGLItProbesThePictureAndDoesNotOfferToZoom)
{
    if (LxDisplayWnd::GetHighestRendererMode() < LxRendererModeOpenGL) {
        GTEST_SKIP() << "this machine's OpenGL is not good enough";
    }
    ConnectLive();
    LxGenParameterArray &features = *mWindow->Session().Device()->GetParameters();
    Action("liveAction")->trigger();
    ASSERT_TRUE(WaitForGui([&] { return features.SetIntegerValue("Width", 256).IsOK(); }));
    ASSERT_TRUE(features.SetIntegerValue("Height", 128).IsOK());
    ASSERT_TRUE(features.SetEnumValue("TestPattern", "GreyHorizontalRamp").IsOK());
    Action("openGLAction")->trigger();
    EXPECT_EQ(Status("rendererStatus"), "OpenGL");
    for (const char *name : {"zoomOneToOneAction", "zoomFitAction", "zoomInAction", "zoomOutAction"}) {
        EXPECT_FALSE(Action(name)->isEnabled()) << name;
        EXPECT_TRUE(Action(name)->toolTip().contains("Drawn by OpenGL")) << name;
    }
    Action("liveAction")->trigger();
    ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 5 && Shown().mWidth == 256; }));
    auto *gl = mWindow->findChild<QWidget *>("glDisplay");
    ASSERT_NE(gl, nullptr);
    // the OpenGL view lies over the picture and gets the mouse
    const QPoint middle = gl->rect().center();
    ASSERT_TRUE(WaitForGui([&] {
        QTest::mouseMove(gl, middle - QPoint(1, 0));
        QTest::mouseMove(gl, middle);
        const QString text = Status("probeStatus");
        return text.contains("raw") && (text.startsWith("(127, ") || text.startsWith("(128, "));
    })) << Status("probeStatus").toStdString();
    const QString text = Status("probeStatus");
    const QString raw = text.section("raw ", 1).section("  shown", 0, 0);
    EXPECT_TRUE(text.endsWith(QStringLiteral("shown %1, %1, %1").arg(raw))) << text.toStdString();
    Action("softwareAction")->trigger();
    EXPECT_TRUE(Action("zoomInAction")->isEnabled());
}
