#pragma once

#include <cstdint>

struct HWND__;
typedef struct HWND__ *HWND;  // As in LxWnd.h, which this Qt-free header does not need otherwise.

/// A rectangle in native pixels.
struct NativeRect
{
    int32_t mLeft = 0;
    int32_t mTop = 0;
    int32_t mRight = 0;
    int32_t mBottom = 0;

    int Width() const { return mRight - mLeft; }
    int Height() const { return mBottom - mTop; }
};

/// The calls that the frame makes on native windows, with the names and the meaning that user32 gives them. All sizes
/// are in native pixels. A call that fails does so quietly, with the result that user32 documents for a failure.
class NativeWindowApi
{
public:
    virtual ~NativeWindowApi() = default;

    /// Whether widgets of this platform have native windows that can be put into those of other programs.
    virtual bool HasWindows() const { return true; }
    virtual HWND SetParent(HWND aChild, HWND aParent) = 0;
    virtual HWND GetParent(HWND aWindow) = 0;
    virtual int32_t GetWindowLongW(HWND aWindow, int aIndex) = 0;
    virtual int32_t SetWindowLongW(HWND aWindow, int aIndex, int32_t aValue) = 0;
    virtual bool SetWindowPos(HWND aWindow, HWND aAfter, int aX, int aY, int aWidth, int aHeight, uint32_t aFlags) = 0;
    virtual bool GetClientRect(HWND aWindow, NativeRect &aRect) = 0;
    virtual bool PostMessageW(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) = 0;
    virtual bool PostMessageA(HWND aWindow, uint32_t aMessage, uintptr_t aWParam, intptr_t aLParam) = 0;

protected:
    NativeWindowApi() = default;
    NativeWindowApi(const NativeWindowApi &) = default;
    NativeWindowApi &operator=(const NativeWindowApi &) = default;
};

/// The native calls of the platform that the application runs on. Never cache it: the application may be made anew.
NativeWindowApi &NativeWindows();

/// Makes NativeWindows() return another object, for tests; null goes back to the platform's own.
void ReplaceNativeWindows(NativeWindowApi *aApi);
