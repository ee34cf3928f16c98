#pragma once

#include <cstdint>

/// The numbers of user32 that the frame needs, and what it does to the style bits of a window that it puts under a
/// native parent. No Qt and no windows.h, so that they are the same, and tested, on every platform.
namespace WindowStyles
{

// GetWindowLongW and SetWindowLongW: which value.
inline constexpr int StyleIndex = -16;          // GWL_STYLE
inline constexpr int ExtendedStyleIndex = -20;  // GWL_EXSTYLE

// SetWindowPos.
inline constexpr uint32_t NoZOrderFlag = 0x0004;    // SWP_NOZORDER
inline constexpr uint32_t ShowWindowFlag = 0x0040;  // SWP_SHOWWINDOW

// Messages.
inline constexpr uint32_t SizeMessage = 0x0005;  // WM_SIZE
inline constexpr uintptr_t SizeRestored = 0;     // SIZE_RESTORED

/// The style of a window that is embedded: WS_CHILD | WS_VISIBLE, without WS_POPUP, WS_CAPTION, WS_SYSMENU,
/// WS_THICKFRAME.
constexpr int32_t Embedded(int32_t aStyle)
{
    return static_cast<int32_t>((static_cast<uint32_t>(aStyle) & 0x2F30FFFFu) | 0x50000000u);
}

/// The extended style of a window that is embedded: without WS_EX_DLGMODALFRAME, WS_EX_WINDOWEDGE, WS_EX_CLIENTEDGE,
/// WS_EX_STATICEDGE.
constexpr int32_t EmbeddedExtended(int32_t aStyle)
{
    return static_cast<int32_t>(static_cast<uint32_t>(aStyle) & ~0x00020301u);
}

/// The style of a window that is only given a parent: WS_CHILD instead of WS_POPUP.
constexpr int32_t Child(int32_t aStyle)
{
    return static_cast<int32_t>((static_cast<uint32_t>(aStyle) & 0x3FFFFFFFu) | 0x40000000u);
}

/// The lParam of WM_SIZE: height and width, 16 bits each.
constexpr intptr_t SizeParameter(int aWidth, int aHeight)
{
    return static_cast<intptr_t>((static_cast<uint32_t>(aHeight) & 0xFFFFu) << 16 |
                                 (static_cast<uint32_t>(aWidth) & 0xFFFFu));
}

}  // namespace WindowStyles
