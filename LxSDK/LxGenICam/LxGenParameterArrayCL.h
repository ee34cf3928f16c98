#pragma once

#include "LxBase/LxResult.h"
#include "LxBase/LxStringList.h"

/// Camera Link serial ports that are offered to other programs of this machine.
/// @thread{any}
class LX_API LxGenParameterArrayCL
{
public:
    /// Replaces the list by the IDs of the ports that started serial bridges registered with the Camera Link interface.
    /// Always OK.
    static LxResult GetPortIDs(LxStringList &aIDs);
};
