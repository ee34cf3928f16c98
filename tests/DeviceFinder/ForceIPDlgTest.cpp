#include "LxGUI/DeviceFinder/ForceIPDlg.h"

#include <QtGui/QHelpEvent>
#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>

#include "FinderTest.h"
#include "IPConfigurationTexts.h"

namespace
{

QComboBox *Combo(const QWidget *aDialog)
{
    return Child<QComboBox>(aDialog, "NICIPAddress");
}

/// Types into a field as a user does, instead of what is in it.
void Type(QLineEdit *aEdit, const QString &aText)
{
    aEdit->setFocus();
    QTest::keyClick(aEdit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(aEdit, Qt::Key_Delete);
    QTest::keyClicks(aEdit, aText);
}

/// How often the red of the sign is in a part of a dialog.
int CountRed(const QImage &aImage, const QRect &aPart)
{
    int count = 0;
    for (int y = std::max(aPart.top(), 0); y <= std::min(aPart.bottom(), aImage.height() - 1); ++y) {
        for (int x = std::max(aPart.left(), 0); x <= std::min(aPart.right(), aImage.width() - 1); ++x) {
            // The group lies over it as a slight shade.
            const QColor color = aImage.pixelColor(x, y);
            count += color.red() > 160 && color.green() < 80 && color.blue() < 80;
        }
    }
    return count;
}

/// Answers the next message box and keeps what it showed.
struct AnsweredBox
{
    explicit AnsweredBox(QMessageBox::StandardButton aAnswer)
    {
        OnNextModal([this, aAnswer](QWidget *aWidget) {
            auto *box = qobject_cast<QMessageBox *>(aWidget);
            ASSERT_NE(box, nullptr) << "a modal widget that is no message box";
            mIcon = box->icon();
            mTitle = box->windowTitle();
            mText = box->text();
            mButtons = box->standardButtons();
            mDefault = box->standardButton(box->defaultButton());
            if (aAnswer == QMessageBox::NoButton) {
                QTest::keyClick(box, Qt::Key_Escape);
            }
            else {
                QTest::mouseClick(box->button(aAnswer), Qt::LeftButton);
            }
        });
    }

    QMessageBox::Icon mIcon = QMessageBox::NoIcon;
    QString mTitle;
    QString mText;
    QMessageBox::StandardButtons mButtons;
    QMessageBox::StandardButton mDefault = QMessageBox::NoButton;
};

}  // namespace

class ForceIPDlgTest : public testing::Test
{
protected:
    void SetAddresses(std::vector<std::pair<std::string, std::string>> aAddresses)
    {
        mAdapter.Change([&aAddresses](AdapterValues &aValues) { aValues.mAddresses = std::move(aAddresses); });
    }

    void Open() { Open(mInfo); }

    void Open(const LxDeviceInfo &aInfo)
    {
        mDialog = std::make_unique<ForceIPDlg>(aInfo, mAdapter);
        mDialog->show();
    }

    QLineEdit *Field(const char *aName) const { return Child<QLineEdit>(mDialog.get(), aName); }
    QString Text(const char *aName) const { return Field(aName)->text(); }
    void ClickOK() const { QTest::mouseClick(Child<QPushButton>(mDialog.get(), "OKButton"), Qt::LeftButton); }
    bool IsOpen() const { return mDialog->isVisible() && mDialog->result() == QDialog::Rejected; }

    /// The messages of the three fields.
    QStringList Messages() const
    {
        return {Field("DeviceIPAddress")->toolTip(), Field("DeviceSubnetMask")->toolTip(),
                Field("DeviceDefaultGateway")->toolTip()};
    }

    /// Where the sign beside a field is drawn: 20 behind the field, from its middle down; as in the group, and as far
    /// down as the other group is high.
    QRect MarkerRect(const char *aName) const
    {
        const QRect field = Field(aName)->geometry();
        const QRect above = Field("NICDefaultGateway")->geometry();
        return QRect(field.right() + 20, field.center().y() + above.top() + above.height() + 20, 12, 12);
    }

    /// Expects a whole sign beside each field that has a message, and no red anywhere else.
    void ExpectMarkersFollowMessages() const
    {
        const QImage sign(QStringLiteral(":LxGUI/res/Error.bmp"));
        const int whole = CountRed(sign, sign.rect());
        ASSERT_GT(whole, 50);
        const QImage image = Grab(mDialog.get());
        int all = 0;
        for (const char *name : {"DeviceIPAddress", "DeviceSubnetMask", "DeviceDefaultGateway"}) {
            const int count = CountRed(image, MarkerRect(name));
            EXPECT_EQ(count, Field(name)->toolTip().isEmpty() ? 0 : whole) << name;
            all += count;
        }
        EXPECT_EQ(CountRed(image, image.rect()), all);
    }

    using Calls = std::vector<std::string>;

    ScriptedDevices mDevices;
    ScriptedAdapter &mAdapter = mDevices->AddAdapter("a", [](AdapterValues &aValues) {
        aValues.mMACAddress = "02:00:00:00:00:0A";
        aValues.mAddresses = {{"192.168.1.10", "255.255.255.0"}, {"10.0.0.9", "255.0.0.0"}};
        aValues.mGateway = "192.168.1.1";
    });
    ScriptedGEV &mInfo = mDevices->AddGEV(mAdapter, "g");
    std::unique_ptr<ForceIPDlg> mDialog;
};

// What it shows

TEST_F(ForceIPDlgTest, HasTwoGroupsOfFourRows)
{
    Open();
    EXPECT_EQ(mDialog->windowTitle(), "Set IP Address");
    EXPECT_EQ(mDialog->size(), QSize(350, 400));
    EXPECT_EQ(mDialog->minimumSize(), mDialog->maximumSize());
    EXPECT_FALSE(mDialog->windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(mDialog->windowFlags() & Qt::CustomizeWindowHint);

    const QList<QGroupBox *> groups = mDialog->findChildren<QGroupBox *>();
    ASSERT_EQ(groups.size(), 2);
    EXPECT_EQ(groups[0]->title(), "NIC Configuration");
    EXPECT_EQ(groups[1]->title(), "GigE Vision Device IP Configuration");
    EXPECT_LT(groups[0]->geometry().bottom(), groups[1]->geometry().top());
    for (const QGroupBox *group : groups) {
        const QString owner = group == groups[0] ? "NIC" : "Device";
        const QList<QLabel *> labels = group->findChildren<QLabel *>();
        ASSERT_EQ(labels.size(), 4);
        int bottom = 0;
        for (int i = 0; i < 4; ++i) {
            const QString text = QStringList{"MAC Address", "IP Address", "Subnet Mask", "Default Gateway"}[i];
            EXPECT_EQ(labels[i]->text(), text);
            const QWidget *field = labels[i]->buddy();
            ASSERT_NE(field, nullptr) << text.toStdString();
            EXPECT_EQ(field->parentWidget(), group);
            EXPECT_EQ(field->accessibleName(), owner + ' ' + text);
            EXPECT_EQ(field->objectName(), QString(owner + text).remove(' '));
            EXPECT_EQ(field->width(), 130);
            EXPECT_LT(labels[i]->geometry().right(), field->geometry().left());
            EXPECT_GT(field->geometry().top(), bottom);
            EXPECT_GE(field->height(), field->sizeHint().height());
            bottom = field->geometry().bottom();
        }
        EXPECT_LT(bottom, group->height());
    }
    EXPECT_LT(groups[1]->geometry().bottom(), Child<QPushButton>(mDialog.get(), "OKButton")->geometry().top());
    EXPECT_LT(Child<QPushButton>(mDialog.get(), "OKButton")->geometry().right(),
              Child<QPushButton>(mDialog.get(), "CancelButton")->geometry().left());
}

TEST_F(ForceIPDlgTest, HasItsSlotsInOrder)
{
    QStringList slotNames;
    const QMetaObject &meta = ForceIPDlg::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        slotNames << meta.method(i).methodSignature();
    }
    EXPECT_EQ(slotNames, (QStringList{"accept()", "reject()", "Validate()", "CheckAddressFormat(QString)",
                                      "OnCbnSelchangeNICIPAddress(int)", "UpdateDefaultConfiguration()"}));
}

TEST_F(ForceIPDlgTest, ShowsTheAdapterAndSuggestsItsSubnet)
{
    Open();
    EXPECT_EQ(Text("NICMACAddress"), "02:00:00:00:00:0A");
    ASSERT_EQ(Combo(mDialog.get())->count(), 2);
    EXPECT_EQ(Combo(mDialog.get())->itemText(0), "192.168.1.10");
    EXPECT_EQ(Combo(mDialog.get())->itemText(1), "10.0.0.9");
    EXPECT_EQ(Combo(mDialog.get())->currentIndex(), 0);
    EXPECT_EQ(Text("NICSubnetMask"), "255.255.255.0");
    EXPECT_EQ(Text("NICDefaultGateway"), "192.168.1.1");
    EXPECT_EQ(Text("DeviceMACAddress"), "00:11:22:33:44:55");
    EXPECT_EQ(Text("DeviceIPAddress"), "192.168.1.");
    EXPECT_EQ(Text("DeviceSubnetMask"), "255.255.255.0");
    EXPECT_EQ(Text("DeviceDefaultGateway"), "192.168.1.1");
    for (const char *name : {"NICMACAddress", "NICSubnetMask", "NICDefaultGateway", "DeviceMACAddress"}) {
        EXPECT_FALSE(Field(name)->isEnabled()) << name;
    }
    for (const char *name : {"DeviceIPAddress", "DeviceSubnetMask", "DeviceDefaultGateway"}) {
        EXPECT_TRUE(Field(name)->isEnabled()) << name;
    }
    EXPECT_TRUE(Combo(mDialog.get())->isEnabled());
    EXPECT_FALSE(Combo(mDialog.get())->isEditable());
    EXPECT_EQ(Messages(), (QStringList{OtherSubnetText, "", ""})) << "until the address is completed";
    ExpectMarkersFollowMessages();
    QTest::keyClicks(Field("DeviceIPAddress"), "20");
    EXPECT_EQ(Text("DeviceIPAddress"), "192.168.1.20");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""}));
    ExpectMarkersFollowMessages();
}

TEST_F(ForceIPDlgTest, SuggestsTheSubnetOfTheAddressThatTheUserSelects)
{
    Open();
    Combo(mDialog.get())->setFocus();
    QTest::keyClick(Combo(mDialog.get()), Qt::Key_Down);
    EXPECT_EQ(Combo(mDialog.get())->currentIndex(), 1);
    EXPECT_EQ(Text("NICSubnetMask"), "255.0.0.0");
    EXPECT_EQ(Text("DeviceIPAddress"), "10.");
    EXPECT_EQ(Text("DeviceSubnetMask"), "255.0.0.0");
    EXPECT_EQ(Text("DeviceDefaultGateway"), "192.168.1.1");
    EXPECT_EQ(Messages(), (QStringList{OtherSubnetText, "", OtherGatewayText}));
    ExpectMarkersFollowMessages();
    QTest::keyClick(Combo(mDialog.get()), Qt::Key_Up);
    EXPECT_EQ(Text("NICSubnetMask"), "255.255.255.0");
    EXPECT_EQ(Text("DeviceIPAddress"), "192.168.1.");
}

TEST_F(ForceIPDlgTest, WorksWithAnAdapterWithoutAddresses)
{
    SetAddresses({});
    Open();
    EXPECT_EQ(Combo(mDialog.get())->currentIndex(), -1);
    EXPECT_EQ(Text("NICSubnetMask"), "");
    EXPECT_EQ(Text("DeviceIPAddress"), "");
    EXPECT_EQ(Text("DeviceSubnetMask"), "");
    EXPECT_EQ(Messages(), (QStringList{EndText, "", ""}));
    {
        ExpectedBox box;
        ClickOK();
        EXPECT_EQ(box.Text(), "Cannot assign the device IP Address to be the same as its subnet!");
    }
    Type(Field("DeviceIPAddress"), "10.1.2.3");
    Type(Field("DeviceSubnetMask"), "0.0.0.0");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""}));
    ClickOK();
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{"GEV 00:11:22:33:44:55 10.1.2.3 0.0.0.0 192.168.1.1"});
}

// Doubtful fields

namespace
{

struct MarkerCase
{
    const char *mName;
    const char *mNICMask;
    const char *mField;
    const char *mText;
    int mIndex;
    const char *mMessage;
};

}  // namespace

class ForceIPDlgMarker : public ForceIPDlgTest, public testing::WithParamInterface<MarkerCase>
{
};

TEST_P(ForceIPDlgMarker, ComesAndGoesWhileTheUserTypes)
{
    const MarkerCase &row = GetParam();
    SetAddresses({{"192.168.1.10", row.mNICMask}});
    Open();
    Type(Field("DeviceIPAddress"), "192.168.1.20");
    Type(Field("DeviceSubnetMask"), "0.0.0.0");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""}));
    ExpectMarkersFollowMessages();

    Type(Field(row.mField), row.mText);
    EXPECT_EQ(Field(row.mField)->text(), row.mText) << "the validator must let it pass";
    QStringList messages = {"", "", ""};
    messages[row.mIndex] = row.mMessage;
    EXPECT_EQ(Messages(), messages);
    ExpectMarkersFollowMessages();
    EXPECT_TRUE(IsOpen());

    Type(Field("DeviceIPAddress"), "192.168.1.20");
    Type(Field("DeviceSubnetMask"), "0.0.0.0");
    Type(Field("DeviceDefaultGateway"), "");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""}));
    ExpectMarkersFollowMessages();
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ForceIPDlgMarker,
    testing::Values(MarkerCase{"Rule1", Mask24, "DeviceIPAddress", "224.0.0.1", 0, RangeText},
                    MarkerCase{"Rule2", Mask24, "DeviceIPAddress", "10.0.0.5", 0, OtherSubnetText},
                    MarkerCase{"Rule3With0", Mask24, "DeviceIPAddress", "192.168.1.0", 0, EndText},
                    MarkerCase{"Rule3With255", Mask24, "DeviceIPAddress", "192.168.1.255", 0, EndText},
                    MarkerCase{"Rule4", Mask24, "DeviceIPAddress", "192.168.1.10", 0, SameAddressText},
                    MarkerCase{"Rule5", Mask24, "DeviceSubnetMask", "255.0.255.0", 1, OtherMaskText},
                    MarkerCase{"Rule6", "255.0.255.0", "DeviceSubnetMask", "255.0.255.0", 1, InvalidMaskText},
                    MarkerCase{"Rule7", Mask24, "DeviceDefaultGateway", "10.0.0.1", 2, OtherGatewayText}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST_F(ForceIPDlgTest, MarksAllThreeFieldsAtOnce)
{
    Open();
    Type(Field("DeviceIPAddress"), "10.0.0.5");
    Type(Field("DeviceSubnetMask"), "255.255.0.0");
    Type(Field("DeviceDefaultGateway"), "10.0.0.1");
    EXPECT_EQ(Messages(), (QStringList{OtherSubnetText, OtherMaskText, OtherGatewayText}));
    ExpectMarkersFollowMessages();
}

TEST_F(ForceIPDlgTest, MarkersStandInTheRowsOfTheirFields)
{
    Open();
    const QRect group = mDialog->findChildren<QGroupBox *>()[1]->geometry();
    for (const char *name : {"DeviceIPAddress", "DeviceSubnetMask", "DeviceDefaultGateway"}) {
        const QRect field(Field(name)->mapTo(mDialog.get(), QPoint()), Field(name)->size());
        const QRect marker = MarkerRect(name);
        EXPECT_GT(marker.left(), field.right()) << name;
        EXPECT_LT(marker.right(), group.right()) << name;
        EXPECT_LE(std::abs(marker.center().y() - field.center().y()), 2) << name;
    }
}

TEST_F(ForceIPDlgTest, AMarkerExplainsItselfUnderTheMouse)
{
    // a tool tip of before stays for a while
    QToolTip::hideText();
    ASSERT_TRUE(WaitForGui([] { return QToolTip::text().isEmpty(); }));
    Open();
    const auto ask = [this](const QPoint &aPoint) {
        QHelpEvent help(QEvent::ToolTip, aPoint, mDialog->mapToGlobal(aPoint));
        QCoreApplication::sendEvent(mDialog.get(), &help);
        return QToolTip::text();
    };
    EXPECT_EQ(ask(MarkerRect("DeviceSubnetMask").center()), "");
    EXPECT_EQ(ask(QPoint(2, 2)), "");
    EXPECT_EQ(ask(MarkerRect("DeviceIPAddress").center()), OtherSubnetText);
    QToolTip::hideText();
}

TEST_F(ForceIPDlgTest, FieldsTakeAddressesOnly)
{
    Open();
    for (const char *name : {"DeviceIPAddress", "DeviceSubnetMask", "DeviceDefaultGateway"}) {
        Type(Field(name), "1a92.1680.1..300.5x.6");
        EXPECT_EQ(Text(name), "192.168.1.30") << name;
    }
}

TEST_F(ForceIPDlgTest, AnAddressFormatHasSomethingBehindTheThirdDot)
{
    Open();
    for (const char *text : {"1.2.3.4", "1.2.3.x", "...4", "1.2.3.4.5", "1.2.3.."}) {
        EXPECT_TRUE(mDialog->CheckAddressFormat(text)) << text;
    }
    for (const char *text : {"", "1", "1.2.3", "1.2.3.", "..."}) {
        EXPECT_FALSE(mDialog->CheckAddressFormat(text)) << text;
    }
}

// OK and Cancel

TEST_F(ForceIPDlgTest, IsWorkedByTheKeyboard)
{
    ForceIPDlg dialog(mInfo, mAdapter);
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(aDialog->focusWidget(), Child<QLineEdit>(aDialog, "DeviceIPAddress"));
        QTest::keyClicks(aDialog->focusWidget(), "20");
        EXPECT_EQ(Child<QLineEdit>(aDialog, "DeviceIPAddress")->text(), "192.168.1.20")
            << "the suggestion is completed";
        QStringList order;
        for (int i = 0; i < 6; ++i) {
            order << aDialog->focusWidget()->objectName();
            QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order, (QStringList{"DeviceIPAddress", "DeviceSubnetMask", "DeviceDefaultGateway", "OKButton",
                                      "CancelButton", "NICIPAddress"}));
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(),
              Calls{"GEV 00:11:22:33:44:55 192.168.1.20 255.255.255.0 192.168.1.1"});
}

TEST_F(ForceIPDlgTest, SetsTheAddressOfAKelvraDevice)
{
    Open(mDevices->AddKelvra(mAdapter, "k"));
    EXPECT_EQ(Text("DeviceMACAddress"), "00:11:22:33:44:66");
    Type(Field("DeviceIPAddress"), "192.168.1.21");
    ClickOK();
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_FALSE(mDialog->isVisible());
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(),
              Calls{"Kelvra 00:11:22:33:44:66 192.168.1.21 255.255.255.0 192.168.1.1"});
}

TEST_F(ForceIPDlgTest, ADeviceOfAnotherKindFails)
{
    Open(mDevices->AddU3V(mDevices->AddController("c"), "u"));
    EXPECT_EQ(Text("DeviceMACAddress"), "00-00-00-00-00");
    Type(Field("DeviceIPAddress"), "192.168.1.21");
    ExpectedBox box;
    ClickOK();
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Failed setting IP configuration");
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{});
}

TEST_F(ForceIPDlgTest, CanBeTriedAgainAfterAFailure)
{
    mDevices->SetIPConfigurationResult(LxResult(LxResultCode::AccessDenied, "Another application controls it."));
    Open();
    Type(Field("DeviceIPAddress"), "192.168.1.20");
    {
        AnsweredBox box(QMessageBox::Ok);
        ClickOK();
        EXPECT_EQ(box.mIcon, QMessageBox::Warning);
        EXPECT_EQ(box.mTitle, "Error");
        EXPECT_EQ(box.mText, "Failed setting IP configuration");
        EXPECT_EQ(box.mButtons, QMessageBox::Ok);
    }
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Text("DeviceIPAddress"), "192.168.1.20");
    mDevices->SetIPConfigurationResult(LxResult());
    ClickOK();
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls().size(), 2u);
}

TEST_F(ForceIPDlgTest, CancelAndEscapeChangeNothing)
{
    for (const bool escape : {false, true}) {
        Open();
        Type(Field("DeviceIPAddress"), "192.168.1.20");
        if (escape) {
            QTest::keyClick(Field("DeviceIPAddress"), Qt::Key_Escape);
        }
        else {
            QTest::mouseClick(Child<QPushButton>(mDialog.get(), "CancelButton"), Qt::LeftButton);
        }
        EXPECT_FALSE(mDialog->isVisible());
        EXPECT_EQ(mDialog->result(), QDialog::Rejected);
    }
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{});
}

namespace
{

struct BlockingCase
{
    const char *mName;
    const char *mAddress;
    const char *mMask;
    const char *mText;
};

}  // namespace

class ForceIPDlgBlock : public ForceIPDlgTest, public testing::WithParamInterface<BlockingCase>
{
};

TEST_P(ForceIPDlgBlock, KeepsTheDialogOpen)
{
    Open();
    Type(Field("DeviceIPAddress"), GetParam().mAddress);
    Type(Field("DeviceSubnetMask"), GetParam().mMask);
    AnsweredBox box(QMessageBox::Ok);
    ClickOK();
    EXPECT_EQ(box.mIcon, QMessageBox::Warning);
    EXPECT_EQ(box.mTitle, "Error");
    EXPECT_EQ(box.mText, GetParam().mText);
    EXPECT_EQ(box.mButtons, QMessageBox::Ok);
    EXPECT_TRUE(IsOpen());
    EXPECT_EQ(Text("DeviceIPAddress"), GetParam().mAddress);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{});
}

INSTANTIATE_TEST_SUITE_P(
    Table, ForceIPDlgBlock,
    testing::Values(BlockingCase{"AddressOfTheAdapter", "192.168.1.10", "255.255.255.0",
                                 "Cannot assign the same IP Address as the Interface!"},
                    BlockingCase{"Range", "224.1.2.3", "255.255.255.0", RangeText},
                    BlockingCase{"Subnet", "192.168.1.0", "255.255.255.0",
                                 "Cannot assign the device IP Address to be the same as its subnet!"},
                    BlockingCase{"Incomplete", "192.168.1.", "255.255.255.0",
                                 "Cannot assign the device IP Address to be the same as its subnet!"},
                    BlockingCase{"Empty", "", "", "Cannot assign the device IP Address to be the same as its subnet!"}),
    [](const auto &aInfo) { return aInfo.param.mName; });

TEST_F(ForceIPDlgTest, AsksAboutDoubtsAndAppliesAfterYes)
{
    Open();
    Type(Field("DeviceIPAddress"), "10.0.0.5");
    EXPECT_EQ(Messages(), (QStringList{OtherSubnetText, "", ""}));
    AnsweredBox box(QMessageBox::Yes);
    ClickOK();
    EXPECT_EQ(box.mIcon, QMessageBox::Question);
    EXPECT_EQ(box.mTitle, "Warning");
    EXPECT_EQ(box.mText,
              "This IP Configuration may be incompatible with your Interface settings or simply invalid.\r\n\r\nAre "
              "you sure you want to continue?");
    EXPECT_EQ(box.mButtons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(box.mDefault, QMessageBox::Yes);
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{"GEV 00:11:22:33:44:55 10.0.0.5 255.255.255.0 192.168.1.1"});
}

TEST_F(ForceIPDlgTest, AppliesNothingUnlessTheAnswerIsYes)
{
    Open();
    Type(Field("DeviceDefaultGateway"), "10.0.0.1");
    Type(Field("DeviceIPAddress"), "192.168.1.20");
    for (const auto answer : {QMessageBox::No, QMessageBox::NoButton}) {
        AnsweredBox box(answer);
        ClickOK();
        EXPECT_EQ(box.mTitle, "Warning");
        EXPECT_TRUE(IsOpen());
    }
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{});
}

TEST_F(ForceIPDlgTest, AppliesNothingWhenItWasClosedUnderTheQuestion)
{
    Open();
    Type(Field("DeviceIPAddress"), "10.0.0.5");
    OnNextModal([this](QWidget *aBox) {
        mDialog->reject();
        qobject_cast<QMessageBox *>(aBox)->accept();
    });
    ClickOK();
    EXPECT_FALSE(mDialog->isVisible());
    EXPECT_EQ(mDialog->result(), QDialog::Rejected);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{});
}

TEST_F(ForceIPDlgTest, SendsAnEmptyGatewayAndMaskAsNone)
{
    Open();
    Type(Field("DeviceIPAddress"), "192.168.1.20");
    Type(Field("DeviceDefaultGateway"), "");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""})) << "an empty gateway is valid";
    ClickOK();
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{"GEV 00:11:22:33:44:55 192.168.1.20 255.255.255.0 0.0.0.0"});
}

TEST_F(ForceIPDlgTest, WritesBackWhatIsSent)
{
    mDevices->SetIPConfigurationResult(LxResultCode::Failed);
    Open();
    Type(Field("DeviceIPAddress"), "192.168.001.020");
    Type(Field("DeviceSubnetMask"), "255.255");
    Type(Field("DeviceDefaultGateway"), "192.168");
    EXPECT_EQ(Messages(), (QStringList{"", "", ""})) << "what is no mask and no gateway counts as none";
    ExpectedBox box;
    ClickOK();
    EXPECT_EQ(Text("DeviceIPAddress"), "192.168.1.20");
    EXPECT_EQ(Text("DeviceSubnetMask"), "0.0.0.0");
    EXPECT_EQ(Text("DeviceDefaultGateway"), "0.0.0.0");
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(), Calls{"GEV 00:11:22:33:44:55 192.168.1.20 0.0.0.0 0.0.0.0"});
}

TEST_F(ForceIPDlgTest, TheSecondAddressOfTheAdapterIsDoubtfulButNotBlocked)
{
    Open();
    Combo(mDialog.get())->setFocus();
    QTest::keyClick(Combo(mDialog.get()), Qt::Key_Down);
    Type(Field("DeviceIPAddress"), "10.0.0.9");
    Type(Field("DeviceDefaultGateway"), "");
    EXPECT_EQ(Messages(), (QStringList{SameAddressText, "", ""}));
    AnsweredBox box(QMessageBox::No);
    ClickOK();
    EXPECT_EQ(box.mTitle, "Warning");
}

TEST_F(ForceIPDlgTest, TheFirstAddressOfTheAdapterIsBlockedWhicheverIsSelected)
{
    Open();
    Combo(mDialog.get())->setFocus();
    QTest::keyClick(Combo(mDialog.get()), Qt::Key_Down);
    Type(Field("DeviceIPAddress"), "192.168.1.10");
    EXPECT_EQ(Messages()[0], OtherSubnetText);
    ExpectedBox box;
    ClickOK();
    EXPECT_EQ(box.Text(), "Cannot assign the same IP Address as the Interface!");
}

TEST_F(ForceIPDlgTest, OutlivesTheDeviceAndTheAdapter)
{
    {
        ScriptedAdapter adapter(mAdapter.Get());
        ScriptedGEV info(mInfo.Get());
        mDialog = std::make_unique<ForceIPDlg>(info, adapter);
    }
    mDialog->show();
    Type(Field("DeviceIPAddress"), "192.168.1.20");
    ClickOK();
    EXPECT_EQ(mDevices->GetIPConfigurationCalls().size(), 1u);
}
