// Cameras that misbehave and camera files that are wrong: what the user is told, and what stays.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QtCore/QFile>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QMessageBox>
#include <string>

#include "CameraBridgeManagerFixture.h"

namespace
{

struct CameraCase
{
    const char *mName;
    LxSimulatedGenCPFaults mFaults;  // from the press of "Connect" on
    LxSimulatedGenCPValues mValues;
    const char *mReason;
};

struct FileCase
{
    const char *mName;
    std::string mText;
    const char *mReason;  // behind the path or the name of the file
};

constexpr uint32_t Always = 1000;

std::vector<CameraCase> MakeCameraCases()
{
    std::vector<CameraCase> cases(6);
    cases[0] = {
        "WrongChecksums", {}, {}, "What the camera sends arrives damaged. Check the cable and the speed of the port."};
    cases[0].mFaults.mCorrupt = Always;
    cases[1] = {"NoAcknowledge",
                {},
                {},
                "No camera that speaks GenCP answers at the serial port. Check that the camera has power"};
    cases[1].mFaults.mLose = Always;
    cases[2] = {"UnpluggedInTheXML", {}, {}, "The camera's XML could not be read. The camera does not answer."};
    cases[2].mFaults.mUnplugAfter = 8;
    cases[3] = {"XMLThatDoesNotParse", {}, {}, "The camera's XML description is broken: "};
    cases[3].mValues.mXML = "<RegisterDescription><Category";
    cases[4] = {"XMLThatIsNone", {}, {}, "The camera's XML description is broken: "};
    cases[4].mValues.mXML = std::string(2000, '?');
    cases[5] = {"XMLWithWrongSHA1", {}, {}, "The camera's XML"};
    cases[5].mValues.mWrongSHA1 = true;
    return cases;
}

std::vector<FileCase> MakeFileCases()
{
    const std::string head = "kelvraCameraFile: 1\nprotocol: {type: ascii}\nfeatures:\n";
    return {{"Empty", "", ""},
            {"NoYAML", "a: [1\nb: }", ":2: This is no YAML"},
            {"Binary",
             std::string("\x7F"
                         "ELF\0\0\1\2",
                         8),
             ""},
            {"UnknownKey", head + "  - {name: A, type: integer, raed: x}\n", ":4: \"raed\" is not known"},
            {"WrongType", head + "  - {name: A, type: integer, read: [1]}\n", ":4: \"read\" must be a text."},
            {"Loop", "kelvraCameraFile: 1\nprotocol: {type: ascii}\nfeatures: &a\n  - *a\n", ":"},
            {"Nested", std::string(100000, '['), ""}};
}

class CameraBridgeFailuresTest : public CameraBridgeManagerFixture
{
protected:
    /// Presses a button that shows a box, which must come without the wait cursor.
    QString PressForBox(const char *aButton, const char *aTitle)
    {
        QString text;
        OnNextModal([&](QWidget *aWidget) {
            auto *box = qobject_cast<QMessageBox *>(aWidget);
            ASSERT_NE(box, nullptr);
            EXPECT_EQ(box->windowTitle(), aTitle);
            EXPECT_EQ(box->icon(), QMessageBox::Warning);
            EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
            EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
            text = box->text();
            box->accept();
        });
        Click(aButton);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        return text;
    }
};

}  // namespace

TEST_F(CameraBridgeFailuresTest, EveryFailureOfAGenCPCameraIsSaidAndTheEntryStays)
{
    Open();
    for (const CameraCase &camera : MakeCameraCases()) {
        SCOPED_TRACE(camera.mName);
        Plug(camera.mValues);
        SelectPort(0);
        Click("NoneRadio");
        Click("GenCPRadio");
        ASSERT_EQ(Combo("GenCPXMLCombo")->count(), 1);
        mGenCP->SetFaults(camera.mFaults);
        const QString text = PressForBox("GenCPConnectButton", "GenCP Connect Error");
        EXPECT_TRUE(text.startsWith(QString("Failed to connect GenCP: ") + camera.mReason)) << text.toStdString();
        EXPECT_FALSE(mWnd->GetBridge(0)->IsConnected());
        EXPECT_TRUE(Find<QRadioButton>("GenCPRadio")->isChecked());
        EXPECT_EQ(Combo("GenCPXMLCombo")->count(), 1);
        EXPECT_TRUE(IsEnabled("GenCPConnectButton"));
        EXPECT_EQ(Label("GenCPStatus"), "Not initialized");
        EXPECT_EQ(BrowserRows(), 0);
        EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    }
    Plug();
    Click("GenCPConnectButton");
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected()) << "the good camera connects at once";
}

TEST_F(CameraBridgeFailuresTest, LateAcknowledgesAreWaitedFor)
{
    Open();
    SelectPort(0);
    Click("GenCPRadio");
    LxSimulatedGenCPFaults faults;
    faults.mPending = 50;
    mGenCP->SetFaults(faults);
    Click("GenCPConnectButton");
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    mGenCP->SetFaults({});
}

TEST_F(CameraBridgeFailuresTest, EveryWrongCameraFileIsSaidAndTheEntryStays)
{
    mWnd->ShowKCF();
    Open();
    SelectPort(1);
    Click("KCFRadio");
    QTemporaryDir folder;
    const QString path = folder.filePath("camera.yml");
    for (const FileCase &wrong : MakeFileCases()) {
        SCOPED_TRACE(wrong.mName);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(wrong.mText.data(), static_cast<qint64>(wrong.mText.size()));
        file.close();
        Find<QLineEdit>("KCFPathEdit")->setText(path);
        const QString text = PressForBox("KCFLoadButton", "KCF Load Error");
        EXPECT_TRUE(text.startsWith(QString("Failed to load KCF file: camera.yml") + wrong.mReason))
            << text.toStdString();
        EXPECT_FALSE(mWnd->GetBridge(1)->IsConnected());
        EXPECT_TRUE(Find<QRadioButton>("KCFRadio")->isChecked());
        EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), path) << "to be mended";
        EXPECT_EQ(Label("KCFStatus"), "Not initialized");
        EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    }
}

TEST_F(CameraBridgeFailuresTest, FilesThatCannotBeReadAreSaid)
{
    mWnd->ShowKCF();
    Open();
    SelectPort(1);
    Click("KCFRadio");
    QTemporaryDir folder;
    const QString pipe = folder.filePath("pipe.yml");
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    const std::pair<QString, QString> cases[] = {
        {"/nowhere/camera.yml", "No such file or directory"},
        {"", "No such file or directory"},
        {folder.path(), "it is a folder"},
        {pipe, "it is no file"},
        {"/dev/zero", "it is no file"},
    };
    for (const auto &[path, reason] : cases) {
        Find<QLineEdit>("KCFPathEdit")->setText(path);
        EXPECT_EQ(PressForBox("KCFLoadButton", "KCF Load Error"),
                  QString("Failed to load KCF file: The file \"%1\" cannot be read: %2.").arg(path, reason));
    }
}

TEST_F(CameraBridgeFailuresTest, AFailedFileEndsTheConnectionThatWasAndSaysSo)
{
    Open();
    LoadFile();
    Find<QLineEdit>("KCFPathEdit")->setText("/nowhere/camera.yml");
    PressForBox("KCFLoadButton", "KCF Load Error");
    EXPECT_FALSE(mWnd->GetBridge(1)->IsConnected()) << "loading begins by disconnecting";
    EXPECT_EQ(Label("KCFStatus"), "Not initialized");
    SelectPort(0);
    SelectPort(1);
    EXPECT_TRUE(Find<QRadioButton>("KCFRadio")->isChecked());
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), SampleFile) << "the file that was loaded last";
    EXPECT_EQ(Label("KCFStatus"), "Not initialized");
    EXPECT_EQ(BrowserRows(), 0);
}

TEST_F(CameraBridgeFailuresTest, AFailedProbeOrConnectionOfADriverLeavesWhatIsShown)
{
    Open();
    SelectPort(1);
    Click("CLPRadio");
    Combo("CLPTemplateCombo")->setCurrentIndex(2);
    PressForBox("CLPProbeButton", "CLP Probe Error");
    EXPECT_EQ(Combo("CLPTemplateCombo")->currentIndex(), 2);
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 0);
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    EXPECT_TRUE(IsEnabled("CLPProbeButton"));
    Combo("CLPTemplateCombo")->setCurrentIndex(0);
    Click("CLPProbeButton");
    const QString camera = Label("CLPCameraID");
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial1, nullptr);
    PressForBox("CLPConnectButton", "CLP Connect Error");
    EXPECT_EQ(Label("CLPCameraID"), camera);
    EXPECT_EQ(Label("CLPStatus"), "Not initialized");
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 2);
    EXPECT_TRUE(IsEnabled("CLPConnectButton"));
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}
