#include "LxSystem/UsbScanner.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace LxDetail
{

namespace fs = std::filesystem;

std::vector<std::pair<std::string, U3VDeviceData>> ListU3VDevices(const std::string &aDevices)
{
    std::vector<std::pair<std::string, U3VDeviceData>> result;
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(aDevices, error)) {
        const std::string name = entry.path().filename();
        if (name.find(':') != std::string::npos || name.starts_with("usb")) {
            continue;  // an interface of a device, or a root hub
        }
        std::ifstream file(entry.path() / "descriptors", std::ios::binary);
        const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        const auto descriptor = ParseU3VDescriptor(bytes);
        const fs::path path = fs::canonical(entry.path(), error);
        if (!descriptor || error) {
            continue;
        }
        const auto read = [&path](const char *aName) { return ReadSysfsLine(path / aName); };
        const std::string manufacturer = read("manufacturer");
        const std::string product = read("product");
        const std::string serial = read("serial");
        // the system shows three of the strings of a device, and a USB3 Vision text is often one of them
        const auto get = [&](uint8_t aIndex, const std::string &aDefault) {
            return aIndex == 0                              ? aDefault
                   : aIndex == descriptor->mUSBManufacturer ? manufacturer
                   : aIndex == descriptor->mUSBProduct      ? product
                   : aIndex == descriptor->mUSBSerialNumber ? serial
                                                            : std::string();
        };
        U3VDeviceData data;
        data.mLocation = name;
        data.mDescriptor = *descriptor;
        data.mGUID = get(descriptor->mGUID, "");
        data.mVendorName = get(descriptor->mVendorName, manufacturer);
        data.mModelName = get(descriptor->mModelName, product);
        data.mFamilyName = get(descriptor->mFamilyName, "");
        data.mVersion = get(descriptor->mVersion, "");
        data.mManufacturerInfo = get(descriptor->mManufacturerInfo, "");
        data.mSerialNumber = get(descriptor->mSerialNumber, serial);
        data.mUserDefinedName = get(descriptor->mUserDefinedName, "");
        data.mMegabits = read("speed");
        data.mMaxPower = static_cast<uint32_t>(std::strtoul(read("bMaxPower").c_str(), nullptr, 10));
        result.emplace_back(path, std::move(data));
    }
    std::sort(result.begin(), result.end(),
              [](const auto &aLeft, const auto &aRight) { return aLeft.second.mLocation < aRight.second.mLocation; });
    return result;
}

void AddTexts(U3VDeviceData &aDevice, const std::vector<U3VTexts> &aTexts)
{
    // two texts that are known must be the same
    const auto mayBe = [](const std::string &aLeft, const std::string &aRight) {
        return aLeft.empty() || aRight.empty() || aLeft == aRight;
    };
    const auto matches = [&](const U3VTexts &aEntry) {
        return mayBe(aDevice.mGUID, aEntry.mGUID) && mayBe(aDevice.mVendorName, aEntry.mVendorName) &&
               mayBe(aDevice.mModelName, aEntry.mModelName) && mayBe(aDevice.mSerialNumber, aEntry.mSerialNumber);
    };
    const auto found = std::find_if(aTexts.begin(), aTexts.end(), matches);
    if (found == aTexts.end() || std::any_of(std::next(found), aTexts.end(), matches)) {
        return;  // none, or it cannot be told which
    }
    const auto add = [](std::string &aText, const std::string &aMore) {
        if (aText.empty()) {
            aText = aMore;
        }
    };
    add(aDevice.mGUID, found->mGUID);
    add(aDevice.mVendorName, found->mVendorName);
    add(aDevice.mModelName, found->mModelName);
    add(aDevice.mSerialNumber, found->mSerialNumber);
}

UsbScanner::UsbScanner(std::string aDevices, ListTexts aListTexts)
    : mDevicesPath(std::move(aDevices)), mListTexts(std::move(aListTexts))
{
}

void UsbScanner::UpdateInterfaces()
{
    mControllers.clear();
    std::vector<UsbControllerData> present = ListUsbHostControllers(mDevicesPath);
    for (UsbControllerData &data : present) {
        const auto known = std::find_if(mAllControllers.begin(), mAllControllers.end(),
                                        [&data](const auto &aOld) { return aOld->GetData().mName == data.mName; });
        if (known == mAllControllers.end()) {
            mAllControllers.push_back(std::make_unique<UsbHostController>(data));
        }
        else {
            (*known)->Update(data);
        }
    }
    for (const auto &controller : mAllControllers) {
        const bool isPresent = std::any_of(present.begin(), present.end(), [&controller](const auto &aData) {
            return aData.mName == controller->GetData().mName;
        });
        if (isPresent) {
            mControllers.push_back(controller.get());
        }
        else {
            controller->GetDevices().Set({});
        }
    }
}

std::vector<const LxInterface *> UsbScanner::GetInterfaces() const
{
    return {mControllers.begin(), mControllers.end()};
}

std::vector<const DeviceInfoU3V *> UsbScanner::Scan()
{
    auto present = ListU3VDevices(mDevicesPath);
    const std::vector<U3VTexts> texts = present.empty() ? std::vector<U3VTexts>() : mListTexts();
    std::vector<const DeviceInfoU3V *> result;
    for (auto &[path, data] : present) {
        const std::string &devicePath = path;
        const auto controller =
            std::find_if(mControllers.begin(), mControllers.end(), [&devicePath](const UsbHostController *aController) {
                return devicePath.starts_with(aController->GetData().mPath + '/');
            });
        if (controller == mControllers.end()) {
            continue;
        }
        AddTexts(data, texts);
        DeviceInfoU3V *&info = mDevices[{*controller, GetDeviceID(data)}];
        if (info) {
            info->Update(std::move(data));
        }
        else {
            mAllDevices.push_back(std::make_unique<DeviceInfoU3V>(**controller, std::move(data)));
            info = mAllDevices.back().get();
        }
        result.push_back(info);
    }
    return result;
}

void UsbScanner::Find(SearchContext &aContext)
{
    const std::vector<const DeviceInfoU3V *> found = Scan();
    for (const DeviceInfoU3V *info : found) {
        aContext.ReportDevice(info->GetInterface(), info);
    }
    for (UsbHostController *controller : mControllers) {
        std::vector<const LxDeviceInfo *> devices;
        for (const DeviceInfoU3V *info : found) {
            if (&info->GetController() == controller) {
                devices.push_back(info);
            }
        }
        controller->GetDevices().Set(std::move(devices));
    }
}

LxResult UsbScanner::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    const std::vector<const DeviceInfoU3V *> found = Scan();
    const auto info = std::find_if(found.begin(), found.end(), [&aAddress](const DeviceInfoU3V *aInfo) {
        return aInfo->GetConnectionID() == aAddress;
    });
    if (info == found.end()) {
        return LxResultCode::NotFound;
    }
    *aFound = *info;
    return LxResult();
}

}  // namespace LxDetail
