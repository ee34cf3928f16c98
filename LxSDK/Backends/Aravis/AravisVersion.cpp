#include <arv.h>

#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

std::string GetTransportLibrary()
{
    return "libaravis " + std::to_string(arv_get_major_version()) + '.' + std::to_string(arv_get_minor_version()) +
           '.' + std::to_string(arv_get_micro_version());
}

}  // namespace LxDetail
