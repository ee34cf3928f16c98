// A host without Qt: it has a native window and a loop of its own, and only the public headers of the library.

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "WaitFor.h"
#include "X11Host.h"

namespace
{

xcb_window_t WindowOf(HWND aHandle)
{
    return static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(aHandle));
}

// Turns the host's loop until a condition holds.
bool Pump(const std::function<bool()> &aCondition)
{
    return WaitFor([&] {
        LxWnd::DoEvents();
        return aCondition();
    });
}

}  // namespace

TEST(NativeHost, EmbedsAWindowAndLetsItGo)
{
    X11Host host(400, 260);
    for (int round = 0; round < 2; ++round) {
        {
            LxRegisterInterfaceWnd wnd;
            ASSERT_EQ(wnd.Create(host.Handle(), 0).GetCode(), 0u);
            const xcb_window_t child = WindowOf(wnd.GetHandle());
            EXPECT_EQ(host.Children(), std::vector{child});
            EXPECT_EQ(host.Geometry(child).mWidth, 400);
            EXPECT_EQ(host.Geometry(child).mHeight, 260);
            EXPECT_THAT(host.TakeMessages(), testing::ElementsAre(X11Host::Message{5, 0, (260u << 16) | 400u}));
            EXPECT_TRUE(Pump([&] { return host.IsViewable(child); }));
            EXPECT_EQ(wnd.Close().GetCode(), 0u);
            EXPECT_TRUE(wnd.IsVisible()) << "an embedded window is not hidden";
        }
        // The application's connection has ended; the server takes the windows away when it comes to that.
        EXPECT_TRUE(WaitFor([&] { return host.Children().empty(); }));
    }
}

TEST(NativeHost, ShowsAModelessWindowAndPumps)
{
    X11Host host(200, 100);
    LxRegisterInterfaceWnd wnd;
    EXPECT_EQ(wnd.ShowModeless(host.Handle()).GetCode(), 0u);
    EXPECT_TRUE(Pump([&] { return host.IsViewable(WindowOf(wnd.GetHandle())); }));
    EXPECT_EQ(wnd.Close().GetCode(), 0u);
    EXPECT_FALSE(wnd.IsVisible());
    EXPECT_EQ(wnd.GetHandle(), nullptr);
}

TEST(NativeHost, ItsWindowMayGoFirst)
{
    X11Host host(200, 100);
    LxRegisterInterfaceWnd wnd;
    ASSERT_EQ(wnd.Create(host.Handle(), 0).GetCode(), 0u);
    const xcb_window_t child = WindowOf(wnd.GetHandle());
    host.DestroyWindow();
    EXPECT_TRUE(Pump([&] { return !host.Exists(child); }));
    LxWnd::DoEvents();
}

TEST(NativeHostDeathTest, AWindowMayLiveUntilTheEndOfTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static LxRegisterInterfaceWnd sWnd;
            static_cast<void>(sWnd.ShowModeless());
            LxWnd::DoEvents();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}
