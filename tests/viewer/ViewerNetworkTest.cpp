// What a user of the viewer does with a camera on a real network.

#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>

#include "CameraProcess.h"
#include "ViewerTest.h"

namespace
{

/// A viewer that shows the features of a camera, which is a process of its own.
class ViewerOnNetwork : public ViewerBase
{
protected:
    void Connect(CameraProcess &aCamera)
    {
        ASSERT_TRUE(aCamera.Start());
        Restart();
        mWindow->Connect(QString::fromStdString(aCamera.GetAddress()));
        ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2; }));
        ASSERT_TRUE(WaitForGui([&] { return Find("Width").isValid(); }));
    }
};

}  // namespace

TEST_F(ViewerOnNetwork, TheFeaturesAreArrangedAsBeforeWhenTheCameraWasRestarted)
{
    CameraProcess camera(EmulatorCommand());
    Connect(camera);
    ArrangeTree();
    const QString value = Value("AcquisitionMode");
    camera.Kill();
    ASSERT_TRUE(WaitForGui([&] { return IsVeiled(); }));
    EXPECT_EQ(Value("AcquisitionMode"), value);
    ExpectArranged();
    ASSERT_TRUE(camera.Start());
    ASSERT_TRUE(WaitForGui([&] { return !IsVeiled(); }));
    EXPECT_EQ(Value("AcquisitionMode"), value);
    ExpectArranged();
    const uint64_t delivered = mWindow->Session().Statistics().mDelivered;
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > delivered + 2; }));
}

TEST_F(ViewerOnNetwork, TheViewerClosesWhileTheCameraIsStuck)
{
    CameraProcess camera(EmulatorCommand());
    Connect(camera);
    camera.Freeze();
    QTest::keyClicks(mWindow->Features().findChild<QLineEdit *>("SearchBar"), "gain");
    EXPECT_TRUE(Current().contains("Gain"));
    mWindow->close();
    EXPECT_FALSE(mWindow->isVisible());
    mWindow.reset();
    camera.Thaw();
}

TEST_F(ViewerOnNetwork, TheFeaturesOfACameraOfAnotherMakerAreShown)
{
    CameraProcess camera(FakeCameraCommand());
    Connect(camera);
    EXPECT_TRUE(Find("Width").isValid());
    EXPECT_FALSE(Value("Width").isEmpty());
}
