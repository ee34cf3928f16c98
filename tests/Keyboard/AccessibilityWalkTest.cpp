// The walkers find what they are for.

#include "AccessibilityWalk.h"

#include <gtest/gtest.h>

#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextEdit>

#include "Keyboard.h"

namespace
{

/// A row "label, field, Do, Undo" without a fault.
class Walkers : public testing::Test
{
protected:
    void SetUp() override
    {
        auto *row = new QHBoxLayout(&mWindow);
        for (QWidget *widget : {static_cast<QWidget *>(mLabel), static_cast<QWidget *>(mField),
                                static_cast<QWidget *>(mDo), static_cast<QWidget *>(mUndo)})
        {
            row->addWidget(widget);
        }
        mLabel->setBuddy(mField);
        mField->setObjectName("field");
        mDo->setObjectName("do");
        mUndo->setObjectName("undo");
        mWindow.show();
        EXPECT_EQ(Keyboard::Focus(), mField);
    }
    std::string Faults() { return (FindNameFaults(&mWindow) + FindTabFaults(&mWindow)).join('\n').toStdString(); }

    QWidget mWindow;
    QLabel *mLabel = new QLabel("Field");
    QLineEdit *mField = new QLineEdit;
    QPushButton *mDo = new QPushButton("&Do");
    QPushButton *mUndo = new QPushButton("&Undo");
};

}  // namespace

TEST_F(Walkers, FindNothingWhereThereIsNothing)
{
    EXPECT_EQ(Faults(), "");
    EXPECT_TRUE(FindMnemonicFaults(&mWindow).isEmpty());
}

TEST_F(Walkers, FindAFieldWithoutItsLabel)
{
    mLabel->setBuddy(nullptr);
    EXPECT_EQ(Faults(), "QLineEdit field has no name\nQLineEdit field does not belong to its label Field");
    mField->setAccessibleName("Field");
    EXPECT_EQ(Faults(), "QLineEdit field does not belong to its label Field");
}

TEST_F(Walkers, FindANameThatIsUsedTwice)
{
    mUndo->setAccessibleName("Do");
    EXPECT_EQ(Faults(), "\"Do\" is the name of QPushButton do and QPushButton undo");
}

TEST_F(Walkers, FindAnOrderThatTheEyeDoesNotFollow)
{
    QWidget::setTabOrder(mUndo, mDo);
    QWidget::setTabOrder(mDo, mField);
    EXPECT_EQ(Faults(), "Tab goes back from QPushButton do to QLineEdit field");
}

TEST_F(Walkers, FindWhatTabDoesNotLeave)
{
    auto *trap = new QTextEdit;
    trap->setAccessibleName("Notes");
    trap->setObjectName("trap");
    mWindow.layout()->addWidget(trap);
    EXPECT_EQ(Faults(), "Tab does not come round to QLineEdit field");
}

TEST_F(Walkers, FindLettersThatAreUsedTwice)
{
    mUndo->setText("Un&do");
    EXPECT_EQ(FindMnemonicFaults(&mWindow), QStringList("Alt+D is &Do and Un&do"));
}
