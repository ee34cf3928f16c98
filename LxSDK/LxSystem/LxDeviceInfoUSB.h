#pragma once

#include "LxSystem/LxDeviceInfo.h"

/// A USB device that is no USB3 Vision device but might become one.
class LX_API LxDeviceInfoUSB : public LxDeviceInfo
{
public:
    ~LxDeviceInfoUSB() override;

    /// 0 connected, 1 failed enumeration, 2 general failure, 3 caused overcurrent, 4 not enough power, 5 not enough
    /// bandwidth, 6 hub nested too deeply, 7 legacy hub, 8 enumerating, 9 reset.
    virtual int GetStatus() const = 0;
};
