#pragma once

#include "LxDevice/LxDevice.h"

/// A connected USB3 Vision device.
class LX_API LxDeviceU3V : public LxDevice
{
public:
    ~LxDeviceU3V() override;
};
