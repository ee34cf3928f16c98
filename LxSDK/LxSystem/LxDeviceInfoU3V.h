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
    /// IsInitializedCapabilities() in words.
    virtual LxString GetPowerMessage() const = 0;
    /// 1.5 Mbit/s.
    virtual bool IsLowSpeedSupported() const = 0;
    /// 12 Mbit/s.
    virtual bool IsFullSpeedSupported() const = 0;
    /// 480 Mbit/s.
    virtual bool IsHighSpeedSupported() const = 0;
    /// 5 Gbit/s.
    virtual bool IsSuperSpeedSupported() const = 0;
    /// Whether the device supports the speed that it is connected with.
    virtual bool IsCurrentSpeedSupported() const = 0;
    /// One of LxUSBSpeed; 4 is SuperSpeed.
    virtual uint32_t GetSpeed() const = 0;
    /// GetSpeed() in words.
    virtual LxString GetSpeedMessage() const = 0;
    /// The identifier that the maker gave this very device (USB3 Vision: 12 characters).
    virtual LxString GetDeviceGUID() const = 0;
    /// The family of the model; may be empty.
    virtual LxString GetFamilyName() const = 0;
    /// The serial number of the USB3 Vision descriptor.
    virtual LxString GetU3VSerialNumber() const = 0;
    /// The version of GenCP that the device speaks.
    virtual void GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const = 0;
    /// The version of USB3 Vision that the device speaks.
    virtual void GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const = 0;
    /// In milliamperes.
    virtual uint32_t GetMaxPower() const = 0;
};
