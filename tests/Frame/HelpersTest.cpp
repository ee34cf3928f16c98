// The small helpers that the windows share.

#include <gtest/gtest.h>

#include <QtGui/QCursor>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <atomic>
#include <thread>

#include "GuiTest.h"
#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/FixedSizeDialog.h"
#include "LxGUI/Frame/IP4Validator.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OutputEdit.h"
#include "LxGUI/Frame/Text.h"

TEST(ShowError, IsAWarningWithOneButton)
{
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QString title, text;
    QWidget parent;
    const QWidget *shownParent = nullptr;
    OnNextModal([&](QWidget *aModal) {
        const auto *box = qobject_cast<QMessageBox *>(aModal);
        icon = box->icon();
        buttons = box->standardButtons();
        title = box->windowTitle();
        text = box->text();
        shownParent = box->parentWidget();
        aModal->close();
    });
    ShowError(&parent, QStringLiteral("Could not parse read address."));
    EXPECT_EQ(icon, QMessageBox::Warning);
    EXPECT_EQ(buttons, QMessageBox::Ok);
    EXPECT_EQ(title, QStringLiteral("Error"));
    EXPECT_EQ(text, QStringLiteral("Could not parse read address."));
    EXPECT_EQ(shownParent, &parent);
}

TEST(ShowError, TakesAnotherTitleAndNoParent)
{
    const ExpectedBox box;
    ShowError(nullptr, QStringLiteral("text"), QStringLiteral("Error!"));
    EXPECT_TRUE(box.WasShown());
    EXPECT_EQ(box.Title(), QStringLiteral("Error!"));
}

TEST(BusyCursor, RestoresWhatWasThere)
{
    ASSERT_EQ(QGuiApplication::overrideCursor(), nullptr);
    {
        const BusyCursor outer;
        ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        {
            const BusyCursor inner;
        }
        EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    }
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(ApplicationThread, IsCalledDirectlyOnItself)
{
    bool called = false;
    CallOnApplicationThread([&] { called = true; });
    EXPECT_TRUE(called);
}

TEST(ApplicationThread, AnotherThreadWaitsUntilTheCallIsDone)
{
    std::atomic<bool> called = false;
    std::atomic<bool> calledWhenReturned = false;
    std::atomic<bool> returned = false;
    const std::thread::id gui = std::this_thread::get_id();
    std::thread::id ran;
    std::thread worker([&] {
        CallOnApplicationThread([&] {
            ran = std::this_thread::get_id();
            called = true;
        });
        calledWhenReturned = called.load();
        returned = true;
    });
    EXPECT_TRUE(WaitForGui([&] { return returned.load(); }));
    worker.join();
    EXPECT_TRUE(calledWhenReturned);
    EXPECT_EQ(ran, gui);
}

TEST(FixedSizeDialog, HasNoContextHelp)
{
    QDialog dialog;
    dialog.setWindowFlags(dialog.windowFlags() | Qt::WindowContextHelpButtonHint);
    MakeFixedSizeDialog(&dialog, 350, 400);
    EXPECT_EQ(dialog.size(), QSize(350, 400));
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(dialog.windowFlags() & Qt::CustomizeWindowHint);
    EXPECT_EQ(dialog.windowFlags() & Qt::WindowType_Mask, Qt::Dialog);
}

TEST(OutputEdit, IsDisabledAndAsEasyToReadAsAnEnabledField)
{
    const QLineEdit input;
    QLineEdit output;
    MakeOutputEdit(&output);
    EXPECT_FALSE(output.isEnabled());
    EXPECT_EQ(output.palette().color(QPalette::Disabled, QPalette::Text),
              input.palette().color(QPalette::Active, QPalette::Text));
}

TEST(FixedSizeDialog, HasNoSystemMenuUnlessItHasACloseButton)
{
    // Qt itself keeps the menu for as long as there is a close button.
    QDialog dialog;
    dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    MakeFixedSizeDialog(&dialog, 350, 400);
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowSystemMenuHint);
}

TEST(FixedSizeDialog, ASizeBelowOneIsLeftFree)
{
    for (const QSize size : {QSize(-1, -1), QSize(0, 300), QSize(300, 0)}) {
        QDialog dialog;
        MakeFixedSizeDialog(&dialog, size.width(), size.height());
        EXPECT_EQ(dialog.minimumSize(), QSize(0, 0));
        EXPECT_EQ(dialog.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        EXPECT_TRUE(dialog.windowFlags() & Qt::CustomizeWindowHint);
    }
}

TEST(Text, TravelsAsUtf8BothWays)
{
    EXPECT_EQ(ToQString(LxString("\xC3\xA4\xE2\x82\xAC")), QString::fromUtf8("ä€"));
    EXPECT_STREQ(ToLxString(QString::fromUtf8("ä€")).GetAscii(), "\xC3\xA4\xE2\x82\xAC");
    EXPECT_TRUE(ToQString(LxString()).isEmpty());
    EXPECT_STREQ(ToLxString(QString()).GetAscii(), "");
}

namespace
{

struct AddressRow
{
    const char *mText;
    QValidator::State mState;
};

void PrintTo(const AddressRow &aRow, std::ostream *aStream)
{
    *aStream << '"' << aRow.mText << '"';
}

class IP4ValidatorTable : public testing::TestWithParam<AddressRow>
{
};

}  // namespace

TEST_P(IP4ValidatorTable, Judges)
{
    const IP4Validator validator;
    QString text = QString::fromUtf8(GetParam().mText);
    const QString before = text;
    int position = 0;
    EXPECT_EQ(validator.validate(text, position), GetParam().mState);
    EXPECT_EQ(text, before);
    EXPECT_EQ(position, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, IP4ValidatorTable,
    testing::Values(AddressRow{"", QValidator::Acceptable}, AddressRow{"192.168.1.1", QValidator::Acceptable},
                    AddressRow{"0.0.0.0", QValidator::Acceptable},
                    AddressRow{"255.255.255.255", QValidator::Acceptable},
                    AddressRow{"001.010.1.1", QValidator::Acceptable},
                    AddressRow{"-1.1.1.1", QValidator::Acceptable},  // A sign passes.
                    AddressRow{"+1.1.1.1", QValidator::Acceptable},
                    AddressRow{"1. 1.1.1", QValidator::Acceptable},  // So does a blank.
                    AddressRow{"192.168.1.", QValidator::Intermediate},
                    AddressRow{"192.168.1", QValidator::Intermediate}, AddressRow{"1", QValidator::Intermediate},
                    AddressRow{".", QValidator::Intermediate}, AddressRow{"...", QValidator::Intermediate},
                    AddressRow{"1..1.1", QValidator::Intermediate}, AddressRow{"192.168.1.256", QValidator::Invalid},
                    AddressRow{"1.2.3.4.5", QValidator::Invalid}, AddressRow{"....", QValidator::Invalid},
                    AddressRow{"0001.1.1.1", QValidator::Invalid}, AddressRow{"1.a.1.1", QValidator::Invalid},
                    AddressRow{"1,1", QValidator::Invalid}, AddressRow{"99999999999.1.1.1", QValidator::Invalid},
                    AddressRow{"0x1.1.1.1", QValidator::Invalid}));
