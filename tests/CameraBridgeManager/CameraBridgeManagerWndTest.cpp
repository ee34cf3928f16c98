#include <gtest/gtest.h>

#include <QtCore/QMetaMethod>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGroupBox>
#include <thread>

#include "CameraBridgeManagerFixture.h"
#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

namespace
{

class CameraBridgeManagerTest : public CameraBridgeManagerFixture
{
};

}  // namespace

TEST_F(CameraBridgeManagerTest, WindowHasItsTitleSizesAndTexts)
{
    Open();
    EXPECT_EQ(mWnd->GetTitle().GetString(), "Frame Grabber Camera Bridge");
    QWidget *widget = mWnd->GetQWidget();
    EXPECT_EQ(widget->minimumSize(), QSize(900, 600));
    EXPECT_EQ(widget->maximumSize(), QSize(1600, 1200));
    QStringList groups;
    for (const QGroupBox *group : widget->findChildren<QGroupBox *>()) {
        groups.append(group->title());
    }
    EXPECT_EQ(groups, QStringList({"Bridge Setup", "Statistics", ""}));
    EXPECT_EQ(Combo("PortCombo")->count(), 2);
    EXPECT_EQ(Combo("PortCombo")->itemText(1), "Serial1");
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    EXPECT_EQ(Label("GenCPStatus"), "Not initialized");
    EXPECT_EQ(Label("ReceivedLabel"), "Bytes received: 0");
    EXPECT_EQ(Find<QPushButton>("ResetButton")->size(), QSize(75, 25));
    EXPECT_TRUE(Find<QRadioButton>("NoneRadio")->isChecked());
    const QWidget *column = Find<QPushButton>("ResetButton")->parentWidget()->parentWidget();
    EXPECT_EQ(column->minimumWidth(), 450);
    EXPECT_EQ(column->maximumWidth(), 520);
}

TEST_F(CameraBridgeManagerTest, SlotsAreDeclaredInTheirOrder)
{
    QStringList declared;
    const QMetaObject &meta = CameraBridgeManagerWnd::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        declared.append(meta.method(i).methodSignature());
    }
    EXPECT_EQ(declared,
              QStringList({"OnPortComboChanged()", "OnCLPTemplateComboChanged()", "OnCLPXMLComboChanged()",
                           "OnGenCPXMLComboChanged()", "OnRadioButtonChanged(QString)", "OnKCFPathButtonClicked()",
                           "OnKCFLoadButtonClicked()", "OnCLPProbeButtonClicked()", "OnCLPConnectButtonClicked()",
                           "OnGenCPConnectButtonClicked()", "OnResetButtonClicked()", "OnSyncCheckChanged()",
                           "OnPoCLCheckChanged()", "OnSourceComboChanged()", "OnTimerTimeout()"}));
}

TEST_F(CameraBridgeManagerTest, GenCPConnectsShowsFeaturesAndMayBeRepeated)
{
    Open();
    SelectPort(0);
    Click("GenCPRadio");
    ASSERT_EQ(Combo("GenCPXMLCombo")->count(), 1);
    EXPECT_EQ(Combo("GenCPXMLCombo")->currentText(), "XML 1.0.0 for LxGUI Line Camera");
    EXPECT_EQ(BrowserRows(), 0);
    Click("GenCPConnectButton");
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    EXPECT_TRUE(IsEnabled("GenCPStatus"));
    EXPECT_GT(BrowserRows(), 0);
    EXPECT_TRUE(IsEnabled("GenCPConnectButton")) << "a connected camera can be connected again";
    Click("GenCPConnectButton");
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    SelectPort(1);
    EXPECT_EQ(BrowserRows(), 0);
    EXPECT_EQ(Combo("GenCPXMLCombo")->count(), 0);
    SelectPort(0);
    EXPECT_TRUE(Find<QRadioButton>("GenCPRadio")->isChecked());
    EXPECT_EQ(Combo("GenCPXMLCombo")->currentText(), "XML 1.0.0 for LxGUI Line Camera");
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    EXPECT_GT(BrowserRows(), 0);
    Click("GenCPConnectButton");
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    Click("NoneRadio");
    EXPECT_FALSE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_EQ(BrowserRows(), 0);
}

TEST_F(CameraBridgeManagerTest, CLProtocolProbesAndConnectsAndLocksItsFields)
{
    Open();
    SelectPort(1);
    Click("CLPRadio");
    ASSERT_EQ(Combo("CLPTemplateCombo")->count(), 3);
    EXPECT_EQ(Combo("CLPTemplateCombo")->currentText(), "LxGUI TextCamera");
    EXPECT_TRUE(IsEnabled("CLPTemplateCombo"));
    EXPECT_FALSE(IsEnabled("CLPConnectButton"));
    Click("CLPProbeButton");
    EXPECT_EQ(Label("CLPCameraID"), "Camera ID: LxGUI TextCamera TC1024 1.0.0 TXT0001");
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 2);
    EXPECT_EQ(Combo("CLPXMLCombo")->currentText(), "XMLVersion.1.1.0");
    EXPECT_FALSE(IsEnabled("CLPTemplateCombo"));
    EXPECT_FALSE(IsEnabled("CLPProbeButton"));
    Click("CLPConnectButton");
    EXPECT_FALSE(IsEnabled("CLPXMLCombo"));
    EXPECT_FALSE(IsEnabled("CLPConnectButton"));
    EXPECT_EQ(Label("CLPStatus"), "Connected, 10 parameters available");
    EXPECT_GT(BrowserRows(), 0);
    SelectPort(0);
    SelectPort(1);
    EXPECT_EQ(Label("CLPCameraID"), "Camera ID: LxGUI TextCamera TC1024 1.0.0 TXT0001");
    EXPECT_EQ(Combo("CLPTemplateCombo")->currentText(), "LxGUI TextCamera");
}

TEST_F(CameraBridgeManagerTest, FailuresAreShownAndTheEntryStays)
{
    Open();
    SelectPort(1);
    Click("CLPRadio");
    Combo("CLPTemplateCombo")->setCurrentIndex(2);
    {
        ExpectedBox box;
        Click("CLPProbeButton");
        EXPECT_EQ(box.Title(), "CLP Probe Error");
        EXPECT_EQ(box.Text(), "Failed to probe CLProtocol: The camera at the serial port is not of this family.");
    }
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    Combo("CLPTemplateCombo")->setCurrentIndex(0);
    Click("CLPProbeButton");
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial1, nullptr);
    {
        ExpectedBox box;
        Click("CLPConnectButton");
        EXPECT_EQ(box.Title(), "CLP Connect Error");
        EXPECT_TRUE(box.Text().startsWith("Failed to connect CLProtocol: No camera answers"))
            << box.Text().toStdString();
    }
    SelectPort(0);
    Click("GenCPRadio");
    LxSimulatedGenCPFaults faults;
    faults.mUnplugAfter = 8;  // in the middle of the XML
    mGenCP->SetFaults(faults);
    {
        ExpectedBox box;
        Click("GenCPConnectButton");
        EXPECT_EQ(box.Title(), "GenCP Connect Error");
        EXPECT_TRUE(box.Text().startsWith("Failed to connect GenCP: The camera's XML could not be read."))
            << box.Text().toStdString();
    }
    EXPECT_FALSE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_EQ(Label("GenCPStatus"), "Not initialized");
}

TEST_F(CameraBridgeManagerTest, CameraFileIsLoadedAndHiddenAgain)
{
    Open();
    EXPECT_FALSE(mWnd->IsKCFVisible());
    EXPECT_FALSE(Find<QWidget>("KCFRadio")->isVisible());
    EXPECT_FALSE(Find<QWidget>("KCFPathEdit")->isVisible());
    ConnectGenCP();
    LoadFile();
    EXPECT_EQ(Label("KCFStatus"), "Connected, 9 parameters available");
    EXPECT_EQ(BrowserRows(), 0) << "the browser gets the features at the next refresh";
    SelectPort(0);
    SelectPort(1);
    EXPECT_GT(BrowserRows(), 0);
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), SampleFile);
    {
        ExpectedBox box;
        Find<QLineEdit>("KCFPathEdit")->setText("/nowhere/camera.yml");
        Click("KCFLoadButton");
        EXPECT_EQ(box.Title(), "KCF Load Error");
        EXPECT_EQ(
            box.Text(),
            "Failed to load KCF file: The file \"/nowhere/camera.yml\" cannot be read: No such file or directory.");
    }
    Find<QLineEdit>("KCFPathEdit")->setText(SampleFile);
    Click("KCFLoadButton");
    mWnd->HideKCF();
    EXPECT_FALSE(mWnd->GetBridge(1)->IsConnected());
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected()) << "the others keep their connections";
    EXPECT_TRUE(Find<QRadioButton>("NoneRadio")->isChecked());
    EXPECT_FALSE(Find<QWidget>("KCFRadio")->isVisible());
    EXPECT_EQ(BrowserRows(), 0);
}

TEST_F(CameraBridgeManagerTest, SettingShowsCameraFilesAndIsOnlyRead)
{
    EXPECT_TRUE(QDir(mSettings.Path()).isEmpty()) << "the window has written settings";
    OwnSettings::Write(true);
    LxCameraBridgeManagerWnd window;
    EXPECT_TRUE(window.IsKCFVisible());
}

TEST_F(CameraBridgeManagerTest, CountersTickAndAreResetAtOnce)
{
    Open();
    ConnectGenCP();
    ASSERT_TRUE(WaitForGui([&] { return Label("SentLabel") != "Bytes sent: 0"; }));
    EXPECT_NE(Label("ReceivedLabel"), "Bytes received: 0");
    Click("ResetButton");
    EXPECT_EQ(Label("SentLabel"), "Bytes sent: 0");
    EXPECT_EQ(Label("ReceivedLabel"), "Bytes received: 0");
}

TEST_F(CameraBridgeManagerTest, SettingsReachBridgeAndGrabber)
{
    Open();
    EXPECT_EQ(Combo("SourceCombo")->count(), 2) << "only those that are available";
    EXPECT_EQ(Combo("SourceCombo")->currentText(), "Source0");
    Click("SyncCheck");
    EXPECT_TRUE(mWnd->GetBridge(0)->GetParametersSyncEnabled());
    Combo("SourceCombo")->setCurrentIndex(1);
    EXPECT_EQ(mWnd->GetBridge(0)->GetSource().GetString(), "Source1");
    Click("PoCLCheck");
    EXPECT_TRUE(LxCameraBridge::IsPoCLEnabled(mGrabber.GetDevice()));
    SelectPort(1);
    EXPECT_FALSE(Find<QCheckBox>("SyncCheck")->isChecked());
    EXPECT_EQ(Combo("SourceCombo")->currentText(), "Source0");
    EXPECT_TRUE(Find<QCheckBox>("PoCLCheck")->isChecked()) << "it is of the grabber, not of a bridge";
    ConnectGenCP();
    int64_t width = 0;
    EXPECT_TRUE(mGrabber.GetFeatures().GetIntegerValue("Width", width).IsOK());
    EXPECT_EQ(width, 1024);
}

TEST_F(CameraBridgeManagerTest, SavedBridgesAreLoaded)
{
    Open();
    LxConfigurationWriter empty;
    EXPECT_TRUE(mWnd->Save(empty).IsOK());
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(empty.SaveToString()).IsOK());
    LxStringList errors;
    EXPECT_EQ(mWnd->Load(reader, errors), LxResultCode::NotFound);
    EXPECT_EQ(errors.GetSize(), 0u);

    ConnectGenCP();
    ConnectCLP();
    LxConfigurationWriter writer;
    EXPECT_TRUE(mWnd->Save(writer).IsOK());
    LxPropertyList list;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    ASSERT_TRUE(reader.Restore("CameraBridgeIndex", &list).IsOK());
    ASSERT_EQ(list.GetCount(), 2u);
    EXPECT_EQ(list.GetAt(1)->GetName().GetString(), "1");
    EXPECT_EQ(list.GetAt(1)->GetValue().GetString(), "1");

    mWnd->SetDevice(nullptr);
    EXPECT_EQ(mWnd->GetBridgeCount(), 0);
    mWnd->SetDevice(mGrabber.GetDevice());
    EXPECT_TRUE(mWnd->Load(reader, errors).IsOK());
    EXPECT_EQ(errors.GetSize(), 0u) << errors.GetItem(0).GetAscii();
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_TRUE(mWnd->GetBridge(1)->IsConnected());
    SelectPort(0);
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    SelectPort(1);
    EXPECT_EQ(Label("CLPCameraID"), "LxGUI TextCamera TC1024 1.0.0 TXT0001");

    list.Clear();
    list.Add(LxProperty("7", 9u));
    writer.Store(&list, "CameraBridgeIndex");
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    EXPECT_TRUE(mWnd->Load(reader, errors).IsOK());
    EXPECT_EQ(errors.GetSize(), 0u) << "a port that the device does not have is left out without a word";
    list.Clear();
    list.Add(LxProperty("7", LxString("no number")));
    writer.Store(&list, "CameraBridgeIndex");
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    EXPECT_TRUE(mWnd->Load(reader, errors).IsOK());
    ASSERT_EQ(errors.GetSize(), 1u);
    EXPECT_EQ(errors.GetItem(0).GetString().substr(0, 8), "Serial0:") << "a text that is no number is port 0";
}

TEST_F(CameraBridgeManagerTest, RecoverDoesNothing)
{
    EXPECT_EQ(mWnd->Recover().GetCode(), 1540u);
    EXPECT_EQ(mWnd->Recover().GetCode(), 1540u);
}

TEST_F(CameraBridgeManagerTest, ClosingKeepsTheBridgesAndOpeningShowsThemAgain)
{
    Open();
    ConnectGenCP();
    mWnd->Close();
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    mWnd->ShowModeless();
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    EXPECT_GT(BrowserRows(), 0);
    QWidget host;
    EXPECT_TRUE(mWnd->Create(&host).IsOK()) << "a second layout takes the browser along";
    EXPECT_NE(host.findChild<QTreeView *>(), nullptr);
    host.show();
}

TEST_F(CameraBridgeManagerTest, ConnectedAtTheFirstOpeningIsShown)
{
    Plug();
    mWnd->SetDevice(mGrabber.GetDevice());
    LxStringList ids;
    ASSERT_TRUE(mWnd->GetBridge(0)->GetGenCPXMLIDs(ids).IsOK());
    ASSERT_TRUE(mWnd->GetBridge(0)->ConnectGenCP(ids.GetItem(0)).IsOK());
    mWnd->ShowModeless();
    EXPECT_TRUE(Find<QRadioButton>("GenCPRadio")->isChecked());
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
}

TEST_F(CameraBridgeManagerTest, DeviceIsReplacedFromAnotherThreadWhileItIsBrowsed)
{
    Open();
    ConnectGenCP();
    std::atomic<bool> done{false};
    std::thread thread([&] {
        mWnd->SetDevice(nullptr);
        done = true;
    });
    EXPECT_TRUE(WaitForGui([&] { return done.load(); }));
    thread.join();
    EXPECT_EQ(mWnd->GetBridgeCount(), 0);
    EXPECT_EQ(BrowserRows(), 0);
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    EXPECT_EQ(Combo("PortCombo")->count(), 2) << "filled anew at the next opening";
    mWnd->SetDevice(mGrabber.GetDevice());
    EXPECT_EQ(mWnd->GetBridgeCount(), 2);
}

TEST_F(CameraBridgeManagerTest, DeletedLaterItAnswersAsWithoutAWindow)
{
    Open();
    ConnectGenCP();
    mWnd->DeleteLater();
    EXPECT_EQ(mWnd->GetBridgeCount(), 0);
    EXPECT_EQ(mWnd->ShowModeless(), LxResultCode::InvalidArgument);
    EXPECT_TRUE(WaitForGui([] { return LxSimulation::GetCounters().mSerialPorts == 0; }));
}
