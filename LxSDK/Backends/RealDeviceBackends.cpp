// Which backends reach real devices.

#include "Backends/GigEVisionBackend.h"
#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

std::vector<std::shared_ptr<DeviceBackend>> CreateRealDeviceBackends()
{
    return {std::make_shared<GigEVisionBackend>()};
}

}  // namespace LxDetail
