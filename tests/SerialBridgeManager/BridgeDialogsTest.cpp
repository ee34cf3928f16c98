#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "LxGUI/SerialBridgeManager/BaudRateSelectionDlg.h"
#include "LxGUI/SerialBridgeManager/SerialCOMPortConfigDlg.h"

namespace
{

QComboBox *Combo(QWidget &aDialog, const char *aName)
{
    return aDialog.findChild<QComboBox *>(aName);
}

/// "text=value;text=value;"
QString Items(const QComboBox *aCombo)
{
    QString text;
    for (int i = 0; i < aCombo->count(); ++i) {
        text += aCombo->itemText(i) + '=' + aCombo->itemData(i).toString() + ';';
    }
    return text;
}

void Click(QWidget &aDialog, QDialogButtonBox::StandardButton aButton)
{
    QTest::mouseClick(aDialog.findChild<QDialogButtonBox *>()->button(aButton), Qt::LeftButton);
}

void SaveScreenshot(QWidget &aWidget, const char *aName)
{
    const QByteArray folder = qgetenv("LXGUI_SCREENSHOTS");
    if (!folder.isEmpty()) {
        aWidget.grab().save(QString::fromLocal8Bit(folder) + '/' + aName + ".png");
    }
}

}  // namespace

TEST(COMPortDialogTest, OffersTheTables)
{
    SerialCOMPortConfigDlg dialog({}, {}, nullptr);
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Serial COM Port Configuration");
    EXPECT_EQ(Items(Combo(dialog, "BaudRateCombo")),
              "9600 baud=9600;14400 baud=14400;19200 baud=19200;28800 baud=28800;38400 baud=38400;57600 baud=57600;"
              "115200 baud=115200;230400 baud=230400;460800 baud=460800;921600 baud=921600;");
    EXPECT_EQ(Items(Combo(dialog, "ParityCombo")), "None=0;Even=1;Odd=2;");
    EXPECT_EQ(Items(Combo(dialog, "ByteSizeCombo")), "7 bits=7;8 bits=8;");
    EXPECT_EQ(Items(Combo(dialog, "StopBitsCombo")), "1 bit=1;2 bits=2;");
    QStringList labels;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        labels << label->text();
    }
    EXPECT_EQ(labels, QStringList({"Baud Rate:", "Parity:", "Byte Size:", "Stop Bits:"}));
    SaveScreenshot(dialog, "com-port-dialog");
}

TEST(COMPortDialogTest, ShowsTheConfigurationAndGivesItBack)
{
    const LxSerialPortConfiguration given{57600, LxSerialParity::Odd, 7, 2};
    SerialCOMPortConfigDlg dialog(given, {}, nullptr);
    dialog.show();
    EXPECT_EQ(Combo(dialog, "BaudRateCombo")->currentText(), "57600 baud");
    EXPECT_EQ(Combo(dialog, "ParityCombo")->currentText(), "Odd");
    EXPECT_EQ(Combo(dialog, "ByteSizeCombo")->currentText(), "7 bits");
    EXPECT_EQ(Combo(dialog, "StopBitsCombo")->currentText(), "2 bits");
    Click(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.Configuration().mBaudRate, 57600u);
    EXPECT_EQ(dialog.Configuration().mParity, LxSerialParity::Odd);
    EXPECT_EQ(dialog.Configuration().mByteSize, 7u);
    EXPECT_EQ(dialog.Configuration().mStopBits, 2u);
}

TEST(COMPortDialogTest, StoresWhatTheUserChooses)
{
    SerialCOMPortConfigDlg dialog({}, {}, nullptr);
    dialog.show();
    QTest::keyClick(Combo(dialog, "BaudRateCombo"), Qt::Key_Down);
    QTest::keyClick(Combo(dialog, "ParityCombo"), Qt::Key_Down);
    QTest::keyClick(Combo(dialog, "ByteSizeCombo"), Qt::Key_Up);
    QTest::keyClick(Combo(dialog, "StopBitsCombo"), Qt::Key_Down);
    EXPECT_EQ(dialog.Configuration().mBaudRate, 9600u) << "not before it is accepted";
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.Configuration().mBaudRate, 14400u);
    EXPECT_EQ(dialog.Configuration().mParity, LxSerialParity::Even);
    EXPECT_EQ(dialog.Configuration().mByteSize, 7u);
    EXPECT_EQ(dialog.Configuration().mStopBits, 2u);
}

TEST(COMPortDialogTest, CancelStoresNothing)
{
    SerialCOMPortConfigDlg dialog({}, {}, nullptr);
    dialog.show();
    QTest::keyClick(Combo(dialog, "BaudRateCombo"), Qt::Key_Down);
    Click(dialog, QDialogButtonBox::Cancel);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(dialog.Configuration().mBaudRate, 9600u);
}

TEST(COMPortDialogTest, SupportedRatesReplaceTheStandardOnes)
{
    SerialCOMPortConfigDlg dialog({115200, LxSerialParity::None, 8, 1}, {230400, 115200, 12345}, nullptr);
    EXPECT_EQ(Items(Combo(dialog, "BaudRateCombo")), "230400 baud=230400;115200 baud=115200;12345 baud=12345;");
    EXPECT_EQ(Combo(dialog, "BaudRateCombo")->currentText(), "115200 baud");
}

TEST(COMPortDialogTest, ARateThatIsNotListedBecomesTheFirst)
{
    for (const std::vector<uint32_t> &rates : {std::vector<uint32_t>(), std::vector<uint32_t>({19200, 38400})}) {
        SerialCOMPortConfigDlg dialog({1234, static_cast<LxSerialParity>(9), 5, 4}, rates, nullptr);
        dialog.show();
        EXPECT_EQ(Combo(dialog, "BaudRateCombo")->currentIndex(), 0);
        Click(dialog, QDialogButtonBox::Ok);
        EXPECT_EQ(dialog.Configuration().mBaudRate, rates.empty() ? 9600u : 19200u);
        EXPECT_EQ(dialog.Configuration().mParity, LxSerialParity::None);
        EXPECT_EQ(dialog.Configuration().mByteSize, 7u);
        EXPECT_EQ(dialog.Configuration().mStopBits, 1u);
    }
}

TEST(BaudRateDialogTest, OffersItsOwnTable)
{
    BaudRateSelectionDlg dialog(9600, nullptr);
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Baud Rate Selection");
    EXPECT_TRUE(dialog.isModal());
    EXPECT_EQ(dialog.findChild<QLabel *>()->text(), "Select Baud Rate:");
    EXPECT_EQ(Items(Combo(dialog, "BaudRateCombo")),
              "9600 baud=9600;19200 baud=19200;38400 baud=38400;57600 baud=57600;115200 baud=115200;"
              "230400 baud=230400;460800 baud=460800;921600 baud=921600;");
    EXPECT_EQ(Combo(dialog, "BaudRateCombo")->currentText(), "9600 baud");
    SaveScreenshot(dialog, "baud-rate-dialog");
    QTest::keyClick(Combo(dialog, "BaudRateCombo"), Qt::Key_Down);
    Click(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.BaudRate(), 19200u);
}

TEST(BaudRateDialogTest, PresetAndCancel)
{
    BaudRateSelectionDlg dialog(115200, nullptr);
    dialog.show();
    EXPECT_EQ(Combo(dialog, "BaudRateCombo")->currentText(), "115200 baud");
    QTest::keyClick(Combo(dialog, "BaudRateCombo"), Qt::Key_Down);
    Click(dialog, QDialogButtonBox::Cancel);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(dialog.BaudRate(), 115200u);
}
