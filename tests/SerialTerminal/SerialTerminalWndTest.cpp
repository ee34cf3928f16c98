#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

#include <QtCore/QMetaMethod>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <memory>

#include "../NodeMap/TestCamera.h"
#include "LxGUI/SerialTerminal/SendFileThread.h"
#include "TerminalTest.h"

namespace
{

constexpr char Hint[] =
    "\r\n\r\nBytes must be provided as pairs of hexadecimal digits\r\nseparated by spaces.\r\n\r\n"
    "Example: 03 64 70 6D AB 43 72 01 02";

LxDeviceSerial PortOf(uint32_t aNumber)
{
    return static_cast<LxDeviceSerial>(aNumber);
}

QStringList MethodsOf(const QMetaObject &aObject, QMetaMethod::MethodType aType)
{
    QStringList methods;
    for (int i = aObject.methodOffset(); i < aObject.methodCount(); ++i) {
        if (aObject.method(i).methodType() == aType) {
            methods << aObject.method(i).methodSignature();
        }
    }
    return methods;
}

/// The features of a grabber: Uart0BaudRate is an enumeration, BulkBaudRate belongs to the selected port.
TestCamera GrabberFeatures()
{
    const auto entry = [](const std::string &aName, int aValue) {
        return "<EnumEntry Name=\"" + aName + "\"><Value>" + std::to_string(aValue) + "</Value></EnumEntry>";
    };
    std::string selector = "<pValue>SelectorReg</pValue>";
    for (int i = 7; i >= 0; --i) {
        selector = entry("Bulk" + std::to_string(i), i) + selector;
    }
    return TestCamera(
        "Uart0BaudRate Uart0Loopback BulkSelector BulkBaudRate BulkLoopback",
        Node("Enumeration", "Uart0BaudRate",
             entry("Baud9600", 0) + entry("Baud19200", 1) + entry("Baud115200", 2) + "<pValue>RateReg</pValue>") +
            Reg("RateReg", 0x1000) + Node("Boolean", "Uart0Loopback", "<pValue>LoopReg</pValue>") +
            Reg("LoopReg", 0x1004) + Node("Enumeration", "BulkSelector", selector) + Reg("SelectorReg", 0x1008) +
            Integer("BulkBaudRate", "BulkRateReg", "<Min>1200</Min><Max>115200</Max>") + Reg("BulkRateReg", 0x100C) +
            Node("Boolean", "BulkLoopback", "<pValue>BulkLoopReg</pValue>") + Reg("BulkLoopReg", 0x1010));
}

}  // namespace

TEST(SerialTerminalWnd, HasItsTextsAndControlsInOrder)
{
    Terminal wnd;
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "Device Serial Communication");
    wnd.ShowModeless();
    EXPECT_EQ(wnd.GetQWidget()->windowTitle(), "Device Serial Communication");
    QStringList groups, labels, checks, radios, buttons;
    for (const auto *group : wnd.GetQWidget()->findChildren<QGroupBox *>()) {
        groups << group->title();
    }
    for (const auto *label : wnd.GetQWidget()->findChildren<QLabel *>()) {
        labels << label->text();
    }
    for (const auto *check : wnd.GetQWidget()->findChildren<QCheckBox *>()) {
        checks << check->text();
        EXPECT_FALSE(check->isChecked()) << qPrintable(check->text());
    }
    for (const auto *radio : wnd.GetQWidget()->findChildren<QRadioButton *>()) {
        radios << radio->text();
        EXPECT_EQ(radio->isChecked(), radio->text() == "ASCII");
    }
    for (const auto *button : wnd.GetQWidget()->findChildren<QPushButton *>()) {
        buttons << button->text();
    }
    EXPECT_EQ(groups, QStringList({"Port Selection", "Send", "Send File", "Transcript"}));
    EXPECT_EQ(labels, QStringList({"Port", "Speed", "Send as", "Data", "Append", "Hex", "File", "Display format"}));
    EXPECT_EQ(checks, QStringList({"Loopback", "CR", "LF", "NULL", "Other", "Loopback validation", "Echo sent data"}));
    EXPECT_EQ(radios, QStringList({"ASCII", "Hexadecimal", "ASCII", "Hexadecimal", "Hybrid"}));
    EXPECT_EQ(buttons, QStringList({"Send", "...", "Send file", "Clear"}));
    EXPECT_EQ(wnd.PortCombo()->minimumWidth(), 125);
    EXPECT_EQ(wnd.SpeedCombo()->minimumWidth(), 125);
    EXPECT_EQ(wnd.Find<QPushButton>("BrowseButton")->maximumWidth(), 30);
    EXPECT_EQ(wnd.View()->font().family(), "Monospace");
    EXPECT_EQ(wnd.Find<QLabel>("")->buddy(), wnd.PortCombo());
}

TEST(SerialTerminalWnd, EveryControlHasANameAndIsReachedByTheKeyboard)
{
    Terminal wnd;
    wnd.ShowModeless();
    for (const auto *child : wnd.GetQWidget()->findChildren<QWidget *>()) {
        const bool popup = child->window() != wnd.GetQWidget();
        if (!popup && child->focusPolicy() & Qt::TabFocus) {
            EXPECT_FALSE(child->accessibleName().isEmpty()) << child->metaObject()->className();
            EXPECT_FALSE(child->objectName().isEmpty()) << child->metaObject()->className();
        }
    }
    for (const char *name : {"PortCombo", "DataEdit", "SendButton", "FileEdit", "ClearButton", "Transcript"}) {
        EXPECT_TRUE(wnd.Find<QWidget>(name)->focusPolicy() & Qt::TabFocus) << name;
    }
}

TEST(SerialTerminalWnd, ItsMetaObjectsHaveTheSlotsAndSignalsInOrder)
{
    EXPECT_EQ(
        MethodsOf(SerialTerminalWnd::staticMetaObject, QMetaMethod::Slot),
        QStringList({"OnBnClickedOthercheck(int)", "OnBnClickedSend()", "OnBnClickedClear()",
                     "OnAsciiFormatToggled(bool)", "OnHexadecimalFormatToggled(bool)", "OnHybridFormatToggled(bool)",
                     "OnPortChange(int)", "OnSpeedChange(int)", "OnLoopbackChange(bool)", "OnBrowseFile()",
                     "OnSendFile()", "OnSendFileCompleted(bool)", "Render(uint8_t*,uint32_t)", "RenderText(QString)"}));
    EXPECT_EQ(MethodsOf(SendFileThread::staticMetaObject, QMetaMethod::Signal),
              QStringList({"completed(bool)", "printBytes(uint8_t*,uint32_t)", "printText(QString)"}));
    const SendFileThread thread(nullptr, QString());
    EXPECT_TRUE(QMetaType::fromName("uint32_t").isValid());
}

// The device and its ports

TEST(SerialTerminalPorts, AreRecordedWithoutADevice)
{
    Terminal wnd;
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Serial0);
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Bulk3).GetCode(), 0u);
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk3);
    EXPECT_EQ(wnd.SetSerialPort(PortOf(77)).GetCode(), 0u);
    EXPECT_EQ(wnd.GetSerialPort(), PortOf(77));
    EXPECT_EQ(wnd.SetDevice(nullptr).GetCode(), 0u);
    wnd.ShowModeless();
    EXPECT_TRUE(wnd.Ports().isEmpty());
    EXPECT_FALSE(wnd.IsEnabled("DataEdit"));
}

TEST(SerialTerminalPorts, AllButTheLastBulkPortAreOffered)
{
    SerialDevice device{std::set<LxDeviceSerial>()};
    for (uint32_t port = 0; port <= 9; ++port) {
        device.mPorts.insert(PortOf(port));
    }
    Terminal wnd;
    EXPECT_EQ(wnd.SetDevice(&device).GetCode(), 0u);
    wnd.ShowModeless();
    EXPECT_EQ(wnd.Ports(),
              QStringList({"Serial0", "Serial1", "Bulk0", "Bulk1", "Bulk2", "Bulk3", "Bulk4", "Bulk5", "Bulk6"}));
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(wnd.PortCombo()->itemData(i).toInt(), i);
    }
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Bulk7).GetCode(), 0u) << "the host can choose it nevertheless";
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk7);
    EXPECT_EQ(wnd.PortCombo()->currentIndex(), -1);
    EXPECT_EQ(device.Opened(), std::vector({LxDeviceSerial::Serial0, LxDeviceSerial::Bulk7}));
}

TEST(SerialTerminalPorts, OfABulkOnlyDeviceAreBulkPorts)
{
    SerialDevice device({LxDeviceSerial::Bulk2, LxDeviceSerial::Bulk5});
    Terminal wnd;
    EXPECT_EQ(wnd.SetDevice(&device).GetCode(), 0u);
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Serial1).GetCode(), 26u);
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Serial0) << "nothing changes";
    wnd.ShowModeless();
    EXPECT_EQ(wnd.Ports(), QStringList({"Bulk2", "Bulk5"}));
    EXPECT_EQ(wnd.PortCombo()->currentText(), "Bulk2");
    EXPECT_EQ(device.Opened(), std::vector({LxDeviceSerial::Bulk2})) << "the port that is shown is open";
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk2);
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Serial1).GetCode(), 26u);
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk2);
    EXPECT_EQ(device.OpenCount(), 1u);
}

TEST(SerialTerminalPorts, ADeviceWithoutPortsIsRefused)
{
    SerialDevice none{std::set<LxDeviceSerial>()};
    SerialDevice last({LxDeviceSerial::Bulk7});
    Terminal wnd;
    EXPECT_EQ(wnd.SetDevice(&none).GetCode(), 25u) << "before the window has controls";
    wnd.ShowModeless();
    EXPECT_EQ(wnd.SetDevice(&none).GetCode(), 25u);
    EXPECT_EQ(wnd.SetDevice(&last).GetCode(), 25u) << "the one port that is not offered";
    EXPECT_TRUE(wnd.Ports().isEmpty());
    EXPECT_FALSE(wnd.IsEnabled("SpeedCombo"));
    EXPECT_FALSE(wnd.IsEnabled("LoopbackCheck"));
}

TEST(SerialTerminalPorts, TheSelectedOneIsShownAndOpened)
{
    SerialDevice device({LxDeviceSerial::Serial0, LxDeviceSerial::Serial1, LxDeviceSerial::Bulk3});
    Terminal wnd;
    wnd.SetSerialPort(LxDeviceSerial::Bulk3);
    wnd.SetDevice(&device);
    EXPECT_EQ(device.OpenCount(), 0u) << "a closed window opens nothing";
    wnd.ShowModeless();
    EXPECT_EQ(wnd.PortCombo()->currentText(), "Bulk3");
    EXPECT_EQ(device.Opened(), std::vector({LxDeviceSerial::Bulk3}));
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk3);
}

TEST(SerialTerminalPorts, SettingOneSelectsTheEntryAtItsNumber)
{
    SerialDevice device({LxDeviceSerial::Serial1, LxDeviceSerial::Bulk0, LxDeviceSerial::Bulk4});
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    ASSERT_EQ(wnd.Ports(), QStringList({"Serial1", "Bulk0", "Bulk4"}));
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Serial1).GetCode(), 0u);
    EXPECT_EQ(wnd.PortCombo()->currentText(), "Bulk0") << "the entry whose index is 1";
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Serial1);
    EXPECT_EQ(device.Port().mPort, LxDeviceSerial::Serial1) << "what was set is open";
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Bulk4).GetCode(), 0u);
    EXPECT_EQ(wnd.PortCombo()->currentIndex(), -1) << "there is no entry with index 6";
    EXPECT_EQ(device.Opened(), std::vector({LxDeviceSerial::Serial1, LxDeviceSerial::Serial1, LxDeviceSerial::Bulk4}))
        << "opened once a call";
    EXPECT_EQ(device.OpenCount(), 1u);
}

TEST(SerialTerminalPorts, TheUserChangesThePort)
{
    const TestCamera features = GrabberFeatures();
    SerialDevice device({LxDeviceSerial::Serial0, LxDeviceSerial::Bulk2, LxDeviceSerial::Bulk5});
    device.mParameters = features.mParameters;
    features.mMemory->Poke32(0x1008, 7);
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    EXPECT_EQ(features.mMemory->Peek32(0x1008), 7u) << "filling the list selects nothing";
    wnd.PortCombo()->setFocus();
    QTest::keyClick(wnd.PortCombo(), Qt::Key_Down);
    EXPECT_EQ(features.mMemory->Peek32(0x1008), 2u);
    QTest::keyClick(wnd.PortCombo(), Qt::Key_Down);
    EXPECT_EQ(features.mMemory->Peek32(0x1008), 5u);
    EXPECT_EQ(wnd.GetSerialPort(), LxDeviceSerial::Bulk5);
    EXPECT_EQ(device.Opened(), std::vector({LxDeviceSerial::Serial0, LxDeviceSerial::Bulk2, LxDeviceSerial::Bulk5}));
    EXPECT_EQ(device.OpenCount(), 1u);
    QTest::keyClick(wnd.PortCombo(), Qt::Key_Home);
    EXPECT_EQ(features.mMemory->Peek32(0x1008), 5u) << "a UART needs no selector";
    EXPECT_EQ(device.Port().mPort, LxDeviceSerial::Serial0);
}

TEST(SerialTerminalPorts, AnIndexBelowZeroIsIgnored)
{
    SerialDevice device;
    SerialTerminalWnd wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    wnd.OnPortChange(-1);
    EXPECT_EQ(device.Opened().size(), 1u);
    wnd.OnPortChange(0);
    EXPECT_EQ(device.Opened().size(), 2u);
}

TEST(SerialTerminalPorts, AnotherDeviceTakesTheOpenWindow)
{
    SerialDevice first;
    SerialDevice second({LxDeviceSerial::Serial1});
    Terminal wnd;
    wnd.SetDevice(&first);
    wnd.ShowModeless();
    ASSERT_EQ(first.OpenCount(), 1u);
    wnd.SetDevice(&second);
    EXPECT_EQ(first.OpenCount(), 0u);
    EXPECT_EQ(second.OpenCount(), 1u);
    EXPECT_EQ(wnd.Ports(), QStringList({"Serial1"}));
    second.Port().Deliver("second");
    EXPECT_TRUE(wnd.Shows("second"));
    wnd.SetDevice(nullptr);
    EXPECT_EQ(second.OpenCount(), 0u);
    EXPECT_TRUE(wnd.Ports().isEmpty());
    EXPECT_FALSE(wnd.IsEnabled("SendButton"));
}

TEST(SerialTerminalPorts, APortThatCannotBeOpenedLeavesTheControlsDisabled)
{
    SerialDevice device({LxDeviceSerial::Serial0, LxDeviceSerial::Serial1});
    device.mOpenResult = LxResultCode::Busy;
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    const char *const controls[] = {"DataEdit",     "SendButton",     "FileEdit",
                                    "BrowseButton", "SendFileButton", "ValidationCheck"};
    EXPECT_EQ(device.mFailedOpens, 1);
    for (const char *name : controls) {
        EXPECT_FALSE(wnd.IsEnabled(name)) << name;
    }
    device.mOpenResult = LxResult();
    wnd.PortCombo()->setFocus();
    QTest::keyClick(wnd.PortCombo(), Qt::Key_Down);
    for (const char *name : controls) {
        EXPECT_TRUE(wnd.IsEnabled(name)) << name;
    }
    wnd.Close();
    EXPECT_EQ(device.OpenCount(), 0u);
}

TEST_F(TerminalTest, TheOtherTrailerIsEnabledByItsBox)
{
    auto *label =
        qobject_cast<QLabel *>(mWnd.Find<QLineEdit>("OtherEdit")->parentWidget()->findChildren<QLabel *>()[3]);
    ASSERT_EQ(label->text(), "Hex");
    EXPECT_FALSE(mWnd.IsEnabled("OtherEdit"));
    EXPECT_FALSE(label->isEnabled());
    mWnd.Mark("OtherCheck");
    EXPECT_TRUE(mWnd.IsEnabled("OtherEdit"));
    EXPECT_TRUE(label->isEnabled());
    mWnd.Mark("OtherCheck");
    EXPECT_FALSE(mWnd.IsEnabled("OtherEdit"));
}

// Speed and loopback

TEST(SerialTerminalSpeed, IsShownAndChangedByTheUser)
{
    const TestCamera features = GrabberFeatures();
    features.mMemory->Poke32(0x1000, 1);
    features.mMemory->Poke32(0x100C, 4800);
    SerialDevice device({LxDeviceSerial::Serial0, LxDeviceSerial::Serial1, LxDeviceSerial::Bulk0});
    device.mParameters = features.mParameters;
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    EXPECT_EQ(wnd.Speeds(), QStringList({"Baud9600", "Baud19200", "Baud115200"}));
    EXPECT_EQ(wnd.SpeedCombo()->currentText(), "Baud19200");
    wnd.SpeedCombo()->setFocus();
    QTest::keyClick(wnd.SpeedCombo(), Qt::Key_Down);
    EXPECT_EQ(features.mMemory->Peek32(0x1000), 2u);

    wnd.PortCombo()->setCurrentIndex(1);
    EXPECT_FALSE(wnd.IsEnabled("SpeedCombo")) << "Uart1BaudRate is missing";
    EXPECT_TRUE(wnd.Speeds().isEmpty());
    EXPECT_FALSE(wnd.IsEnabled("LoopbackCheck"));

    wnd.PortCombo()->setCurrentIndex(2);
    EXPECT_TRUE(wnd.IsEnabled("SpeedCombo"));
    EXPECT_EQ(wnd.SpeedCombo()->currentText(), "4800");
    QTest::keyClick(wnd.SpeedCombo(), Qt::Key_Down);
    EXPECT_EQ(features.mMemory->Peek32(0x100C), 9600u);
}

TEST(SerialTerminalSpeed, GoesBackWhenTheDeviceRefuses)
{
    const TestCamera features = GrabberFeatures();
    SerialDevice device;
    device.mParameters = features.mParameters;
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    features.mMemory->OnWrite(0x1000, 4, [](LxDetail::MemoryPort &aPort, uint64_t, uint32_t) {
        aPort.Poke32(0x1000, 0);
        return LxResult(LxResultCode::AccessDenied);
    });
    ASSERT_EQ(wnd.SpeedCombo()->currentText(), "Baud9600");
    wnd.SpeedCombo()->setCurrentIndex(2);
    EXPECT_EQ(wnd.SpeedCombo()->currentText(), "Baud9600");
    features.mMemory->OnWrite(0x1004, 4, [](LxDetail::MemoryPort &aPort, uint64_t, uint32_t) {
        aPort.Poke32(0x1004, 0);
        return LxResult(LxResultCode::AccessDenied);
    });
    wnd.Mark("LoopbackCheck");
    EXPECT_FALSE(wnd.Check("LoopbackCheck")->isChecked());
}

TEST(SerialTerminalLoopback, IsShownAndChangedByTheUser)
{
    const TestCamera features = GrabberFeatures();
    features.mMemory->Poke32(0x1010, 1);
    SerialDevice device({LxDeviceSerial::Serial0, LxDeviceSerial::Bulk0});
    device.mParameters = features.mParameters;
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    EXPECT_TRUE(wnd.IsEnabled("LoopbackCheck"));
    EXPECT_FALSE(wnd.Check("LoopbackCheck")->isChecked());
    wnd.Mark("LoopbackCheck");
    EXPECT_EQ(features.mMemory->Peek32(0x1004), 1u);
    wnd.PortCombo()->setCurrentIndex(1);
    EXPECT_TRUE(wnd.Check("LoopbackCheck")->isChecked());
    wnd.Mark("LoopbackCheck");
    EXPECT_EQ(features.mMemory->Peek32(0x1010), 0u);
}

TEST(SerialTerminalSpeed, ADeviceWithoutFeaturesHasNone)
{
    SerialDevice device({LxDeviceSerial::Bulk0});
    Terminal wnd;
    wnd.SetDevice(&device);
    wnd.ShowModeless();
    EXPECT_EQ(device.OpenCount(), 1u);
    EXPECT_FALSE(wnd.IsEnabled("SpeedCombo"));
    EXPECT_FALSE(wnd.IsEnabled("LoopbackCheck"));
}

// Sending typed bytes

TEST_F(TerminalTest, SendsTextAndTheTrailersInOrder)
{
    mWnd.Send("plain");
    EXPECT_EQ(Port().Written(), "plain");
    mWnd.Mark("CRCheck");
    mWnd.Mark("LFCheck");
    mWnd.Mark("NullCheck");
    mWnd.Send("A");
    EXPECT_EQ(Port().Written(), std::string("plainA\r\n\0", 9));
    mWnd.Mark("OtherCheck");
    mWnd.Type("OtherEdit", "ab 0");
    mWnd.Send("B");
    EXPECT_EQ(Port().Written(), std::string("plainA\r\n\0B\r\n\0\xAB\0", 15));
    EXPECT_EQ(Port().WriteSizes(), std::vector<uint32_t>({5, 4, 6})) << "one write each";
    EXPECT_EQ(mWnd.Transcript(), "") << "no echo unless it is asked for";
}

TEST_F(TerminalTest, EnterInTheDataSendsIt)
{
    mWnd.Type("DataEdit", "once");
    QTest::keyClick(mWnd.Find<QLineEdit>("DataEdit"), Qt::Key_Return);
    EXPECT_EQ(Port().Written(), "once");
    EXPECT_TRUE(mWnd.IsVisible());
}

TEST_F(TerminalTest, SendsHexadecimalBytes)
{
    mWnd.Mark("SendAsHexadecimal");
    mWnd.Send("03 64 0FF ab");
    EXPECT_EQ(Port().Written(), "\x03\x64\xFF\xAB");
}

TEST_F(TerminalTest, RefusesWrongHexadecimalData)
{
    mWnd.Mark("SendAsHexadecimal");
    for (const char *text : {"03  64", "100", " 03", "G", "hello", "-1", "\u0663"}) {
        const ExpectedBox box;
        mWnd.Send(text);
        EXPECT_TRUE(box.WasShown()) << text;
        EXPECT_EQ(box.Title(), "Error");
        EXPECT_EQ(box.Text(), QString("Error parsing send data string.") + Hint);
    }
    EXPECT_EQ(Port().Written(), "");
}

TEST_F(TerminalTest, TheMessageIsCritical)
{
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    OnNextModal([&icon](QWidget *aWidget) {
        icon = qobject_cast<QMessageBox *>(aWidget)->icon();
        aWidget->close();
    });
    mWnd.Mark("SendAsHexadecimal");
    mWnd.Send("x");
    EXPECT_EQ(icon, QMessageBox::Critical);
}

TEST_F(TerminalTest, RefusesAWrongTrailer)
{
    mWnd.Mark("EchoCheck");
    mWnd.Mark("OtherCheck");
    mWnd.Type("OtherEdit", "0d 100");
    const ExpectedBox box;
    mWnd.Send("A");
    EXPECT_TRUE(box.WasShown());
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), QString("Error parsing other trailer string.") + Hint);
    EXPECT_EQ(Port().Written(), "");
    mWnd.Type("OtherEdit", "0d");
    mWnd.Send("B");
    EXPECT_EQ(Port().Written(), "B\r");
    EXPECT_TRUE(mWnd.Shows("B\r")) << "and what was refused is not echoed";
}

TEST_F(TerminalTest, CharactersBeyondLatin1AreSentAsZero)
{
    mWnd.Send("\u00E9\u0100\u20ACx");
    EXPECT_EQ(Port().Written(), std::string("\xE9\0\0x", 4));
}

TEST_F(TerminalTest, NothingIsSentForAnEmptyText)
{
    mWnd.Send("");
    EXPECT_EQ(Port().Written(), "");
    mWnd.Mark("SendAsHexadecimal");
    mWnd.Mark("CRCheck");
    mWnd.Send("");
    EXPECT_EQ(Port().Written(), "\r");
}

TEST_F(TerminalTest, EchoesWhatItSends)
{
    mWnd.Mark("EchoCheck");
    mWnd.Send("echo");
    EXPECT_TRUE(mWnd.Shows("echo"));
    EXPECT_EQ(Port().Written(), "echo");
}

TEST_F(TerminalTest, TheCursorIsBusyWhileItWrites)
{
    Qt::CursorShape shape = Qt::ArrowCursor;
    Port().SetObserver([&](bool aWriting) {
        if (aWriting) {
            shape = mWnd.GetQWidget()->cursor().shape();
        }
    });
    mWnd.Send("data");
    EXPECT_EQ(shape, Qt::WaitCursor);
    EXPECT_EQ(mWnd.GetQWidget()->cursor().shape(), Qt::ArrowCursor);
    Port().SetObserver(nullptr);
}

TEST_F(TerminalTest, AFailingWriteIsSilent)
{
    Port().FailWrites(LxResultCode::NotConnected);
    mWnd.Send("lost");
    EXPECT_EQ(Port().Written(), "");
    EXPECT_EQ(mWnd.GetQWidget()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(TerminalTest, ChoosesAFile)
{
    QString title, folder;
    QStringList filters;
    OnNextModal([&](QWidget *aWidget) {
        auto *dialog = qobject_cast<QFileDialog *>(aWidget);
        title = dialog->windowTitle();
        folder = dialog->directory().path();
        filters = dialog->nameFilters();
        dialog->reject();
    });
    mWnd.Find<QLineEdit>("FileEdit")->setText("before");
    mWnd.Click("BrowseButton");
    EXPECT_EQ(title, "Send file data");
    EXPECT_EQ(folder, "/home");
    EXPECT_LE(filters.size(), 1);
    EXPECT_EQ(mWnd.Find<QLineEdit>("FileEdit")->text(), "before") << "the dialog was cancelled";
    OnNextModal([](QWidget *aWidget) {
        auto *dialog = qobject_cast<QFileDialog *>(aWidget);
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText("/etc/hostname");
        QMetaObject::invokeMethod(dialog, "accept");
    });
    mWnd.Click("BrowseButton");
    EXPECT_EQ(mWnd.Find<QLineEdit>("FileEdit")->text(), "/etc/hostname");
}
