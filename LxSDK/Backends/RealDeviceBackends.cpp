// Which backends reach real devices.

#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

std::vector<std::shared_ptr<DeviceBackend>> CreateRealDeviceBackends()
{
    return {};
}

}  // namespace LxDetail
