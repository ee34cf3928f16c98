#include "LxSystem/UsbHostController.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

namespace LxDetail
{

namespace
{

namespace fs = std::filesystem;

uint32_t ReadHex(const fs::path &aPath)
{
    return static_cast<uint32_t>(std::strtoul(ReadSysfsLine(aPath).c_str(), nullptr, 16));
}

}  // namespace

std::string ReadSysfsLine(const std::string &aPath)
{
    std::ifstream file(aPath);
    std::string line;
    std::getline(file, line);
    const size_t first = line.find_first_not_of(" \t\r");
    return first == std::string::npos ? std::string() : line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

uint32_t ParseUsbSpeed(const std::string &aMegabits)
{
    const double speed = std::strtod(aMegabits.c_str(), nullptr);
    if (speed >= 5000) {
        return LxUSBSpeedSuper;
    }
    if (speed >= 480) {
        return LxUSBSpeedHigh;
    }
    if (speed >= 12) {
        return LxUSBSpeedFull;
    }
    return speed > 0 ? LxUSBSpeedLow : LxUSBSpeedUnknown;
}

std::vector<UsbControllerData> ListUsbHostControllers(const std::string &aDevices)
{
    // A controller has a root hub ("usb1", "usb2") for each generation of USB; they lie in its folder.
    std::map<std::string, UsbControllerData> controllers;
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(aDevices, error)) {
        if (!entry.path().filename().string().starts_with("usb")) {
            continue;
        }
        const fs::path hub = fs::canonical(entry.path(), error);
        if (error || !hub.has_parent_path()) {
            continue;
        }
        const fs::path path = hub.parent_path();
        UsbControllerData &controller = controllers[path.filename()];
        if (controller.mName.empty()) {
            controller.mName = path.filename();
            controller.mPath = path;
            controller.mVendorID = ReadHex(path / "vendor");
            controller.mDeviceID = ReadHex(path / "device");
            controller.mSubsystemID = ReadHex(path / "subsystem_device") << 16 | ReadHex(path / "subsystem_vendor");
            controller.mRevision = ReadHex(path / "revision");
            const std::string product = ReadSysfsLine(hub / "product");
            controller.mDescription =
                (product.empty() ? "USB host controller" : product) + " (" + controller.mName + ')';
        }
        controller.mSpeed = std::max(controller.mSpeed, ParseUsbSpeed(ReadSysfsLine(hub / "speed")));
    }
    std::vector<UsbControllerData> result;
    for (auto &[name, controller] : controllers) {
        result.push_back(std::move(controller));
    }
    return result;
}

UsbHostController::UsbHostController(UsbControllerData aData) : mData(std::move(aData)) {}

void UsbHostController::Update(UsbControllerData aData)
{
    const std::lock_guard lock(mMutex);
    mData = std::move(aData);
}

UsbControllerData UsbHostController::GetData() const
{
    const std::lock_guard lock(mMutex);
    return mData;
}

LxString UsbHostController::GetUniqueID() const
{
    return "usb:" + GetData().mName;
}

LxString UsbHostController::GetDisplayID() const
{
    return GetData().mDescription;
}

}  // namespace LxDetail
