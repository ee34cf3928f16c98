// Recent cameras, camera settings, the log of a session and the outcome of a run.

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>

#include "CameraSettings.h"
#include "CameraSettingsFile.h"
#include "HeadlessTour.h"
#include "LxGenICam/LxGenParameter.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "RecentCameras.h"
#include "ViewerLog.h"
#include "ViewerTest.h"

namespace
{

class ViewerTool : public Viewer
{
protected:
    void SetUp() override
    {
        Viewer::SetUp();
        mWindow->Recent().Clear();
    }

    QList<QAction *> RecentActions() const
    {
        QList<QAction *> actions;
        for (QAction *action : mWindow->findChild<QMenu *>("recentMenu")->actions()) {
            if (!action->isSeparator() && action->objectName() != "clearRecentAction") {
                actions << action;
            }
        }
        return actions;
    }
    LxGenParameterArray &Features() const { return *mWindow->Session().Device()->GetParameters(); }
    int64_t Integer(const char *aName) const
    {
        int64_t value = -1;
        EXPECT_TRUE(Features().GetIntegerValue(aName, value).IsOK()) << aName;
        return value;
    }
    void Stop()
    {
        mWindow->Session().StopLive();
        ASSERT_TRUE(WaitForGui([&] { return Features().Get("Width")->IsWritable(); }));
    }
    /// The text of the box that tells what went wrong, closed.
    QString TakeMessages()
    {
        auto *box = mWindow->findChild<QMessageBox *>("settingsMessages");
        if (!box) {
            return QString();
        }
        const QString text = box->text() + '\n' + box->informativeText() + '\n' + box->detailedText();
        box->setObjectName(QString());
        box->close();
        return text;
    }
    /// Gives what was told; one feature of the simulated camera is broken.
    QString Save(const QString &aFile)
    {
        QSignalSpy done(&mWindow->Settings(), &CameraSettings::Done);
        mWindow->Settings().SaveTo(aFile);
        EXPECT_TRUE(done.count() > 0 || done.wait(20000));
        return TakeMessages();
    }
    void Load(const QString &aFile)
    {
        QSignalSpy done(&mWindow->Settings(), &CameraSettings::Done);
        mWindow->Settings().LoadFrom(aFile);
        ASSERT_TRUE(done.count() > 0 || done.wait(20000));
    }
};

}  // namespace

// Recent cameras

TEST_F(ViewerTool, TheCamerasThatWereConnectedLastAreInAMenu)
{
    EXPECT_FALSE(mWindow->findChild<QMenu *>("recentMenu")->isEnabled()) << "there is none yet";
    ConnectLive();
    ASSERT_EQ(RecentActions().size(), 1);
    EXPECT_TRUE(RecentActions()[0]->text().startsWith("&1 Left (192.168.7.20)"))
        << RecentActions()[0]->text().toStdString();
    ConnectLive();
    EXPECT_EQ(RecentActions().size(), 1) << "each camera once";

    Restart();
    ASSERT_EQ(RecentActions().size(), 1) << "kept from one run to the next";
    RecentActions()[0]->trigger();
    EXPECT_FALSE(mWindow->findChild<QMenu *>("recentMenu")->isEnabled()) << "one attempt at a time";
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().IsConnected(); }));
    EXPECT_TRUE(mWindow->findChild<QMenu *>("recentMenu")->isEnabled());

    mWindow->findChild<QAction *>("clearRecentAction")->trigger();
    EXPECT_TRUE(WaitForGui([&] { return RecentActions().isEmpty(); }));
    EXPECT_FALSE(mWindow->findChild<QMenu *>("recentMenu")->isEnabled());
}

TEST_F(ViewerTool, TheNewestRecentCamerasAreKept)
{
    for (int i = 1; i <= RecentCameras::Limit + 2; ++i) {
        mWindow->Recent().Add({QString::number(i), "10.0.0.1", QStringLiteral("A & B %1").arg(i), "Maker Model"});
    }
    mWindow->Recent().Add({"5", "10.0.0.5", "again", "Maker Model"});
    QStringList ids;
    for (const CameraIdentity &camera : mWindow->Recent().Cameras()) {
        ids << camera.mUniqueID;
    }
    EXPECT_EQ(ids.join(' '), "5 10 9 8 7 6 4 3");
    EXPECT_EQ(RecentActions()[0]->text(), "&1 again - Maker Model");
    EXPECT_EQ(RecentActions()[1]->text(), "&2 A && B 10 - Maker Model");
}

TEST_F(ViewerTool, ARecentCameraIsFoundAtItsNewAddress)
{
    ConnectLive();
    mWindow->Disconnect();
    LxSimulatedDevice camera;
    ASSERT_TRUE(LxSimulation::GetDevice(Camera, camera).IsOK());
    camera.mIPAddress = "192.168.7.77";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    LxSimulatedDevice other = camera;  // now at the old address
    other.mUniqueID = LxString();
    other.mMACAddress = "02:00:00:00:01:99";
    other.mUserDefinedName = "Other";
    other.mIPAddress = Address;
    ASSERT_TRUE(LxSimulation::SetDevice(other).IsOK());
    RecentActions()[0]->trigger();
    ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().IsConnected(); }));
    EXPECT_EQ(mWindow->Session().CameraName(), "Left (192.168.7.77)");
    EXPECT_TRUE(RecentActions()[0]->text().startsWith("&1 Left (192.168.7.77)"));
    EXPECT_EQ(RecentActions().size(), 1);
}

TEST_F(ViewerTool, ARecentCameraThatIsGoneIsReportedAndStaysInTheMenu)
{
    ConnectLive();
    mWindow->Disconnect();
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    QString headline;
    OnNextModal([&](QWidget *aWidget) {
        auto *box = qobject_cast<QMessageBox *>(aWidget);
        ASSERT_NE(box, nullptr);
        headline = box->text();
        box->reject();
    });
    RecentActions()[0]->trigger();
    ASSERT_TRUE(WaitForGui([&] { return !headline.isEmpty() && !mWindow->Session().IsAttempting(); }));
    EXPECT_EQ(headline, "Left (192.168.7.20) does not answer.");
    EXPECT_EQ(RecentActions().size(), 1);
    EXPECT_EQ(Status("cameraStatus"), "Not connected");
}

// Camera settings

TEST_F(ViewerTool, SettingsComeBackFromAFileWhateverTheirOrder)
{
    ConnectLive();
    Stop();
    const QString file = mFolder.filePath("full.xml");
    const int64_t width = Integer("Width");
    ASSERT_EQ(Integer("OffsetX"), 0);
    ASSERT_TRUE(Features().SetEnumValue("GainSelector", "All").IsOK());
    ASSERT_TRUE(Features().SetFloatValue("Gain", 3.5).IsOK());
    ASSERT_TRUE(Features().SetFloatValue("ExposureTime", 4321.0).IsOK());
    EXPECT_TRUE(Save(file).contains(".\nSimFailing could not be read.")) << "the one that is broken";

    // a wider picture has no room before the offset is smaller, which comes later in the list
    ASSERT_TRUE(Features().SetIntegerValue("Width", width / 2).IsOK());
    ASSERT_TRUE(Features().SetIntegerValue("OffsetX", 64).IsOK());
    ASSERT_TRUE(Features().SetFloatValue("Gain", 1.0).IsOK());
    ASSERT_TRUE(Features().SetFloatValue("ExposureTime", 100.0).IsOK());
    Load(file);
    EXPECT_EQ(TakeMessages(), "");
    EXPECT_EQ(Integer("Width"), width);
    EXPECT_EQ(Integer("OffsetX"), 0);
    double value = 0.0;
    ASSERT_TRUE(Features().GetFloatValue("Gain", value).IsOK());
    EXPECT_EQ(value, 3.5);
    ASSERT_TRUE(Features().GetFloatValue("ExposureTime", value).IsOK());
    EXPECT_EQ(value, 4321.0);
    EXPECT_TRUE(mWindow->statusBar()->currentMessage().contains("Settings restored: "))
        << mWindow->statusBar()->currentMessage().toStdString();
}

TEST_F(ViewerTool, SettingsAreKeptForEachValueOfTheirSelector)
{
    ConnectLive();
    Stop();
    const auto setTimer = [&](const char *aTimer, double aDelay) {
        ASSERT_TRUE(Features().SetEnumValue("TimerSelector", aTimer).IsOK());
        ASSERT_TRUE(Features().SetFloatValue("TimerDelay", aDelay).IsOK());
    };
    const auto timer = [&](const char *aTimer) {
        double delay = -1.0;
        EXPECT_TRUE(Features().SetEnumValue("TimerSelector", aTimer).IsOK());
        EXPECT_TRUE(Features().GetFloatValue("TimerDelay", delay).IsOK());
        return delay;
    };
    setTimer("Timer0", 100.0);
    setTimer("Timer1", 200.0);
    ASSERT_TRUE(Features().SetEnumValue("TimerSelector", "Timer0").IsOK());
    const QString file = mFolder.filePath("timers.xml");
    Save(file);
    LxString selected;
    ASSERT_TRUE(Features().GetEnumValue("TimerSelector", selected).IsOK());
    EXPECT_EQ(selected, "Timer0") << "saving leaves the selectors as they were";
    setTimer("Timer0", 1.0);
    setTimer("Timer1", 2.0);
    Load(file);
    ASSERT_TRUE(Features().GetEnumValue("TimerSelector", selected).IsOK());
    EXPECT_EQ(selected, "Timer0");
    EXPECT_EQ(timer("Timer0"), 100.0);
    EXPECT_EQ(timer("Timer1"), 200.0);
}

TEST_F(ViewerTool, WhatDescribesTheConnectionIsNoSetting)
{
    ConnectLive();
    const QString file = mFolder.filePath("all.xml");
    Save(file);
    CameraSettingsFile settings;
    ASSERT_TRUE(settings.Load(file).IsOK());
    EXPECT_EQ(settings.mCamera.mUniqueID, mWindow->Session().Camera().mUniqueID);
    EXPECT_GT(settings.mFeatures.GetCount(), 20u);
    EXPECT_NE(settings.mFeatures.GetProperty("Width"), nullptr) << "it is locked while the stream runs";
    for (const char *name : {"GevCCP", "GevPersistentIPAddress", "GevSCPSPacketSize", "TLParamsLocked", "DeviceUserID",
                             "DeviceReset", "UserSetSelector", "WidthMax"})
    {
        EXPECT_EQ(settings.mFeatures.GetProperty(name), nullptr) << name;
    }
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2; })) << "the stream goes on";
}

TEST_F(ViewerTool, WhatCannotBeRestoredIsListedAndDoesNotStopTheRest)
{
    ConnectLive();
    Stop();
    CameraSettingsFile file{mWindow->Session().Camera(), {}};
    file.mCamera.mModel = "Another Model";
    file.mFeatures.Add(LxProperty("NoSuchFeature", "1"));
    file.mFeatures.Add(LxProperty("Gain[NoSuchSelector=Red]", "1"));
    file.mFeatures.Add(LxProperty("WidthMax", "1"));
    file.mFeatures.Add(LxProperty("Height", "abc"));
    file.mFeatures.Add(LxProperty("PixelFormat", "NoSuchFormat"));
    file.mFeatures.Add(LxProperty("Width", "256"));
    const QString name = mFolder.filePath("odd.xml");
    ASSERT_TRUE(file.Save(name).IsOK());
    Load(name);
    EXPECT_EQ(Integer("Width"), 256);
    const QString said = TakeMessages();
    for (const char *text :
         {"Settings restored: 1.", "The settings are those of another model, Another Model.",
          "NoSuchFeature: The camera has no such feature.",
          "Gain[NoSuchSelector=Red]: The camera has no feature NoSuchSelector.", "WidthMax: 1 could not be written.",
          "Height: abc could not be written.", "PixelFormat: NoSuchFormat could not be written."})
    {
        EXPECT_TRUE(said.contains(QLatin1String(text))) << text << "\n" << said.toStdString();
    }
}

TEST_F(ViewerTool, FilesThatCannotBeReadOrWrittenAreReported)
{
    ConnectLive();
    QFile broken(mFolder.filePath("broken.xml"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("<nonsense");
    broken.close();
    {
        const ExpectedBox box;
        mWindow->Settings().LoadFrom(broken.fileName());
        EXPECT_TRUE(box.WasShown());
        EXPECT_TRUE(box.Text().contains("cannot be read"));
    }
    {
        const ExpectedBox box;
        mWindow->Settings().LoadFrom(mFolder.filePath("viewer.xml.none"));
        EXPECT_TRUE(box.WasShown());
    }
    const ExpectedBox box;
    mWindow->Settings().SaveTo("/proc/none/settings.xml");
    EXPECT_TRUE(WaitForGui([&] { return box.WasShown(); }));
    EXPECT_TRUE(box.Text().contains("cannot be written"));
}

TEST_F(ViewerTool, ACameraThatGoesAwayMeanwhileIsReportedOnce)
{
    ConnectLive();
    Stop();
    const QString file = mFolder.filePath("gone.xml");
    Save(file);
    ASSERT_TRUE(Features().SetIntegerValue("Width", 256).IsOK());
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    ASSERT_TRUE(WaitForGui([&] { return Features().GetAccessMode() != 0; }));
    Load(file);
    EXPECT_TRUE(TakeMessages().contains("The camera stopped answering."));

    const ExpectedBox box;
    mWindow->Settings().SaveTo(file);
    ASSERT_TRUE(WaitForGui([&] { return box.WasShown(); }));
    EXPECT_TRUE(box.Text().contains("The camera stopped answering.")) << box.Text().toStdString();
    CameraSettingsFile kept;
    ASSERT_TRUE(kept.Load(file).IsOK());
    EXPECT_GT(kept.mFeatures.GetCount(), 0u) << "nothing replaces the settings that were saved before";
}

TEST_F(ViewerTool, SettingsAreKeptForACameraOfWhichTheUserWantsIt)
{
    EXPECT_FALSE(Action("keepSettingsAction")->isEnabled());
    ConnectLive();
    Stop();
    EXPECT_FALSE(Action("keepSettingsAction")->isChecked());
    ASSERT_TRUE(Features().SetIntegerValue("Width", 320).IsOK());
    mWindow->Disconnect();

    // not wanted: the camera, which restarts, is left as it is
    LxSimulation::SetDevicePresent(Camera, false);
    LxSimulation::SetDevicePresent(Camera, true);
    ConnectLive();
    Stop();
    EXPECT_NE(Integer("Width"), 320);
    ASSERT_TRUE(Features().SetIntegerValue("Width", 320).IsOK());
    Action("keepSettingsAction")->trigger();
    mWindow->close();
    Restart();
    LxSimulation::SetDevicePresent(Camera, false);
    LxSimulation::SetDevicePresent(Camera, true);
    ConnectLive();
    EXPECT_TRUE(Action("keepSettingsAction")->isChecked());
    EXPECT_EQ(Integer("Width"), 320);
    EXPECT_EQ(Shown().mWidth, 320u) << "restored before pictures come";

    Action("keepSettingsAction")->trigger();
    mWindow->Disconnect();
    LxSimulation::SetDevicePresent(Camera, false);
    LxSimulation::SetDevicePresent(Camera, true);
    ConnectLive();
    EXPECT_FALSE(Action("keepSettingsAction")->isChecked());
    EXPECT_NE(Integer("Width"), 320);
}

TEST_F(ViewerTool, SettingsAreSavedAndLoadedThroughTheMenu)
{
    EXPECT_FALSE(Action("saveSettingsAction")->isEnabled());
    EXPECT_FALSE(Action("loadSettingsAction")->isEnabled());
    ConnectLive();
    const QString file = mFolder.filePath("chosen");
    const auto choose = [&](const QString &aName) {
        OnNextModal([aName](QWidget *aWidget) {
            auto *dialog = qobject_cast<QFileDialog *>(aWidget);
            ASSERT_NE(dialog, nullptr);
            EnterFile(dialog, aName);
            static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
        });
    };
    QSignalSpy done(&mWindow->Settings(), &CameraSettings::Done);
    choose(file);
    Action("saveSettingsAction")->trigger();
    ASSERT_TRUE(done.count() == 1 || done.wait(20000));
    EXPECT_TRUE(QFile::exists(file + ".xml"));
    TakeMessages();
    choose(file + ".xml");
    Action("loadSettingsAction")->trigger();
    ASSERT_TRUE(done.count() == 2 || done.wait(20000));
    EXPECT_EQ(TakeMessages(), "");
}

TEST_F(ViewerTool, EveryMenuEntryHasALetterOfItsOwnAndEveryActionAShortcut)
{
    for (const QAction *top : mWindow->menuBar()->actions()) {
        QString letters;
        for (const QAction *action : top->menu()->actions()) {
            if (action->isSeparator()) {
                continue;
            }
            const qsizetype mark = action->text().indexOf('&');
            ASSERT_GE(mark, 0) << action->text().toStdString();
            const QChar letter = action->text()[mark + 1].toLower();
            EXPECT_FALSE(letters.contains(letter)) << action->text().toStdString();
            letters += letter;
            EXPECT_TRUE(action->menu() || !action->shortcut().isEmpty()) << action->text().toStdString();
        }
    }
}

// The log, and how a run ends

TEST_F(ViewerTool, TheLogTellsWhatHappenedToACamera)
{
    const QString file = mFolder.filePath("session.log");
    ASSERT_EQ(ViewerLog::Open(file, {"camera", "stream"}), "");
    ConnectLive();
    ASSERT_TRUE(LxSimulation::SkipFrames(Camera, 3).IsOK());
    ASSERT_TRUE(WaitForGui([&] { return Status("lostStatus") == "3 lost"; }));
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return !mWindow->BannerText().isEmpty(); }));
    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return mWindow->BannerText().isEmpty(); }));
    mWindow->Disconnect();
    mWindow.reset();
    qCInfo(LogSettings) << "left out";
    ViewerLog::Close();
    qCInfo(LogCamera) << "too late";
    QFile log(file);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(log.readAll());
    for (const char *line :
         {" info camera connecting to 192.168.7.20", " info camera connected to Left (192.168.7.20)",
          "02:00:00:00:01:01", " info stream starting the stream of Left", " info stream lost: 3 frames never came",
          " info camera the link is lost: 02:00:00:00:01:01", " info camera the link is back",
          " info stream the stream ends: ", " info camera disconnected from Left (192.168.7.20)"})
    {
        EXPECT_TRUE(text.contains(QLatin1String(line))) << line << "\n" << text.toStdString();
    }
    EXPECT_FALSE(text.contains("left out"));
    EXPECT_FALSE(text.contains("too late"));
}

TEST_F(ViewerTool, TheOutcomeSaysWhyNoCameraWasConnected)
{
    EXPECT_EQ(mWindow->Outcome(), ExitCode::OK) << "nothing was tried";
    QString headline;
    QString advice;
    ExpectFailure("192.168.7.99", headline, advice);
    EXPECT_EQ(mWindow->Outcome(), ExitCode::NotFound);
    LxSimulation::QueueResult("Connect", LxResult(LxResultCode::AccessDenied, "taken"));
    ExpectFailure(Address, headline, advice);
    EXPECT_EQ(mWindow->Outcome(), ExitCode::ConnectFailed);
    ConnectLive();
    EXPECT_EQ(mWindow->Outcome(), ExitCode::OK);
}

TEST_F(ViewerTool, ATourSaysWhatItDidNotFind)
{
    const QTemporaryDir folder;
    testing::internal::CaptureStderr();
    EXPECT_EQ(HeadlessTour(*mWindow, folder.path(), "203.0.113.9", 1000).Run(), ExitCode::NotFound);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("a camera in the finder"), std::string::npos);
}

TEST_F(ViewerTool, ATourWithoutPicturesSaysSo)
{
    LxSimulation::QueueResult("StreamStart", LxResult(LxResultCode::Failed, "no stream today"));
    const QTemporaryDir folder;
    testing::internal::CaptureStderr();
    EXPECT_EQ(HeadlessTour(*mWindow, folder.path(), Address).Run(), ExitCode::NoPictures);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("no stream today"), std::string::npos) << said;
}
