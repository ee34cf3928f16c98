#pragma once

// Internal: USB3 Vision devices over libaravis.

#include "Backends/Aravis/AravisConnect.h"
#include "Backends/Aravis/AravisTransport.h"

namespace LxDetail
{

/// Opens a USB3 Vision device. USB has no second way to a device: the looks go through the library too.
class UsbTransport : public AravisTransport
{
public:
    UsbTransport(const UsbConnectRequest &aRequest, LxDeviceAccess aAccess);

    LxResult Open(GObjectPtr<_ArvDevice> &aDevice) override;
    /// Always fails, because a device that was unplugged needs a new object of the library.
    LxResult Regain(_ArvDevice *aDevice) override;
    LinkSign Look(_ArvDevice *aDevice, std::chrono::milliseconds aTimeout) override;

    LxDeviceAccess GetAccess() const override { return mAccess; }
    std::string GetUniqueID() const override { return mRequest.mUniqueID; }
    bool IsGigEVision() const override { return false; }

private:
    const UsbConnectRequest mRequest;
    const LxDeviceAccess mAccess;
};

}  // namespace LxDetail
