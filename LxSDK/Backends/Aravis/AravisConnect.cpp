#include "Backends/Aravis/AravisConnect.h"

namespace LxDetail
{

LxResult ConnectGigEVision(const GevConnectRequest &, LxDeviceAccess, std::unique_ptr<LxDevice> &)
{
    return LxResult(LxResultCode::Unavailable, "This build cannot connect to GigE Vision devices.");
}

LxResult ConnectUSB3Vision(const UsbConnectRequest &, LxDeviceAccess, std::unique_ptr<LxDevice> &)
{
    return LxResult(LxResultCode::Unavailable, "This build cannot connect to USB3 Vision devices.");
}

std::vector<UsbDeviceDescription> ListUSB3VisionDevices()
{
    return {};
}

}  // namespace LxDetail
