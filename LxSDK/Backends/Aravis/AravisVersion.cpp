#include "LxDevice/DeviceBackend.h"
#include "NodeMap/Arv.h"

namespace LxDetail
{

std::string GetTransportLibrary()
{
    if (const LxResult result = LoadArv(); !result.IsOK()) {
        return result.GetDescription().GetString();
    }
    return "libaravis " + std::to_string(arv_get_major_version()) + '.' + std::to_string(arv_get_minor_version()) +
           '.' + std::to_string(arv_get_micro_version());
}

}  // namespace LxDetail
