#include "LxSystem/DeviceInfoU3V.h"

#include <cstdlib>

namespace LxDetail
{

std::string GetDeviceID(const U3VDeviceData &aDevice)
{
    return aDevice.mGUID.empty() ? "usb:" + aDevice.mLocation : aDevice.mGUID;
}

DeviceInfoU3V::DeviceInfoU3V(const UsbHostController &aController, U3VDeviceData aData)
    : mController(aController), mData(std::move(aData))
{
}

void DeviceInfoU3V::Update(U3VDeviceData aData)
{
    const std::lock_guard lock(mMutex);
    mData = std::move(aData);
}

U3VDeviceData DeviceInfoU3V::GetData() const
{
    const std::lock_guard lock(mMutex);
    return mData;
}

LxString DeviceInfoU3V::GetUniqueID() const
{
    return GetDeviceID(GetData());
}

LxString DeviceInfoU3V::GetDisplayID() const
{
    const U3VDeviceData data = GetData();
    std::string text = data.mVendorName;
    if (!data.mModelName.empty()) {
        text += (text.empty() ? "" : " ") + data.mModelName;
    }
    if (text.empty()) {
        text = "USB3 Vision device";
    }
    if (!data.mUserDefinedName.empty()) {
        text += " \"" + data.mUserDefinedName + '"';
    }
    return text + " [" + (data.mSerialNumber.empty() ? data.mLocation : data.mSerialNumber) + ']';
}

bool DeviceInfoU3V::IsLowSpeedSupported() const
{
    return IsSupported(u3vSpeedLow);
}

bool DeviceInfoU3V::IsFullSpeedSupported() const
{
    return IsSupported(u3vSpeedFull);
}

bool DeviceInfoU3V::IsHighSpeedSupported() const
{
    return IsSupported(u3vSpeedHigh);
}

bool DeviceInfoU3V::IsSuperSpeedSupported() const
{
    return IsSupported(u3vSpeedSuper | u3vSpeedSuperPlus);
}

bool DeviceInfoU3V::IsCurrentSpeedSupported() const
{
    switch (GetSpeed()) {
        case LxUSBSpeedLow:
            return IsLowSpeedSupported();
        case LxUSBSpeedFull:
            return IsFullSpeedSupported();
        case LxUSBSpeedHigh:
            return IsHighSpeedSupported();
        case LxUSBSpeedSuper:
            return IsSuperSpeedSupported();
        default:
            return false;
    }
}

LxString DeviceInfoU3V::GetSpeedMessage() const
{
    const std::string megabits = GetData().mMegabits;
    switch (ParseUsbSpeed(megabits)) {
        case LxUSBSpeedLow:
            return "Low speed (1.5 Mbit/s)";
        case LxUSBSpeedFull:
            return "Full speed (12 Mbit/s)";
        case LxUSBSpeedHigh:
            return "High speed (480 Mbit/s)";
        case LxUSBSpeedSuper: {
            const long gigabits = std::strtol(megabits.c_str(), nullptr, 10) / 1000;
            constexpr long plain = 5;
            return (gigabits > plain ? "SuperSpeed+ (" : "SuperSpeed (") + std::to_string(gigabits) + " Gbit/s)";
        }
        default:
            return "Unknown";
    }
}

void DeviceInfoU3V::GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const U3VDescriptor descriptor = GetData().mDescriptor;
    aMajor = descriptor.mGenCPMajor;
    aMinor = descriptor.mGenCPMinor;
}

void DeviceInfoU3V::GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const U3VDescriptor descriptor = GetData().mDescriptor;
    aMajor = descriptor.mU3VMajor;
    aMinor = descriptor.mU3VMinor;
}

}  // namespace LxDetail
