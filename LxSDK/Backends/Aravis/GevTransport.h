#pragma once

// Internal: GigE Vision devices over libaravis.

#include <cstdint>
#include <mutex>

#include "Backends/Aravis/AravisConnect.h"
#include "Backends/Aravis/AravisTransport.h"
#include "GigEVision/LivenessProbe.h"

namespace LxDetail
{

/// Opens a GigE Vision device, takes its control channel privilege, and keeps an eye on it over a socket of its own.
class GevTransport : public AravisTransport
{
public:
    GevTransport(const GevConnectRequest &aRequest, LxDeviceAccess aAccess);

    LxResult Open(GObjectPtr<_ArvDevice> &aDevice) override;
    LxResult Regain(_ArvDevice *aDevice) override;
    LinkSign Look(_ArvDevice *aDevice, std::chrono::milliseconds aTimeout) override;

    LxDeviceAccess GetAccess() const override { return mAccess; }
    std::string GetUniqueID() const override { return mRequest.mUniqueID; }
    bool IsGigEVision() const override { return true; }

private:
    LxResult CheckAddresses() const;
    LxResult CheckPrivilege();
    LxResult CheckIdentity(_ArvDevice *aDevice);
    LxResult TakeAccess(_ArvDevice *aDevice) const;

    const GevConnectRequest mRequest;
    const LxDeviceAccess mAccess;
    uint64_t mMACAddress = 0;  // as the device said when it was opened first; 0 before
    LivenessProbe mProbe;      // used by Look() only
};

}  // namespace LxDetail
