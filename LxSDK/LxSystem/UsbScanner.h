#pragma once

// Internal: finds the USB host controllers and the USB3 Vision devices at them.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "LxDevice/DeviceBackend.h"
#include "LxSystem/DeviceInfoU3V.h"
#include "LxSystem/UsbHostController.h"

namespace LxDetail
{

/// Texts of a USB3 Vision device that only who may open it can read.
struct U3VTexts
{
    std::string mGUID;
    std::string mVendorName;
    std::string mModelName;
    std::string mSerialNumber;
};

class UsbScanner : public DeviceScanner
{
public:
    using ListTexts = std::function<std::vector<U3VTexts>()>;

    /// @param aDevices a folder like /sys/bus/usb/devices.
    /// @param aListTexts the texts of the devices that can be opened; asked only when there are USB3 Vision devices.
    UsbScanner(std::string aDevices, ListTexts aListTexts);

    void UpdateInterfaces() override;
    std::vector<const LxInterface *> GetInterfaces() const override;
    void Find(SearchContext &aContext) override;
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override;

private:
    // The devices that are plugged in now, each with an object that is up to date.
    std::vector<const DeviceInfoU3V *> Scan();

    const std::string mDevicesPath;
    const ListTexts mListTexts;
    // Objects are never removed, because the application may hold on to them.
    std::vector<std::unique_ptr<UsbHostController>> mAllControllers;
    std::vector<std::unique_ptr<DeviceInfoU3V>> mAllDevices;
    std::map<std::pair<const UsbHostController *, std::string>, DeviceInfoU3V *> mDevices;  // by device ID
    std::vector<UsbHostController *> mControllers;                                          // those that are there
};

/// The USB3 Vision devices below a folder like /sys/bus/usb/devices, with the folder that each lies in. Texts that the
/// system does not know stay empty.
std::vector<std::pair<std::string, U3VDeviceData>> ListU3VDevices(const std::string &aDevices);

/// Adds the texts of the entry that is the same device as far as can be told.
void AddTexts(U3VDeviceData &aDevice, const std::vector<U3VTexts> &aTexts);

}  // namespace LxDetail
