#pragma once

// Internal: what differs between the kinds of real devices.

#include <chrono>
#include <string>

#include "Backends/Aravis/LinkMonitor.h"
#include "LxDevice/LxDevice.h"
#include "NodeMap/ArvSupport.h"

struct _ArvDevice;

namespace LxDetail
{

/// How a kind of device is opened, looked at and regained. Open() and Regain() are never called at the same time.
class AravisTransport
{
public:
    virtual ~AravisTransport() = default;

    /// Opens the device and takes the access that the connection is for. Takes seconds when the device does not answer.
    virtual LxResult Open(GObjectPtr<_ArvDevice> &aDevice) = 0;
    /// Takes the access again on a device that was away. NotFound when another device answers in its place.
    virtual LxResult Regain(_ArvDevice *aDevice) = 0;
    /// Whether the device answers within the time, over a way that does not wait for a stuck access.
    virtual LinkSign Look(_ArvDevice *aDevice, std::chrono::milliseconds aTimeout) = 0;

    virtual LxDeviceAccess GetAccess() const = 0;
    /// What LxDevice::GetUniqueID() gives.
    virtual std::string GetUniqueID() const = 0;
    virtual bool IsGigEVision() const = 0;
};

}  // namespace LxDetail
