#pragma once

#include <memory>

#include "LxDevice/LxDeviceAdapter.h"
#include "LxSimulation/LxSimulation.h"

/// A connected simulated frame grabber for the tour, alone on its host for as long as the object lives. Its UARTs have
/// features that set their speed, its bulk ports have none.
class TourGrabber
{
public:
    TourGrabber();
    ~TourGrabber();
    TourGrabber(const TourGrabber &) = delete;
    TourGrabber &operator=(const TourGrabber &) = delete;

    /// Null, with the reason on the error output, when it could not be connected.
    LxDevice *GetDevice() const { return mDevice.get(); }
    ILxDeviceAdapter *GetAdapter() const { return mAdapter.get(); }

    static void SetPeer(LxDeviceSerial aPort, std::shared_ptr<LxSimulatedSerialPeer> aPeer);
    static void SetConditions(LxDeviceSerial aPort, const LxSimulatedSerialConditions &aConditions);

private:
    std::unique_ptr<LxDevice> mDevice;
    std::unique_ptr<LxDeviceAdapter> mAdapter;
};
