#pragma once

// Internal: a USB3 Vision device as its descriptors and the system describe it.

#include <mutex>
#include <string>

#include "LxSystem/LxDeviceInfoU3V.h"
#include "LxSystem/U3VDescriptor.h"
#include "LxSystem/UsbHostController.h"

namespace LxDetail
{

/// What is known about a device.
struct U3VDeviceData
{
    std::string mLocation;  ///< the port it is plugged in, for example "1-4.2"
    U3VDescriptor mDescriptor;
    std::string mGUID;
    std::string mVendorName;
    std::string mModelName;
    std::string mFamilyName;
    std::string mVersion;
    std::string mManufacturerInfo;
    std::string mSerialNumber;
    std::string mUserDefinedName;
    std::string mMegabits;   ///< the speed that it is connected with, in Mbit/s as sysfs writes it
    uint32_t mMaxPower = 0;  ///< mA

    bool operator==(const U3VDeviceData &) const = default;
};

/// The GUID, or where it cannot be read the port.
std::string GetDeviceID(const U3VDeviceData &aDevice);

/// Thread-safe.
class DeviceInfoU3V : public LxDeviceInfoU3V
{
public:
    DeviceInfoU3V(const UsbHostController &aController, U3VDeviceData aData);

    void Update(U3VDeviceData aData);
    U3VDeviceData GetData() const;
    const UsbHostController &GetController() const { return mController; }

    int GetType() const override { return LxDeviceInfoTypeU3V; }
    const LxInterface *GetInterface() const override { return &mController; }
    LxString GetUniqueID() const override;
    LxString GetDisplayID() const override;
    LxString GetVendorName() const override { return GetData().mVendorName; }
    LxString GetModelName() const override { return GetData().mModelName; }
    LxString GetVersion() const override { return GetData().mVersion; }
    LxString GetManufacturerInfo() const override { return GetData().mManufacturerInfo; }
    LxString GetSerialNumber() const override { return GetData().mSerialNumber; }
    LxString GetUserDefinedName() const override { return GetData().mUserDefinedName; }
    LxString GetConnectionID() const override { return GetUniqueID(); }
    bool IsConfigurationValid() const override { return GetSpeed() == LxUSBSpeedSuper; }
    bool IsLicenseValid() const override { return true; }  // nothing on this system needs one
    LxString GetLicenseMessage() const override { return "Valid"; }
    bool IsKelvraDriverInstalled() const override { return true; }    // such a driver exists on other systems only
    bool IsInitializedCapabilities() const override { return true; }  // the kernel refuses a device that lacks power
    LxString GetPowerMessage() const override { return "Sufficient"; }
    bool IsLowSpeedSupported() const override;
    bool IsFullSpeedSupported() const override;
    bool IsHighSpeedSupported() const override;
    bool IsSuperSpeedSupported() const override;
    bool IsCurrentSpeedSupported() const override;
    uint32_t GetSpeed() const override { return ParseUsbSpeed(GetData().mMegabits); }
    LxString GetSpeedMessage() const override;
    LxString GetDeviceGUID() const override { return GetData().mGUID; }
    LxString GetFamilyName() const override { return GetData().mFamilyName; }
    LxString GetU3VSerialNumber() const override { return GetData().mSerialNumber; }
    void GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    void GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    uint32_t GetMaxPower() const override { return GetData().mMaxPower; }

private:
    bool IsSupported(uint8_t aSpeeds) const { return (GetData().mDescriptor.mSpeeds & aSpeeds) != 0; }

    const UsbHostController &mController;
    mutable std::mutex mMutex;  // guards mData
    U3VDeviceData mData;
};

}  // namespace LxDetail
