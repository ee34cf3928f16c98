#include "LxGenICam/LxGenParameterArrayCL.h"

#include "LxGenICam/CameraLinkPorts.h"

LxResult LxGenParameterArrayCL::GetPortIDs(LxStringList &aIDs)
{
    aIDs = LxDetail::GetCameraLinkPorts();
    return LxResult();
}
