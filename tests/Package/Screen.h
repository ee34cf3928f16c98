#pragma once

#include <xcb/xcb.h>

#include <QtGui/QImage>
#include <cstdint>
#include <string>
#include <vector>

/// An X client that looks at and drives the windows of other programs, as a person at the screen does.
class Screen
{
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    /// The windows that are shown, the lowest first.
    std::vector<xcb_window_t> Windows() const;
    /// The shown window with a title; XCB_NONE when there is none.
    xcb_window_t Find(const std::string &aTitle) const;

    /// Presses and releases a key of the keyboard in a window, which gets the focus. The symbol is that of the
    /// unshifted key, as xcb_keysym names it: Latin letters and digits are their own.
    void Press(xcb_window_t aWindow, uint32_t aSymbol) const;
    void Type(xcb_window_t aWindow, const std::string &aText) const;
    /// Presses and releases the left button at a point of a window.
    void Click(xcb_window_t aWindow, int aX, int aY) const;
    /// What a window manager does.
    void Resize(xcb_window_t aWindow, uint32_t aWidth, uint32_t aHeight) const;
    void Close(xcb_window_t aWindow) const;

    /// What is on the screen in the place of a window; null when it is not there.
    QImage Picture(xcb_window_t aWindow) const;
    /// The part of the screen that shows all windows.
    QImage Picture() const;

private:
    xcb_atom_t Atom(const char *aName) const;
    QRect Place(xcb_window_t aWindow) const;
    QImage Grab(const QRect &aPlace) const;
    void Send(xcb_window_t aWindow, const void *aEvent) const;
    void Sync() const;

    xcb_connection_t *const mConnection;
    const xcb_screen_t *const mScreen;
};

namespace Key
{
constexpr uint32_t ReturnKey = 0xff0d;
constexpr uint32_t EscapeKey = 0xff1b;
constexpr uint32_t HomeKey = 0xff50;
constexpr uint32_t DownKey = 0xff54;
constexpr uint32_t F2Key = 0xffbf;
constexpr uint32_t SpaceKey = 0x20;
}  // namespace Key
