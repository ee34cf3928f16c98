#pragma once

#include "LxGUI/LxGenBrowserWnd.h"

/// What the user can choose about a browser in its options dialog.
struct GenBrowserOptions
{
    bool mTreeView = true;
    bool mDisplayNames = false;
    LxGenRefresh mRefresh = LxGenRefreshAutomatic;

    bool operator==(const GenBrowserOptions &) const = default;
};
