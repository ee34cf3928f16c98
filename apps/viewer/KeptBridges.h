#pragma once

#include <QtCore/QStringList>

#include "LxBase/LxString.h"

class LxCameraBridgeManagerWnd;
class ViewerConfiguration;

/// The place of the camera bridges in the configuration, where every frame grabber has one of its own. GUI thread.
class KeptBridges
{
public:
    explicit KeptBridges(LxCameraBridgeManagerWnd &aWindow) : mWindow(aWindow) {}

    /// Connects the bridges that the configuration has for a frame grabber.
    /// @return what could not be restored, one sentence each.
    QStringList Restore(const LxString &aGrabber, const ViewerConfiguration &aConfiguration);
    /// Keeps the bridges in the configuration if they were changed since they were restored: a camera that is switched
    /// off today may be there tomorrow.
    void Keep(const LxString &aGrabber, ViewerConfiguration &aConfiguration);

private:
    LxString Save();

    LxCameraBridgeManagerWnd &mWindow;
    LxString mRestored;  // the bridges as they were after the restoration
};
