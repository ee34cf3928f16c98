// Embedding on a real X server, in windows that another client made. Also run with a scale factor of 2: every size on
// the wire is in X pixels.

#include <gmock/gmock.h>
#include <xcb/xcb.h>

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "GuiTest.h"
#include "LxGUI/Frame/NativeWindowApi.h"
#include "LxGUI/Frame/WindowStyles.h"
#include "TestWnd.h"

namespace
{

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> Own(Reply *aReply)
{
    return {aReply, &std::free};
}

// A client with a window of its own, as a host without Qt has.
class X11Host
{
public:
    X11Host(int aWidth, int aHeight) : mConnection(xcb_connect(nullptr, nullptr))
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data;
        mWindow = xcb_generate_id(mConnection);
        const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_create_window(mConnection, XCB_COPY_FROM_PARENT, mWindow, screen->root, 20, 30,
                          static_cast<uint16_t>(aWidth), static_cast<uint16_t>(aHeight), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &mask);
        xcb_map_window(mConnection, mWindow);
        Sync();
    }

    ~X11Host() { xcb_disconnect(mConnection); }
    X11Host(const X11Host &) = delete;
    X11Host &operator=(const X11Host &) = delete;

    HWND Handle() const { return reinterpret_cast<HWND>(static_cast<uintptr_t>(mWindow)); }
    xcb_window_t Window() const { return mWindow; }

    void MoveTo(uint32_t aX, uint32_t aY)
    {
        const uint32_t values[] = {aX, aY};
        xcb_configure_window(mConnection, mWindow, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
        Sync();
    }

    void DestroyWindow()
    {
        xcb_destroy_window(mConnection, mWindow);
        Sync();
    }

    bool Exists(xcb_window_t aWindow)
    {
        return Own(xcb_get_geometry_reply(mConnection, xcb_get_geometry(mConnection, aWindow), nullptr)) != nullptr;
    }

    QRect Geometry(xcb_window_t aWindow)
    {
        const auto reply = Own(xcb_get_geometry_reply(mConnection, xcb_get_geometry(mConnection, aWindow), nullptr));
        return reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
    }

    bool IsViewable(xcb_window_t aWindow)
    {
        const auto reply =
            Own(xcb_get_window_attributes_reply(mConnection, xcb_get_window_attributes(mConnection, aWindow), nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    xcb_window_t ParentOf(xcb_window_t aWindow)
    {
        const auto reply = Own(xcb_query_tree_reply(mConnection, xcb_query_tree(mConnection, aWindow), nullptr));
        return reply ? reply->parent : xcb_window_t{XCB_NONE};
    }

    std::vector<xcb_window_t> Children()
    {
        const auto reply = Own(xcb_query_tree_reply(mConnection, xcb_query_tree(mConnection, mWindow), nullptr));
        const xcb_window_t *children = xcb_query_tree_children(reply.get());
        return {children, children + xcb_query_tree_children_length(reply.get())};
    }

    // Presses and releases the left button in the middle of a window, or a key over it.
    void Press(xcb_window_t aWindow, uint8_t aPressEvent, uint8_t aReleaseEvent, uint8_t aDetail)
    {
        const QRect geometry = Geometry(aWindow);
        for (const uint8_t type : {aPressEvent, aReleaseEvent}) {
            xcb_button_press_event_t event = {};  // Laid out like the event of a key.
            event.response_type = type;
            event.detail = aDetail;
            event.event = aWindow;
            event.same_screen = 1;
            event.event_x = static_cast<int16_t>(geometry.width() / 2);
            event.event_y = static_cast<int16_t>(geometry.height() / 2);
            xcb_send_event(mConnection, false, aWindow, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char *>(&event));
        }
        Sync();
    }

    struct Message
    {
        uint32_t mMessage;
        uint32_t mWParam;
        uint32_t mLParam;
        bool operator==(const Message &) const = default;
        friend void PrintTo(const Message &aMessage, std::ostream *aStream)
        {
            *aStream << aMessage.mMessage << ", " << aMessage.mWParam << ", " << aMessage.mLParam;
        }
    };

    // The posted messages that have come since the last call.
    std::vector<Message> TakeMessages()
    {
        Sync();
        const auto atom =
            Own(xcb_intern_atom_reply(mConnection, xcb_intern_atom(mConnection, true, 14, "_LXGUI_MESSAGE"), nullptr));
        std::vector<Message> messages;
        while (const auto event = Own(xcb_poll_for_event(mConnection))) {
            if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) {
                continue;
            }
            xcb_client_message_event_t message;
            std::memcpy(&message, event.get(), sizeof(message));
            EXPECT_EQ(message.type, atom->atom);
            EXPECT_EQ(message.format, 32);
            EXPECT_EQ(message.window, mWindow);
            messages.push_back({message.data.data32[0], message.data.data32[1], message.data.data32[2]});
        }
        return messages;
    }

private:
    void Sync() { Own(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr)); }

    xcb_connection_t *const mConnection;
    xcb_window_t mWindow = XCB_NONE;
};

xcb_window_t WindowOf(TestWnd &aWnd)
{
    return static_cast<xcb_window_t>(aWnd.Widget()->winId());
}

HWND HandleOf(xcb_window_t aWindow)
{
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(aWindow));
}

void DeleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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
    EXPECT_EQ(host.Geometry(child), QRect(0, 0, 420, 310));
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
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cStyleIndex), 0x50000000);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cExtendedStyleIndex), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::cExtendedStyleIndex, 0x77), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::cExtendedStyleIndex, -1), 0x77);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cExtendedStyleIndex), -1);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cStyleIndex), 0x50000000);
    wnd.reset();
    DeleteDeferred();
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cExtendedStyleIndex), 0);
    EXPECT_EQ(api.SetWindowLongW(child, WindowStyles::cExtendedStyleIndex, 5), 0);
    EXPECT_EQ(api.GetWindowLongW(child, WindowStyles::cExtendedStyleIndex), 0);
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
    EXPECT_EQ(second.Geometry(WindowOf(wnd)), QRect(0, 0, 100, 90));
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
    EXPECT_EQ(NativeWindows().GetWindowLongW(HandleOf(plain), WindowStyles::cStyleIndex), 0x40000000);
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
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    const xcb_window_t dialog = WindowOf(wnd);
    EXPECT_TRUE(WaitForGui([&] { return host.IsViewable(dialog); }));
    EXPECT_EQ(wnd.ShowModeless(host.Handle()).GetCode(), 0u);
    EXPECT_EQ(host.ParentOf(dialog), host.Window());
    EXPECT_TRUE(host.IsViewable(dialog));
    EXPECT_EQ(wnd.GetHandle(), HandleOf(dialog));
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
    EXPECT_EQ(api.SetParent(own, foreign), nullptr);
    EXPECT_EQ(api.GetParent(own), foreign);
    host.DestroyWindow();
    EXPECT_FALSE(api.GetClientRect(foreign, rect));
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
