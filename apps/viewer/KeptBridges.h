#pragma once

#include <QtCore/QString>

#include "LxBase/LxString.h"

class LxCameraBridgeManagerWnd;
class ViewerConfiguration;

/// Keeps the camera bridges of a frame grabber in the configuration; nothing when it has none.
void KeepBridges(LxCameraBridgeManagerWnd &aBridges, const LxString &aGrabber, ViewerConfiguration &aConfiguration);
/// Connects them again.
/// @return empty, or the first thing that went wrong.
QString RestoreBridges(LxCameraBridgeManagerWnd &aBridges, const LxString &aGrabber,
                       const ViewerConfiguration &aConfiguration);
