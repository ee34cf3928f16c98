#include <QtCore/QSettings>
#include <QtGui/QHelpEvent>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolTip>
#include <QtWidgets/QTreeWidget>

#include "HeadlessTour.h"
#include "LxCameraBridge/LxCameraBridge.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSystem/LxDeviceInfo.h"
#include "StatusLabel.h"
#include "ViewerTest.h"

TEST_F(Viewer, StartsWithoutACameraAndOffersTheFinder)
{
    EXPECT_EQ(Status("cameraStatus"), "Not connected");
    EXPECT_FALSE(Action("liveAction")->isEnabled());
    EXPECT_FALSE(Action("registersAction")->isEnabled());
    EXPECT_FALSE(Action("disconnectAction")->isEnabled());
    EXPECT_TRUE(mWindow->findChild<QPushButton *>("findButton")->isVisible());
    EXPECT_FALSE(mWindow->findChild<QWidget *>("picture")->isVisible()) << "nothing to show yet";
}

TEST_F(Viewer, TheCameraChosenInTheFinderIsShownLive)
{
    OnNextModal([&](QWidget *aFinder) {
        auto *tree = aFinder->findChild<QTreeWidget *>();
        ASSERT_NE(tree, nullptr);
        ASSERT_TRUE(
            WaitForGui([&] { return tree->topLevelItemCount() > 0 && tree->topLevelItem(0)->childCount() > 0; }));
        tree->setCurrentItem(tree->topLevelItem(0)->child(0));
        for (QPushButton *button : aFinder->findChildren<QPushButton *>()) {
            if (button->text() == "OK") {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
    });
    QTest::mouseClick(mWindow->findChild<QPushButton *>("findButton"), Qt::LeftButton);
    ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 5 && Shown().mWidth > 0; }));
    EXPECT_TRUE(Status("cameraStatus").endsWith(": live"));
    EXPECT_TRUE(Status("cameraStatus").startsWith("Left"));
    EXPECT_TRUE(WaitForGui([&] { return !Status("frameRateStatus").startsWith("0.0"); }));
    EXPECT_TRUE(WaitForGui([&] { return !Status("bandwidthStatus").startsWith("0.0"); }));
    EXPECT_EQ(Status("lostStatus"), "0 lost");
}

TEST_F(Viewer, NoOtherCameraCanBeChosenWhileOneIsBeingConnected)
{
    // The attempt uses what the finder found; opening the finder again would end that.
    mWindow->Connect(Address);
    ASSERT_TRUE(mWindow->Session().IsConnecting());
    EXPECT_FALSE(Action("findAction")->isEnabled());
    EXPECT_FALSE(Action("addressAction")->isEnabled());
    EXPECT_FALSE(mWindow->findChild<QPushButton *>("findButton")->isEnabled());
    EXPECT_TRUE(Action("disconnectAction")->isEnabled());
    EXPECT_EQ(Status("cameraStatus"), "Connecting to 192.168.7.20...");
    ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().IsConnected(); }));
    EXPECT_TRUE(Action("findAction")->isEnabled());
    EXPECT_TRUE(Action("addressAction")->isEnabled());
}

TEST_F(Viewer, MenusHaveShortcutsOfTheirOwn)
{
    QStringList shortcuts;
    for (const char *name :
         {"findAction", "addressAction", "disconnectAction", "liveAction", "quitAction", "zoomOneToOneAction",
          "zoomFitAction", "zoomInAction", "zoomOutAction", "overlayAction", "backgroundAction", "registersAction"})
    {
        ASSERT_NE(Action(name), nullptr) << name;
        const QString shortcut = Action(name)->shortcut().toString();
        EXPECT_FALSE(shortcut.isEmpty()) << name;
        EXPECT_FALSE(shortcuts.contains(shortcut)) << name;
        shortcuts << shortcut;
        bool inMenu = false;
        for (const QAction *menu : mWindow->menuBar()->actions()) {
            inMenu = inMenu || menu->menu()->actions().contains(Action(name));
        }
        EXPECT_TRUE(inMenu) << name;
    }
}

TEST_F(Viewer, NothingIsLargerThanTheScreen)
{
    const QRect screen = mWindow->screen()->availableGeometry();
    ASSERT_LT(screen.width(), 900) << "the screen of the test is to be small";
    mWindow = std::make_unique<ViewerWindow>(mFolder.filePath("viewer.xml"));
    mWindow->FitToScreen();
    mWindow->show();
    EXPECT_EQ(mWindow->size(), mWindow->size().boundedTo(screen.size()));
    OnNextModal([&](QWidget *aFinder) {
        EXPECT_EQ(aFinder->size(), aFinder->size().boundedTo(screen.size()));
        for (const QPushButton *button : aFinder->findChildren<QPushButton *>()) {
            const QRect place(button->mapTo(aFinder, QPoint(0, 0)), button->size());
            EXPECT_TRUE(aFinder->rect().contains(place)) << button->text().toStdString();
        }
        QTest::keyClick(aFinder, Qt::Key_Escape);
    });
    mWindow->FindCamera();
}

TEST_F(Viewer, ClosingTheFinderChoosesNothing)
{
    OnNextModal([](QWidget *aFinder) { QTest::keyClick(aFinder, Qt::Key_Escape); });
    mWindow->FindCamera();
    EXPECT_FALSE(mWindow->Session().IsConnecting());
    EXPECT_EQ(Status("cameraStatus"), "Not connected");
}

TEST_F(Viewer, AnUnpluggedCameraIsReportedAndComesBackByItself)
{
    ConnectLive();
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return !mWindow->BannerText().isEmpty(); }));
    EXPECT_TRUE(mWindow->BannerText().contains("no longer answers"));
    EXPECT_TRUE(Status("cameraStatus").endsWith(": no answer"));
    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return mWindow->BannerText().isEmpty(); }));
    const uint64_t delivered = mWindow->Session().Statistics().mDelivered;
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > delivered + 3; }));
    EXPECT_TRUE(Status("cameraStatus").endsWith(": live"));
}

TEST_F(Viewer, WhatALostCameraCannotDoIsNotOffered)
{
    const auto expectOffered = [&](bool aOffered) {
        for (const char *name : {"liveAction", "loadSettingsAction", "saveSettingsAction"}) {
            EXPECT_EQ(Action(name)->isEnabled(), aOffered) << name;
        }
        EXPECT_TRUE(Action("disconnectAction")->isEnabled());
        EXPECT_TRUE(WaitForGui([&] { return Action("snapshotAction")->isEnabled(); })) << "the last picture";
    };
    ConnectLive();
    expectOffered(true);
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return !mWindow->BannerText().isEmpty(); }));
    expectOffered(false);
    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return mWindow->BannerText().isEmpty(); }));
    expectOffered(true);
}

TEST_F(Viewer, AStreamThatWasStartedWhileTheCameraWasLostBeginsWhenItIsBack)
{
    ConnectLive();
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return !mWindow->BannerText().isEmpty(); }));
    const QString banner = mWindow->BannerText();
    mWindow->ToggleLive(false);
    mWindow->ToggleLive(true);
    ASSERT_TRUE(WaitForGui([&] { return !mWindow->Session().IsLive(); }));
    EXPECT_EQ(mWindow->BannerText(), banner) << "it still says why";
    LxSimulation::SetDevicePresent(Camera, true);
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2; }));
    EXPECT_EQ(mWindow->BannerText(), "");
}

TEST_F(Viewer, LiveCanBeStoppedAndStarted)
{
    ConnectLive();
    Action("liveAction")->trigger();
    EXPECT_FALSE(mWindow->Session().IsLive());
    EXPECT_TRUE(Status("cameraStatus").endsWith(": connected"));
    Action("liveAction")->trigger();
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2; }));
}

TEST_F(Viewer, ACameraThatSomebodyElseControlsIsExplained)
{
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(system.FindDevice(Address, &info).IsOK());
    std::unique_ptr<LxDevice> other;
    ASSERT_TRUE(LxSystem::Connect(info, LxDeviceAccess::Control, other).IsOK());
    QString headline;
    QString advice;
    ExpectFailure(Address, headline, advice);
    EXPECT_TRUE(headline.contains("is controlled by another application.")) << headline.toStdString();
    EXPECT_TRUE(advice.contains("Close the other application"));
    EXPECT_FALSE(mWindow->Session().IsConnected());
}

TEST_F(Viewer, ATourThatCannotConnectEnds)
{
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    ASSERT_TRUE(system.FindDevice(Address, &info).IsOK());
    std::unique_ptr<LxDevice> other;
    ASSERT_TRUE(LxSystem::Connect(info, LxDeviceAccess::Control, other).IsOK());
    const QTemporaryDir folder;
    testing::internal::CaptureStderr();
    EXPECT_EQ(HeadlessTour(*mWindow, folder.path(), Address).Run(), ExitCode::ConnectFailed);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("is controlled by another application."), std::string::npos) << said;
}

TEST_F(Viewer, AnAddressWithoutACameraIsExplained)
{
    QString headline;
    QString advice;
    ExpectFailure("192.168.7.99", headline, advice);
    EXPECT_EQ(headline, "192.168.7.99 does not answer.");
    EXPECT_TRUE(advice.contains("cable"));
    EXPECT_EQ(Status("cameraStatus"), "Not connected");
}

TEST_F(Viewer, ACameraOnAWrongSubnetIsExplained)
{
    LxSimulatedDevice camera;
    ASSERT_TRUE(LxSimulation::GetDevice(Camera, camera).IsOK());
    camera.mIPAddress = "10.9.9.9";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    QString headline;
    QString advice;
    ExpectFailure("10.9.9.9", headline, advice);
    EXPECT_TRUE(headline.contains("cannot be reached as it is configured.")) << headline.toStdString();
    EXPECT_TRUE(advice.contains("subnet"));
}

TEST_F(Viewer, TheRegisterWindowWorksOnTheConnectedCamera)
{
    ConnectLive();
    ASSERT_TRUE(Action("registersAction")->isEnabled());
    Action("registersAction")->trigger();
    QWidget *registers = mWindow->Registers().GetQWidget();
    ASSERT_TRUE(WaitForGui([&] { return registers->isVisible(); }));
    for (QPushButton *button : registers->findChildren<QPushButton *>()) {
        if (button->text() == "Read") {
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    QStringList texts;
    for (const QLineEdit *edit : registers->findChildren<QLineEdit *>()) {
        texts << edit->text();
    }
    EXPECT_TRUE(texts.contains("OK")) << texts.join("|").toStdString();
    mWindow->Disconnect();
    EXPECT_FALSE(registers->isVisible()) << "it has no camera any more";
}

TEST_F(Viewer, TheCameraNameCanBeShownInThePicture)
{
    ConnectLive();
    Action("overlayAction")->trigger();
    EXPECT_EQ(mWindow->Display().GetTextOverlay(), LxString(mWindow->Session().CameraName().toUtf8().constData()));
    Action("overlayAction")->trigger();
    EXPECT_TRUE(mWindow->Display().GetTextOverlay().IsEmpty());
}

TEST_F(Viewer, ZoomActionsReachTheDisplay)
{
    ConnectLive();
    Action("zoomOneToOneAction")->trigger();
    EXPECT_TRUE(WaitForGui([&] { return !mWindow->findChild<QWidget *>("horizontalScrollBar")->isHidden(); }));
    Action("zoomFitAction")->trigger();
    EXPECT_TRUE(mWindow->findChild<QWidget *>("horizontalScrollBar")->isHidden());
}

TEST_F(Viewer, MayBeClosedAtAnyTime)
{
    mWindow->Connect(Address);
    mWindow->close();
    Restart();
    ConnectLive();
    LxSimulation::SetDevicePresent(Camera, false);
    mWindow->close();
}

TEST_F(Viewer, SaysWhichRendererDrawsAndFallsBackWhereThereIsNoOpenGL)
{
    const QString before = Status("rendererStatus");
    EXPECT_EQ(before, "Software");
    auto *menu = mWindow->findChild<QMenu *>("rendererMenu");
    ASSERT_NE(menu, nullptr);
    emit menu->aboutToShow();
    EXPECT_FALSE(Action("openGLAction")->isEnabled()) << "the platform of this test has none";
    EXPECT_EQ(Action("openGLAction")->text(), "OpenGL (not usable on this machine)");
    EXPECT_TRUE(Action("softwareAction")->isChecked());

    // chosen on another machine
    mWindow.reset();
    QSettings().setValue("openGL", true);
    mWindow = std::make_unique<ViewerWindow>();
    EXPECT_EQ(Status("rendererStatus"), "Software (no OpenGL)");
    EXPECT_TRUE(Action("softwareAction")->isChecked());
    EXPECT_TRUE(mWindow->findChild<QLabel *>("rendererStatus")->toolTip().contains("OpenGL cannot be used here"));
    Action("softwareAction")->trigger();
    EXPECT_FALSE(QSettings().value("openGL").toBool());
}

TEST_F(Viewer, OpensATerminalOnTheSerialPortsOfACamera)
{
    EXPECT_FALSE(Action("terminalAction")->isEnabled());
    ConnectLive();
    EXPECT_FALSE(Action("terminalAction")->isEnabled()) << "this camera has no serial port";
    mWindow->Disconnect();

    LxSimulatedDevice grabber;
    grabber.mMACAddress = "02:00:00:00:01:02";
    grabber.mIPAddress = "192.168.7.21";
    grabber.mSubnetMask = "255.255.255.0";
    grabber.mInterfaces = {"eth7"};
    grabber.mSerialPorts = 1;
    ASSERT_TRUE(LxSimulation::SetDevice(grabber).IsOK());
    mWindow->Connect("192.168.7.21");
    ASSERT_TRUE(WaitForGui([&] { return Action("terminalAction")->isEnabled(); }));
    Action("terminalAction")->trigger();
    EXPECT_TRUE(mWindow->Terminal().IsVisible());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 1u);
    mWindow->Disconnect();
    EXPECT_FALSE(mWindow->Terminal().IsVisible());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    EXPECT_FALSE(Action("terminalAction")->isEnabled());
}

TEST_F(Viewer, ANarrowStatusBarShortensTextsAndSaysThemInTheToolTip)
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(16);
    QApplication::setFont(large);
    Restart();
    ConnectLive();
    auto *camera = mWindow->findChild<StatusLabel *>("cameraStatus");
    auto *probe = mWindow->findChild<StatusLabel *>("probeStatus");
    const QString place = "(1279, 1023)  raw R 1023 G 1023 B 1023  shown 255, 255, 255";
    mWindow->resize(2000, 700);
    probe->setText(place);
    EXPECT_TRUE(WaitForGui([&] { return !camera->IsElided() && !probe->IsElided(); }));
    mWindow->resize(500, 500);
    EXPECT_TRUE(WaitForGui([&] { return camera->IsElided() && probe->IsElided(); }));
    const QRect bar = mWindow->statusBar()->rect();
    for (const QLabel *label : mWindow->statusBar()->findChildren<QLabel *>()) {
        EXPECT_TRUE(WaitForGui([&] { return bar.contains(label->geometry()); })) << label->objectName().toStdString();
        EXPECT_TRUE(qobject_cast<const StatusLabel *>(label) || label->width() >= label->minimumSizeHint().width())
            << label->objectName().toStdString();
    }
    EXPECT_GT(camera->width(), 10 * camera->fontMetrics().averageCharWidth());
    QHelpEvent help(QEvent::ToolTip, QPoint(1, 1), probe->mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(probe, &help);
    EXPECT_TRUE(QToolTip::text().startsWith(place)) << QToolTip::text().toStdString();
    QToolTip::hideText();
    QApplication::setFont(before);
}

TEST_F(Viewer, ConnectsTheBridgesOfAFrameGrabberAgain)
{
    EXPECT_FALSE(Action("bridgesAction")->isEnabled());
    LxSimulatedDevice grabber;
    grabber.mMACAddress = "02:00:00:00:01:02";
    grabber.mIPAddress = "192.168.7.21";
    grabber.mSubnetMask = "255.255.255.0";
    grabber.mInterfaces = {"eth7"};
    grabber.mSerialPorts = 1;
    ASSERT_TRUE(LxSimulation::SetDevice(grabber).IsOK());
    ASSERT_TRUE(LxSimulation::SetSerialPeer(grabber.mMACAddress, LxDeviceSerial::Serial0,
                                            std::make_shared<LxSimulatedGenCPCamera>())
                    .IsOK());
    mWindow->Connect("192.168.7.21");
    ASSERT_TRUE(WaitForGui([&] { return Action("bridgesAction")->isEnabled(); }));
    Action("bridgesAction")->trigger();
    EXPECT_TRUE(mWindow->Bridges().IsVisible());
    LxCameraBridge *bridge = mWindow->Bridges().GetBridge(0);
    ASSERT_NE(bridge, nullptr);
    LxStringList ids;
    ASSERT_TRUE(bridge->GetGenCPXMLIDs(ids).IsOK());
    ASSERT_TRUE(bridge->ConnectGenCP(ids.GetItem(0)).IsOK());
    bridge->SetParametersSyncEnabled(true);
    mWindow->Disconnect();
    EXPECT_FALSE(mWindow->Bridges().IsVisible());
    EXPECT_FALSE(Action("bridgesAction")->isEnabled());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);

    mWindow->Connect("192.168.7.21");
    ASSERT_TRUE(WaitForGui([&] { return Action("bridgesAction")->isEnabled(); }));
    ASSERT_NE(mWindow->Bridges().GetBridge(0), nullptr);
    EXPECT_TRUE(mWindow->Bridges().GetBridge(0)->IsConnected());
    ASSERT_TRUE(WaitForGui([&] { return Shown().mWidth > 0; }));
    EXPECT_EQ(Shown().mWidth, 1024u) << "it follows the camera's size";

    // A camera that is switched off today is not forgotten.
    mWindow->Disconnect();
    const auto plug = [&](std::shared_ptr<LxSimulatedSerialPeer> aPeer) {
        ASSERT_TRUE(LxSimulation::SetSerialPeer(grabber.mMACAddress, LxDeviceSerial::Serial0, std::move(aPeer)).IsOK());
    };
    plug(nullptr);
    mWindow->Connect("192.168.7.21");
    ASSERT_TRUE(WaitForGui([&] { return mWindow->findChild<QMessageBox *>("bridgeMessages") != nullptr; }));
    auto *box = mWindow->findChild<QMessageBox *>("bridgeMessages");
    EXPECT_EQ(box->text(), "Not all bridges of the last time could be restored.");
    EXPECT_TRUE(box->informativeText().startsWith("Camera bridge on Serial0: No camera that speaks GenCP answers"))
        << box->informativeText().toStdString();
    box->accept();
    EXPECT_FALSE(mWindow->Bridges().GetBridge(0)->IsConnected());
    mWindow->Disconnect();
    plug(std::make_shared<LxSimulatedGenCPCamera>());
    mWindow->Connect("192.168.7.21");
    ASSERT_TRUE(WaitForGui([&] { return Action("bridgesAction")->isEnabled(); }));
    EXPECT_TRUE(mWindow->Bridges().GetBridge(0)->IsConnected());
}
