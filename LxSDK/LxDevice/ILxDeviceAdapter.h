#pragma once

#include "LxBase/LxString.h"

class LxGenParameterArray;

/// What serial ports and bridges need of a device.
/// @thread{any}
class LX_API ILxDeviceAdapter
{
public:
    virtual ~ILxDeviceAdapter();

    /// The features of the adapted device; null when it has none.
    virtual LxGenParameterArray *GetParameters() = 0;
    /// A text that identifies the device, for example its MAC address.
    virtual LxString GetUniqueID() const = 0;
};
