#pragma once

#include "LxSystem/LxDeviceInfo.h"

/// A USB3 Vision device, from its descriptors.
class LX_API LxDeviceInfoU3V : public LxDeviceInfo
{
public:
    ~LxDeviceInfoU3V() override;

    /// Always true where no such driver is needed.
    virtual bool IsKelvraDriverInstalled() const = 0;
    /// Whether the port gives the device the power that it needs.
    virtual bool IsInitializedCapabilities() const = 0;
    virtual LxString GetPowerMessage() const = 0;
    virtual bool IsLowSpeedSupported() const = 0;
    virtual bool IsFullSpeedSupported() const = 0;
    virtual bool IsHighSpeedSupported() const = 0;
    virtual bool IsSuperSpeedSupported() const = 0;
    /// Whether the device supports the speed that it is connected with.
    virtual bool IsCurrentSpeedSupported() const = 0;
    /// One of LxUSBSpeed; 4 is SuperSpeed.
    virtual uint32_t GetSpeed() const = 0;
    virtual LxString GetSpeedMessage() const = 0;
    virtual LxString GetDeviceGUID() const = 0;
    virtual LxString GetFamilyName() const = 0;
    virtual LxString GetU3VSerialNumber() const = 0;
    virtual void GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const = 0;
    virtual void GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const = 0;
    /// In milliamperes.
    virtual uint32_t GetMaxPower() const = 0;
};
