#pragma once

#include "LxSystem/LxInterface.h"

/// USB speeds by the numbers of the interface.
enum LxUSBSpeed : uint32_t
{
    LxUSBSpeedUnknown = 0,
    LxUSBSpeedLow = 1,    ///< 1.5 Mbit/s
    LxUSBSpeedFull = 2,   ///< 12 Mbit/s
    LxUSBSpeedHigh = 3,   ///< 480 Mbit/s
    LxUSBSpeedSuper = 4,  ///< 5 Gbit/s and more
};

/// A USB host controller of the host.
class LX_API LxUSBHostController : public LxInterface
{
public:
    ~LxUSBHostController() override;

    /// PCI number of the maker; 0 when it is no PCI device.
    virtual uint32_t GetVendorID() const = 0;
    /// PCI number of the model; 0 when it is no PCI device.
    virtual uint32_t GetDeviceID() const = 0;
    /// Subsystem in the high, subsystem vendor in the low 16 bits.
    virtual uint32_t GetSubsystemID() const = 0;
    /// PCI revision.
    virtual uint32_t GetRevision() const = 0;
    /// One of LxUSBSpeed.
    virtual uint32_t GetSpeed() const = 0;
};
