#pragma once

#include "LxGUI/Frame/NativeWindowApi.h"

/// The calls of user32 themselves. This class uses nothing of Qt.
class Win32NativeWindowApi : public NativeWindowApi
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
