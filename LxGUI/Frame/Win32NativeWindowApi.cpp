#include "LxGUI/Frame/Win32NativeWindowApi.h"

#include <windows.h>

HWND Win32NativeWindowApi::SetParent(HWND aChild, HWND aParent)
{
    return ::SetParent(aChild, aParent);
}

HWND Win32NativeWindowApi::GetParent(HWND aWindow)
{
    return ::GetParent(aWindow);
}

int32_t Win32NativeWindowApi::GetWindowLongW(HWND aWindow, int aIndex)
{
    return ::GetWindowLongW(aWindow, aIndex);
}

int32_t Win32NativeWindowApi::SetWindowLongW(HWND aWindow, int aIndex, int32_t aValue)
{
    return ::SetWindowLongW(aWindow, aIndex, aValue);
}

bool Win32NativeWindowApi::SetWindowPos(HWND aWindow, HWND aAfter, int aX, int aY, int aWidth, int aHeight,
                                        uint32_t aFlags)
{
    return ::SetWindowPos(aWindow, aAfter, aX, aY, aWidth, aHeight, aFlags) != 0;
}

bool Win32NativeWindowApi::GetClientRect(HWND aWindow, NativeRect &aRect)
{
    RECT rect;
    if (!::GetClientRect(aWindow, &rect)) {
        return false;
    }
    aRect.mLeft = rect.left;
    aRect.mTop = rect.top;
    aRect.mRight = rect.right;
    aRect.mBottom = rect.bottom;
    return true;
}

bool Win32NativeWindowApi::PostMessageW(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam)
{
    return ::PostMessageW(aWindow, aMessage, aWParam, aLParam) != 0;
}

bool Win32NativeWindowApi::PostMessageA(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam)
{
    return ::PostMessageA(aWindow, aMessage, aWParam, aLParam) != 0;
}
