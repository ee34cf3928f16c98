// What the window shows of the bridges, and when.

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGroupBox>

#include "CameraBridgeManagerFixture.h"
#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

using CameraBridgePanelTest = CameraBridgeManagerFixture;

/// A grabber with all ports.
class CameraBridgePortsTest : public CameraBridgeManagerFixture
{
protected:
    CameraBridgePortsTest() : CameraBridgeManagerFixture(0x3FF) {}
};

/// A grabber with two ports whose numbers are not their places.
class CameraBridgeApartTest : public CameraBridgeManagerFixture
{
protected:
    CameraBridgeApartTest() : CameraBridgeManagerFixture(0b100010) {}
};

LxSimulatedDevice MakePlainGrabber()
{
    LxSimulatedDevice values = SimulatedGrabber::MakeValues(0b11);
    values.mSources = 0;
    values.mPoCL = false;
    return values;
}

/// A grabber without sources and without power for the camera.
class CameraBridgePlainGrabberTest : public CameraBridgeManagerFixture
{
protected:
    CameraBridgePlainGrabberTest() : CameraBridgeManagerFixture(MakePlainGrabber()) {}
};

QTimer *FindTimer(QWidget *aWidget)
{
    return aWidget->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

}  // namespace

TEST_F(CameraBridgePanelTest, AHostsWidgetGetsTheSizesOfTheWindow)
{
    mWnd->SetDevice(mGrabber.GetDevice());
    QWidget host;
    host.resize(200, 100);
    ASSERT_TRUE(mWnd->Create(&host).IsOK());
    EXPECT_EQ(host.minimumSize(), QSize(900, 600));
    EXPECT_EQ(host.maximumSize(), QSize(1600, 1200));
    EXPECT_EQ(host.size(), QSize(900, 600));
    host.resize(3000, 3000);
    EXPECT_EQ(host.size(), QSize(1600, 1200));
}

TEST_F(CameraBridgePanelTest, TheLayoutHasItsNumbers)
{
    mWnd->ShowKCF();
    Open();
    QWidget *widget = mWnd->GetQWidget();
    ASSERT_NE(widget->layout(), nullptr);
    EXPECT_EQ(widget->layout()->spacing(), 8);
    EXPECT_EQ(widget->layout()->contentsMargins(), QMargins(8, 8, 8, 8));
    const QWidget *setup = Combo("PortCombo")->parentWidget();
    EXPECT_EQ(setup->layout()->spacing(), 4);
    EXPECT_EQ(setup->layout()->contentsMargins(), QMargins(8, 8, 8, 8));
    EXPECT_EQ(setup->parentWidget()->layout()->spacing(), 4);
    QStringList texts;
    const int left = Find<QRadioButton>("NoneRadio")->x();
    for (const QLabel *label : setup->findChildren<QLabel *>(QString())) {
        if (label->objectName().isEmpty()) {
            texts.append(label->text());
            if (label->text() != "Source:") {
                EXPECT_EQ(label->minimumWidth(), 80) << label->text().toStdString();
                EXPECT_EQ(label->maximumWidth(), 80) << label->text().toStdString();
                EXPECT_EQ(label->x(), left + 20) << label->text().toStdString();
            }
        }
        else {
            EXPECT_EQ(label->contentsMargins().left(), 83) << label->objectName().toStdString();
        }
    }
    EXPECT_EQ(texts, QStringList({"Path", "Template", "XML", "XML", "Source:"}));
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->minimumWidth(), 210);
    for (const char *name : {"CLPTemplateCombo", "CLPXMLCombo", "GenCPXMLCombo"}) {
        EXPECT_EQ(Combo(name)->minimumWidth(), 210) << name;
    }
    texts.clear();
    for (const char *name :
         {"NoneRadio", "KCFRadio", "KCFPathButton", "KCFLoadButton", "CLPRadio", "CLPProbeButton", "CLPConnectButton",
          "GenCPRadio", "GenCPConnectButton", "ResetButton", "SyncCheck", "PoCLCheck"})
    {
        texts.append(Find<QAbstractButton>(name)->text());
    }
    EXPECT_EQ(texts, QStringList({"None", "Kelvra Camera File", "...", "Load", "GenICam CL Protocol", "Probe",
                                  "Connect", "GenCP", "Connect", "Reset", "Frame Grabber Parameters Synchronization",
                                  "Power Over Camera Link (PoCL)"}));
    const QWidget *browser = widget->layout()->itemAt(1)->widget();
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(browser->minimumSize(), QSize(350, 300));
    EXPECT_EQ(browser->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(browser->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(static_cast<QBoxLayout *>(widget->layout())->stretch(1), 1);
}

TEST_F(CameraBridgePanelTest, ADialogMayBeShownModallyAgain)
{
    Plug();
    mWnd->SetDevice(mGrabber.GetDevice());
    for (int time = 0; time < 2; ++time) {
        OnNextModal([&](QWidget *aWidget) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // what goes of the first time
            EXPECT_EQ(aWidget->findChildren<QGroupBox *>().size(), 3);
            EXPECT_EQ(Combo("PortCombo")->count(), 2);
            if (time == 0) {
                ConnectGenCP();
            }
            EXPECT_GT(BrowserRows(), 0);
            qobject_cast<QDialog *>(aWidget)->reject();
        });
        EXPECT_EQ(mWnd->ShowModal().GetCode(), 0x4002u);
        EXPECT_EQ(BrowserRows(), 0);
    }
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
}

TEST_F(CameraBridgePanelTest, TheFileDialogHasItsTextsAndItsChoiceIsThePath)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    mWnd->ShowKCF();
    Open();
    Click("KCFRadio");
    OnNextModal([](QWidget *aWidget) {
        auto *dialog = qobject_cast<QFileDialog *>(aWidget);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), "Select Kelvra Camera File");
        EXPECT_EQ(dialog->nameFilters(), QStringList({"Kelvra Camera Files (*.yml)", "All files (*.*)"}));
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
        dialog->selectFile(SampleFile);
        // an open dialog accepts what its field names
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(SampleFile);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    Click("KCFPathButton");
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), SampleFile);
    OnNextModal([](QWidget *aWidget) { qobject_cast<QDialog *>(aWidget)->reject(); });
    Click("KCFPathButton");
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), SampleFile) << "nothing was chosen";
    EXPECT_FALSE(mWnd->GetBridge(0)->IsConnected()) << "choosing a file does not load it";
}

TEST_F(CameraBridgePanelTest, OnlyTheUserChoosesAProtocol)
{
    Open();
    ConnectGenCP();
    for (const char *name : {"CLPRadio", "KCFRadio", "NoneRadio"}) {
        Find<QRadioButton>(name)->setChecked(true);
        EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected()) << name;
    }
}

TEST_F(CameraBridgePanelTest, FillingTheCombosSetsNoSource)
{
    Plug();
    mWnd->SetDevice(mGrabber.GetDevice());
    ASSERT_TRUE(mWnd->GetBridge(0)->SetSource("Source1").IsOK());
    mWnd->ShowModeless();
    EXPECT_EQ(Combo("SourceCombo")->currentText(), "Source1");
    EXPECT_EQ(mWnd->GetBridge(0)->GetSource().GetString(), "Source1");
    SelectPort(1);
    EXPECT_EQ(Combo("SourceCombo")->currentText(), "Source0");
    EXPECT_EQ(mWnd->GetBridge(1)->GetSource().GetString(), "Source0");
    SelectPort(0);
    EXPECT_EQ(mWnd->GetBridge(0)->GetSource().GetString(), "Source1");
    EXPECT_EQ(mWnd->GetBridge(1)->GetSource().GetString(), "Source0");
}

TEST_F(CameraBridgePanelTest, TheStatisticsTickWhileTheWindowIsOpenWhicheverDialogItHas)
{
    Open();
    ConnectGenCP();
    const QPointer<QTimer> timer = FindTimer(mWnd->GetQWidget());
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 500);
    mWnd->Close();
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(BrowserRows(), 0) << "a closed window lets go of the features";

    mWnd->ShowModeless();  // in another dialog
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_GT(BrowserRows(), 0);
    ASSERT_NE(FindTimer(mWnd->GetQWidget()), nullptr);
    EXPECT_TRUE(FindTimer(mWnd->GetQWidget())->isActive());
    EXPECT_TRUE(WaitForGui([&] { return Label("SentLabel") != "Bytes sent: 0"; }));
    qobject_cast<QDialog *>(mWnd->GetQWidget())->reject();  // by its user
    EXPECT_FALSE(FindTimer(mWnd->GetQWidget())->isActive());
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());

    {
        QWidget host;  // which takes the timer along
        ASSERT_TRUE(mWnd->Create(&host).IsOK());
        EXPECT_TRUE(FindTimer(&host)->isActive());
    }
    mWnd->ShowModeless();
    ASSERT_NE(FindTimer(mWnd->GetQWidget()), nullptr);
    EXPECT_TRUE(FindTimer(mWnd->GetQWidget())->isActive());
    EXPECT_GT(BrowserRows(), 0);
}

TEST_F(CameraBridgePanelTest, AnUnconnectedEntryLosesItsListsButNotItsModeWhenOthersAreLoaded)
{
    Open();
    ConnectCLP();
    SelectPort(0);
    Click("GenCPRadio");
    ASSERT_EQ(Combo("GenCPXMLCombo")->count(), 1);
    LxConfigurationReader reader;
    SaveTo(reader);
    EXPECT_TRUE(Load(reader).IsOK());
    EXPECT_TRUE(Find<QRadioButton>("GenCPRadio")->isChecked());
    EXPECT_EQ(Combo("GenCPXMLCombo")->count(), 0);
    EXPECT_FALSE(IsEnabled("GenCPConnectButton"));
    EXPECT_EQ(Label("GenCPStatus"), "Not initialized");
    Click("NoneRadio");
    Click("GenCPRadio");
    EXPECT_EQ(Combo("GenCPXMLCombo")->count(), 1) << "chosen again";
}

TEST_F(CameraBridgePanelTest, ALoadedBridgeHasNoListToConnectByAgain)
{
    Open();
    ConnectGenCP();
    LxConfigurationReader reader;
    SaveTo(reader);
    mWnd->SetDevice(mGrabber.GetDevice());
    ASSERT_TRUE(Load(reader).IsOK());
    ASSERT_TRUE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_EQ(Combo("GenCPXMLCombo")->currentText(), "XML 1.0.0 for LxGUI Line Camera");
    EXPECT_GT(BrowserRows(), 0);
    const LxGenParameterArray *features = mWnd->GetBridge(0)->GetParameters();
    Click("GenCPConnectButton");
    EXPECT_EQ(mWnd->GetBridge(0)->GetParameters(), features) << "it was connected again";
    EXPECT_GT(BrowserRows(), 0);
}

TEST_F(CameraBridgePanelTest, ALoadedProtocolBridgeIsShownAndLocked)
{
    Open();
    ConnectCLP();
    LxConfigurationReader reader;
    SaveTo(reader);
    mWnd->GetBridge(1)->Disconnect();
    ASSERT_TRUE(Load(reader).IsOK());
    EXPECT_EQ(Combo("CLPTemplateCombo")->currentText(), "LxGUI TextCamera");
    EXPECT_EQ(Combo("CLPXMLCombo")->currentText(), "XMLVersion.1.1.0");
    EXPECT_EQ(Label("CLPCameraID"), "LxGUI TextCamera TC1024 1.0.0 TXT0001");
    EXPECT_EQ(Label("CLPStatus"), "Connected, 10 parameters available");
    for (const char *name : {"CLPTemplateCombo", "CLPProbeButton", "CLPXMLCombo", "CLPConnectButton"}) {
        EXPECT_FALSE(IsEnabled(name)) << name;
    }
    Click("NoneRadio");
    Click("CLPRadio");
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    EXPECT_EQ(Combo("CLPTemplateCombo")->count(), 3);
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 0);
}

TEST_F(CameraBridgePanelTest, AnEntryKeepsItsListsWhileAnotherIsShown)
{
    Open();
    SelectPort(1);
    Click("CLPRadio");
    Click("CLPProbeButton");
    Combo("CLPXMLCombo")->setCurrentIndex(1);
    const QString xml = Combo("CLPXMLCombo")->currentText();
    SelectPort(0);
    EXPECT_EQ(Combo("CLPTemplateCombo")->count(), 0);
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 0);
    EXPECT_TRUE(Find<QRadioButton>("NoneRadio")->isChecked());
    SelectPort(1);
    EXPECT_EQ(Combo("CLPTemplateCombo")->count(), 3);
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 2);
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    Combo("CLPXMLCombo")->setCurrentText(xml);
    Click("CLPConnectButton");
    LxString id;
    EXPECT_TRUE(mWnd->GetBridge(1)->GetCLProtocolXMLID(id).IsOK());
    EXPECT_TRUE(QString(id.GetAscii()).endsWith("@" + xml)) << id.GetAscii();
}

TEST_F(CameraBridgePanelTest, StatusIsThatOfTheBridgeWhoeverDisconnectedIt)
{
    Open();
    ConnectGenCP();
    mWnd->GetBridge(0)->Disconnect();
    SelectPort(1);
    SelectPort(0);
    EXPECT_EQ(Label("GenCPStatus"), "Not initialized");
    EXPECT_EQ(BrowserRows(), 0);
}

TEST_F(CameraBridgePanelTest, ProbedAndConnectedFieldsAreLocked)
{
    Open();
    SelectPort(1);
    Click("CLPRadio");
    EXPECT_TRUE(IsEnabled("CLPProbeButton"));
    EXPECT_FALSE(IsEnabled("CLPXMLCombo"));
    Click("CLPProbeButton");
    EXPECT_FALSE(IsEnabled("CLPTemplateCombo"));
    EXPECT_FALSE(IsEnabled("CLPProbeButton"));
    EXPECT_TRUE(IsEnabled("CLPXMLCombo"));
    EXPECT_TRUE(IsEnabled("CLPConnectButton"));
    Click("CLPConnectButton");
    for (const char *name : {"CLPTemplateCombo", "CLPProbeButton", "CLPXMLCombo", "CLPConnectButton"}) {
        EXPECT_FALSE(IsEnabled(name)) << name;
    }
    for (const char *name : {"CLPCameraID", "CLPStatus", "SourceCombo", "PoCLCheck"}) {
        EXPECT_TRUE(IsEnabled(name)) << name;
    }
    for (const char *name : {"GenCPXMLCombo", "GenCPConnectButton", "GenCPStatus"}) {
        EXPECT_FALSE(IsEnabled(name)) << name;
    }
}

TEST_F(CameraBridgePanelTest, WithoutAnEntryThePanelIsThatOfNoBridge)
{
    mWnd->ShowKCF();
    Open();
    ConnectCLP();
    Click("SyncCheck");
    Click("PoCLCheck");
    mWnd->SetDevice(nullptr);
    EXPECT_EQ(BrowserRows(), 0);
    mWnd->Close();
    mWnd->ShowModeless();
    EXPECT_TRUE(Find<QRadioButton>("NoneRadio")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>("SyncCheck")->isChecked());
    EXPECT_FALSE(Find<QCheckBox>("PoCLCheck")->isChecked());
    EXPECT_EQ(Label("CLPCameraID"), "Not found");
    for (const char *name : {"KCFStatus", "CLPStatus", "GenCPStatus"}) {
        EXPECT_EQ(Label(name), "Not initialized") << name;
    }
    EXPECT_EQ(Label("SentLabel"), "Bytes sent: 0");
    EXPECT_EQ(Label("ReceivedLabel"), "Bytes received: 0");
    for (const char *name : {"PortCombo", "CLPTemplateCombo", "CLPXMLCombo", "GenCPXMLCombo", "SourceCombo"}) {
        EXPECT_EQ(Combo(name)->count(), 0) << name;
    }
    EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), "");
}

TEST_F(CameraBridgePanelTest, PowerThatCannotBeSwitchedShowsTheWishUntilThePanelIsFilled)
{
    Open();
    constexpr uint64_t poclRegister = 0xC104;
    ASSERT_TRUE(LxSimulation::FailRange(SimulatedGrabber::ID, poclRegister, 4, LxResultCode::Busy).IsOK());
    Click("PoCLCheck");
    EXPECT_TRUE(Find<QCheckBox>("PoCLCheck")->isChecked());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    ASSERT_TRUE(LxSimulation::ClearFailures(SimulatedGrabber::ID).IsOK());
    SelectPort(1);
    EXPECT_FALSE(Find<QCheckBox>("PoCLCheck")->isChecked());
}

TEST_F(CameraBridgePlainGrabberTest, ThereIsNoSourceAndNoPower)
{
    Open();
    EXPECT_EQ(Combo("SourceCombo")->count(), 0);
    EXPECT_TRUE(IsEnabled("SourceCombo"));
    EXPECT_FALSE(IsEnabled("PoCLCheck"));
    ConnectGenCP();
    Click("SyncCheck");
    EXPECT_EQ(mWnd->GetBridge(0)->GetSource().GetString(), "");
}

TEST_F(CameraBridgePanelTest, TheSettingIsReadFromItsFile)
{
    const QString folder = mSettings.Path() + "/Kelvra Technologies Inc";
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + "/CorvoPlayerClassic.conf");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray text = "[General]\nKelvraCameraFiles=true\n";
    file.write(text);
    file.close();
    {
        LxCameraBridgeManagerWnd window;
        EXPECT_TRUE(window.IsKCFVisible());
        window.HideKCF();
        EXPECT_FALSE(window.IsKCFVisible());
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), text);
}

TEST_F(CameraBridgePortsTest, EveryPortHasItsName)
{
    mWnd->SetDevice(mGrabber.GetDevice());
    mWnd->ShowModeless();
    QStringList names;
    for (int i = 0; i < Combo("PortCombo")->count(); ++i) {
        names.append(Combo("PortCombo")->itemText(i));
        EXPECT_EQ(static_cast<int>(mWnd->GetBridgePort(i)), i);
        EXPECT_NE(mWnd->GetBridge(i), nullptr);
    }
    EXPECT_EQ(names, QStringList({"Serial0", "Serial1", "Bulk0", "Bulk1", "Bulk2", "Bulk3", "Bulk4", "Bulk5", "Bulk6",
                                  "Bulk7"}));
    EXPECT_EQ(mWnd->GetBridgeCount(), 10);
    EXPECT_EQ(mWnd->GetBridge(10), nullptr);
    EXPECT_EQ(mWnd->GetBridge(-1), nullptr);
    EXPECT_EQ(static_cast<uint32_t>(mWnd->GetBridgePort(10)), 0xFFFFFFFFu);
    EXPECT_EQ(static_cast<uint32_t>(mWnd->GetBridgePort(-1)), 0xFFFFFFFFu);
}

TEST_F(CameraBridgePortsTest, HidingCameraFilesDisconnectsAllOfThemAndNothingElse)
{
    Open();
    SimulatedGrabber::SetPeer(LxDeviceSerial::Bulk0, std::make_shared<LxSimulatedTextCamera>());
    LoadFile(1);
    LoadFile(2);
    ConnectGenCP();  // which is the selected one
    mWnd->HideKCF();
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_FALSE(mWnd->GetBridge(1)->IsConnected());
    EXPECT_FALSE(mWnd->GetBridge(2)->IsConnected());
    EXPECT_GT(BrowserRows(), 0) << "the selected one is not among them";
    for (const int port : {1, 2}) {
        SelectPort(port);
        EXPECT_TRUE(Find<QRadioButton>("NoneRadio")->isChecked()) << port;
        EXPECT_EQ(Find<QLineEdit>("KCFPathEdit")->text(), "") << port;
    }
}

TEST_F(CameraBridgeApartTest, BridgesAreSavedUnderTheirPlaceWithTheirPort)
{
    Open();
    SimulatedGrabber::SetPeer(LxDeviceSerial::Bulk3, std::make_shared<LxSimulatedTextCamera>());
    EXPECT_EQ(Combo("PortCombo")->itemText(0), "Serial1");
    EXPECT_EQ(Combo("PortCombo")->itemText(1), "Bulk3");
    LoadFile(1);
    LxConfigurationReader reader;
    SaveTo(reader);
    LxPropertyList list;
    ASSERT_TRUE(reader.Restore("CameraBridgeIndex", &list).IsOK());
    ASSERT_EQ(list.GetCount(), 1u) << "the other one is not connected";
    EXPECT_EQ(list.GetAt(0)->GetName().GetString(), "1");
    EXPECT_EQ(list.GetAt(0)->GetValue().GetString(), "5");
    mWnd->GetBridge(1)->Disconnect();
    EXPECT_TRUE(Load(reader).IsOK());
    EXPECT_EQ(mErrors.GetSize(), 0u);
    EXPECT_TRUE(mWnd->GetBridge(1)->IsConnected());
}

TEST_F(CameraBridgePanelTest, WithoutAnIndexNothingIsLoadedAndNothingChanges)
{
    Open();
    LxConfigurationReader empty;
    SaveTo(empty);
    LxPropertyList list;
    EXPECT_FALSE(empty.Restore("CameraBridgeIndex", &list).IsOK()) << "no bridge is connected";
    ConnectGenCP();
    const LxResult result = Load(empty);
    EXPECT_EQ(result, empty.Restore("CameraBridgeIndex", &list)) << "the reader's result";
    EXPECT_FALSE(result.IsOK());
    EXPECT_EQ(mErrors.GetSize(), 0u);
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    EXPECT_GT(BrowserRows(), 0);
}

TEST_F(CameraBridgePanelTest, APortThatTheDeviceLacksIsSkippedSilently)
{
    Open();
    ConnectGenCP();
    // 2^32 is no port, although its lower 32 bits are one
    for (const char *port : {"9", "-1", "4294967295", "4294967296"}) {
        LxPropertyList list;
        list.Add(LxProperty("7", LxString(port)));
        LxConfigurationWriter writer;
        ASSERT_TRUE(writer.Store(&list, "CameraBridgeIndex").IsOK());
        LxConfigurationReader reader;
        ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
        EXPECT_TRUE(Load(reader).IsOK()) << port;
        EXPECT_EQ(mErrors.GetSize(), 0u) << port;
        EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected()) << port;
    }
}

TEST_F(CameraBridgePanelTest, AfterDeleteLaterEveryOperationAnswersNeutrally)
{
    Open();
    mWnd->DeleteLater();
    EXPECT_EQ(mWnd->SetDevice(mGrabber.GetDevice()).GetCode(), 0u);
    EXPECT_EQ(mWnd->SetStream(nullptr).GetCode(), 0u);
    EXPECT_EQ(mWnd->GetBridgeCount(), 0);
    EXPECT_EQ(mWnd->GetBridge(0), nullptr);
    EXPECT_EQ(static_cast<uint32_t>(mWnd->GetBridgePort(0)), 0xFFFFFFFFu);
    LxConfigurationReader reader;
    SaveTo(reader);
    EXPECT_EQ(Load(reader).GetCode(), 0u);
    EXPECT_EQ(mWnd->Recover().GetCode(), 1540u);
    mWnd->ShowKCF();
    EXPECT_FALSE(mWnd->IsKCFVisible());
    mWnd->HideKCF();
    mWnd->DeleteLater();
}
