#pragma once

#include <QtWidgets/QMessageBox>

#include "BrowserTest.h"
#include "LxGUI/GenBrowser/GenBrowserItemDelegate.h"
#include "LxGUI/GenBrowser/QSpinBox64.h"

/// A browser in manual mode for features that a test adds before it is shown, and what a user does with its editors.
class Editors : public testing::Test
{
protected:
    void SetUp() override
    {
        mArray.AddCategory("General");
        mBrowser = std::make_unique<TestBrowser>();
        mBrowser->SetRefreshMode(LxGenRefreshManual);
    }

    void Show()
    {
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->SetPosition(-1, -1, 500, 600);
        mBrowser->ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser->GetQWidget()));
    }
    template <class Editor>
    Editor *Open(const QString &aName)
    {
        auto *editor = qobject_cast<Editor *>(mBrowser->OpenEditor(aName));
        EXPECT_NE(editor, nullptr) << aName.toStdString();
        return editor;
    }
    static void Type(QWidget *aEditor, const QString &aText)
    {
        QTest::keySequence(aEditor, QKeySequence::SelectAll);
        QTest::keyClicks(aEditor, aText);
    }
    void Commit(QWidget *aEditor)
    {
        QTest::keyClick(aEditor, Qt::Key_Return);
        EXPECT_TRUE(WaitForGui([&] { return mBrowser->Editor() == nullptr; }));
    }
    /// Types, commits and returns what the error box says.
    QString TypeAndFail(QWidget *aEditor, const QString &aText)
    {
        const ExpectedBox box;
        Type(aEditor, aText);
        QTest::keyClick(aEditor, Qt::Key_Return);
        EXPECT_TRUE(WaitForGui([&] { return box.WasShown(); }));
        EXPECT_EQ(box.Title(), "Error");
        return box.Text();
    }
    /// Commits with Enter, does something within the error box that comes, and ends it.
    void CommitAndDoInBox(QWidget *aEditor, const std::function<void()> &aAct)
    {
        bool wasShown = false;
        DoInNextBox(aAct, wasShown);
        QTest::keyClick(aEditor, Qt::Key_Return);
        EXPECT_TRUE(WaitForGui([&] { return wasShown; }));
    }
    /// Does something within the next error box, and ends it.
    static void DoInNextBox(const std::function<void()> &aAct, bool &aWasShown)
    {
        OnNextModal([aAct, &aWasShown](QWidget *aWidget) {
            aAct();
            qobject_cast<QMessageBox *>(aWidget)->accept();
            aWasShown = true;
        });
    }

    FakeArray mArray;
    std::unique_ptr<TestBrowser> mBrowser;
};
