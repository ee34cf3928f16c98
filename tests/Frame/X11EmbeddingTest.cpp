// Embedding on a real X server, in windows that another client made. Also run with a scale factor of 2: every size on
// the wire is in X pixels.

#include <gmock/gmock.h>

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <algorithm>
#include <memory>

#include "GuiTest.h"
#include "LxGUI/Frame/NativeWindowApi.h"
#include "LxGUI/Frame/WindowStyles.h"
#include "TestWnd.h"
#include "X11Host.h"

namespace
{

xcb_window_t WindowOf(TestWnd &aWnd)
{
    return static_cast<xcb_window_t>(aWnd.Widget()->winId());
}

}  // namespace

TEST(X11Embedding, RunsOnAnXServer)
{
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"));
}

TEST(X11Embedding, TheChildFillsTheParentAndTheParentIsTold)
{
    X11Host host(420, 310);
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(host.Handle(), 0).GetCode(), 0u);
    const xcb_window_t child = WindowOf(wnd);
    EXPECT_EQ(host.ParentOf(child), host.Window());
    EXPECT_EQ(host.Geometry(child), (X11Host::Rectangle{0, 0, 420, 310}));
    EXPECT_TRUE(host.IsViewable(child));
    EXPECT_THAT(host.TakeMessages(), testing::ElementsAre(X11Host::Message{5, 0, (310u << 16) | 420u}));
    const qreal ratio = wnd.Widget()->devicePixelRatioF();
    EXPECT_TRUE(WaitForGui([&] { return wnd.Widget()->size() * ratio == QSize(420, 310); }));
    EXPECT_TRUE(WaitForGui([&] { return wnd.Widget()->pos() == QPoint(0, 0); }));
    EXPECT_EQ(wnd.GetHandle(), HandleOf(child));
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_EQ(wnd.ParentHandle(), nullptr);
}

TEST(X11Embedding, TheContentIsDrawnIntoTheHostsWindow)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.mInCreateLayout = [&] { wnd.Widget()->setStyleSheet(QStringLiteral("background-color: #ff0000")); };
    wnd.Create(host.Handle(), 0);
    EXPECT_TRUE(WaitForGui([&] {
        const QImage shown = QGuiApplication::primaryScreen()->grabWindow(host.Window()).toImage();
        return !shown.isNull() && shown.pixelColor(2, 2) == QColor(Qt::red);
    }));
}

TEST(X11Embedding, MouseAndKeyboardReachTheChild)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.Create(host.Handle(), 0);
    wnd.mLabel->hide();
    wnd.mEdit->setFixedHeight(wnd.mEdit->parentWidget()->height() / 2);
    wnd.Widget()->setFocus();
    EXPECT_TRUE(WaitForGui([&] { return wnd.mEdit->geometry().contains(wnd.Widget()->rect().center()); }));
    host.Press(WindowOf(wnd), XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
    EXPECT_TRUE(WaitForGui([&] { return wnd.Widget()->focusWidget() == wnd.mEdit; }));
    const uint8_t keyA = 38;
    host.Press(WindowOf(wnd), XCB_KEY_PRESS, XCB_KEY_RELEASE, keyA);
    EXPECT_TRUE(WaitForGui([&] { return wnd.mEdit->text() == QStringLiteral("a"); }));
}

TEST(X11Embedding, AClickTakesTheKeyboardFocusAndTheHostCanTakeItBack)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.Create(host.Handle(), 0);
    EXPECT_TRUE(WaitForGui([&] { return host.IsViewable(WindowOf(wnd)); }));
    host.TakeFocus();
    for (int round = 0; round < 2; ++round) {
        host.Press(WindowOf(wnd), XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
        EXPECT_TRUE(WaitForGui([&] { return host.FocusWindow() == WindowOf(wnd); }));
        EXPECT_TRUE(WaitForGui([&] { return wnd.Widget()->isActiveWindow(); }));
        wnd.mEdit->setFocus();
        EXPECT_TRUE(WaitForGui([&] { return wnd.mEdit->hasFocus(); }));
        host.TakeFocus();
        EXPECT_TRUE(WaitForGui([&] { return !wnd.mEdit->hasFocus(); }));
    }
}

TEST(X11Embedding, GlobalPositionsFollowTheHost)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.Create(host.Handle(), 0);
    host.MoveTo(240, 160);
    const qreal ratio = wnd.Widget()->devicePixelRatioF();
    EXPECT_TRUE(WaitForGui([&] { return wnd.Widget()->mapToGlobal(QPoint(0, 0)) * ratio == QPoint(240, 160); }));
}

TEST(X11Embedding, StylesAreNumbersThatStayWithTheWindow)
{
    X11Host host(200, 150);
    auto wnd = std::make_unique<TestWnd>();
    wnd->Create(host.Handle(), 0);
    const HWND child = HandleOf(WindowOf(*wnd));
    NativeWindowApi &api = NativeWindows();
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::StyleIndex), 0x50000000);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::ExtendedStyleIndex), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::ExtendedStyleIndex, 0x77), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::ExtendedStyleIndex, -1), 0x77);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::ExtendedStyleIndex), -1);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::StyleIndex), 0x50000000);
    wnd.reset();
    DeleteDeferred();
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::ExtendedStyleIndex), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::ExtendedStyleIndex, 5), 0);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::ExtendedStyleIndex), 0);
}

TEST(X11Embedding, TheHostsWindowOutlivesTheWindow)
{
    X11Host host(200, 150);
    xcb_window_t child = XCB_NONE;
    {
        TestWnd wnd;
        wnd.Create(host.Handle(), 0);
        child = WindowOf(wnd);
    }
    DeleteDeferred();
    EXPECT_TRUE(WaitForGui([&] { return !host.Exists(child); }));
    DeleteDeferred();
    EXPECT_TRUE(host.IsViewable(host.Window()));
    EXPECT_THAT(host.Children(), testing::IsEmpty());
}

TEST(X11Embedding, AHostThatDestroysItsWindowFirstDoesNoHarm)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.Create(host.Handle(), 0);
    const xcb_window_t child = WindowOf(wnd);
    host.DestroyWindow();
    EXPECT_TRUE(WaitForGui([&] { return !host.Exists(child); }));
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    X11Host next(100, 90);
    EXPECT_EQ(wnd.Create(next.Handle(), 0).GetCode(), 0u);
    EXPECT_EQ(next.ParentOf(WindowOf(wnd)), next.Window());
}

TEST(X11Embedding, ASecondCreateMovesTheWindow)
{
    X11Host first(200, 150);
    X11Host second(100, 90);
    TestWnd wnd;
    wnd.Create(first.Handle(), 0);
    wnd.Create(second.Handle(), 0);
    EXPECT_EQ(second.Geometry(WindowOf(wnd)), (X11Host::Rectangle{0, 0, 100, 90}));
    DeleteDeferred();
    EXPECT_TRUE(WaitForGui([&] { return first.Children().empty(); }));
}

TEST(X11Embedding, AParentThatDoesNotExistFailsQuietly)
{
    X11Host host(200, 150);
    host.DestroyWindow();
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(host.Handle(), 0).GetCode(), 0u);
    EXPECT_TRUE(wnd.IsVisible());
    EXPECT_EQ(NativeWindows().GetParent(HandleOf(WindowOf(wnd))), nullptr);
}

TEST(X11Embedding, ModelessReparentsTheHiddenPlainWidgetAndShowsADialog)
{
    X11Host host(200, 150);
    TestWnd wnd;
    EXPECT_EQ(wnd.ShowModeless(host.Handle()).GetCode(), 0u);
    EXPECT_EQ(wnd.ParentHandle(), host.Handle());
    ASSERT_EQ(host.Children().size(), 1u);
    const xcb_window_t plain = host.Children().front();
    EXPECT_NE(plain, WindowOf(wnd));
    EXPECT_FALSE(host.IsViewable(plain));
    EXPECT_EQ(NativeWindows().GetParent(HandleOf(plain)), host.Handle());
    EXPECT_EQ(NativeWindows().GetWindowLongW(HandleOf(plain), WindowStyles::StyleIndex), 0x40000000);
    EXPECT_TRUE(wnd.IsDialog());
    EXPECT_TRUE(WaitForGui([&] { return host.IsViewable(WindowOf(wnd)); }));
    EXPECT_NE(host.ParentOf(WindowOf(wnd)), host.Window());
    DeleteDeferred();
    EXPECT_TRUE(WaitForGui([&] { return host.Children().empty(); }));
}

TEST(X11Embedding, ModelessNotificationsReachTheParent)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.ShowModeless(host.Handle());
    EXPECT_TRUE(NativeWindows().PostMessageA(wnd.ParentHandle(), 0x4C01, 7, -2));
    EXPECT_THAT(host.TakeMessages(), testing::ElementsAre(X11Host::Message{0x4C01, 7, 0xFFFFFFFE}));
}

TEST(X11Embedding, AVisibleDialogThatGetsAParentStaysVisible)
{
    X11Host host(200, 150);
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    const xcb_window_t dialog = WindowOf(wnd);
    EXPECT_TRUE(WaitForGui([&] { return host.IsViewable(dialog); }));
    EXPECT_EQ(wnd.ShowModeless(host.Handle()).GetCode(), 0u);
    EXPECT_EQ(host.ParentOf(dialog), host.Window());
    EXPECT_TRUE(host.IsViewable(dialog));
    EXPECT_EQ(wnd.GetHandle(), HandleOf(dialog));
}

TEST(X11Windows, AVisibleDialogIsRaisedToTheFront)
{
    X11Host screen(50, 40);
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    TestWnd other;
    other.ShowModeless(NoParent);
    EXPECT_TRUE(WaitForGui([&] { return screen.IsViewable(WindowOf(wnd)) && screen.IsViewable(WindowOf(other)); }));
    const auto isAbove = [&](TestWnd &aUpper, TestWnd &aLower) {
        const std::vector<xcb_window_t> windows = screen.TopLevelWindows();
        const auto lower = std::find(windows.begin(), windows.end(), WindowOf(aLower));
        return std::find(lower, windows.end(), WindowOf(aUpper)) != windows.end();
    };
    EXPECT_TRUE(WaitForGui([&] { return isAbove(other, wnd); }));
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(NoParent).GetCode(), 0u);
    EXPECT_TRUE(WaitForGui([&] { return isAbove(wnd, other); }));
    EXPECT_THAT(wnd.mLog, testing::IsEmpty());
}

TEST(X11NativeWindows, CallsOnWindowsThatDoNotExistFail)
{
    X11Host host(200, 150);
    NativeWindowApi &api = NativeWindows();
    const HWND foreign = host.Handle();
    QWidget widget;
    const HWND own = HandleOf(static_cast<xcb_window_t>(widget.winId()));
    NativeRect rect{1, 2, 3, 4};
    EXPECT_TRUE(api.GetClientRect(foreign, rect));
    EXPECT_EQ(rect.mLeft, 0);
    EXPECT_EQ(rect.mTop, 0);
    EXPECT_EQ(rect.Width(), 200);
    EXPECT_EQ(rect.Height(), 150);
    EXPECT_EQ(api.SetParent(foreign, own), nullptr) << "not a window of this program";
    EXPECT_EQ(api.GetParent(foreign), nullptr);
    EXPECT_FALSE(api.SetWindowPos(own, nullptr, 0, 0, 0, 10, 0));
    EXPECT_TRUE(api.SetWindowPos(own, nullptr, 0, 0, 10, 10, 0));
    EXPECT_EQ(api.SetParent(own, foreign), nullptr);
    EXPECT_EQ(api.GetParent(own), foreign);
    host.DestroyWindow();
    EXPECT_FALSE(api.GetClientRect(foreign, rect));
    EXPECT_FALSE(api.SetWindowPos(foreign, nullptr, 0, 0, 10, 10, 0));
    EXPECT_FALSE(api.PostMessageW(foreign, 5, 0, 0));
    EXPECT_FALSE(api.PostMessageA(foreign, 5, 0, 0));
    EXPECT_EQ(api.GetParent(foreign), nullptr);
}

TEST(X11NativeWindows, SetParentReturnsTheFormerParent)
{
    X11Host first(200, 150);
    X11Host second(200, 150);
    QWidget widget;
    const HWND own = HandleOf(static_cast<xcb_window_t>(widget.winId()));
    EXPECT_EQ(NativeWindows().SetParent(own, first.Handle()), nullptr);
    EXPECT_EQ(NativeWindows().SetParent(own, second.Handle()), first.Handle());
    EXPECT_EQ(NativeWindows().GetParent(own), second.Handle());
}
