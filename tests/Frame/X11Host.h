#pragma once

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>
#include <vector>

#include "LxGUI/LxWnd.h"

/// Owns a reply of xcb.
template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> Own(Reply *aReply)
{
    return {aReply, &std::free};
}

inline HWND HandleOf(xcb_window_t aWindow)
{
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(aWindow));
}

/// A client with a window of its own, as a host without Qt has.
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

    HWND Handle() const { return HandleOf(mWindow); }
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

    struct Rectangle
    {
        int mX = 0;
        int mY = 0;
        int mWidth = 0;
        int mHeight = 0;
        bool operator==(const Rectangle &) const = default;
        friend void PrintTo(const Rectangle &aRectangle, std::ostream *aStream)
        {
            *aStream << aRectangle.mWidth << " x " << aRectangle.mHeight << " at " << aRectangle.mX << ", "
                     << aRectangle.mY;
        }
    };

    Rectangle Geometry(xcb_window_t aWindow)
    {
        const auto reply = Own(xcb_get_geometry_reply(mConnection, xcb_get_geometry(mConnection, aWindow), nullptr));
        return reply ? Rectangle{reply->x, reply->y, reply->width, reply->height} : Rectangle();
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

    /// Gives the keyboard focus to the host's own window.
    void TakeFocus()
    {
        xcb_set_input_focus(mConnection, XCB_INPUT_FOCUS_PARENT, mWindow, XCB_CURRENT_TIME);
        Sync();
    }

    xcb_window_t FocusWindow()
    {
        const auto reply = Own(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr));
        return reply->focus;
    }

    /// The windows of all clients on the screen, the lowest first.
    std::vector<xcb_window_t> TopLevelWindows()
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data->root;
        const auto reply = Own(xcb_query_tree_reply(mConnection, xcb_query_tree(mConnection, root), nullptr));
        const xcb_window_t *children = xcb_query_tree_children(reply.get());
        return {children, children + xcb_query_tree_children_length(reply.get())};
    }

    /// Presses and releases the left button in the middle of a window, or a key over it.
    void Press(xcb_window_t aWindow, uint8_t aPressEvent, uint8_t aReleaseEvent, uint8_t aDetail)
    {
        const Rectangle geometry = Geometry(aWindow);
        for (const uint8_t type : {aPressEvent, aReleaseEvent}) {
            xcb_button_press_event_t event = {};  // Laid out like the event of a key.
            event.response_type = type;
            event.detail = aDetail;
            event.event = aWindow;
            event.same_screen = 1;
            event.event_x = static_cast<int16_t>(geometry.mWidth / 2);
            event.event_y = static_cast<int16_t>(geometry.mHeight / 2);
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

    /// The posted messages that have come since the last call.
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
