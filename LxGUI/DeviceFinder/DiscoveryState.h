#pragma once

#include "LxSystem/LxSystem.h"

class DeviceFinderWnd;

/// What the window and its search thread share. The thread may still be in a search when the window lets go of it, so
/// whoever lets go last destroys it.
struct DiscoveryState
{
    explicit DiscoveryState(DeviceFinderWnd *aWindow) : mWindow(aWindow) {}

    DeviceFinderWnd *const mWindow;
    LxSystem mSystem;
};
