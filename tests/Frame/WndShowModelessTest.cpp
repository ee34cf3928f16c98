#include <gmock/gmock.h>

#include <memory>

#include "TestWnd.h"

using testing::ElementsAre;
using testing::IsEmpty;

// ShowModeless

TEST(ShowModeless, OpensAfterTheDialogIsShown)
{
    QWidget parent;
    TestWnd wnd;
    bool openInOnOpen = false;
    wnd.mInOnOpen = [&] { openInOnOpen = wnd.IsOpen(); };
    wnd.SetTitle("modeless");
    wnd.SetPosition(0, 0, 280, 190);
    EXPECT_EQ(wnd.ShowModeless(&parent).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "Show", "OnOpen"));
    EXPECT_TRUE(openInOnOpen);
    EXPECT_TRUE(wnd.IsDialog());
    EXPECT_EQ(wnd.Dialog()->parentWidget(), &parent);
    EXPECT_EQ(wnd.Dialog()->windowTitle(), QStringLiteral("modeless"));
    EXPECT_EQ(wnd.Dialog()->size(), QSize(280, 190));
    EXPECT_FALSE(wnd.Dialog()->isModal());
}

TEST(ShowModeless, AVisibleDialogIsOnlyBroughtToTheFront)
{
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    const QPointer<QDialog> dialog = wnd.Dialog();
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(NoParent).GetCode(), 0u);
    EXPECT_EQ(wnd.Dialog(), dialog);
    EXPECT_THAT(wnd.mLog, IsEmpty());
}

TEST(ShowModeless, AHiddenDialogIsReplacedAndFreedLater)
{
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    const QPointer<QDialog> first = wnd.Dialog();
    wnd.mEdit->setText(QStringLiteral("kept"));
    wnd.Close();
    EXPECT_FALSE(first->isVisible());
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(NoParent).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "Show", "OnOpen"));
    EXPECT_NE(wnd.Dialog(), first);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Dialog());
    EXPECT_EQ(wnd.mEdit->text(), QStringLiteral("kept"));
    DeleteDeferred();
    EXPECT_EQ(first, nullptr);
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_TRUE(wnd.IsOpen());
}

TEST(ShowModeless, EveryEndByTheUserEndsTheWork)
{
    const std::function<void(QDialog *)> ends[] = {
        [](QDialog *aDialog) { aDialog->reject(); },
        [](QDialog *aDialog) { aDialog->close(); },
    };
    for (const auto &end : ends) {
        TestWnd wnd;
        wnd.ShowModeless(NoParent);
        wnd.mLog.clear();
        end(wnd.Dialog());
        EXPECT_THAT(wnd.mLog, ElementsAre("OnClose"));
        EXPECT_FALSE(wnd.IsOpen());
        wnd.mLog.clear();
        wnd.ShowModeless(NoParent);
        EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "Show", "OnOpen"));
    }
}

TEST(ShowModeless, ADialogThatDiesWithItsParentEndsTheWork)
{
    auto parent = std::make_unique<QWidget>();
    TestWnd wnd;
    wnd.ShowModeless(parent.get());
    wnd.mLog.clear();
    parent.reset();
    EXPECT_THAT(wnd.mLog, ElementsAre("OnClose"));
    EXPECT_EQ(wnd.Dialog(), nullptr);
    EXPECT_EQ(wnd.Widget(), nullptr);
    EXPECT_EQ(wnd.ShowModeless(NoParent).GetCode(), 0u);
    EXPECT_TRUE(wnd.IsVisible());
}

TEST(ShowModeless, TheEndOfADialogThatIsNoLongerTheWidgetLeavesTheWindowOpen)
{
    QWidget host;
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    wnd.Create(&host);
    wnd.mLog.clear();
    wnd.Dialog()->reject();
    EXPECT_THAT(wnd.mLog, IsEmpty());
    EXPECT_TRUE(wnd.IsOpen());
}

TEST(ShowModeless, DestroyingTheWindowTakesItsDialogFromTheScreen)
{
    QPointer<QDialog> dialog;
    {
        TestWnd wnd;
        wnd.ShowModeless(NoParent);
        dialog = wnd.Dialog();
    }
    EXPECT_FALSE(dialog && dialog->isVisible());
    DeleteDeferred();
    EXPECT_EQ(dialog, nullptr);
}

// Close

TEST(Close, OnAClosedWindowDoesNothing)
{
    TestWnd wnd;
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
    wnd.ShowModeless(NoParent);
    wnd.Close();
    wnd.mLog.clear();
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
}

TEST(Close, RunsOnCloseBeforeTheDialogIsHidden)
{
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    bool visible = false;
    bool open = true;
    wnd.mInOnClose = [&] {
        visible = wnd.Dialog()->isVisible();
        open = wnd.IsOpen();
    };
    wnd.Close();
    EXPECT_TRUE(visible);
    EXPECT_FALSE(open);
    EXPECT_FALSE(wnd.Dialog()->isVisible());
}
