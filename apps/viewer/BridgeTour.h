#pragma once

class HeadlessTour;
class LxCameraBridgeManagerWnd;
class LxSerialBridgeManagerWnd;
class QString;
class TourGrabber;

/// The part of the tour that shows the managers of serial bridges and of camera bridges, on a simulated frame grabber.
class BridgeTour
{
public:
    explicit BridgeTour(HeadlessTour &aTour) : mTour(aTour) {}

    /// False, with the reason on the error output, when a step did not come about. Replaces what is simulated.
    bool Run();

private:
    bool TourSerialBridges(const TourGrabber &aGrabber);
    bool TourCameraLink(LxSerialBridgeManagerWnd &aManager);
    bool TourCameraBridges(const TourGrabber &aGrabber);
    bool TourGenCP(LxCameraBridgeManagerWnd &aManager);
    bool TourCLProtocol(LxCameraBridgeManagerWnd &aManager);
    bool TourCameraFile(LxCameraBridgeManagerWnd &aManager);
    /// When the camera is connected, as a status label says, and its features are shown.
    bool ShootConnected(LxCameraBridgeManagerWnd &aManager, const char *aStatus, const QString &aName);

    HeadlessTour &mTour;
};
