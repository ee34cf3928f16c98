#include "LxGUI/Frame/WindowStyles.h"

#include <gtest/gtest.h>

// The bits by their names in user32.
namespace
{

constexpr uint32_t WS_POPUP = 0x80000000, WS_CHILD = 0x40000000, WS_MINIMIZE = 0x20000000, WS_VISIBLE = 0x10000000,
                   WS_DISABLED = 0x08000000, WS_CLIPSIBLINGS = 0x04000000, WS_CLIPCHILDREN = 0x02000000,
                   WS_MAXIMIZE = 0x01000000, WS_CAPTION = 0x00C00000, WS_VSCROLL = 0x00200000, WS_HSCROLL = 0x00100000,
                   WS_SYSMENU = 0x00080000, WS_THICKFRAME = 0x00040000, WS_MINIMIZEBOX = 0x00020000,
                   WS_MAXIMIZEBOX = 0x00010000;
constexpr uint32_t WS_EX_DLGMODALFRAME = 0x1, WS_EX_TOPMOST = 0x8, WS_EX_WINDOWEDGE = 0x100, WS_EX_CLIENTEDGE = 0x200,
                   WS_EX_CONTEXTHELP = 0x400, WS_EX_STATICEDGE = 0x20000, WS_EX_APPWINDOW = 0x40000,
                   WS_EX_LAYERED = 0x80000;

struct Row
{
    const char *mName;
    uint32_t mBefore;
    uint32_t mAfter;
};

template <typename Function>
void Check(Function aFunction, std::initializer_list<Row> aRows)
{
    for (const Row &row : aRows) {
        EXPECT_EQ(static_cast<uint32_t>(aFunction(static_cast<int32_t>(row.mBefore))), row.mAfter) << row.mName;
    }
}

}  // namespace

TEST(WindowStyles, EmbeddedIsAVisibleChildWithoutFrame)
{
    constexpr uint32_t always = WS_CHILD | WS_VISIBLE;
    Check(WindowStyles::Embedded, {
                                      {"nothing", 0, always},
                                      {"all bits", 0xFFFFFFFF, 0x7F30FFFF},
                                      {"WS_POPUP", WS_POPUP, always},
                                      {"WS_CAPTION", WS_CAPTION, always},
                                      {"WS_SYSMENU", WS_SYSMENU, always},
                                      {"WS_THICKFRAME", WS_THICKFRAME, always},
                                      {"WS_MINIMIZEBOX", WS_MINIMIZEBOX, always},
                                      {"WS_MAXIMIZEBOX", WS_MAXIMIZEBOX, always},
                                      {"WS_MINIMIZE", WS_MINIMIZE, always | WS_MINIMIZE},
                                      {"WS_MAXIMIZE", WS_MAXIMIZE, always | WS_MAXIMIZE},
                                      {"WS_DISABLED", WS_DISABLED, always | WS_DISABLED},
                                      {"WS_CLIPSIBLINGS", WS_CLIPSIBLINGS, always | WS_CLIPSIBLINGS},
                                      {"WS_CLIPCHILDREN", WS_CLIPCHILDREN, always | WS_CLIPCHILDREN},
                                      {"WS_VSCROLL", WS_VSCROLL, always | WS_VSCROLL},
                                      {"WS_HSCROLL", WS_HSCROLL, always | WS_HSCROLL},
                                      {"the class's own bits", 0x0000ABCD, always | 0x0000ABCD},
                                  });
}

TEST(WindowStyles, EmbeddedExtendedHasNoEdges)
{
    Check(WindowStyles::EmbeddedExtended, {
                                              {"nothing", 0, 0},
                                              {"all bits", 0xFFFFFFFF, 0xFFFDFCFE},
                                              {"WS_EX_DLGMODALFRAME", WS_EX_DLGMODALFRAME, 0},
                                              {"WS_EX_WINDOWEDGE", WS_EX_WINDOWEDGE, 0},
                                              {"WS_EX_CLIENTEDGE", WS_EX_CLIENTEDGE, 0},
                                              {"WS_EX_STATICEDGE", WS_EX_STATICEDGE, 0},
                                              {"WS_EX_TOPMOST", WS_EX_TOPMOST, WS_EX_TOPMOST},
                                              {"WS_EX_CONTEXTHELP", WS_EX_CONTEXTHELP, WS_EX_CONTEXTHELP},
                                              {"WS_EX_APPWINDOW", WS_EX_APPWINDOW, WS_EX_APPWINDOW},
                                              {"WS_EX_LAYERED", WS_EX_LAYERED, WS_EX_LAYERED},
                                          });
}

TEST(WindowStyles, ChildReplacesPopup)
{
    Check(WindowStyles::Child, {
                                   {"nothing", 0, WS_CHILD},
                                   {"all bits", 0xFFFFFFFF, 0x7FFFFFFF},
                                   {"WS_POPUP", WS_POPUP, WS_CHILD},
                                   {"WS_CHILD", WS_CHILD, WS_CHILD},
                                   {"WS_CAPTION", WS_CAPTION, WS_CHILD | WS_CAPTION},
                                   {"WS_VISIBLE", WS_VISIBLE, WS_CHILD | WS_VISIBLE},
                               });
}

TEST(WindowStyles, SizeParameterHoldsSixteenBitsEach)
{
    EXPECT_EQ(WindowStyles::SizeParameter(640, 480), (480 << 16) | 640);
    EXPECT_EQ(WindowStyles::SizeParameter(0, 0), 0);
    EXPECT_EQ(WindowStyles::SizeParameter(0x12345, 0x16789), intptr_t{0x67892345});
    EXPECT_EQ(WindowStyles::SizeParameter(0xFFFF, 0xFFFF), intptr_t{0xFFFFFFFF});
}
