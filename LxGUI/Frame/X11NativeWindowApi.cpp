#include "LxGUI/Frame/X11NativeWindowApi.h"

#include <xcb/xcb.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "LxGUI/Frame/WindowStyles.h"

namespace
{

// Replies of xcb are freed with free().
struct FreeReply
{
    void operator()(void *aReply) const { std::free(aReply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

xcb_window_t WindowOf(HWND aHandle)
{
    return static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(aHandle));
}

HWND HandleOf(xcb_window_t aWindow)
{
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(aWindow));
}

xcb_connection_t *Connection()
{
    const auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

struct Family
{
    xcb_window_t mRoot = XCB_NONE;
    xcb_window_t mParent = XCB_NONE;
};

// The root window of a window's screen and its parent; zeros when there is no such window.
Family FamilyOf(xcb_connection_t *aConnection, xcb_window_t aWindow)
{
    const ReplyPointer<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(aConnection, xcb_query_tree(aConnection, aWindow), nullptr));
    return reply ? Family{reply->root, reply->parent} : Family();
}

// Qt's own window of a handle, if the handle is one of Qt's.
QWindow *FindQWindow(HWND aHandle)
{
    for (QWindow *window : QGuiApplication::allWindows()) {
        if (window->handle() && window->type() != Qt::ForeignWindow && window->winId() == WindowOf(aHandle)) {
            return window;
        }
    }
    return nullptr;
}

QByteArray StyleProperty(int aIndex)
{
    return "_lxguiWindowLong" + QByteArray::number(aIndex);
}

// Withdraws a mapped top-level window as the ICCCM (4.1.4) demands, so that a window manager lets go of it before it
// gets another parent. False when the window was not mapped.
bool Withdraw(xcb_connection_t *aConnection, xcb_window_t aWindow, xcb_window_t aRoot)
{
    const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(aConnection, xcb_get_window_attributes(aConnection, aWindow), nullptr));
    if (!attributes || attributes->map_state == XCB_MAP_STATE_UNMAPPED) {
        return false;
    }
    xcb_unmap_window(aConnection, aWindow);
    xcb_unmap_notify_event_t event = {};
    event.response_type = XCB_UNMAP_NOTIFY;
    event.event = aRoot;
    event.window = aWindow;
    char bytes[32] = {};  // What xcb_send_event() reads.
    std::memcpy(bytes, &event, sizeof(event));
    xcb_send_event(aConnection, false, aRoot, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   bytes);
    return true;
}

// Takes the keyboard focus for an embedded window that is clicked. Window managers give it to top-level windows only,
// and Qt asks for it by XEmbed, which a plain host does not know, and takes the window for active from the start.
class FocusOnClick : public QObject
{
public:
    bool eventFilter(QObject *aObject, QEvent *aEvent) override
    {
        if (aEvent->type() == QEvent::MouseButtonPress) {
            auto *window = qobject_cast<QWindow *>(aObject);
            xcb_connection_t *connection = Connection();
            if (connection && window && window->parent()) {
                xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, static_cast<xcb_window_t>(window->winId()),
                                    XCB_CURRENT_TIME);
                xcb_flush(connection);
            }
        }
        return false;
    }
};

}  // namespace

HWND X11NativeWindowApi::SetParent(HWND aChild, HWND aParent)
{
    xcb_connection_t *connection = Connection();
    QWindow *child = FindQWindow(aChild);
    if (!connection || !child) {
        return nullptr;
    }
    const Family before = FamilyOf(connection, WindowOf(aChild));
    const Family parent = FamilyOf(connection, WindowOf(aParent));
    if (before.mRoot == XCB_NONE || parent.mRoot == XCB_NONE) {
        return nullptr;
    }
    const bool mapped = Withdraw(connection, WindowOf(aChild), before.mRoot);
    // Through Qt, which then knows that the window is embedded: it translates coordinates and takes the keyboard focus
    // accordingly. The wrapper of the parent owns the child as its QObject parent, so it must stay as long as the child
    // does, and only the child's end may end it.
    QWindow *wrapper = QWindow::fromWinId(WindowOf(aParent));
    child->setParent(wrapper);
    QObject::connect(child, &QObject::destroyed, wrapper, &QObject::deleteLater);
    static FocusOnClick sFocusOnClick;
    child->installEventFilter(&sFocusOnClick);
    if (mapped) {
        xcb_map_window(connection, WindowOf(aChild));
    }
    FamilyOf(connection, WindowOf(aChild));  // the answer comes when the server has done it, for other clients too
    return before.mParent == before.mRoot ? nullptr : HandleOf(before.mParent);
}

HWND X11NativeWindowApi::GetParent(HWND aWindow)
{
    xcb_connection_t *connection = Connection();
    if (!connection) {
        return nullptr;
    }
    const Family family = FamilyOf(connection, WindowOf(aWindow));
    return family.mParent == family.mRoot ? nullptr : HandleOf(family.mParent);
}

int32_t X11NativeWindowApi::GetWindowLongW(HWND aWindow, int aIndex)
{
    const QWindow *window = FindQWindow(aWindow);
    return window ? window->property(StyleProperty(aIndex)).toInt() : 0;
}

int32_t X11NativeWindowApi::SetWindowLongW(HWND aWindow, int aIndex, int32_t aValue)
{
    const int32_t before = GetWindowLongW(aWindow, aIndex);
    if (QWindow *window = FindQWindow(aWindow)) {
        window->setProperty(StyleProperty(aIndex), aValue);
    }
    return before;
}

bool X11NativeWindowApi::SetWindowPos(HWND aWindow, HWND /*aAfter*/, int aX, int aY, int aWidth, int aHeight,
                                      uint32_t aFlags)
{
    xcb_connection_t *connection = Connection();
    if (!connection || aWidth < 1 || aHeight < 1) {
        return false;
    }
    const uint32_t values[] = {static_cast<uint32_t>(aX), static_cast<uint32_t>(aY), static_cast<uint32_t>(aWidth),
                               static_cast<uint32_t>(aHeight)};
    const uint16_t mask =
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    const ReplyPointer<xcb_generic_error_t> error(
        xcb_request_check(connection, xcb_configure_window_checked(connection, WindowOf(aWindow), mask, values)));
    if (error) {
        return false;
    }
    if (aFlags & WindowStyles::ShowWindowFlag) {
        const ReplyPointer<xcb_generic_error_t> mapError(
            xcb_request_check(connection, xcb_map_window_checked(connection, WindowOf(aWindow))));
        return !mapError;
    }
    return true;
}

bool X11NativeWindowApi::GetClientRect(HWND aWindow, NativeRect &aRect)
{
    xcb_connection_t *connection = Connection();
    if (!connection) {
        return false;
    }
    const ReplyPointer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, WindowOf(aWindow)), nullptr));
    if (!geometry) {
        return false;
    }
    aRect = {0, 0, geometry->width, geometry->height};
    return true;
}

bool X11NativeWindowApi::PostMessageW(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam)
{
    static const char name[] = "_LXGUI_MESSAGE";
    xcb_connection_t *connection = Connection();
    if (!connection) {
        return false;
    }
    const ReplyPointer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
    if (!atom) {
        return false;
    }
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = WindowOf(aWindow);
    event.type = atom->atom;
    event.data.data32[0] = aMessage;
    event.data.data32[1] = static_cast<uint32_t>(aWParam);
    event.data.data32[2] = static_cast<uint32_t>(aLParam);
    // With no event mask the message goes to the client that made the window.
    const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(
        connection, xcb_send_event_checked(connection, false, WindowOf(aWindow), XCB_EVENT_MASK_NO_EVENT,
                                           reinterpret_cast<const char *>(&event))));
    return !error;
}

bool X11NativeWindowApi::PostMessageA(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam)
{
    return PostMessageW(aWindow, aMessage, aWParam, aLParam);  // The two differ in texts only, which are never posted.
}
