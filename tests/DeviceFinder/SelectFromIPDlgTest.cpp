#include "LxGUI/DeviceFinder/SelectFromIPDlg.h"

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include "FinderTest.h"

namespace
{

QLineEdit *AddressEdit(const QWidget *aDialog)
{
    return aDialog->findChild<QLineEdit *>(QStringLiteral("AddressEdit"));
}

QPushButton *DialogButton(const QWidget *aDialog, const char *aName)
{
    return aDialog->findChild<QPushButton *>(QLatin1String(aName));
}

}  // namespace

TEST(SelectFromIPDlg, HasATextAFieldAndTwoButtons)
{
    SelectFromIPDlg dialog;
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Select From IP Address");
    EXPECT_EQ(dialog.size(), QSize(350, 200));
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(dialog.windowFlags() & Qt::CustomizeWindowHint);

    const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[0]->text(),
              "If a device cannot be detected, you can still attempt to select it from its IP address.");
    EXPECT_TRUE(labels[0]->wordWrap());
    EXPECT_EQ(labels[0]->alignment(), Qt::AlignLeft | Qt::AlignTop);
    EXPECT_EQ(labels[1]->text(), "IP Address");
    EXPECT_EQ(labels[1]->buddy(), AddressEdit(&dialog));
    EXPECT_EQ(AddressEdit(&dialog)->accessibleName(), "IP Address");
    EXPECT_EQ(AddressEdit(&dialog)->text(), "");
    EXPECT_EQ(dialog.GetAddress(), "");

    const auto rect = [](const QWidget *aWidget) { return aWidget->geometry(); };
    const QWidget *ok = DialogButton(&dialog, "OKButton");
    const QWidget *cancel = DialogButton(&dialog, "CancelButton");
    const int margin = rect(&dialog).width() - 1 - rect(cancel).right();
    EXPECT_LT(rect(labels[0]).bottom(), rect(AddressEdit(&dialog)).top());
    EXPECT_LT(rect(labels[1]).right(), rect(AddressEdit(&dialog)).left());
    EXPECT_EQ(rect(AddressEdit(&dialog)).right(), rect(cancel).right() - 20);
    EXPECT_LT(rect(AddressEdit(&dialog)).bottom(), rect(ok).top());
    EXPECT_LT(rect(ok).right(), rect(cancel).left());
    EXPECT_LE(margin, 20);
}

TEST(SelectFromIPDlg, HasItsSlotsInOrder)
{
    QStringList slotNames;
    const QMetaObject &meta = SelectFromIPDlg::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        slotNames << meta.method(i).methodSignature();
    }
    EXPECT_EQ(slotNames, (QStringList{"accept()", "reject()"}));
}

TEST(SelectFromIPDlg, IsWorkedByTheKeyboard)
{
    SelectFromIPDlg dialog;
    OnNextModal([](QWidget *aDialog) {
        EXPECT_EQ(aDialog->focusWidget(), AddressEdit(aDialog));
        QTest::keyClicks(aDialog->focusWidget(), "192.168.7.9");
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(aDialog->focusWidget(), DialogButton(aDialog, "OKButton"));
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(aDialog->focusWidget(), DialogButton(aDialog, "CancelButton"));
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetAddress(), "192.168.7.9");
}

TEST(SelectFromIPDlg, StaysOpenForATextThatIsNoAddress)
{
    for (const QString text : {"", "192.168.1", "192.168.1.256", " 10.0.0.1", "10.0.0.1x", "camera", "Kamera\u00e4"}) {
        SelectFromIPDlg dialog;
        dialog.show();
        AddressEdit(&dialog)->setText(text);
        bool information = false;
        QString title, message;
        QMessageBox::StandardButtons buttons;
        OnNextModal([&](QWidget *aBox) {
            auto *box = qobject_cast<QMessageBox *>(aBox);
            ASSERT_NE(box, nullptr);
            information = box->icon() == QMessageBox::Information;
            title = box->windowTitle();
            message = box->text();
            buttons = box->standardButtons();
            box->accept();
        });
        QTest::mouseClick(DialogButton(&dialog, "OKButton"), Qt::LeftButton);
        EXPECT_TRUE(information);
        EXPECT_EQ(title, "Error");
        EXPECT_EQ(message, "Invalid IP address.");
        EXPECT_EQ(buttons, QMessageBox::Ok);
        EXPECT_TRUE(dialog.isVisible()) << text.toStdString();
        EXPECT_EQ(AddressEdit(&dialog)->text(), text) << "the text is kept";
        EXPECT_EQ(dialog.GetAddress(), text);
        EXPECT_EQ(dialog.result(), 0);
    }
}

TEST(SelectFromIPDlg, CanBeCorrected)
{
    SelectFromIPDlg dialog;
    OnNextModal([](QWidget *aDialog) {
        QTest::keyClicks(aDialog->focusWidget(), "10.0.0");
        ExpectedBox box;
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Return);
        EXPECT_EQ(box.Text(), "Invalid IP address.");
        QTest::keyClicks(aDialog->focusWidget(), ".5");
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetAddress(), "10.0.0.5");
}

// In the finder

TEST_F(FinderTest, CancelOfSelectFromIPGoesOnSearchingWithNothingSelected)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForRounds(1));
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_EQ(aDialog->parentWidget(), mFinder.GetQWidget());
        EXPECT_FALSE(mDevices->IsSearching());
        QTest::keyClicks(AddressEdit(aDialog), "10.1.2.3");
        QTest::mouseClick(DialogButton(aDialog, "CancelButton"), Qt::LeftButton);
    });
    Click("SelectFromIPButton");
    EXPECT_TRUE(mDevices->GetFindDeviceCalls().empty());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, AnAddressThatIsTypedChoosesTheDeviceThere)
{
    const ScriptedGEV &info =
        mDevices->AddGEV(mDevices->AddAdapter("a"), "g", [](GEVValues &aValues) { aValues.mReported = false; });
    mDevices->SetAddress("10.1.2.3", &info);
    OnNextModal([this](QWidget *) {
        OnNextModal([](QWidget *aDialog) {
            QTest::keyClicks(AddressEdit(aDialog), "10.1.2.3");
            QTest::keyClick(aDialog, Qt::Key_Return);
        });
        Click("SelectFromIPButton");
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
    EXPECT_EQ(mDevices->GetFindDeviceCalls(), std::vector<std::string>{"10.1.2.3"});
}

TEST_F(FinderTest, AnAddressThatNobodyAnswersSaysSoAfterTheDialog)
{
    mDevices->AddAdapter("a");
    Show();
    std::optional<ExpectedBox> box;
    OnNextModal([&](QWidget *aDialog) {
        QTest::keyClicks(AddressEdit(aDialog), "10.9.9.9");
        QTest::keyClick(aDialog, Qt::Key_Return);
        box.emplace();
    });
    Click("SelectFromIPButton");
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Title(), "Error");
    EXPECT_EQ(box->Text(), "Could not contact device.");
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, ClosingTheWindowClosesSelectFromIP)
{
    Show();
    OnNextModal([this](QWidget *aDialog) {
        QTest::keyClicks(AddressEdit(aDialog), "10.1.2.3");
        mFinder.Close();
        EXPECT_FALSE(aDialog->isVisible());
    });
    Click("SelectFromIPButton");
    EXPECT_TRUE(mDevices->GetFindDeviceCalls().empty());
    EXPECT_FALSE(mDevices->IsSearching());
}
