// The serial bridge manager's window, driven by clicks.

#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaMethod>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QMessageBox>
#include <thread>

#include "BridgeManagerFixture.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGenICam/LxGenParameterArrayCL.h"
#include "LxSerial/LxCameraLinkPort.h"

namespace
{

class BridgeManagerTest : public BridgeManagerFixture
{
};

const QString All = "9600 14400 19200 28800 38400 57600 115200 230400 460800 921600";

/// Chooses an item of the dialog's baud rate combo and ends it by a button.
void AnswerDialog(const QString &aRate, QDialogButtonBox::StandardButton aButton, QString *aTitle = nullptr)
{
    OnNextModal([=](QWidget *aDialog) {
        if (aTitle) {
            *aTitle = aDialog->windowTitle() + ": " + aDialog->findChild<QComboBox *>("BaudRateCombo")->currentText();
        }
        auto *combo = aDialog->findChild<QComboBox *>("BaudRateCombo");
        combo->setCurrentIndex(combo->findText(aRate));
        QTest::mouseClick(aDialog->findChild<QDialogButtonBox *>()->button(aButton), Qt::LeftButton);
    });
}

}  // namespace

TEST_F(BridgeManagerTest, WithoutADeviceItShowsTheSample)
{
    ASSERT_TRUE(mWnd->ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
    EXPECT_EQ(mWnd->GetTitle(), LxString("Serial Communication Bridge"));
    EXPECT_EQ(Combo("PortSelectionCombo")->count(), 0);
    EXPECT_EQ(Text("NameLabel"), "Port name: 00:11:22:33:44:55-UART0");
    EXPECT_FALSE(Find<QLabel>("NameLabel")->isEnabled());
    EXPECT_EQ(Text("SummaryLabel"), "No parity, 8 bits, 1 stop bit");
    EXPECT_FALSE(Find<QLabel>("SummaryLabel")->isEnabled());
    EXPECT_FALSE(Find<QRadioButton>("CameraLinkRadio")->isEnabled());
    EXPECT_FALSE(Find<QPushButton>("ConfigureButton")->isEnabled());
    EXPECT_EQ(Rates(), "");
    EXPECT_EQ(Text("SentLabel"), "Bytes sent: 0");
    EXPECT_EQ(Text("ReceivedLabel"), "Bytes received: 0");
    QTest::mouseClick(Find<QPushButton>("ResetButton"), Qt::LeftButton);
    EXPECT_EQ(SaveText(), "");
    SaveScreenshot("bridge-no-device");
}

TEST_F(BridgeManagerTest, ListsThePortsAllInactive)
{
    Show();
    QStringList ports;
    for (int i = 0; i < Combo("PortSelectionCombo")->count(); ++i) {
        ports << Combo("PortSelectionCombo")->itemText(i);
    }
    EXPECT_EQ(ports, QStringList({"Serial0", "Serial1", "Bulk0", "Bulk1"}));
    EXPECT_TRUE(IsChecked("InactiveRadio"));
    EXPECT_EQ(Text("NameLabel"), "Inactive");
    EXPECT_FALSE(Find<QLabel>("NameLabel")->isEnabled());
    EXPECT_EQ(Combo("PortCombo")->currentIndex(), -1);
    EXPECT_FALSE(Combo("PortCombo")->isEnabled());
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
    EXPECT_FALSE(Find<QLabel>("SummaryLabel")->isEnabled());
    EXPECT_EQ(Rates(), "");
    QStringList groups;
    for (const QGroupBox *group : mWnd->GetQWidget()->findChildren<QGroupBox *>()) {
        groups << group->title();
    }
    EXPECT_EQ(groups, QStringList({"Port Selection", "Bridge", "Available/Selected Baud Rates", "Statistics"}));
    LxStringList ids;
    LxGenParameterArrayCL::GetPortIDs(ids);
    EXPECT_EQ(ids.GetSize(), 0u) << "registered for a moment only";
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    SaveScreenshot("bridge-inactive");
}

TEST_F(BridgeManagerTest, NamesThatTheApplicationGaveAreOffered)
{
    SerialBridgeManagerWnd window;
    window.ShowModeless(static_cast<QWidget *>(nullptr));
    const auto *combo = window.GetQWidget()->findChild<QComboBox *>("PortCombo");
    EXPECT_GE(combo->findText("COM3"), 0);
    EXPECT_GT(combo->findText("COM11"), combo->findText("COM3"));
    window.Close();
}

TEST_F(BridgeManagerTest, COMPortsAreListedByNumberAndNoneIsSelected)
{
    Show();
    QStringList ports;
    for (int i = 0; i < Combo("PortCombo")->count(); ++i) {
        ports << Combo("PortCombo")->itemText(i);
    }
    EXPECT_EQ(ports, QStringList({"COM3", "COM4", "COM11"}));
    Press("COMPortRadio");
    EXPECT_TRUE(IsChecked("COMPortRadio"));
    EXPECT_EQ(Combo("PortCombo")->currentIndex(), -1) << "the user chooses";
    EXPECT_TRUE(Combo("PortCombo")->isEnabled());
    EXPECT_EQ(Text("NameLabel"), "");
    EXPECT_TRUE(Find<QLabel>("NameLabel")->isEnabled());
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
    EXPECT_FALSE(Find<QPushButton>("ConfigureButton")->isEnabled());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(BridgeManagerTest, ALinkToACOMPortCarriesBytes)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    EXPECT_EQ(Text("SummaryLabel"), "9600 baud, no parity, 8 bits, 1 stop bit");
    EXPECT_EQ(Text("NameLabel"), "");
    EXPECT_TRUE(Find<QLabel>("SummaryLabel")->isEnabled());
    EXPECT_TRUE(Find<QPushButton>("ConfigureButton")->isEnabled());
    EXPECT_EQ(Rates(), "[9600] " + All.section(' ', 1));
    mTerminal.Write("hello");
    EXPECT_EQ(mTerminal.Read(5), "hello");
    EXPECT_TRUE(WaitForGui([&] { return Text("SentLabel") == "Bytes sent: 5"; })) << "by the timer";
    EXPECT_TRUE(WaitForGui([&] { return Text("ReceivedLabel") == "Bytes received: 5"; }));
    SaveScreenshot("bridge-com-port");
    QTest::mouseClick(Find<QPushButton>("ResetButton"), Qt::LeftButton);
    EXPECT_EQ(Text("SentLabel"), "Bytes sent: 0");
    Press("InactiveRadio");
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    EXPECT_EQ(Combo("PortCombo")->currentIndex(), -1);
    EXPECT_EQ(Rates(), "");
}

TEST_F(BridgeManagerTest, AnotherCOMPortKeepsTheConfiguration)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    QString title;
    AnswerDialog("57600 baud", QDialogButtonBox::Ok, &title);
    QTest::mouseClick(Find<QPushButton>("ConfigureButton"), Qt::LeftButton);
    EXPECT_EQ(title, "Serial COM Port Configuration: 9600 baud");
    EXPECT_EQ(Text("SummaryLabel"), "57600 baud, no parity, 8 bits, 1 stop bit");
    EXPECT_TRUE(Rates().contains("[57600]")) << qPrintable(Rates());
    SelectCOMPort("COM11");
    EXPECT_EQ(Text("SummaryLabel"), "57600 baud, no parity, 8 bits, 1 stop bit");
    mOther.Write("x");
    EXPECT_EQ(mOther.Read(1), "x");
    AnswerDialog("9600 baud", QDialogButtonBox::Cancel);
    QTest::mouseClick(Find<QPushButton>("ConfigureButton"), Qt::LeftButton);
    EXPECT_EQ(Text("SummaryLabel"), "57600 baud, no parity, 8 bits, 1 stop bit");
}

TEST_F(BridgeManagerTest, ACOMPortThatCannotBeOpenedIsNotSelected)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM4");  // does not exist
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
    EXPECT_FALSE(Find<QLabel>("SummaryLabel")->isEnabled());
    EXPECT_FALSE(Find<QPushButton>("ConfigureButton")->isEnabled());
    EXPECT_TRUE(IsChecked("COMPortRadio"));
    EXPECT_EQ(SaveText(), "Serial0=COMPort;Serial0Port=;");
    SelectCOMPort("COM3");
    EXPECT_EQ(Text("SummaryLabel"), "9600 baud, no parity, 8 bits, 1 stop bit");
    Combo("PortCombo")->setCurrentIndex(-1);
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
}

TEST_F(BridgeManagerTest, APortThatIsNotAvailableIsNoneToOpen)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    const std::string saved = SaveText();
    Combo("PortCombo")->addItem("Not Available");
    SelectCOMPort("Not Available");
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
    EXPECT_FALSE(Find<QLabel>("SummaryLabel")->isEnabled());
    EXPECT_EQ(SaveText(), saved);
}

TEST_F(BridgeManagerTest, TheStatisticsAreReadFourTimesASecondWhileItIsOpen)
{
    class TimerSpy : public QObject
    {
    public:
        TimerSpy() { qApp->installEventFilter(this); }
        bool eventFilter(QObject *aObject, QEvent *aEvent) override
        {
            const auto *timer = aEvent->type() == QEvent::Timer ? qobject_cast<QTimer *>(aObject) : nullptr;
            if (timer && timer->interval() == 250) {
                mTimer = timer;
                ++mCount;
            }
            return false;
        }
        const QTimer *mTimer = nullptr;
        int mCount = 0;
    } spy;
    QElapsedTimer clock;
    clock.start();  // not after the timer, whose next times do not move when one comes late
    Show();
    ASSERT_TRUE(WaitForGui([&] { return spy.mCount >= 3; }));
    EXPECT_GE(clock.elapsed(), 3 * 250 - 40) << "a coarse timer may come a twentieth early";
    mWnd->Close();
    EXPECT_FALSE(spy.mTimer->isActive());
}

TEST_F(BridgeManagerTest, AConfigurationThatIsRefusedIsReported)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    std::unique_ptr<ExpectedBox> expected;
    OnNextModal([&](QWidget *aDialog) {
        mTerminal.Unplug();
        EXPECT_TRUE(WaitForGui([&] { return SaveText() == "Serial0=COMPort;Serial0Port=;"; }));
        expected = std::make_unique<ExpectedBox>();
        QTest::mouseClick(aDialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    QTest::mouseClick(Find<QPushButton>("ConfigureButton"), Qt::LeftButton);
    ASSERT_TRUE(expected && expected->WasShown());
    EXPECT_EQ(expected->Title(), "Error");
    EXPECT_EQ(expected->Text(), "Unable to apply COM port configuration.\nINVALID_STATE: No COM port is open.");
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
}

TEST_F(BridgeManagerTest, ACameraLinkBridgeWithKnownRatesAsksNothing)
{
    Show();
    Press("CameraLinkRadio");
    EXPECT_TRUE(IsChecked("CameraLinkRadio"));
    EXPECT_EQ(Text("NameLabel"), QString(SimulatedGrabber::ID) + "-Serial0");
    EXPECT_TRUE(Find<QLabel>("NameLabel")->isEnabled());
    EXPECT_EQ(Text("SummaryLabel"), "Not selected");
    EXPECT_EQ(Rates(), "9600 14400 19200 28800 38400 57600 [115200] 230400 460800 921600");
    LxCameraLinkPort user;
    ASSERT_TRUE(user.Open(std::string(SimulatedGrabber::ID) + "-Serial0").IsOK());
    uint32_t written = 0;
    EXPECT_TRUE(user.Write(reinterpret_cast<const uint8_t *>("abc"), 3, written).IsOK());
    EXPECT_TRUE(WaitForGui([&] { return Text("SentLabel") == "Bytes sent: 3"; }));
    SaveScreenshot("bridge-camera-link");
    Press("CameraLinkRadio");
    EXPECT_TRUE(user.Write(reinterpret_cast<const uint8_t *>("abc"), 3, written).IsOK()) << "nothing changes";
    Press("InactiveRadio");
    EXPECT_EQ(user.Write(reinterpret_cast<const uint8_t *>("abc"), 3, written), LxResultCode::NotConnected);
}

TEST_F(BridgeManagerTest, ACameraLinkBridgeWithoutRatesAsksForOne)
{
    Show();
    SelectPort("Serial1");
    QString title;
    AnswerDialog("38400 baud", QDialogButtonBox::Ok, &title);
    Press("CameraLinkRadio");
    EXPECT_EQ(title, "Baud Rate Selection: 9600 baud");
    EXPECT_TRUE(IsChecked("CameraLinkRadio"));
    EXPECT_EQ(Rates(), "[38400]");
    EXPECT_EQ(SaveText(), "Serial1=CLDLL;Serial1CLDLLBaudRate=38400;");
    SelectPort("Serial0");
    EXPECT_TRUE(IsChecked("InactiveRadio"));
    EXPECT_EQ(Text("NameLabel"), "Inactive");
    SelectPort("Serial1");
    EXPECT_TRUE(IsChecked("CameraLinkRadio"));
    EXPECT_EQ(Text("NameLabel"), QString(SimulatedGrabber::ID) + "-Serial1");
}

TEST_F(BridgeManagerTest, CancellingTheBaudRateLeavesThePortInactive)
{
    Show();
    SelectPort("Serial1");
    AnswerDialog("38400 baud", QDialogButtonBox::Cancel);
    Press("CameraLinkRadio");
    EXPECT_TRUE(IsChecked("InactiveRadio"));
    EXPECT_EQ(Text("NameLabel"), "Inactive");
    EXPECT_EQ(SaveText(), "");
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(BridgeManagerTest, ACameraLinkBridgeThatFailsIsReported)
{
    Show();
    LxSimulation::QueueResult("SerialOpen", LxResult(LxResultCode::Busy, "100% %1 in use."));
    const ExpectedBox box;
    Press("CameraLinkRadio");
    ASSERT_TRUE(box.WasShown());
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Unable to start Camera Link DLL bridge.\nBUSY: 100% %1 in use.");
    EXPECT_TRUE(IsChecked("InactiveRadio"));
    EXPECT_EQ(SaveText(), "");
}

TEST_F(BridgeManagerTest, TheDeviceMayGoWhileADialogIsOpen)
{
    Show();
    SelectPort("Serial1");
    OnNextModal([&](QWidget *aDialog) {
        mWnd->SetDevice(nullptr);
        QTest::mouseClick(aDialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    Press("CameraLinkRadio");
    EXPECT_EQ(Combo("PortSelectionCombo")->count(), 0);
    mWnd->SetDevice(mGrabber.GetAdapter());
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    OnNextModal([&](QWidget *aDialog) {
        mWnd->SetDevice(mGrabber.GetAdapter());
        QTest::mouseClick(aDialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    QTest::mouseClick(Find<QPushButton>("ConfigureButton"), Qt::LeftButton);
    EXPECT_TRUE(IsChecked("InactiveRadio"));
    EXPECT_EQ(SaveText(), "");
}

TEST_F(BridgeManagerTest, TheWindowMayGoWhileADialogIsOpen)
{
    Show();
    SelectPort("Serial1");
    OnNextModal([&](QWidget *) { mWnd.reset(); });
    Press("CameraLinkRadio");
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(BridgeManagerTest, ClosingKeepsTheBridges)
{
    Show();
    Press("COMPortRadio");
    SelectCOMPort("COM3");
    mWnd->Close();
    mTerminal.Write("still");
    EXPECT_EQ(mTerminal.Read(5), "still");
    ASSERT_TRUE(mWnd->ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
    EXPECT_TRUE(IsChecked("COMPortRadio"));
    EXPECT_EQ(Combo("PortCombo")->currentText(), "COM3");
    EXPECT_TRUE(WaitForGui([&] { return Text("SentLabel") == "Bytes sent: 5"; })) << "counted after the writing";
    mWnd.reset();
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u) << "the end of the window stops them";
}

TEST_F(BridgeManagerTest, AClickOnABaudRateChangesNothingThatLasts)
{
    Show();
    Press("CameraLinkRadio");
    const QString rates = Rates();
    QTest::mouseClick(Find<QCheckBox>("BaudRate9600Check"), Qt::LeftButton, {}, {8, 8});
    SelectPort("Serial1");
    SelectPort("Serial0");
    EXPECT_EQ(Rates(), rates);
}

TEST_F(BridgeManagerTest, TheDeviceIsSetFromAnyThread)
{
    ASSERT_TRUE(mWnd->ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
    std::atomic<bool> done{false};
    std::thread thread([&] {
        mWnd->SetDevice(mGrabber.GetAdapter());
        done = true;
    });
    EXPECT_TRUE(WaitForGui([&] { return done.load(); }));
    thread.join();
    EXPECT_EQ(Combo("PortSelectionCombo")->count(), 4);
}

TEST_F(BridgeManagerTest, ADeviceWithoutPortsHasNoEntry)
{
    LxSimulatedDevice values = MakeValues();
    values.mSerialPorts = 0;
    ASSERT_TRUE(LxSimulation::SetDevice(values).IsOK());
    Show();
    EXPECT_EQ(Combo("PortSelectionCombo")->count(), 0);
    EXPECT_EQ(Text("NameLabel"), "Port name: 00:11:22:33:44:55-UART0");
}

TEST_F(BridgeManagerTest, RegistrationMayFail)
{
    LxSerialBridge other;
    ASSERT_TRUE(
        other.Start(std::string(SimulatedGrabber::ID) + "-Serial0", mGrabber.GetAdapter(), LxDeviceSerial::Invalid)
            .IsOK());
    Show();
    EXPECT_EQ(Combo("PortSelectionCombo")->count(), 4);
    EXPECT_TRUE(IsChecked("InactiveRadio"));
}

TEST_F(BridgeManagerTest, SlotsInTheirOrder)
{
    const QMetaObject &meta = SerialBridgeManagerWnd::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        names << QString::fromLatin1(meta.method(i).methodSignature());
    }
    EXPECT_EQ(names,
              QStringList({"OnRadioButtonClicked(int)", "OnPortSelectionComboChanged()", "OnConfigureButtonClicked()",
                           "OnPortComboChanged()", "OnResetButtonClicked()", "OnTimerTimeout()"}));
}

TEST_F(BridgeManagerTest, ThePublicWindow)
{
    LxSerialBridgeManagerWnd window;
    EXPECT_TRUE(window.SetDevice(mGrabber.GetAdapter()).IsOK());
    EXPECT_EQ(window.Recover().GetCode(), 1540u);
    LxPropertyList list;
    list.Add(LxProperty("Serial0", "CLDLL"));
    LxStringList messages;
    EXPECT_TRUE(window.Load(list, messages).IsOK());
    EXPECT_EQ(messages.GetSize(), 0u);
    EXPECT_TRUE(window.Save(list).IsOK());
    EXPECT_EQ(list.GetCount(), 2u);
    EXPECT_TRUE(window.ShowModeless().IsOK());
    EXPECT_TRUE(window.IsVisible());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 1u);
    window.DeleteLater();
    EXPECT_FALSE(window.IsVisible());
    EXPECT_TRUE(WaitForGui([] { return LxSimulation::GetCounters().mSerialPorts == 0; }));
    window.DeleteLater();
    EXPECT_TRUE(window.SetDevice(nullptr).IsOK());
    EXPECT_TRUE(window.Save(list).IsOK());
    EXPECT_TRUE(window.Load(list, messages).IsOK());
    EXPECT_FALSE(window.ShowModeless().IsOK());
}
