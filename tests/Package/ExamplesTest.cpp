// The examples, built against the installed package, run with simulated cameras and worked from outside.

#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>

#include "Screen.h"
#include "WaitFor.h"

namespace
{

// How many colours a window has at least that is not blank, and one with the picture of a camera, which no window
// without one has.
constexpr int WindowColours = 40;
constexpr int PictureColours = 130;

// A program that runs; its windows, what it prints and how it ends.
class Examples : public testing::Test
{
protected:
    void Start(const char *aName, const QStringList &aArguments = {})
    {
        mName = QLatin1String(aName);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LXSDK_SIMULATION"), QStringLiteral("only"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), mRuntime.path());
        mProgram.setProcessEnvironment(environment);
        mProgram.setProcessChannelMode(QProcess::MergedChannels);
        mProgram.start(QStringLiteral(LXGUI_EXAMPLES "/%1").arg(mName), aArguments);
        ASSERT_TRUE(mProgram.waitForStarted()) << mProgram.errorString().toStdString();
    }

    void TearDown() override
    {
        if (mProgram.state() != QProcess::NotRunning) {
            mProgram.kill();
            mProgram.waitForFinished();
        }
    }

    bool IsRunning()
    {
        mProgram.waitForFinished(0);
        return mProgram.state() != QProcess::NotRunning;
    }

    const std::string &Output()
    {
        mProgram.waitForReadyRead(0);
        mOutput += mProgram.readAll().toStdString();
        return mOutput;
    }

    // The exit code; -1 when it does not end or crashes.
    int End()
    {
        const bool ended = WaitFor([&] { return !IsRunning(); });
        Output();
        return ended && mProgram.exitStatus() == QProcess::NormalExit ? mProgram.exitCode() : -1;
    }

    xcb_window_t WaitForWindow(const char *aTitle)
    {
        xcb_window_t window = XCB_NONE;
        EXPECT_TRUE(WaitFor([&] { return !IsRunning() || (window = mScreen.Find(aTitle)) != XCB_NONE; }));
        EXPECT_NE(window, xcb_window_t{XCB_NONE}) << aTitle << " is not shown\n" << Output();
        return window;
    }

    // Waits until a window, or a part of it, shows this many colours.
    void ExpectContent(xcb_window_t aWindow, int aColours, const QRect &aPart = QRect())
    {
        int colours = 0;
        EXPECT_TRUE(WaitFor([&] { return (colours = CountColours(mScreen.Picture(aWindow).copy(aPart))) >= aColours; }))
            << colours << " colours";
    }

    void Save(const char *aWhat) { Save(aWhat, mScreen.Picture()); }
    void Save(const char *aWhat, const QImage &aPicture)
    {
        QDir().mkpath(QStringLiteral(LXGUI_PICTURES));
        EXPECT_TRUE(aPicture.save(QStringLiteral(LXGUI_PICTURES "/%1-%2.png").arg(mName, QLatin1String(aWhat))));
    }

    static int CountColours(const QImage &aPicture)
    {
        QSet<QRgb> colours;
        for (int y = 0; y < aPicture.height(); ++y) {
            for (int x = 0; x < aPicture.width(); ++x) {
                colours.insert(aPicture.pixel(x, y));
            }
        }
        return static_cast<int>(colours.size());
    }

    // Chooses the first device at the first interface of the finder as soon as it is there.
    void ChooseFirstCamera()
    {
        const xcb_window_t finder = WaitForWindow("Choose a camera");
        ExpectContent(finder, WindowColours);
        QImage shown;  // what a key of the last round may have ended is not there any more
        EXPECT_TRUE(WaitFor([&] {
            if (mScreen.Find("Choose a camera") == XCB_NONE) {
                return true;
            }
            const QImage before = mScreen.Picture(finder);
            mScreen.Press(finder, Key::HomeKey);
            mScreen.Press(finder, Key::DownKey);
            WaitFor([&] { return mScreen.Picture(finder) != before; }, std::chrono::milliseconds(100));
            if (const QImage now = mScreen.Picture(); !now.isNull()) {
                shown = now;
            }
            mScreen.Press(finder, Key::ReturnKey);
            return WaitFor([&] { return mScreen.Find("Choose a camera") == XCB_NONE; }, std::chrono::milliseconds(200));
        }));
        Save("finder", shown);
    }

    Screen mScreen;

private:
    const QTemporaryDir mRuntime;
    QString mName;
    QProcess mProgram;
    std::string mOutput;
};

}  // namespace

TEST_F(Examples, TheModalFinderPrintsTheChoice)
{
    Start("modal-finder");
    ChooseFirstCamera();
    EXPECT_EQ(End(), 0);
    EXPECT_EQ(Output(), "LxGUI Simulated Camera at 192.168.10.21\n");
}

TEST_F(Examples, TheModalFinderSaysThatNothingWasChosen)
{
    Start("modal-finder");
    mScreen.Press(WaitForWindow("Choose a camera"), Key::EscapeKey);
    EXPECT_EQ(End(), 1);
    EXPECT_EQ(Output(), "No camera was chosen.\n");
}

TEST_F(Examples, ModelessWindowsShowPictureAndFeatures)
{
    Start("modeless-windows");
    ChooseFirstCamera();
    const xcb_window_t picture = WaitForWindow("Picture");
    const xcb_window_t features = WaitForWindow("Features");
    ExpectContent(picture, PictureColours);
    ExpectContent(features, WindowColours);
    Save("windows");
    mScreen.Close(features);
    EXPECT_TRUE(WaitFor([&] { return mScreen.Find("Features") == XCB_NONE; }));
    ExpectContent(picture, PictureColours);
    EXPECT_TRUE(IsRunning());
    mScreen.Close(picture);
    EXPECT_EQ(End(), 0);
    EXPECT_EQ(Output(), "");
}

TEST_F(Examples, OwnWidgetsShowPictureAndFeatures)
{
    Start("own-widgets");
    ChooseFirstCamera();
    const xcb_window_t window = WaitForWindow("Inspection");
    ExpectContent(window, PictureColours, QRect(0, 0, 550, 550));
    ExpectContent(window, WindowColours, QRect(620, 0, 480, 550));
    Save("window");
    mScreen.Close(window);
    EXPECT_EQ(End(), 0);
    EXPECT_EQ(Output(), "");
}

TEST_F(Examples, TheX11HostShowsThePictureAndGetsItsMessages)
{
    Start("x11-host", {QStringLiteral("192.168.10.21")});
    const xcb_window_t window = WaitForWindow("A window of X11");
    ExpectContent(window, PictureColours);
    EXPECT_TRUE(WaitFor([&] { return Output() == "The picture has 640 x 480 pixels.\n"; })) << Output();

    mScreen.Resize(window, 500, 300);
    EXPECT_TRUE(WaitFor([&] { return mScreen.Picture(window).size() == QSize(500, 300); }));
    ExpectContent(window, PictureColours);

    const xcb_window_t browser = WaitForWindow("Features");
    ExpectContent(browser, WindowColours);
    Save("windows");
    EXPECT_TRUE(WaitFor([&] {
        mScreen.Click(browser, 150, 200);  // into the tree
        mScreen.Press(browser, Key::HomeKey);
        mScreen.Type(browser, "devicereset");  // finds the feature
        mScreen.Press(browser, Key::F2Key);
        mScreen.Press(browser, Key::SpaceKey);
        return WaitFor([&] { return Output().find("restarts") != std::string::npos; }, std::chrono::milliseconds(1000));
    }));
    Save("reset");
    mScreen.Close(window);
    EXPECT_EQ(End(), 0);
    // as often as it was asked for, which is more than once where the answer came late
    EXPECT_THAT(Output(), testing::MatchesRegex("The picture has 640 x 480 pixels.\n(The camera restarts.\n)+"));
}

TEST_F(Examples, TheX11HostSaysThatThereIsNoCamera)
{
    Start("x11-host", {QStringLiteral("192.168.10.99")});
    EXPECT_EQ(End(), 1);
    EXPECT_THAT(Output(), testing::StartsWith("192.168.10.99: "));
}

TEST_F(Examples, AConsoleProgramGoesOnWithTheChosenCamera)
{
    Start("console-finder");
    ChooseFirstCamera();
    EXPECT_EQ(End(), 0);
    EXPECT_THAT(Output(), testing::MatchesRegex("Choose a camera.\nDeviceModelName = Simulated Camera\nWidth = [0-9]+\n"
                                                "Height = [0-9]+\nPixelFormat = [A-Za-z0-9]+\nExposureTime = .*\n"));
}

TEST_F(Examples, FiltersListOneModelAndFewFeatures)
{
    Start("filters", {QStringLiteral("Simulated Frame Grabber")});
    ChooseFirstCamera();
    const xcb_window_t window = WaitForWindow("Picture settings");
    ExpectContent(window, WindowColours);
    Save("features");
    mScreen.Close(window);
    EXPECT_EQ(End(), 0);
    EXPECT_EQ(Output(), "02:00:00:00:01:05\n");
}

TEST_F(Examples, AnApplicationsOwnTestsRunWithoutACamera)
{
    Start("unit-test");
    EXPECT_EQ(End(), 0);
    EXPECT_THAT(Output(), testing::HasSubstr("[  PASSED  ] 6 tests."));
}

TEST_F(Examples, TheProgramOfTheReadmeShowsThePicture)
{
    Start("first-window");
    std::vector<xcb_window_t> windows;
    ASSERT_TRUE(WaitFor([&] { return (windows = mScreen.Windows()).size() == 1; }));
    const xcb_window_t finder = windows[0];
    ExpectContent(finder, WindowColours);
    ASSERT_TRUE(WaitFor([&] {
        mScreen.Press(finder, Key::HomeKey);
        mScreen.Press(finder, Key::DownKey);
        mScreen.Press(finder, Key::ReturnKey);
        const auto isNext = [&] {
            windows = mScreen.Windows();
            return windows.size() == 1 && windows[0] != finder;
        };
        return WaitFor(isNext, std::chrono::milliseconds(300));
    }));
    ExpectContent(windows[0], PictureColours);
    Save("picture");
    mScreen.Close(windows[0]);
    EXPECT_EQ(End(), 0);
    EXPECT_EQ(Output(), "");
}

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
