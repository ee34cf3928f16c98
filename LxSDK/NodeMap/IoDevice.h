#pragma once

// Internal: a register port as the device of the node engine.

#include "NodeMap/ArvSupport.h"
#include "NodeMap/RegisterPort.h"

struct _ArvDevice;

namespace LxDetail
{

/// Where the accesses of an IoDevice go. Not synchronised: used under the lock of the node engine.
struct IoTarget
{
    RegisterPort *mPort = nullptr;
    /// The last access that failed. The engine loses some errors on their way, so its users look here as well.
    LxResult mError;
};

/// Makes a device for libaravis whose memory and registers are those of the target's port. The target must outlive it.
GObjectPtr<_ArvDevice> MakeIoDevice(IoTarget *aTarget);

}  // namespace LxDetail
