#pragma once

// Internal: the USB host controllers of this computer.

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "LxSystem/DeviceList.h"
#include "LxSystem/LxUSBHostController.h"

namespace LxDetail
{

/// What the system knows about a controller.
struct UsbControllerData
{
    std::string mName;  ///< where it is, for example "0000:00:14.0"
    std::string mPath;  ///< its folder in sysfs, which the folders of its devices lie in
    std::string mDescription;
    uint32_t mVendorID = 0;
    uint32_t mDeviceID = 0;
    uint32_t mSubsystemID = 0;
    uint32_t mRevision = 0;
    uint32_t mSpeed = 0;  ///< one of LxUSBSpeed, that of its fastest root hub
};

/// The LxUSBSpeed for a speed in Mbit/s as sysfs writes it: "1.5", "12", "480", "5000" and more.
uint32_t ParseUsbSpeed(const std::string &aMegabits);

/// The controllers, by name, below a folder like /sys/bus/usb/devices; none where there is no USB.
std::vector<UsbControllerData> ListUsbHostControllers(const std::string &aDevices);

/// The first line of a file, without blanks around; empty when it cannot be read.
std::string ReadSysfsLine(const std::string &aPath);

/// A controller as the SDK hands it out; thread-safe.
class UsbHostController : public LxUSBHostController
{
public:
    explicit UsbHostController(UsbControllerData aData);

    void Update(UsbControllerData aData);
    UsbControllerData GetData() const;
    DeviceList &GetDevices() { return mDevices; }

    int GetType() const override { return LxInterfaceTypeUSBHostController; }
    LxString GetUniqueID() const override;
    LxString GetDisplayID() const override;
    uint32_t GetDeviceCount() const override { return mDevices.GetCount(); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return mDevices.Get(aIndex); }
    uint32_t GetVendorID() const override { return GetData().mVendorID; }
    uint32_t GetDeviceID() const override { return GetData().mDeviceID; }
    uint32_t GetSubsystemID() const override { return GetData().mSubsystemID; }
    uint32_t GetRevision() const override { return GetData().mRevision; }
    uint32_t GetSpeed() const override { return GetData().mSpeed; }

private:
    mutable std::mutex mMutex;  // guards mData
    UsbControllerData mData;
    DeviceList mDevices;
};

}  // namespace LxDetail
