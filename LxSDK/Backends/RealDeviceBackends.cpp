// Which backends reach real devices.

#include "Backends/GigEVisionBackend.h"
#include "Backends/UsbBackend.h"
#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

std::vector<std::shared_ptr<DeviceBackend>> CreateRealDeviceBackends()
{
    // USB first: it is done at once, while GigE Vision listens for the whole detection time-out
    return {std::make_shared<UsbBackend>(), std::make_shared<GigEVisionBackend>()};
}

}  // namespace LxDetail
