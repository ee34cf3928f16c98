#pragma once

#include "LxGUI/Frame/NativeWindowApi.h"

/// The calls on X11, over Qt's own connection, so that they keep their order with what Qt sends.
///
/// Window styles have no counterpart here: they are numbers that stay with the window, 0 at first, and change nothing.
/// A window that is put under another takes the keyboard focus when it is clicked, and keeps it until the host takes
/// it. A posted message is a client message of the type _LXGUI_MESSAGE, format 32, with the data message, wParam,
/// lParam.
class X11NativeWindowApi : public NativeWindowApi
{
public:
    HWND SetParent(HWND aChild, HWND aParent) override;
    HWND GetParent(HWND aWindow) override;
    int32_t GetWindowLongW(HWND aWindow, int aIndex) override;
    int32_t SetWindowLongW(HWND aWindow, int aIndex, int32_t aValue) override;
    bool SetWindowPos(HWND aWindow, HWND aAfter, int aX, int aY, int aWidth, int aHeight, uint32_t aFlags) override;
    bool GetClientRect(HWND aWindow, NativeRect &aRect) override;
    bool PostMessageW(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) override;
    bool PostMessageA(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) override;
};
