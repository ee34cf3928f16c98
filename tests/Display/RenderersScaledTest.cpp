// Both renderers on a screen with two device pixels for each of Qt's in a direction. On an X server.

#include "OpenGLTest.h"

namespace
{

class ScaledRenderers : public OpenGLTest, public testing::WithParamInterface<int>
{
protected:
    void SetUp() override
    {
        OpenGLTest::SetUp();
        ASSERT_EQ(mDisplay.SetRendererMode(GetParam()).GetCode(), 0u);
        mDisplay.SetBackgroundColor(QColor(90, 20, 40));
        ShowAt(100, 75);
        ASSERT_EQ(mHost.devicePixelRatioF(), 2.0) << "QT_SCALE_FACTOR is not 2";
        ASSERT_EQ(Screen().size(), QSize(200, 150));
    }

    static constexpr QRgb Background = qRgb(90, 20, 40);
};

std::string RendererName(const testing::TestParamInfo<int> &aInfo)
{
    return aInfo.param ? "OpenGL" : "Software";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Renderer, ScaledRenderers, testing::Values(0, 1), RendererName);

TEST_P(ScaledRenderers, UseEveryPixelOfTheScreen)
{
    ShowPicture(200, 150);
    ExpectFitted(Screen(), *MakePicture(200, 150)->GetImage(), Background);
}

TEST_P(ScaledRenderers, FitOtherShapesCentredOnTheBackground)
{
    for (const QSize &size : {QSize(50, 75), QSize(100, 25), QSize(10, 15)}) {
        ShowPicture(size.width(), size.height());
        ExpectFitted(Screen(), *MakePicture(size.width(), size.height())->GetImage(), Background);
    }
}

TEST_P(ScaledRenderers, FollowAResize)
{
    ShowPicture(200, 150);
    mHost.resize(60, 45);
    ASSERT_TRUE(WaitForGui([&] { return Screen().size() == QSize(120, 90); }));
    const auto picture = MakePicture(120, 90);
    ASSERT_TRUE(mDisplay.Display(*picture, false).IsOK());
    // the server may ask for more repainting
    EXPECT_TRUE(WaitForGui([&] { return FindWrongPixels(Screen(), *picture->GetImage(), Background).empty(); }));
}

TEST_P(ScaledRenderers, PlaceTheOverlayRelativeToThePictureInTheSizeOfAnyText)
{
    mDisplay.SetTextOverlay("WWW");
    mDisplay.SetTextOverlayOffsetX(30);
    mDisplay.SetTextOverlayOffsetY(20);
    ShowPicture(200, 150);
    const QImage screen = Screen();
    EXPECT_GT(CountGreen(screen, QRect(60, 40, 140, 110)), 100);
    EXPECT_EQ(CountGreen(screen, QRect(0, 0, 200, 40)), 0);
    EXPECT_EQ(CountGreen(screen, QRect(0, 0, 60, 150)), 0);
}

TEST_P(ScaledRenderers, TellThePixelUnderAPoint)
{
    ShowPicture(200, 150);
    const QPoint pixel = mDisplay.PictureAt(QPoint(50, 37));
    EXPECT_NEAR(pixel.x(), 100, 1);
    EXPECT_NEAR(pixel.y(), 75, 1);
    EXPECT_EQ(mDisplay.PictureAt(QPoint(100, 37)), QPoint(-1, -1));
}
