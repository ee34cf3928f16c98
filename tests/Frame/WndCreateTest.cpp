#include <gmock/gmock.h>

#include <QtGui/QShortcut>
#include <QtWidgets/QMainWindow>
#include <memory>

#include "GuiTest.h"
#include "TestWnd.h"

using testing::ElementsAre;
using testing::IsEmpty;

// Create(QWidget *)

TEST(CreateInHostWidget, BuildsOpensAndThenShows)
{
    QWidget host;
    TestWnd wnd;
    bool openInOnOpen = false;
    wnd.mInOnOpen = [&] { openInOnOpen = wnd.IsOpen(); };
    wnd.SetTitle("Kamera \xC3\xA4");
    wnd.SetPosition(30, 40, 410, 320);
    EXPECT_EQ(wnd.Create(&host).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show"));
    EXPECT_TRUE(openInOnOpen);
    EXPECT_TRUE(wnd.IsOpen());
    EXPECT_EQ(wnd.GetQWidget(), &host);
    EXPECT_TRUE(host.isVisible());
    EXPECT_EQ(host.windowTitle(), QString::fromUtf8("Kamera ä"));
    EXPECT_EQ(host.size(), QSize(410, 320));
    EXPECT_EQ(host.pos(), QPoint(30, 40));
    EXPECT_EQ(wnd.mEdit->parentWidget(), &host);
    EXPECT_EQ(host.layout()->indexOf(wnd.mEdit), 0);
}

TEST(CreateInHostWidget, NullIsAnInvalidArgument)
{
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(static_cast<QWidget *>(nullptr)).GetCode(), 0x4001u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
}

TEST(CreateInHostWidget, CloseEndsTheWorkAndHidesNothing)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    wnd.mLog.clear();
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("OnClose"));
    EXPECT_TRUE(host.isVisible());
    EXPECT_FALSE(wnd.IsOpen());
}

TEST(CreateInHostWidget, AgainOnTheSameHostReplacesTheContent)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    wnd.mEdit->setText(QStringLiteral("kept"));
    const QPointer<QLineEdit> first = wnd.mEdit;
    wnd.Create(&host);
    EXPECT_THAT(host.findChildren<QLineEdit *>(), ElementsAre(wnd.mEdit.data()));
    EXPECT_NE(wnd.mEdit, first);
    EXPECT_EQ(wnd.mEdit->text(), QStringLiteral("kept"));
    EXPECT_EQ(host.layout()->count(), 2);
    EXPECT_EQ(host.layout()->indexOf(wnd.mEdit), 0);
    DeleteDeferred();
    EXPECT_EQ(first, nullptr);
}

TEST(CreateInHostWidget, ObjectsOfReplacedContentGoWithIt)
{
    QWidget host;
    const QPointer<QShortcut> hosts = new QShortcut(QKeySequence(Qt::Key_F4), &host);
    TestWnd wnd;
    QPointer<QShortcut> shortcut;
    wnd.mInCreateLayout = [&] { shortcut = new QShortcut(QKeySequence(Qt::Key_F5), wnd.Widget()); };
    wnd.Create(&host);
    const QPointer<QShortcut> first = shortcut;
    wnd.Create(&host);
    EXPECT_EQ(first, nullptr) << "two shortcuts of one key are ambiguous";
    EXPECT_THAT(host.findChildren<QShortcut *>(), ElementsAre(hosts.data(), shortcut.data()));
}

TEST(CreateInHostWidget, ReplacedContentNoLongerCallsTheWindow)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    const QPointer<QLineEdit> first = wnd.mEdit;
    wnd.Create(&host);
    wnd.mLog.clear();
    first->setText(QStringLiteral("late"));
    EXPECT_THAT(wnd.mLog, IsEmpty());
    wnd.mEdit->setText(QStringLiteral("new"));
    EXPECT_THAT(wnd.mLog, ElementsAre("text new"));
}

TEST(CreateInHostWidget, ContentMayBeReplacedFromItsOwnSlot)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    const QPointer<QLineEdit> first = wnd.mEdit;
    QObject::connect(first, &QLineEdit::textChanged, &host, [&] { wnd.Create(&host); });
    first->setText(QStringLiteral("again"));
    EXPECT_NE(wnd.mEdit, first);
    EXPECT_EQ(wnd.mEdit->text(), QStringLiteral("again"));
}

TEST(CreateInHostWidget, KeepsTheHostsLayoutAndChildren)
{
    QWidget host;
    auto *hostLayout = new QVBoxLayout(&host);
    const QPointer<QLabel> hostLabel = new QLabel(QStringLiteral("host's"));
    hostLayout->addWidget(hostLabel);
    const QPointer<QLabel> loose = new QLabel(QStringLiteral("without layout"), &host);
    TestWnd wnd;
    for (int round = 0; round < 3; ++round) {
        wnd.Create(&host);
        DeleteDeferred();
        ASSERT_EQ(host.layout(), hostLayout);
        ASSERT_EQ(hostLayout->count(), 2);
        EXPECT_EQ(hostLayout->itemAt(0)->widget(), hostLabel.data());
        EXPECT_EQ(hostLayout->itemAt(1)->widget(), wnd.Content());
        EXPECT_NE(wnd.Content(), &host);
        EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Content());
        EXPECT_EQ(loose->parentWidget(), &host);
        EXPECT_EQ(host.findChildren<QLineEdit *>().size(), 1);
    }
}

TEST(CreateInHostWidget, TheContainerInAHostsLayoutIsFilteredToo)
{
    QWidget host;
    new QVBoxLayout(&host);
    TestWnd wnd;
    wnd.Create(&host);
    EXPECT_TRUE(WaitForGui([&] { return wnd.mContentResizes > 0; }));
}

TEST(CreateInHostWidget, AMainWindowGetsTheContentAsItsCentralWidget)
{
    QMainWindow host;
    TestWnd wnd;
    wnd.Create(&host);
    EXPECT_EQ(host.centralWidget(), wnd.Content());
    wnd.Create(&host);
    EXPECT_EQ(host.centralWidget(), wnd.Content());
    EXPECT_EQ(host.findChildren<QLineEdit *>().size(), 1);
}

TEST(CreateInHostWidget, ADyingHostEndsTheWorkWhileTheContentLives)
{
    auto host = std::make_unique<QWidget>();
    TestWnd wnd;
    wnd.Create(host.get());
    bool editLived = false;
    wnd.mInOnClose = [&] { editLived = !wnd.mEdit.isNull() && wnd.Widget() == nullptr; };
    wnd.mLog.clear();
    host.reset();
    EXPECT_THAT(wnd.mLog, ElementsAre("OnClose"));
    EXPECT_TRUE(editLived);
    EXPECT_FALSE(wnd.IsOpen());
    EXPECT_EQ(wnd.Widget(), nullptr);
    wnd.SetTitle("still usable");
    wnd.SetPosition(1, 2, 3, 4);
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_EQ(RunModal(wnd, Accept).GetCode(), 0u);
}

TEST(CreateInHostWidget, MovingToAnotherHostTakesTheContentAlong)
{
    QWidget first;
    QWidget second;
    TestWnd wnd;
    wnd.Create(&first);
    wnd.Create(&second);
    EXPECT_THAT(first.findChildren<QWidget *>(), IsEmpty());
    EXPECT_EQ(first.layout(), nullptr);
    EXPECT_EQ(second.findChildren<QLineEdit *>().size(), 1);
    first.hide();
    wnd.mLog.clear();
    first.show();
    EXPECT_THAT(wnd.mLog, IsEmpty()) << "the former host is still filtered";
}

TEST(CreateInHostWidget, AVisibleDialogDoesNotStayBehindEmpty)
{
    QWidget host;
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    wnd.Create(&host);
    EXPECT_FALSE(wnd.Dialog()->isVisible());
    EXPECT_TRUE(wnd.IsOpen());
    wnd.ShowModeless(NoParent);
    EXPECT_TRUE(wnd.Dialog()->isVisible());
    EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Dialog());
}

TEST(CreateInHostWidget, InTheModalLoopEndsTheLoopAndStaysOpen)
{
    QWidget host;
    TestWnd wnd;
    EXPECT_EQ(RunModal(wnd, [&](QDialog *) { wnd.Create(&host); }).GetCode(), 0x4002u);
    EXPECT_TRUE(wnd.IsOpen());
    EXPECT_EQ(wnd.Widget(), &host);
    EXPECT_EQ(wnd.mEdit->parentWidget(), &host);
}

TEST(CreateInHostWidget, TheNextWindowFindsTheHostAsItWas)
{
    QWidget host;
    {
        TestWnd wnd;
        wnd.Create(&host);
    }
    EXPECT_EQ(host.layout(), nullptr);
    EXPECT_THAT(host.findChildren<QWidget *>(), IsEmpty());
    TestWnd next;
    next.Create(&host);
    EXPECT_EQ(next.Content(), &host);
}

// Create(HWND, int)

TEST(CreateUnderNativeWindow, WithoutParentIsATopLevelWindowAndAnError)
{
    TestWnd wnd;
    wnd.SetTitle("top");
    wnd.SetPosition(15, 25, 320, 240);
    EXPECT_EQ(wnd.Create(nullptr, 0).GetCode(), 0x4001u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show"));
    EXPECT_TRUE(wnd.IsOpen());
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_TRUE(wnd.Widget()->isWindow());
    EXPECT_EQ(wnd.Widget()->windowTitle(), QStringLiteral("top"));
    EXPECT_EQ(wnd.Widget()->pos(), QPoint(15, 25));
    EXPECT_EQ(wnd.Widget()->size(), QSize(320, 240));
}

TEST(CreateUnderNativeWindow, AlwaysMakesANewWidget)
{
    TestWnd wnd;
    const QPointer<QWidget> handedOut = wnd.GetQWidget();
    wnd.Create(nullptr, 0);
    EXPECT_NE(wnd.Widget(), handedOut);
    EXPECT_NE(handedOut, nullptr) << "a widget that the host knows must not be deleted";
    delete handedOut;
}

TEST(CreateUnderNativeWindow, AReplacedWidgetThatNoHostKnowsIsFreed)
{
    TestWnd wnd;
    wnd.Create(nullptr, 0);
    const QPointer<QWidget> first = wnd.Widget();
    wnd.Create(nullptr, 0);
    DeleteDeferred();
    EXPECT_EQ(first, nullptr);
}
