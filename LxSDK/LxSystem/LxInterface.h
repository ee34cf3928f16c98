#pragma once

#include <cstdint>

#include "LxBase/LxString.h"

class LxDeviceInfo;

/// The kinds of interfaces.
enum LxInterfaceType : int
{
    LxInterfaceTypeUSBHostController = 0,
    LxInterfaceTypeNetworkAdapter = 1,
};

/// An interface of the host at which devices can be found. Owned by its LxSystem and valid as long as that; readable
/// from any thread at any time.
/// @thread{any}
class LX_API LxInterface
{
public:
    virtual ~LxInterface();

    /// One of LxInterfaceType.
    virtual int GetType() const = 0;
    /// Unique among the interfaces of the machine and stable over searches.
    virtual LxString GetUniqueID() const = 0;
    /// A short text for people.
    virtual LxString GetDisplayID() const = 0;
    /// The devices that the last LxSystem::Find() reported here.
    virtual uint32_t GetDeviceCount() const = 0;
    /// The device at an index of 0 to GetDeviceCount() - 1, else null. The object lives as long as the system.
    virtual const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const = 0;
};
