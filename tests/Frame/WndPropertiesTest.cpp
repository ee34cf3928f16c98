#include <gmock/gmock.h>

#include <memory>

#include "TestWnd.h"

using testing::ElementsAre;

// Position

TEST(Position, BeforeAnyWidgetIsWhatWasSetLast)
{
    TestWnd wnd;
    int x = 0, y = 0, width = 0, height = 0;
    wnd.GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(-1, -1, -1, -1));
    wnd.SetPosition(-5, 0, 7, 2000000000);
    wnd.GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(-5, 0, 7, 2000000000));
    EXPECT_EQ(wnd.Widget(), nullptr) << "asking for the position built the content";
}

TEST(Position, SizeAloneResizesOnly)
{
    QWidget host;
    host.setGeometry(50, 60, 100, 100);
    TestWnd wnd;
    wnd.Create(&host);
    wnd.SetPosition(-1, -1, 400, 300);
    EXPECT_EQ(host.geometry(), QRect(50, 60, 400, 300));
}

TEST(Position, PlaceAloneMovesOnly)
{
    QWidget host;
    host.setGeometry(50, 60, 120, 110);
    TestWnd wnd;
    wnd.Create(&host);
    wnd.SetPosition(10, 20, 0, 0);
    EXPECT_EQ(host.pos(), QPoint(10, 20));
    EXPECT_EQ(host.size(), QSize(120, 110));
}

TEST(Position, HalfAPairAppliesNothing)
{
    QWidget host;
    host.setGeometry(50, 60, 120, 110);
    TestWnd wnd;
    wnd.Create(&host);
    wnd.SetPosition(10, 0, 400, 0);
    EXPECT_EQ(host.geometry(), QRect(50, 60, 120, 110));
}

TEST(Position, FollowsTheWidget)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    host.move(33, 44);
    host.resize(255, 166);
    int x = 0, y = 0, width = 0, height = 0;
    wnd.GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{x, y, width, height}), ElementsAre(33, 44, 255, 166));
    EXPECT_EQ(wnd.StoredWidth(), 255);
    EXPECT_EQ(wnd.StoredHeight(), 166);
}

TEST(Position, AskedOfAHiddenPlainWidgetReplacesWhatWasStored)
{
    // Kept odd: the size of the plain widget, Qt's default, is what the next dialog takes.
    TestWnd wnd;
    wnd.SetPosition(-1, -1, 300, 200);
    QWidget *plain = wnd.GetQWidget();
    plain->resize(640, 480);
    int x = 0, y = 0, width = 0, height = 0;
    wnd.GetPosition(x, y, width, height);
    wnd.ShowModeless(NoParent);
    EXPECT_EQ(wnd.Dialog()->size(), QSize(640, 480));
    delete plain;
}

// Handle, visibility, widget

TEST(Widget, AskingForItBuildsTheContentOnce)
{
    for (const auto &ask : {std::function<void(TestWnd &)>([](TestWnd &aWnd) { aWnd.GetHandle(); }),
                            std::function<void(TestWnd &)>([](TestWnd &aWnd) { aWnd.IsVisible(); }),
                            std::function<void(TestWnd &)>([](TestWnd &aWnd) { aWnd.GetQWidget(); })})
    {
        TestWnd wnd;
        ask(wnd);
        ask(wnd);
        EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout"));
        EXPECT_FALSE(wnd.IsOpen());
        ASSERT_NE(wnd.Widget(), nullptr);
        EXPECT_EQ(wnd.Widget()->windowFlags() & ~Qt::WindowFlags(Qt::WindowType_Mask),
                  QWidget().windowFlags() & ~Qt::WindowFlags(Qt::WindowType_Mask));
        const std::unique_ptr<QWidget> plain(wnd.GetQWidget());
    }
}

TEST(Widget, HandleOfAHiddenWindowIsNull)
{
    TestWnd wnd;
    const std::unique_ptr<QWidget> plain(wnd.GetQWidget());
    EXPECT_EQ(wnd.GetHandle(), nullptr);
    EXPECT_NE(wnd.Widget(), nullptr);
    EXPECT_FALSE(wnd.IsVisible());
}

TEST(Widget, HandleOfAVisibleWindowIsItsNativeId)
{
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(wnd.GetHandle()), static_cast<uintptr_t>(wnd.Dialog()->winId()));
    EXPECT_NE(wnd.GetHandle(), nullptr);
    wnd.Close();
    EXPECT_EQ(wnd.GetHandle(), nullptr);
}

TEST(Widget, IsFilteredWhenMadeOnDemand)
{
    TestWnd wnd;
    const std::unique_ptr<QWidget> plain(wnd.GetQWidget());
    plain->show();
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "Show"));
}

TEST(Widget, OneThatTheHostHasAdoptedOutlivesTheWindow)
{
    QWidget host;
    QPointer<QWidget> plain;
    {
        TestWnd wnd;
        plain = wnd.GetQWidget();
        plain->setParent(&host);
    }
    DeleteDeferred();
    EXPECT_NE(plain, nullptr);
}

// Title

TEST(Title, IsKeptAndAppliedAtOnce)
{
    TestWnd wnd;
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "");
    wnd.SetTitle("Ger\xC3\xA4t \xE2\x82\xAC");
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "Ger\xC3\xA4t \xE2\x82\xAC");
    EXPECT_EQ(wnd.Title(), QString::fromUtf8("Gerät €"));
    wnd.ShowModeless(NoParent);
    EXPECT_EQ(wnd.Dialog()->windowTitle(), QString::fromUtf8("Gerät €"));
    wnd.SetTitle("other");
    EXPECT_EQ(wnd.Dialog()->windowTitle(), QStringLiteral("other"));
    wnd.Close();
    EXPECT_STREQ(wnd.GetTitle().GetAscii(), "other");
}

// Fixed-size dialogs

TEST(FixedSize, AppliesToTheWindowsDialog)
{
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.MakeFixedSizeDialog(350, 180); };
    wnd.ShowModeless(NoParent);
    EXPECT_EQ(wnd.Dialog()->minimumSize(), QSize(350, 180));
    EXPECT_EQ(wnd.Dialog()->maximumSize(), QSize(350, 180));
    const Qt::WindowFlags flags = wnd.Dialog()->windowFlags();
    EXPECT_FALSE(flags & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(flags & Qt::CustomizeWindowHint);
    EXPECT_EQ(flags & Qt::WindowType_Mask, Qt::Dialog);
    EXPECT_TRUE(wnd.IsVisible());
}

TEST(FixedSize, WithoutASizeSetsTheFlagsOnly)
{
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.MakeFixedSizeDialog(wnd.StoredWidth(), wnd.StoredHeight()); };
    wnd.ShowModeless(NoParent);
    EXPECT_EQ(wnd.Dialog()->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    EXPECT_TRUE(wnd.Dialog()->windowFlags() & Qt::CustomizeWindowHint);
}

TEST(FixedSize, LeavesAHostsWidgetAloneAlsoAfterADialog)
{
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.MakeFixedSizeDialog(350, 180); };
    RunModal(wnd, Accept);
    QWidget host;
    const Qt::WindowFlags flags = host.windowFlags();
    wnd.Create(&host);
    EXPECT_EQ(host.windowFlags(), flags);
    EXPECT_EQ(host.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

TEST(FixedSize, AModalDialogIsShownAgainWithIt)
{
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.MakeFixedSizeDialog(350, 180); };
    for (int round = 0; round < 2; ++round) {
        QSize size;
        EXPECT_EQ(RunModal(wnd,
                           [&](QDialog *aDialog) {
                               size = aDialog->size();
                               aDialog->accept();
                           })
                      .GetCode(),
                  0u);
        EXPECT_EQ(size, QSize(350, 180));
    }
}
