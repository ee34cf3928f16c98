#include <gmock/gmock.h>

#include "RecordingNativeWindowApi.h"
#include "TestWnd.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const HWND Parent = reinterpret_cast<HWND>(uintptr_t{0x4711});

}  // namespace

TEST(Embedding, MakesTheNativeCallsInOrder)
{
    RecordingNativeWindowApi api(Parent);
    api.mLongs[-16] = static_cast<int32_t>(0x96CF0000);  // WS_POPUP | WS_VISIBLE | caption, menu, frame, clip bits
    api.mLongs[-20] = 0x00020701;
    api.mClientRects = {{0, 0, 640, 480}, {0, 0, 641, 482}};
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(Parent, 123).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "OnOpen", "Show"));
    EXPECT_THAT(api.mCalls,
                ElementsAre("SetParent(child, parent)",                //
                            "GetWindowLongW(child, -16)",              //
                            "SetWindowLongW(child, -16, 0x56000000)",  //
                            "GetWindowLongW(child, -20)",              //
                            "SetWindowLongW(child, -20, 0x00000400)",  //
                            "GetClientRect(parent)",                   //
                            "SetWindowPos(child, null, 0, 0, 640, 480, 0x44)",
                            "GetClientRect(parent)",  //
                            "PostMessageW(parent, 5, 0, 0x01E20281)"));
    EXPECT_EQ(wnd.ParentHandle(), nullptr);
    EXPECT_TRUE(wnd.IsOpen());
    EXPECT_EQ(wnd.Widget()->parentWidget(), nullptr);
    EXPECT_EQ(wnd.Widget()->windowType(), Qt::SubWindow | Qt::Window) << "Qt makes a window of what has no parent";
}

TEST(Embedding, WithoutClientAreaNeitherPlacesNorNotifies)
{
    RecordingNativeWindowApi api(Parent);
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(Parent, 0).GetCode(), 0u);
    EXPECT_THAT(api.mCalls, ElementsAre("SetParent(child, parent)",                //
                                        "GetWindowLongW(child, -16)",              //
                                        "SetWindowLongW(child, -16, 0x50000000)",  //
                                        "GetWindowLongW(child, -20)",              //
                                        "SetWindowLongW(child, -20, 0x00000000)",  //
                                        "GetClientRect(parent)",                   //
                                        "GetClientRect(parent)"));
}

TEST(Embedding, AParentThatVanishesWhileTheChildIsPlacedIsNotNotified)
{
    RecordingNativeWindowApi api(Parent);
    api.mClientRects = {{0, 0, 100, 50}};
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(Parent, 0).GetCode(), 0u);
    EXPECT_EQ(api.mCalls.at(6), "SetWindowPos(child, null, 0, 0, 100, 50, 0x44)");
    EXPECT_EQ(api.mCalls.at(7), "GetClientRect(parent)");
    EXPECT_EQ(api.mCalls.size(), 8u);
}

TEST(Embedding, OnAPlatformWithoutNativeWindowsFailsQuietly)
{
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(Parent, 0).GetCode(), 0u);
    EXPECT_TRUE(wnd.IsVisible());
    NativeRect rect;
    EXPECT_FALSE(NativeWindows().GetClientRect(Parent, rect));
    EXPECT_FALSE(NativeWindows().PostMessageA(Parent, 1, 2, 3));
    EXPECT_FALSE(NativeWindows().SetWindowPos(Parent, nullptr, 0, 0, 1, 1, 0));
    EXPECT_EQ(NativeWindows().GetParent(Parent), nullptr);
    EXPECT_EQ(NativeWindows().GetWindowLongW(Parent, -16), 0);
}

TEST(Embedding, WithoutParentMakesNoNativeCall)
{
    RecordingNativeWindowApi api(Parent);
    TestWnd wnd;
    EXPECT_EQ(wnd.Create(nullptr, 0).GetCode(), 0x4001u);
    EXPECT_THAT(api.mCalls, IsEmpty());
    EXPECT_EQ(wnd.Widget()->windowType(), Qt::Window);
}

TEST(ModelessUnderNativeWindow, ReparentsThePlainWidgetAndShowsADialog)
{
    RecordingNativeWindowApi api(Parent);
    api.mLongs[-16] = static_cast<int32_t>(0x86C80001);
    TestWnd wnd;
    EXPECT_EQ(wnd.ShowModeless(Parent).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, ElementsAre("CreateLayout", "CreateLayout", "Show", "OnOpen"));
    EXPECT_THAT(api.mCalls, ElementsAre("GetParent(child)",            //
                                        "SetParent(child, parent)",    //
                                        "GetWindowLongW(child, -16)",  //
                                        "SetWindowLongW(child, -16, 0x46C80001)"));
    EXPECT_EQ(wnd.ParentHandle(), Parent);
    EXPECT_TRUE(wnd.IsDialog());
    EXPECT_EQ(wnd.mEdit->parentWidget(), wnd.Dialog());
}

TEST(ModelessUnderNativeWindow, AnEqualParentIsNotSetAgain)
{
    RecordingNativeWindowApi api(Parent);
    api.mChildsParent = Parent;
    TestWnd wnd;
    EXPECT_EQ(wnd.ShowModeless(Parent).GetCode(), 0u);
    EXPECT_THAT(api.mCalls, ElementsAre("GetParent(child)"));
    EXPECT_EQ(wnd.ParentHandle(), Parent);
}

TEST(ModelessUnderNativeWindow, AVisibleDialogIsReparentedItself)
{
    RecordingNativeWindowApi api(Parent);
    TestWnd wnd;
    wnd.ShowModeless(NoParent);
    wnd.mLog.clear();
    EXPECT_EQ(wnd.ShowModeless(Parent).GetCode(), 0u);
    EXPECT_THAT(wnd.mLog, IsEmpty());
    EXPECT_EQ(api.mCalls.at(1), "SetParent(child, parent)");
}

TEST(ModelessUnderNativeWindow, ANullParentKeepsTheOldHandle)
{
    RecordingNativeWindowApi api(Parent);
    TestWnd wnd;
    wnd.ShowModeless(Parent);
    wnd.Close();
    api.mCalls.clear();
    EXPECT_EQ(wnd.ShowModeless(static_cast<HWND>(nullptr)).GetCode(), 0u);
    EXPECT_THAT(api.mCalls, IsEmpty());
    EXPECT_EQ(wnd.ParentHandle(), Parent);
    EXPECT_TRUE(wnd.IsVisible());
}

TEST(ModelessUnderNativeWindow, TheOrphanedPlainWidgetIsFreed)
{
    TestWnd wnd;
    QPointer<QWidget> plain;
    wnd.mInCreateLayout = [&] {
        if (!wnd.IsDialog()) {
            plain = wnd.Widget();
        }
    };
    wnd.ShowModeless(Parent);
    ASSERT_NE(plain, nullptr);
    DeleteDeferred();
    EXPECT_EQ(plain, nullptr);
}
