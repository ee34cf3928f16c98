#include "Screen.h"

#include <QtCore/QRect>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> Own(Reply *aReply)
{
    return {aReply, &std::free};
}

}  // namespace

Screen::Screen()
    : mConnection(xcb_connect(nullptr, nullptr)), mScreen(xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data)
{
}

Screen::~Screen()
{
    xcb_disconnect(mConnection);
}

std::vector<xcb_window_t> Screen::Windows() const
{
    const auto tree = Own(xcb_query_tree_reply(mConnection, xcb_query_tree(mConnection, mScreen->root), nullptr));
    std::vector<xcb_window_t> windows;
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const auto attributes =
            Own(xcb_get_window_attributes_reply(mConnection, xcb_get_window_attributes(mConnection, window), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->_class != XCB_NONE &&
            Place(window).width() > 1)
        {
            windows.push_back(window);
        }
    }
    return windows;
}

xcb_window_t Screen::Find(const std::string &aTitle) const
{
    for (const xcb_window_t window : Windows()) {
        const auto title = Own(xcb_get_property_reply(
            mConnection, xcb_get_property(mConnection, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 100), nullptr));
        if (title && aTitle == std::string(static_cast<const char *>(xcb_get_property_value(title.get())),
                                           static_cast<size_t>(xcb_get_property_value_length(title.get()))))
        {
            return window;
        }
    }
    return XCB_NONE;
}

void Screen::Press(xcb_window_t aWindow, uint32_t aSymbol) const
{
    const xcb_setup_t *setup = xcb_get_setup(mConnection);
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mapping = Own(xcb_get_keyboard_mapping_reply(
        mConnection, xcb_get_keyboard_mapping(mConnection, setup->min_keycode, count), nullptr));
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    int code = 0;
    while (symbols[code * mapping->keysyms_per_keycode] != aSymbol && code < count - 1) {
        ++code;
    }
    xcb_set_input_focus(mConnection, XCB_INPUT_FOCUS_PARENT, aWindow, XCB_CURRENT_TIME);
    for (const uint8_t type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
        xcb_key_press_event_t event = {};
        event.response_type = type;
        event.detail = static_cast<xcb_keycode_t>(setup->min_keycode + code);
        event.root = mScreen->root;
        event.event = aWindow;
        event.same_screen = 1;
        Send(aWindow, &event);
    }
    Sync();
}

void Screen::Type(xcb_window_t aWindow, const std::string &aText) const
{
    for (const char character : aText) {
        Press(aWindow, static_cast<uint32_t>(character));
    }
}

void Screen::Click(xcb_window_t aWindow, int aX, int aY) const
{
    for (const uint8_t type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}) {
        xcb_button_press_event_t event = {};
        event.response_type = type;
        event.detail = XCB_BUTTON_INDEX_1;
        event.root = mScreen->root;
        event.event = aWindow;
        event.event_x = static_cast<int16_t>(aX);
        event.event_y = static_cast<int16_t>(aY);
        event.same_screen = 1;
        Send(aWindow, &event);
    }
    Sync();
}

void Screen::Resize(xcb_window_t aWindow, uint32_t aWidth, uint32_t aHeight) const
{
    const uint32_t size[] = {aWidth, aHeight};
    xcb_configure_window(mConnection, aWindow, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    Sync();
}

void Screen::Close(xcb_window_t aWindow) const
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = aWindow;
    event.type = Atom("WM_PROTOCOLS");
    event.data.data32[0] = Atom("WM_DELETE_WINDOW");
    Send(aWindow, &event);
    Sync();
}

QImage Screen::Picture(xcb_window_t aWindow) const
{
    return Grab(Place(aWindow));
}

QImage Screen::Picture() const
{
    QRect place;
    for (const xcb_window_t window : Windows()) {
        place |= Place(window);
    }
    return Grab(place);
}

xcb_atom_t Screen::Atom(const char *aName) const
{
    const auto reply = Own(xcb_intern_atom_reply(
        mConnection, xcb_intern_atom(mConnection, 0, static_cast<uint16_t>(std::strlen(aName)), aName), nullptr));
    return reply->atom;
}

// On the screen; empty when the window does not exist.
QRect Screen::Place(xcb_window_t aWindow) const
{
    const auto geometry = Own(xcb_get_geometry_reply(mConnection, xcb_get_geometry(mConnection, aWindow), nullptr));
    return geometry ? QRect(geometry->x, geometry->y, geometry->width, geometry->height) : QRect();
}

QImage Screen::Grab(const QRect &aPlace) const
{
    const QRect place = aPlace & QRect(0, 0, mScreen->width_in_pixels, mScreen->height_in_pixels);
    if (place.isEmpty()) {
        return QImage();
    }
    const auto reply = Own(xcb_get_image_reply(
        mConnection,
        xcb_get_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mScreen->root, static_cast<int16_t>(place.x()),
                      static_cast<int16_t>(place.y()), static_cast<uint16_t>(place.width()),
                      static_cast<uint16_t>(place.height()), ~0u),
        nullptr));
    if (!reply) {
        return QImage();
    }
    return QImage(xcb_get_image_data(reply.get()), place.width(), place.height(), QImage::Format_RGB32).copy();
}

void Screen::Send(xcb_window_t aWindow, const void *aEvent) const
{
    xcb_send_event(mConnection, 0, aWindow, XCB_EVENT_MASK_NO_EVENT, static_cast<const char *>(aEvent));
}

void Screen::Sync() const
{
    Own(xcb_get_input_focus_reply(mConnection, xcb_get_input_focus(mConnection), nullptr));
}
