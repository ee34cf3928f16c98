// The viewer with the picture drawn by OpenGL, on an X server.

#include <QtGui/QAccessible>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>

#include "LxGenICam/LxGenParameterArray.h"
#include "ViewerTest.h"

namespace
{

class ViewerByOpenGL : public Viewer
{
protected:
    void SetUp() override
    {
        if (LxDisplayWnd::GetHighestRendererMode() < LxRendererModeOpenGL) {
            GTEST_SKIP() << "this machine's OpenGL is not good enough";
        }
        Viewer::SetUp();
    }
};

}  // namespace

TEST_F(ViewerByOpenGL, ProbesThePictureAndDoesNotOfferToZoom)
{
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

TEST_F(ViewerByOpenGL, ComesBackFromItWithTheWholePicture)
{
    ConnectLive();
    for (int i = 0; i < 5; ++i) {
        Action("zoomInAction")->trigger();
    }
    auto *picture = mWindow->findChild<QWidget *>("picture");
    const auto described = [&] {
        return QAccessible::queryAccessibleInterface(picture)->text(QAccessible::Description);
    };
    ASSERT_TRUE(described().contains("zoom")) << described().toStdString();
    Action("softwareAction")->trigger();
    EXPECT_TRUE(described().contains("zoom")) << "it was drawn by software before";
    Action("openGLAction")->trigger();
    for (int i = 0; i < 10; ++i) {
        QWheelEvent wheel(QPointF(9, 9), picture->mapToGlobal(QPointF(9, 9)), {}, QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(picture, &wheel);
    }
    Action("softwareAction")->trigger();
    EXPECT_TRUE(WaitForGui([&] { return described().contains("fitted into the window"); }))
        << described().toStdString();
}

TEST_F(ViewerByOpenGL, KeepsTheNameOfTheCameraInThePicture)
{
    ConnectLive();
    Action("overlayAction")->trigger();
    for (const char *renderer : {"openGLAction", "softwareAction"}) {
        Action(renderer)->trigger();
        EXPECT_TRUE(QString(mWindow->Display().GetTextOverlay().GetAscii()).contains("Left")) << renderer;
    }
    Action("overlayAction")->trigger();
    Action("openGLAction")->trigger();
    EXPECT_STREQ(mWindow->Display().GetTextOverlay().GetAscii(), "");
}

TEST_F(ViewerByOpenGL, CountsFramesThatTheScreenDidNotTakeAsDroppedAndNotAsLate)
{
    ConnectLive();
    Action("openGLAction")->trigger();
    mWindow->hide();
    const ShownFrame &shown = mWindow->Shown();
    ASSERT_TRUE(WaitForGui([&] { return shown.DroppedCount() > 0; }));
    const uint64_t late = shown.LateCount();
    const auto frame = shown.Frame();
    ASSERT_TRUE(WaitForGui([&] { return shown.DroppedCount() > 2; }));
    EXPECT_EQ(shown.LateCount(), late);
    EXPECT_EQ(shown.Frame(), frame) << "the last one that was seen";
    EXPECT_TRUE(WaitForGui([&] {
        const uint64_t dropped = mWindow->Session().Statistics().mDropped + shown.DroppedCount();
        return Status("droppedStatus") == QStringLiteral("%1 dropped").arg(dropped);
    }));
    Action("liveAction")->trigger();
    EXPECT_TRUE(WaitForGui([&] { return Status("droppedStatus") == "0 dropped" && Status("lateStatus") == "0 late"; }))
        << "no stream, nothing counted: " << Status("droppedStatus").toStdString();
}
