// What a host without a QApplication sees.

#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "LxGUI/Frame/ApplicationThread.h"
#include "TestWnd.h"

using testing::ElementsAre;

namespace
{

bool HasApplication()
{
    return QCoreApplication::instance() != nullptr;
}

}  // namespace

TEST(OwnedApplication, TheFirstWindowMakesItAndEndsIt)
{
    ASSERT_FALSE(HasApplication());
    for (int cycle = 0; cycle < 3; ++cycle) {
        auto first = std::make_unique<TestWnd>();
        ASSERT_TRUE(HasApplication());
        EXPECT_NE(qobject_cast<QApplication *>(QCoreApplication::instance()), nullptr);
        QCoreApplication *const application = QCoreApplication::instance();
        auto second = std::make_unique<TestWnd>();
        EXPECT_EQ(QCoreApplication::instance(), application);
        first->ShowModeless(NoParent);
        second->ShowModeless(NoParent);
        Wnd::DoEvents();
        EXPECT_TRUE(first->IsVisible());
        second.reset();
        EXPECT_EQ(QCoreApplication::instance(), application);
        first.reset();
        EXPECT_FALSE(HasApplication());
    }
}

TEST(OwnedApplication, HasNoArguments)
{
    TestWnd wnd;
    EXPECT_TRUE(QCoreApplication::arguments().isEmpty());
}

TEST(OwnedApplication, EndsWithTheOwnerThoughOtherWindowsLive)
{
    auto owner = std::make_unique<TestWnd>();
    auto other = std::make_unique<TestWnd>();
    const std::unique_ptr<QWidget> widget(other->GetQWidget());
    other->SetPosition(-1, -1, 200, 100);
    owner.reset();
    ASSERT_FALSE(HasApplication());
    // Without an application nothing can be shown, and nothing breaks.
    EXPECT_EQ(other->ShowModal(nullptr).GetCode(), 0x4001u);
    EXPECT_EQ(other->ShowModeless(NoParent).GetCode(), 0x4001u);
    EXPECT_EQ(other->Create(nullptr, 0).GetCode(), 0x4001u);
    other->SetTitle("title");
    other->SetPosition(1, 1, 10, 10);
    int x = 0, y = 0, width = 0, height = 0;
    other->GetPosition(x, y, width, height);
    EXPECT_THAT((std::vector{width, height}), ElementsAre(200, 100));
    EXPECT_FALSE(other->IsVisible());
    EXPECT_EQ(other->GetHandle(), nullptr);
    EXPECT_EQ(other->Close().GetCode(), 0u);
    Wnd::DoEvents();
    other.reset();
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, AWindowWithoutWidgetOutlivesItsEnd)
{
    auto owner = std::make_unique<TestWnd>();
    auto other = std::make_unique<TestWnd>();
    owner.reset();
    EXPECT_EQ(other->GetQWidget(), nullptr);
    EXPECT_EQ(other->ShowModeless(static_cast<HWND>(nullptr)).GetCode(), 0x4001u);
    const TestWnd next;
    EXPECT_TRUE(HasApplication());
    EXPECT_EQ(other->ShowModeless(NoParent).GetCode(), 0u) << "the next window's application serves it too";
    EXPECT_TRUE(other->IsVisible());
    other.reset();
}

TEST(OwnedApplication, AnOwnerThatIsOpenClosesItsDialogAndGoes)
{
    QPointer<QDialog> dialog;
    {
        TestWnd wnd;
        wnd.ShowModeless(NoParent);
        dialog = wnd.Dialog();
        Wnd::DoEvents();
    }
    EXPECT_EQ(dialog, nullptr);
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, DestroyingTheOwnerInsideTheLoopKeepsItUntilTheLoopEnds)
{
    auto wnd = std::make_unique<TestWnd>();
    wnd->ShowModeless(NoParent);
    bool lived = false;
    QTimer::singleShot(0, qApp, [&] {
        wnd.reset();
        lived = HasApplication();
        QCoreApplication::quit();
    });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_TRUE(lived);
    EXPECT_TRUE(HasApplication()) << "it waits for the next window, or for the end of the program";
    {
        const TestWnd next;
        EXPECT_TRUE(HasApplication());
    }
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, DestroyingTheOwnerLaterFromItsOwnLoop)
{
    auto *wnd = new TestWnd;
    wnd->ShowModeless(NoParent);
    const QPointer<TestWnd> guard(wnd);
    QTimer::singleShot(0, qApp, [&] {
        wnd->deleteLater();
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
    QCoreApplication::exec();
    EXPECT_EQ(guard, nullptr);
    EXPECT_TRUE(HasApplication());
    Wnd::DoEvents();
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, DestroyingTheOwnerInsideDoEventsKeepsItUntilDoEventsEnds)
{
    auto wnd = std::make_unique<TestWnd>();
    bool lived = false;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            wnd.reset();
            lived = HasApplication();
        },
        Qt::QueuedConnection);
    Wnd::DoEvents();
    EXPECT_EQ(wnd, nullptr);
    EXPECT_TRUE(lived);
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, DestroyingTheOwnerInItsModalLoopEndsBoth)
{
    Log log;
    auto *wnd = new TestWnd(log);
    QTimer::singleShot(0, qApp, [&] { delete wnd; });
    EXPECT_EQ(wnd->ShowModal(nullptr).GetCode(), 0x4002u);
    EXPECT_THAT(log, ElementsAre("CreateLayout", "OnOpen", "Show", "destroyed"));
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, AWindowMadeWhileItWaitsTakesItOver)
{
    auto first = std::make_unique<TestWnd>();
    QCoreApplication *const application = QCoreApplication::instance();
    std::unique_ptr<TestWnd> second;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            first.reset();
            second = std::make_unique<TestWnd>();
        },
        Qt::QueuedConnection);
    Wnd::DoEvents();
    EXPECT_EQ(QCoreApplication::instance(), application);
    EXPECT_EQ(second->ShowModeless(NoParent).GetCode(), 0u);
    second.reset();
    EXPECT_FALSE(HasApplication());
}

TEST(OwnedApplication, AModalDialogRunsWithoutAnyOtherLoop)
{
    TestWnd wnd;
    for (int round = 0; round < 2; ++round) {
        QTimer::singleShot(0, qApp, [&] { wnd.Dialog()->accept(); });
        EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 0u);
    }
}

TEST(OwnedApplication, TheHostsApplicationIsNeverTouched)
{
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    QApplication application(count, arguments);
    {
        TestWnd wnd;
        wnd.ShowModeless(NoParent);
        Wnd::DoEvents();
    }
    EXPECT_EQ(QCoreApplication::instance(), &application);
}

TEST(OwnedApplication, AnApplicationWithoutWidgetsShowsNothing)
{
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    TestWnd wnd;
    EXPECT_EQ(wnd.ShowModal(nullptr).GetCode(), 0x4001u);
    EXPECT_EQ(wnd.Create(nullptr, 0).GetCode(), 0x4001u);
    EXPECT_EQ(wnd.GetQWidget(), nullptr);
}

TEST(OwnedApplicationDeathTest, OneThatWaitsAtTheEndOfTheProgramDoesNoHarm)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            auto wnd = std::make_unique<TestWnd>();
            wnd->ShowModeless(NoParent);
            QTimer::singleShot(0, qApp, [&] {
                wnd.reset();
                QCoreApplication::quit();
            });
            QCoreApplication::exec();
            std::fputs(HasApplication() ? "waits" : "has ended", stderr);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "waits");
}

TEST(OwnedApplicationDeathTest, TheProgramMayEndInsideTheLoopThatItWaitsFor)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            auto wnd = std::make_unique<TestWnd>();
            wnd->ShowModeless(NoParent);
            QTimer::singleShot(0, qApp, [&] {
                wnd.reset();
                std::exit(0);
            });
            QCoreApplication::exec();
        },
        testing::ExitedWithCode(0), "");
}

TEST(OwnedApplicationDeathTest, AnOwnerThatLivesUntilTheEndOfTheProgramDoesNoHarm)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static const auto sWnd = std::make_unique<TestWnd>();
            sWnd->ShowModeless(NoParent);
            Wnd::DoEvents();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ApplicationThread, WithoutApplicationTheCallIsDirect)
{
    ASSERT_FALSE(HasApplication());
    std::thread::id ran;
    std::thread::id caller;
    std::thread worker([&] {
        caller = std::this_thread::get_id();
        CallOnApplicationThread([&] { ran = std::this_thread::get_id(); });
    });
    worker.join();
    EXPECT_EQ(ran, caller);
}
