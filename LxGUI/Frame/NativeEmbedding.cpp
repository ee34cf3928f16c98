#include "LxGUI/Frame/NativeEmbedding.h"

#include "LxGUI/Frame/WindowStyles.h"

void EmbedInParent(NativeWindowApi &aApi, HWND aChild, HWND aParent)
{
    using namespace WindowStyles;
    aApi.SetParent(aChild, aParent);
    aApi.SetWindowLongW(aChild, StyleIndex, Embedded(aApi.GetWindowLongW(aChild, StyleIndex)));
    aApi.SetWindowLongW(aChild, ExtendedStyleIndex, EmbeddedExtended(aApi.GetWindowLongW(aChild, ExtendedStyleIndex)));
    NativeRect rect;
    if (aApi.GetClientRect(aParent, rect)) {
        aApi.SetWindowPos(aChild, nullptr, 0, 0, rect.Width(), rect.Height(), NoZOrderFlag | ShowWindowFlag);
    }
    // Asked again: the parent may have changed its size while the child was placed.
    if (aApi.GetClientRect(aParent, rect)) {
        aApi.PostMessageW(aParent, SizeMessage, SizeRestored, SizeParameter(rect.Width(), rect.Height()));
    }
}

void AttachToParent(NativeWindowApi &aApi, HWND aChild, HWND aParent)
{
    using namespace WindowStyles;
    if (aApi.GetParent(aChild) == aParent) {
        return;
    }
    aApi.SetParent(aChild, aParent);
    aApi.SetWindowLongW(aChild, StyleIndex, Child(aApi.GetWindowLongW(aChild, StyleIndex)));
}
