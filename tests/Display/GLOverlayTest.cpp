// The text over the picture, as the OpenGL renderer draws it. On an X server.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "OpenGLTest.h"

using testing::ElementsAre;

class OpenGLOverlay : public OpenGLTest
{
};

TEST_F(OpenGLOverlay, IsNotThereForAFrameTooFlatForTheWindow)
{
    ShowAt(200, 100);
    mDisplay.SetTextOverlay("text");
    ShowPicture(4096, 1);
    Screen();
    EXPECT_THAT(mSpy.mUploads, ElementsAre(QSize(4096, 1)));
}

TEST_F(OpenGLOverlay, ShowsNoGarbageOfMappedMemory)
{
    mSpy.mDirtyMaps = true;
    ShowAt(300, 100);
    mDisplay.SetTextOverlay("HHHH");
    ShowPicture(300, 100);
    const QImage text = Screen();
    EXPECT_GT(CountGreen(text, {10, 10, 100, 30}), 20);
    for (const QPoint &point : {QPoint(299, 20), QPoint(5, 5), QPoint(150, 60), QPoint(299, 99), QPoint(0, 99)}) {
        EXPECT_EQ(text.pixel(point), PictureColor(point.x(), point.y())) << point.x() << ',' << point.y();
    }
    mDisplay.SetTextOverlay("");
    ShowPicture(300, 100);
    ExpectFitted(Screen(), *MakePicture(300, 100)->GetImage(), QColor(Qt::darkGray).rgb());
}

// Its edges are half transparent: what is below the text in its own memory must not get into them.
TEST_F(OpenGLOverlay, HasTheColoursThatSoftwareGivesIt)
{
    mSpy.mDirtyMaps = true;
    ShowAt(300, 100);
    mDisplay.SetTextOverlay("Frame 8 / ojw");
    ShowPicture(300, 100);
    const QImage openGL = Screen();
    ASSERT_EQ(mDisplay.SetRendererMode(0).GetCode(), 0u);
    mDisplay.SetTextOverlay("Frame 8 / ojw");
    ShowPicture(300, 100);
    const QImage software = Screen();
    EXPECT_GT(CountGreen(software, {0, 0, 300, 100}), 20);
    int most = 0;
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 300; ++x) {
            const QRgb a = openGL.pixel(x, y);
            const QRgb b = software.pixel(x, y);
            most = std::max(
                {most, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
        }
    }
    EXPECT_LE(most, 4);
}

TEST_F(OpenGLOverlay, IsUploadedOnlyWhenItChanges)
{
    ShowAt(300, 200);
    mDisplay.SetTextOverlay("one");
    ShowPicture(100, 50);
    Screen();
    mSpy.mUploads.clear();
    ShowPicture(100, 50);
    Screen();
    EXPECT_THAT(mSpy.mUploads, ElementsAre(QSize(100, 50)));
    mDisplay.SetTextOverlay("two");
    ShowPicture(100, 50);
    Screen();
    EXPECT_THAT(mSpy.mUploads, ElementsAre(QSize(100, 50), QSize(100, 50), QSize(300, 150)));
}

TEST_F(OpenGLOverlay, IsNotUploadedWithoutText)
{
    ShowAt(300, 200);
    ShowPicture(100, 50);
    ShowPicture(100, 50);
    Screen();
    EXPECT_THAT(mSpy.mUploads, ElementsAre(QSize(100, 50), QSize(100, 50)));
}
