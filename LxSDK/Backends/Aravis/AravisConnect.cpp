#include "Backends/Aravis/AravisConnect.h"

#include <utility>

#include "Backends/Aravis/AravisDevice.h"
#include "Backends/Aravis/GevTransport.h"
#include "Backends/Aravis/UsbTransport.h"

namespace LxDetail
{

namespace
{

template <class Device>
LxResult Connect(std::unique_ptr<AravisTransport> aTransport, std::unique_ptr<LxDevice> &aDevice)
{
    std::unique_ptr<AravisDeviceCore> core;
    const LxResult result = AravisDeviceCore::Open(std::move(aTransport), core);
    if (result.IsOK()) {
        aDevice = std::make_unique<Device>(std::move(core));
    }
    return result;
}

}  // namespace

LxResult ConnectGigEVision(const GevConnectRequest &aRequest, LxDeviceAccess aAccess,
                           std::unique_ptr<LxDevice> &aDevice)
{
    return Connect<AravisDeviceGEV>(std::make_unique<GevTransport>(aRequest, aAccess), aDevice);
}

LxResult ConnectUSB3Vision(const UsbConnectRequest &aRequest, LxDeviceAccess aAccess,
                           std::unique_ptr<LxDevice> &aDevice)
{
    return Connect<AravisDeviceU3V>(std::make_unique<UsbTransport>(aRequest, aAccess), aDevice);
}

}  // namespace LxDetail
