// Embedding in real windows of user32: cross-compiled, and run under Wine. Needs neither Qt nor a test framework.

#include <windows.h>

#include <cstdio>

#include "LxGUI/Frame/NativeEmbedding.h"
#include "LxGUI/Frame/Win32NativeWindowApi.h"
#include "LxGUI/Frame/WindowStyles.h"

namespace
{

int sFailures = 0;

void Check(bool aHolds, const char *aText, int aLine)
{
    if (!aHolds) {
        ++sFailures;
        std::printf("%s:%d: does not hold: %s\n", __FILE__, aLine, aText);
    }
}

#define CHECK(aCondition) Check((aCondition), #aCondition, __LINE__)

// The numbers that the frame uses on every platform are those of user32.
static_assert(WindowStyles::StyleIndex == GWL_STYLE);
static_assert(WindowStyles::ExtendedStyleIndex == GWL_EXSTYLE);
static_assert(WindowStyles::NoZOrderFlag == SWP_NOZORDER);
static_assert(WindowStyles::ShowWindowFlag == SWP_SHOWWINDOW);
static_assert(WindowStyles::SizeMessage == WM_SIZE);
static_assert(WindowStyles::SizeRestored == SIZE_RESTORED);
static_assert(WindowStyles::Embedded(0) == (WS_CHILD | WS_VISIBLE));
static_assert(WindowStyles::Embedded(static_cast<int32_t>(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME)) ==
              (WS_CHILD | WS_VISIBLE));
static_assert(WindowStyles::EmbeddedExtended(WS_EX_DLGMODALFRAME | WS_EX_WINDOWEDGE | WS_EX_CLIENTEDGE |
                                             WS_EX_STATICEDGE | WS_EX_TOPMOST) == WS_EX_TOPMOST);
static_assert(WindowStyles::Child(static_cast<int32_t>(WS_POPUP)) == WS_CHILD);
static_assert(WindowStyles::SizeParameter(640, 480) == MAKELPARAM(640, 480));

// Posted messages are counted here as they are dispatched; sent ones go to the window procedure directly.
struct Posted
{
    int mCount = 0;
    WPARAM mWParam = 0;
    LPARAM mLParam = 0;
};

Posted TakePosted(HWND aWindow, UINT aMessage)
{
    Posted posted;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.hwnd == aWindow && message.message == aMessage) {
            ++posted.mCount;
            posted.mWParam = message.wParam;
            posted.mLParam = message.lParam;
        }
        DispatchMessageW(&message);
    }
    return posted;
}

HWND MakeWindow(DWORD aStyle, DWORD aExtendedStyle, int aWidth, int aHeight)
{
    return CreateWindowExW(aExtendedStyle, L"LxGUITest", L"test", aStyle, 10, 10, aWidth, aHeight, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

void TestEmbedding(NativeWindowApi &aApi)
{
    const HWND parent = MakeWindow(WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 500, 400);
    const HWND child = MakeWindow(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN | WS_VISIBLE,
                                  WS_EX_DLGMODALFRAME | WS_EX_STATICEDGE | WS_EX_CONTROLPARENT, 120, 90);
    CHECK(parent && child);
    NativeRect client;
    CHECK(aApi.GetClientRect(parent, client));
    CHECK(client.Width() > 0 && client.Width() < 500 && client.Height() > 0 && client.Height() < 400);
    TakePosted(parent, WM_SIZE);

    EmbedInParent(aApi, child, parent);

    CHECK(aApi.GetParent(child) == parent);
    const auto style = static_cast<uint32_t>(aApi.GetWindowLongW(child, GWL_STYLE));
    CHECK((style & (WS_CHILD | WS_VISIBLE)) == (WS_CHILD | WS_VISIBLE));
    CHECK((style & (WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME)) == 0);
    CHECK((style & WS_CLIPCHILDREN) != 0);
    const auto extended = static_cast<uint32_t>(aApi.GetWindowLongW(child, GWL_EXSTYLE));
    CHECK((extended & (WS_EX_DLGMODALFRAME | WS_EX_CLIENTEDGE | WS_EX_STATICEDGE)) == 0);
    CHECK((extended & WS_EX_CONTROLPARENT) != 0);
    CHECK(IsWindowVisible(child));
    RECT childRect;
    GetWindowRect(child, &childRect);
    POINT origin = {0, 0};
    ClientToScreen(parent, &origin);
    CHECK(childRect.left == origin.x && childRect.top == origin.y);
    CHECK(childRect.right - childRect.left == client.Width());
    CHECK(childRect.bottom - childRect.top == client.Height());
    const Posted size = TakePosted(parent, WM_SIZE);
    CHECK(size.mCount == 1);
    CHECK(size.mWParam == SIZE_RESTORED);
    CHECK(size.mLParam == MAKELPARAM(client.Width(), client.Height()));
    DestroyWindow(parent);
    CHECK(!IsWindow(child));
}

void TestAttaching(NativeWindowApi &aApi)
{
    const HWND parent = MakeWindow(WS_OVERLAPPEDWINDOW, 0, 300, 200);
    const HWND child = MakeWindow(WS_POPUP | WS_CAPTION, 0, 120, 90);
    AttachToParent(aApi, child, parent);
    CHECK(aApi.GetParent(child) == parent);
    const auto style = static_cast<uint32_t>(aApi.GetWindowLongW(child, GWL_STYLE));
    CHECK((style & (WS_POPUP | WS_CHILD)) == WS_CHILD);
    CHECK((style & WS_CAPTION) == WS_CAPTION);
    CHECK((style & WS_VISIBLE) == 0);
    aApi.SetWindowLongW(child, GWL_STYLE, static_cast<int32_t>(style | WS_DISABLED));
    AttachToParent(aApi, child, parent);
    CHECK(static_cast<uint32_t>(aApi.GetWindowLongW(child, GWL_STYLE)) == (style | WS_DISABLED));
    DestroyWindow(parent);
}

void TestSingleCalls(NativeWindowApi &aApi)
{
    const HWND window = MakeWindow(WS_POPUP, 0, 320, 240);
    CHECK(aApi.SetWindowLongW(window, GWLP_USERDATA, 0x1234) == 0);
    CHECK(aApi.SetWindowLongW(window, GWLP_USERDATA, -7) == 0x1234);
    CHECK(aApi.GetWindowLongW(window, GWLP_USERDATA) == -7);
    NativeRect rect{9, 9, 9, 9};
    CHECK(aApi.GetClientRect(window, rect));
    CHECK(rect.mLeft == 0 && rect.mTop == 0 && rect.mRight == 320 && rect.mBottom == 240);
    CHECK(aApi.SetWindowPos(window, nullptr, 30, 40, 200, 100, SWP_NOZORDER));
    CHECK(aApi.GetClientRect(window, rect));
    CHECK(rect.Width() == 200 && rect.Height() == 100);
    CHECK(aApi.PostMessageA(window, 0x4C01, 1, 2));
    CHECK(aApi.PostMessageW(window, 0x4C01, 3, -4));
    const Posted posted = TakePosted(window, 0x4C01);
    CHECK(posted.mCount == 2 && posted.mWParam == 3 && posted.mLParam == -4);
    DestroyWindow(window);
    CHECK(!aApi.GetClientRect(window, rect));
    CHECK(!aApi.SetWindowPos(window, nullptr, 0, 0, 1, 1, SWP_NOZORDER));
    CHECK(!aApi.PostMessageW(window, WM_SIZE, 0, 0));
    CHECK(!aApi.PostMessageA(window, WM_SIZE, 0, 0));
    CHECK(aApi.GetParent(window) == nullptr);
    CHECK(aApi.GetWindowLongW(window, GWL_STYLE) == 0);
    CHECK(aApi.SetParent(window, nullptr) == nullptr);
}

}  // namespace

int main()
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"LxGUITest";
    CHECK(RegisterClassW(&windowClass) != 0);
    Win32NativeWindowApi api;
    TestEmbedding(api);
    TestAttaching(api);
    TestSingleCalls(api);
    std::printf(sFailures ? "%d checks failed\n" : "all checks passed\n", sFailures);
    return sFailures ? 1 : 0;
}
