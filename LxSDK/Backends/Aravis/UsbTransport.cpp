#include "Backends/Aravis/UsbTransport.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

LxString Text(const char *aText)
{
    return aText ? aText : "";
}

/// The USB interface of the library, or null when it was built without.
ArvInterface *GetUsbInterface()
{
    const unsigned count = arv_get_n_interfaces();
    for (unsigned i = 0; i < count; ++i) {
        if (Text(arv_get_interface_id(i)) == "USB3Vision") {
            return arv_uv_interface_get_instance();
        }
    }
    return nullptr;
}

}  // namespace

std::vector<UsbDeviceDescription> ListUSB3VisionDevices()
{
    std::vector<UsbDeviceDescription> devices;
    if (!LoadArv().IsOK()) {
        return devices;
    }
    const std::lock_guard lock(ArvParserMutex());
    if (ArvInterface *usb = GetUsbInterface()) {
        arv_interface_update_device_list(usb);
        const unsigned count = arv_interface_get_n_devices(usb);
        for (unsigned i = 0; i < count; ++i) {
            devices.push_back({Text(arv_interface_get_device_physical_id(usb, i)).GetString(),
                               Text(arv_interface_get_device_vendor(usb, i)).GetString(),
                               Text(arv_interface_get_device_model(usb, i)).GetString(),
                               Text(arv_interface_get_device_serial_nbr(usb, i)).GetString()});
        }
    }
    return devices;
}

UsbTransport::UsbTransport(const UsbConnectRequest &aRequest, LxDeviceAccess aAccess)
    : mRequest(aRequest), mAccess(aAccess)
{
}

LxResult UsbTransport::Open(GObjectPtr<_ArvDevice> &aDevice)
{
    if (LxResult result = LoadArv(); !result.IsOK()) {
        return result;
    }
    // the library complains on the terminal when it is told to open a device that is not there
    const auto devices = ListUSB3VisionDevices();
    const bool present = std::any_of(devices.begin(), devices.end(), [this](const UsbDeviceDescription &aFound) {
        return aFound.mGUID == mRequest.mUniqueID;
    });
    if (!present) {
        return LxResult(LxResultCode::NotConnected,
                        "The USB device is not there, or this user may not open it. Check its cable and the rights on "
                        "its device node (a udev rule is needed for USB3 Vision devices).");
    }
    ArvError error;
    GObjectPtr<ArvDevice> device;
    {
        const std::lock_guard lock(ArvParserMutex());
        device.reset(arv_uv_device_new_from_guid(mRequest.mUniqueID.c_str(), error.Out()));
    }
    if (!device || error.IsSet()) {
        const LxResult result = error.ToResult();
        return result.IsOK() ? LxResult(LxResultCode::Failed, "The device cannot be opened.") : result;
    }
    aDevice = std::move(device);
    return LxResult();
}

LxResult UsbTransport::Regain(_ArvDevice *)
{
    return LxResult(LxResultCode::NotConnected, "The USB device was unplugged.");
}

LinkSign UsbTransport::Look(_ArvDevice *aDevice, std::chrono::milliseconds aTimeout)
{
    const auto end = std::chrono::steady_clock::now() + aTimeout;
    guint32 version = 0;
    if (aDevice && arv_device_read_memory(aDevice, 0, sizeof(version), &version, nullptr)) {
        return LinkSign::Answer;
    }
    const auto devices = ListUSB3VisionDevices();
    const bool present = std::any_of(devices.begin(), devices.end(), [this](const UsbDeviceDescription &aFound) {
        return aFound.mGUID == mRequest.mUniqueID;
    });
    if (present) {
        return LinkSign::NoControl;  // plugged in again: needs to be opened again
    }
    std::this_thread::sleep_until(end);
    return LinkSign::NoAnswer;
}

}  // namespace LxDetail
