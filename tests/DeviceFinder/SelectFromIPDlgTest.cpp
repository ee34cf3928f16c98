#include "LxGUI/DeviceFinder/SelectFromIPDlg.h"

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include "FinderTest.h"

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
    EXPECT_EQ(labels[1]->buddy(), Child<QLineEdit>(&dialog, "AddressEdit"));
    EXPECT_EQ(Child<QLineEdit>(&dialog, "AddressEdit")->accessibleName(), "IP Address");
    EXPECT_EQ(Child<QLineEdit>(&dialog, "AddressEdit")->text(), "");
    EXPECT_EQ(dialog.GetAddress(), "");

    const auto rect = [](const QWidget *aWidget) { return aWidget->geometry(); };
    const QWidget *ok = Child<QPushButton>(&dialog, "OKButton");
    const QWidget *cancel = Child<QPushButton>(&dialog, "CancelButton");
    const int margin = rect(&dialog).width() - 1 - rect(cancel).right();
    EXPECT_LT(rect(labels[0]).bottom(), rect(Child<QLineEdit>(&dialog, "AddressEdit")).top());
    EXPECT_LT(rect(labels[1]).right(), rect(Child<QLineEdit>(&dialog, "AddressEdit")).left());
    EXPECT_EQ(rect(Child<QLineEdit>(&dialog, "AddressEdit")).right(), rect(cancel).right() - 20);
    EXPECT_LT(rect(Child<QLineEdit>(&dialog, "AddressEdit")).bottom(), rect(ok).top());
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
        EXPECT_EQ(aDialog->focusWidget(), Child<QLineEdit>(aDialog, "AddressEdit"));
        QTest::keyClicks(aDialog->focusWidget(), "192.168.7.9");
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(aDialog->focusWidget(), Child<QPushButton>(aDialog, "OKButton"));
        QTest::keyClick(aDialog->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(aDialog->focusWidget(), Child<QPushButton>(aDialog, "CancelButton"));
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
        Child<QLineEdit>(&dialog, "AddressEdit")->setText(text);
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
        QTest::mouseClick(Child<QPushButton>(&dialog, "OKButton"), Qt::LeftButton);
        EXPECT_TRUE(information);
        EXPECT_EQ(title, "Error");
        EXPECT_EQ(message, "Invalid IP address.");
        EXPECT_EQ(buttons, QMessageBox::Ok);
        EXPECT_TRUE(dialog.isVisible()) << text.toStdString();
        EXPECT_EQ(Child<QLineEdit>(&dialog, "AddressEdit")->text(), text) << "the text is kept";
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
