#pragma once

#include "LxGUI/Frame/NativeWindowApi.h"

/// Puts a window under a native parent so that it fills the parent's client area, and tells the parent by WM_SIZE.
void EmbedInParent(NativeWindowApi &aApi, HWND aChild, HWND aParent);

/// Gives a window a native parent, unless it has that parent already.
void AttachToParent(NativeWindowApi &aApi, HWND aChild, HWND aParent);
