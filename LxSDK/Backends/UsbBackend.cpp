#include "Backends/UsbBackend.h"

#include "Backends/Aravis/AravisConnect.h"
#include "LxSystem/DeviceInfoU3V.h"
#include "LxSystem/UsbScanner.h"

namespace LxDetail
{

UsbBackend::UsbBackend(std::string aDevices) : mDevices(std::move(aDevices)) {}

std::unique_ptr<DeviceScanner> UsbBackend::CreateScanner()
{
    return std::make_unique<UsbScanner>(mDevices, [] {
        std::vector<U3VTexts> texts;
        for (UsbDeviceDescription &device : ListUSB3VisionDevices()) {
            texts.push_back({std::move(device.mGUID), std::move(device.mVendorName), std::move(device.mModelName),
                             std::move(device.mSerialNumber)});
        }
        return texts;
    });
}

LxResult UsbBackend::Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice)
{
    const auto *info = dynamic_cast<const DeviceInfoU3V *>(&aInfo);
    if (!info) {
        return LxResultCode::NotSupported;
    }
    const U3VDeviceData data = info->GetData();
    if (!info->IsConfigurationValid()) {
        return LxResult(LxResultCode::Unavailable, "The camera is connected with " +
                                                       info->GetSpeedMessage().GetString() +
                                                       ". Connect it to a USB 3.0 (SuperSpeed) port.");
    }
    return ConnectUSB3Vision({GetDeviceID(data), data.mVendorName, data.mModelName, data.mSerialNumber}, aAccess,
                             aDevice);
}

}  // namespace LxDetail
