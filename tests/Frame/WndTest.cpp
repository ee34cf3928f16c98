#include "LxGUI/Frame/Wnd.h"

#include <gmock/gmock.h>

#include <QtGui/QShortcut>
#include <QtTest/QTest>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QPushButton>
#include <memory>

#include "GuiTest.h"
#include "TestWnd.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

QWidget *const cNoParent = nullptr;

void DeleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Shows a window modally and calls a function in its loop.
LxResult RunModal(TestWnd &aWnd, const std::function<void(QDialog *)> &aAct)
{
    OnNextModal([aAct](QWidget *aModal) { aAct(qobject_cast<QDialog *>(aModal)); });
    return aWnd.ShowModal(nullptr);
}

const auto cAccept = [](QDialog *aDialog) { aDialog->accept(); };

}  // namespace

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
    EXPECT_EQ(RunModal(wnd, cAccept).GetCode(), 0u);
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

// ShowModal

TEST(ShowModal, OpensBeforeTheDialogIsShown)
{
    TestWnd wnd;
    wnd.SetTitle("modal");
    wnd.SetPosition(12, 34, 300, 200);
    QString title;
    QPoint position;
    QSize size;
    const LxResult result = RunModal(wnd, [&](QDialog *aDialog) {
        title = aDialog->windowTitle();
        position = aDialog->pos();
        size = aDialog->size();
        aDialog->accept();
    });
    EXPECT_EQ(result.GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
    EXPECT_EQ(title, QStringLiteral("modal"));
    EXPECT_EQ(position, QPoint(12, 34));
    EXPECT_EQ(size, QSize(300, 200));
}

TEST(ShowModal, OtherEndsAreCancelled)
{
    TestWnd wnd;
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->reject(); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->done(7); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, [](QDialog *aDialog) { aDialog->close(); }).GetCode(), 0x4002u);
    EXPECT_EQ(RunModal(wnd, cAccept).GetCode(), 0u);
}

TEST(ShowModal, EveryEndByTheUserEndsTheWorkOnce)
{
    const std::function<void(QDialog *)> ends[] = {
        [](QDialog *aDialog) { QTest::keyClick(aDialog, Qt::Key_Escape); },
        [](QDialog *aDialog) { aDialog->close(); },
        [](QDialog *aDialog) { aDialog->accept(); },
    };
    for (const auto &end : ends) {
        TestWnd wnd;
        RunModal(wnd, end);
        EXPECT_FALSE(wnd.IsOpen());
        wnd.Close();
        EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
    }
}

TEST(ShowModal, CloseEndsItAsCancelled)
{
    TestWnd wnd;
    LxResult closed(99);
    const LxResult result = RunModal(wnd, [&](QDialog *) { closed = wnd.Close(); });
    EXPECT_EQ(result.GetCode(), 0x4002u);
    EXPECT_EQ(closed.GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show", "OnClose"));
}

TEST(ShowModal, VisibleWindowIsLeftAlone)
{
    TestWnd wnd;
    wnd.ShowModeless(cNoParent);
    wnd.mLog.clear();
    const QPointer<QDialog> dialog = wnd.Dialog();
    EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 28u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
    EXPECT_EQ(wnd.Dialog(), dialog);
    EXPECT_TRUE(wnd.IsOpen());
}

TEST(ShowModal, NestedInItselfIsRefused)
{
    TestWnd wnd;
    LxResult nested;
    RunModal(wnd, [&](QDialog *aDialog) {
        nested = wnd.ShowModal(nullptr);
        aDialog->accept();
    });
    EXPECT_EQ(nested.GetCode(), 28u);
}

TEST(ShowModal, AgainReusesTheDialogWithFreshContent)
{
    QWidget parent;
    TestWnd wnd;
    QLineEdit *firstEdit = nullptr;
    RunModal(wnd, [&](QDialog *aDialog) {
        firstEdit = wnd.mEdit;
        wnd.mEdit->setText(QStringLiteral("kept"));
        aDialog->accept();
    });
    const QPointer<QDialog> first = wnd.Dialog();
    int edits = 0;
    QRect editGeometry;
    OnNextModal([&](QWidget *aModal) {
        edits = static_cast<int>(aModal->findChildren<QLineEdit *>().size());
        editGeometry = wnd.mEdit->geometry();
        qobject_cast<QDialog *>(aModal)->accept();
    });
    wnd.SetPosition(-1, -1, 333, 222);
    EXPECT_EQ(wnd.ShowModal(&parent).GetCode(), 0u);
    EXPECT_EQ(wnd.Dialog(), first);
    EXPECT_EQ(first->parentWidget(), nullptr) << "a reused dialog keeps its parent";
    EXPECT_EQ(edits, 1);
    EXPECT_NE(wnd.mEdit, firstEdit);
    EXPECT_EQ(wnd.mEdit->text(), QStringLiteral("kept"));
    EXPECT_GT(editGeometry.width(), 250) << "the new content has no layout";
}

TEST(ShowModal, ParentOfTheFirstShowIsTheDialogs)
{
    QWidget parent;
    TestWnd wnd;
    OnNextModal([](QWidget *aModal) { qobject_cast<QDialog *>(aModal)->accept(); });
    wnd.ShowModal(&parent);
    EXPECT_EQ(wnd.Dialog()->parentWidget(), &parent);
}

TEST(ShowModal, AReusedDialogBecomesTheWidgetAgain)
{
    TestWnd wnd;
    RunModal(wnd, cAccept);
    QWidget host;
    wnd.Create(&host);
    host.hide();
    QWidget *shown = nullptr;
    RunModal(wnd, [&](QDialog *aDialog) {
        shown = wnd.Widget();
        aDialog->accept();
    });
    EXPECT_EQ(shown, wnd.Dialog());
    EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Dialog());
}

TEST(ShowModal, AVisibleHostWidgetRefusesAnExistingDialog)
{
    TestWnd wnd;
    RunModal(wnd, cAccept);
    QWidget host;
    wnd.Create(&host);
    EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 28u);
    EXPECT_EQ(wnd.Widget(), &host);
}

TEST(ShowModal, AVisibleHostWidgetDoesNotRefuseANewDialog)
{
    QWidget host;
    TestWnd wnd;
    wnd.Create(&host);
    EXPECT_EQ(RunModal(wnd, cAccept).GetCode(), 0u);
    EXPECT_EQ(wnd.Widget(), wnd.Dialog());
    EXPECT_TRUE(host.isVisible());
}

TEST(ShowModal, TheWindowMayBeDestroyedInItsLoop)
{
    Log log;
    auto *wnd = new TestWnd(log);
    QPointer<QDialog> dialog;
    OnNextModal([&](QWidget *) {
        dialog = wnd->Dialog();
        delete wnd;
    });
    EXPECT_EQ(wnd->ShowModal(nullptr).GetCode(), 0x4002u);
    EXPECT_THAT(log, ElementsAre("CreateLayout", "OnOpen", "Show", "destroyed"));
    ASSERT_NE(dialog, nullptr) << "a slot of the dialog may be on the stack";
    EXPECT_FALSE(dialog->isVisible());
    DeleteDeferred();
    EXPECT_EQ(dialog, nullptr);
}

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
    wnd.ShowModeless(cNoParent);
    const QPointer<QDialog> dialog = wnd.Dialog();
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(cNoParent).GetCode(), 0u);
    EXPECT_EQ(wnd.Dialog(), dialog);
    EXPECT_THAT(wnd.mLog, IsEmpty());
}

TEST(ShowModeless, AHiddenDialogIsReplacedAndFreedLater)
{
    TestWnd wnd;
    wnd.ShowModeless(cNoParent);
    const QPointer<QDialog> first = wnd.Dialog();
    wnd.mEdit->setText(QStringLiteral("kept"));
    wnd.Close();
    EXPECT_FALSE(first->isVisible());
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(cNoParent).GetCode(), 0u);
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
        wnd.ShowModeless(cNoParent);
        wnd.mLog.clear();
        end(wnd.Dialog());
        EXPECT_THAT(wnd.mLog, ElementsAre("OnClose"));
        EXPECT_FALSE(wnd.IsOpen());
        wnd.mLog.clear();
        wnd.ShowModeless(cNoParent);
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
    EXPECT_EQ(wnd.ShowModeless(cNoParent).GetCode(), 0u);
    EXPECT_TRUE(wnd.IsVisible());
}

TEST(ShowModeless, TheEndOfADialogThatIsNoLongerTheWidgetLeavesTheWindowOpen)
{
    QWidget host;
    TestWnd wnd;
    wnd.ShowModeless(cNoParent);
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
        wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
    wnd.Close();
    wnd.mLog.clear();
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
}

TEST(Close, RunsOnCloseBeforeTheDialogIsHidden)
{
    TestWnd wnd;
    wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
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
    wnd.ShowModeless(cNoParent);
    EXPECT_EQ(wnd.Dialog()->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    EXPECT_TRUE(wnd.Dialog()->windowFlags() & Qt::CustomizeWindowHint);
}

TEST(FixedSize, LeavesAHostsWidgetAloneAlsoAfterADialog)
{
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.MakeFixedSizeDialog(350, 180); };
    RunModal(wnd, cAccept);
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
