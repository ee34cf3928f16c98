#pragma once

#include "LxGUI/Frame/NativeWindowApi.h"

/// For platforms without windows of other programs (offscreen, Wayland): every call fails.
class NoNativeWindowApi : public NativeWindowApi
{
public:
    /// Only Wayland has none: what it calls a handle is a number that means nothing to anybody else.
    bool HasWindows() const override;
    HWND SetParent(HWND, HWND) override { return nullptr; }
    HWND GetParent(HWND) override { return nullptr; }
    int32_t GetWindowLongW(HWND, int) override { return 0; }
    int32_t SetWindowLongW(HWND, int, int32_t) override { return 0; }
    bool SetWindowPos(HWND, HWND, int, int, int, int, uint32_t) override { return false; }
    bool GetClientRect(HWND, NativeRect &) override { return false; }
    bool PostMessageW(HWND, uint32_t, uintptr_t, intptr_t) override { return false; }
    bool PostMessageA(HWND, uint32_t, uintptr_t, intptr_t) override { return false; }
};
