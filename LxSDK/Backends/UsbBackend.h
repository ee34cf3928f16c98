#pragma once

// Internal: USB3 Vision devices.

#include <string>

#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

class UsbBackend : public DeviceBackend
{
public:
    /// @param aDevices where the system lists USB devices.
    explicit UsbBackend(std::string aDevices = "/sys/bus/usb/devices");

    const char *GetName() const override { return "USB"; }
    std::unique_ptr<DeviceScanner> CreateScanner() override;
    LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice) override;

private:
    const std::string mDevices;
};

}  // namespace LxDetail
