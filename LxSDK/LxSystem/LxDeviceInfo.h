#pragma once

#include <cstdint>

#include "LxBase/LxString.h"

class LxInterface;

/// The kinds of devices.
enum LxDeviceInfoType : int
{
    LxDeviceInfoTypeGEV = 0,     ///< GigE Vision
    LxDeviceInfoTypeKelvra = 1,  ///< Kelvra protocol
    LxDeviceInfoTypeUSB = 2,     ///< USB, not USB3 Vision
    LxDeviceInfoTypeU3V = 3,     ///< USB3 Vision
};

/// What a search learned about a device. Owned by its LxSystem and valid as long as that, also when the device is no
/// longer there; readable from any thread at any time, without traffic.
/// @thread{any}
class LX_API LxDeviceInfo
{
public:
    virtual ~LxDeviceInfo();

    /// One of LxDeviceInfoType.
    virtual int GetType() const = 0;
    /// The interface at which this object's device was found; a device found at two interfaces has two objects.
    /// Owned by the system.
    virtual const LxInterface *GetInterface() const = 0;

    /// Identifies the device, the same at every interface: the MAC address of a network device, the GUID of a USB one.
    virtual LxString GetUniqueID() const = 0;
    /// A line for people.
    virtual LxString GetDisplayID() const = 0;
    /// The maker, as the device names it.
    virtual LxString GetVendorName() const = 0;
    /// The model, as the device names it.
    virtual LxString GetModelName() const = 0;
    /// The device's version, in its maker's form.
    virtual LxString GetVersion() const = 0;
    /// What else the maker says; may be empty.
    virtual LxString GetManufacturerInfo() const = 0;
    /// The serial number; may be empty.
    virtual LxString GetSerialNumber() const = 0;
    /// The name that a user gave the device; may be empty.
    virtual LxString GetUserDefinedName() const = 0;
    /// What to pass to LxSystem::FindDevice(): the IP address of a network device, the unique ID of a USB one.
    virtual LxString GetConnectionID() const = 0;

    /// Whether the device can be reached as it is configured: a network device on a subnet of its adapter, a USB device
    /// at a port that is fast enough.
    virtual bool IsConfigurationValid() const = 0;
    /// Whether the application may receive images from it.
    virtual bool IsLicenseValid() const = 0;
    /// IsLicenseValid() in words.
    virtual LxString GetLicenseMessage() const = 0;
};
