#include "LxGUI/RegisterInterface/RegisterInterfaceWnd.h"

#include <gtest/gtest.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "GuiTest.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/RegisterInterface/HexField.h"

namespace
{

/// A device of registers in memory that records the calls.
class FakeDevice : public LxDeviceGEV
{
public:
    struct Access
    {
        int64_t mAddress;
        uint32_t mValue;
        bool mWait;
    };

    LxResult Disconnect() override { return {}; }
    bool IsConnected() const override { return true; }
    LxString GetUniqueID() const override { return "fake"; }
    LxDeviceAccess GetAccess() const override { return LxDeviceAccess::Control; }
    LxGenParameterArray *GetParameters() override { return nullptr; }
    LxString GetGenICamXML() const override { return {}; }
    LxResult ReadMemory(int64_t, uint8_t *, uint64_t) override { return LxResultCode::NotSupported; }
    LxResult WriteMemory(int64_t, const uint8_t *, uint64_t) override { return LxResultCode::NotSupported; }
    LxResult RegisterEventSink(LxDeviceEventSink *) override { return {}; }
    LxResult UnregisterEventSink(LxDeviceEventSink *) override { return {}; }

    LxResult ReadRegister(int64_t aAddress, uint32_t &aValue) override
    {
        mReads.push_back(aAddress);
        if (mResult.IsOK()) {
            aValue = mRegisters[aAddress];
        }
        return mResult;
    }

    LxResult WriteRegister(int64_t aAddress, uint32_t aValue, bool aWait) override
    {
        mWrites.push_back({aAddress, aValue, aWait});
        return mResult;
    }

    std::map<int64_t, uint32_t> mRegisters;
    LxResult mResult;
    std::vector<int64_t> mReads;
    std::vector<Access> mWrites;
};

class RegisterWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        mWnd.SetDevice(&mDevice);
        Show();
    }

    void Show() { ASSERT_TRUE(mWnd.ShowModeless().IsOK()); }
    QLineEdit *Edit(const char *aName) { return mWnd.GetQWidget()->findChild<QLineEdit *>(aName); }
    QString Text(const char *aName) { return Edit(aName)->text(); }
    void Type(const char *aName, const char *aText)
    {
        Edit(aName)->selectAll();
        QTest::keyClick(Edit(aName), Qt::Key_Delete);
        QTest::keyClicks(Edit(aName), aText);
    }
    void Click(const char *aName)
    {
        QTest::mouseClick(mWnd.GetQWidget()->findChild<QPushButton *>(aName), Qt::LeftButton);
    }
    void Read(const char *aAddress)
    {
        Type("ReadAddressEdit", aAddress);
        Click("ReadButton");
    }

    FakeDevice mDevice;
    LxRegisterInterfaceWnd mWnd;
};

}  // namespace

TEST_F(RegisterWindow, WhatIsTypedFirstIsTheReadAddress)
{
    for (const char *address : {"a110", "938"}) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(mWnd.GetQWidget()));
        QTest::keyClicks(mWnd.GetQWidget()->window()->focusWidget(), address);
        EXPECT_EQ(Text("ReadAddressEdit"), address) << "in place of the zeros";
        mWnd.Close();
        Show();
    }
}

TEST_F(RegisterWindow, IsTitledAndOfAFixedSize)
{
    EXPECT_STREQ(mWnd.GetTitle().GetAscii(), "Register Interface");
    QWidget *widget = mWnd.GetQWidget();
    EXPECT_EQ(widget->windowTitle(), "Register Interface");
    EXPECT_EQ(widget->size(), QSize(350, 180));
    EXPECT_EQ(widget->minimumSize(), widget->maximumSize());
    EXPECT_TRUE(widget->windowFlags() & Qt::CustomizeWindowHint);
    EXPECT_FALSE(widget->windowFlags() & Qt::WindowContextHelpButtonHint);
}

TEST_F(RegisterWindow, HasItsTextsInOrder)
{
    QStringList titles;
    for (const QGroupBox *group : mWnd.GetQWidget()->findChildren<QGroupBox *>()) {
        titles << group->title();
    }
    EXPECT_EQ(titles, (QStringList{"Read", "Write"}));
    QStringList labels;
    for (const QLabel *label : mWnd.GetQWidget()->findChildren<QLabel *>()) {
        labels << label->text();
    }
    labels.sort();
    EXPECT_EQ(labels,
              (QStringList{"Address", "Address", "Result", "Result", "Value", "Value", "hex", "hex", "hex", "hex"}));
    const auto y = [this](const char *aName) {
        return mWnd.GetQWidget()->findChild<QWidget *>(aName)->mapTo(mWnd.GetQWidget(), QPoint(0, 0)).y();
    };
    EXPECT_LT(y("ReadAddressEdit"), y("ReadButton"));
    EXPECT_LT(y("ReadButton"), y("ReadValueEdit"));
    EXPECT_LT(y("ReadValueEdit"), y("ReadResultEdit"));
    EXPECT_LT(y("WriteAddressEdit"), y("WriteValueEdit"));
    EXPECT_LT(y("WriteValueEdit"), y("WriteButton"));
    EXPECT_LT(y("WriteButton"), y("WriteResultEdit"));
}

TEST_F(RegisterWindow, OutputFieldsAreDisabledInputFieldsNot)
{
    for (const char *name : {"ReadValueEdit", "ReadResultEdit", "WriteResultEdit"}) {
        EXPECT_FALSE(Edit(name)->isEnabled()) << name;
        EXPECT_EQ(Text(name), "") << name;
    }
    for (const char *name : {"ReadAddressEdit", "WriteAddressEdit", "WriteValueEdit"}) {
        EXPECT_TRUE(Edit(name)->isEnabled()) << name;
        EXPECT_EQ(Text(name), "00000000") << name;
    }
}

TEST_F(RegisterWindow, EveryControlHasAnAccessibleName)
{
    const QList<QWidget *> controls = mWnd.GetQWidget()->findChildren<QWidget *>(QRegularExpression("(Edit|Button)$"));
    EXPECT_EQ(controls.size(), 8);
    for (const QWidget *control : controls) {
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    }
}

TEST_F(RegisterWindow, TabGoesFromTheReadAddressThroughToTheWriteButton)
{
    QStringList order;
    QWidget *first = Edit("ReadAddressEdit");
    mWnd.GetQWidget()->activateWindow();
    ASSERT_TRUE(WaitForGui([first] { return first->window()->isActiveWindow(); }));
    first->setFocus();
    QWidget *widget = first;
    do {
        order << widget->objectName();
        QTest::keyClick(widget, Qt::Key_Tab);
        widget = QApplication::focusWidget();
        ASSERT_NE(widget, nullptr);
    } while (widget != first && order.size() < 20);
    EXPECT_EQ(order,
              (QStringList{"ReadAddressEdit", "ReadButton", "WriteAddressEdit", "WriteValueEdit", "WriteButton"}));
}

TEST_F(RegisterWindow, SlotsAreReadAndWriteInThatOrder)
{
    const QMetaObject &meta = RegisterInterfaceWnd::staticMetaObject;
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 2);
    EXPECT_EQ(meta.method(meta.methodOffset()).methodSignature(), "OnReadButtonClicked()");
    EXPECT_EQ(meta.method(meta.methodOffset() + 1).methodSignature(), "OnWriteButtonClicked()");
}

TEST_F(RegisterWindow, ReadsTheRegisterAtATypedAddress)
{
    mDevice.mRegisters[0xAB] = 0xAB;
    Read(" 0xab ");
    EXPECT_EQ(mDevice.mReads, std::vector<int64_t>{0xAB});
    EXPECT_EQ(Text("ReadValueEdit"), "000000AB");
    EXPECT_EQ(Text("ReadResultEdit"), LxResult(0).GetCodeString().GetAscii());
    EXPECT_EQ(Text("ReadAddressEdit"), " 0xab ");
}

TEST_F(RegisterWindow, PassesAHighAddressWithoutASign)
{
    Read("FFFFFFFC");
    EXPECT_EQ(mDevice.mReads, std::vector<int64_t>{0xFFFFFFFC});
}

TEST_F(RegisterWindow, ShowsAReadZeroWithEightDigits)
{
    Read("0");
    EXPECT_EQ(Text("ReadValueEdit"), "00000000");
}

TEST_F(RegisterWindow, AFailedReadEmptiesTheValueAndShowsTheCode)
{
    Read("4");
    ASSERT_EQ(Text("ReadValueEdit"), "00000000");
    mDevice.mResult = LxResult(LxResultCode::Timeout, "no answer");
    Click("ReadButton");
    EXPECT_EQ(Text("ReadValueEdit"), "");
    EXPECT_EQ(Text("ReadResultEdit"), LxResult(LxResultCode::Timeout).GetCodeString().GetAscii());
}

TEST_F(RegisterWindow, AnUnreadableReadAddressWarnsAndChangesNothing)
{
    mDevice.mRegisters[4] = 0x1234;
    Read("4");
    const QString result = Text("ReadResultEdit");
    ExpectedBox box;
    Read("xyz");
    EXPECT_TRUE(box.WasShown());
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Could not parse read address.");
    EXPECT_EQ(mDevice.mReads.size(), 1u);
    EXPECT_EQ(Text("ReadValueEdit"), "00001234");
    EXPECT_EQ(Text("ReadResultEdit"), result);
}

TEST_F(RegisterWindow, WarningsBelongToItsWidgetAndHaveOneButton)
{
    OnNextModal([this](QWidget *aModal) {
        auto *box = qobject_cast<QMessageBox *>(aModal);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->parentWidget(), mWnd.GetQWidget());
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
        EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
        box->accept();
    });
    Read("");
    EXPECT_TRUE(mDevice.mReads.empty());
}

TEST_F(RegisterWindow, ThePrefixAloneIsReadOrRefusedAsTheScanDoes)
{
    uint32_t value = 0;
    const bool isNumber = ParseHexField("0X", value);
    std::optional<ExpectedBox> box;
    if (!isNumber) {
        box.emplace();
    }
    Read("0x");
    EXPECT_EQ(mDevice.mReads, isNumber ? std::vector<int64_t>{value} : std::vector<int64_t>());
    EXPECT_TRUE(!box || box->WasShown());
}

TEST_F(RegisterWindow, WritesWithMoreThanEightDigitsStillReachTheDevice)
{
    Type("WriteAddressEdit", "123456789");
    Type("WriteValueEdit", "123456789");
    Click("WriteButton");
    EXPECT_EQ(mDevice.mWrites.size(), 1u);
}

TEST_F(RegisterWindow, RowsOfTheTwoGroupsAreLevel)
{
    const auto y = [this](const char *aName) {
        return mWnd.GetQWidget()->findChild<QWidget *>(aName)->mapTo(mWnd.GetQWidget(), QPoint(0, 0)).y();
    };
    EXPECT_EQ(y("ReadAddressEdit"), y("WriteAddressEdit"));
    EXPECT_NEAR(y("ReadButton"), y("WriteValueEdit"), 2);
    EXPECT_NEAR(y("ReadValueEdit"), y("WriteButton"), 2);
    EXPECT_EQ(y("ReadResultEdit"), y("WriteResultEdit"));
}

TEST_F(RegisterWindow, MoreThanEightDigitsStillReadTheDevice)
{
    Read("1234567890");
    EXPECT_EQ(mDevice.mReads.size(), 1u);
}

TEST_F(RegisterWindow, WritesTheTypedValueAndWaitsForTheAcknowledge)
{
    Type("WriteAddressEdit", "0xd08");
    Type("WriteValueEdit", " 12g");
    Click("WriteButton");
    ASSERT_EQ(mDevice.mWrites.size(), 1u);
    EXPECT_EQ(mDevice.mWrites[0].mAddress, 0xD08);
    EXPECT_EQ(mDevice.mWrites[0].mValue, 0x12u);
    EXPECT_TRUE(mDevice.mWrites[0].mWait);
    EXPECT_EQ(Text("WriteResultEdit"), LxResult(0).GetCodeString().GetAscii());
    EXPECT_EQ(Text("WriteValueEdit"), " 12g") << "the value must stay as typed";
}

TEST_F(RegisterWindow, AFailedWriteShowsTheCode)
{
    mDevice.mResult = LxResult(LxResultCode::WriteProtected, "%1\nread only");
    Click("WriteButton");
    EXPECT_EQ(Text("WriteResultEdit"), LxResult(LxResultCode::WriteProtected).GetCodeString().GetAscii());
}

TEST_F(RegisterWindow, AnUnreadableWriteAddressWarnsFirst)
{
    Type("WriteAddressEdit", "q");
    Type("WriteValueEdit", "q");
    ExpectedBox box;
    Click("WriteButton");
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Could not parse write address.");
    EXPECT_TRUE(mDevice.mWrites.empty());
}

TEST_F(RegisterWindow, AnUnreadableWriteValueWarnsAndKeepsTheResult)
{
    Click("WriteButton");
    const QString result = Text("WriteResultEdit");
    Type("WriteValueEdit", "-");
    ExpectedBox box;
    Click("WriteButton");
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Could not parse write value.");
    EXPECT_EQ(mDevice.mWrites.size(), 1u);
    EXPECT_EQ(Text("WriteResultEdit"), result);
}

TEST_F(RegisterWindow, ShowingAgainResetsTheInputsAndKeepsTheOutputs)
{
    mDevice.mRegisters[0x10] = 0xCAFE;
    Read("10");
    Type("WriteAddressEdit", "20");
    Type("WriteValueEdit", "30");
    Click("WriteButton");
    const QString ok = LxResult(0).GetCodeString().GetAscii();
    mWnd.Close();
    Show();
    EXPECT_EQ(Text("ReadAddressEdit"), "00000000");
    EXPECT_EQ(Text("WriteAddressEdit"), "00000000");
    EXPECT_EQ(Text("WriteValueEdit"), "00000000");
    EXPECT_EQ(Text("ReadValueEdit"), "0000CAFE");
    EXPECT_EQ(Text("ReadResultEdit"), ok);
    EXPECT_EQ(Text("WriteResultEdit"), ok);
    Click("ReadButton");
    EXPECT_EQ(mDevice.mReads.back(), 0) << "the buttons of the new content must work";
}

TEST_F(RegisterWindow, KeepsTheOutputsWhenAModalShowFollows)
{
    mDevice.mRegisters[0x10] = 0xCAFE;
    Read("10");
    mWnd.Close();
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_EQ(Text("ReadValueEdit"), "0000CAFE");
        EXPECT_EQ(aDialog->findChildren<QLineEdit *>().size(), 6);
        EXPECT_EQ(aDialog->size(), QSize(350, 180));
        QTest::keyClick(aDialog, Qt::Key_Escape);
    });
    EXPECT_EQ(mWnd.ShowModal().GetCode(), 0x4002u);
}

TEST_F(RegisterWindow, UsesTheDeviceSetLast)
{
    FakeDevice other;
    mWnd.SetDevice(&other);
    Read("4");
    EXPECT_TRUE(mDevice.mReads.empty());
    EXPECT_EQ(other.mReads.size(), 1u);
    mWnd.SetDevice(&mDevice);
}

TEST_F(RegisterWindow, WithoutADeviceSaysSo)
{
    Read("4");
    EXPECT_TRUE(mWnd.SetDevice(nullptr).IsOK());
    Click("ReadButton");
    EXPECT_EQ(Text("ReadValueEdit"), "");
    EXPECT_EQ(Text("ReadResultEdit"), "No device");
    Click("WriteButton");
    EXPECT_EQ(Text("WriteResultEdit"), "No device");
}

TEST_F(RegisterWindow, LeavesAHostWidgetsSizeAndFlagsAlone)
{
    QWidget host;
    host.resize(500, 400);
    const Qt::WindowFlags flags = host.windowFlags();
    ASSERT_TRUE(mWnd.Create(&host).IsOK());
    EXPECT_EQ(host.windowFlags(), flags);
    EXPECT_GT(host.maximumWidth(), 500);
    EXPECT_EQ(Text("ReadAddressEdit"), "00000000");
    Click("ReadButton");
    EXPECT_EQ(mDevice.mReads.size(), 1u);
    mWnd.Close();
}

TEST_F(RegisterWindow, SurvivesTheDeathOfTheHostWidget)
{
    auto host = std::make_unique<QWidget>();
    ASSERT_TRUE(mWnd.Create(host.get()).IsOK());
    host.reset();
    EXPECT_TRUE(mWnd.Close().IsOK());
}
