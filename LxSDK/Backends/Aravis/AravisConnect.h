#pragma once

// Internal: how the scanners of real devices hand over to the code that drives them.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxDevice/LxDevice.h"

namespace LxDetail
{

/// A GigE Vision device to connect to. It has answered at the address just before.
struct GevConnectRequest
{
    std::string mDeviceAddress;  ///< IP address of the device, dotted decimal
    std::string mLocalAddress;   ///< an address of this computer that the device can be reached from, dotted decimal
    std::string mUniqueID;       ///< what LxDevice::GetUniqueID() gives: the MAC address, "AA:BB:CC:DD:EE:FF"
    std::string mInterfaceName;  ///< the network adapter at which it was found, for example "eth0"
};

/// A USB3 Vision device to connect to.
struct UsbConnectRequest
{
    std::string mUniqueID;    ///< what LxDevice::GetUniqueID() gives: the GUID
    std::string mVendorName;  ///< as the device's descriptors say, as the two below
    std::string mModelName;
    std::string mSerialNumber;  ///< of the USB device
};

/// A USB3 Vision device that may be opened.
struct UsbDeviceDescription
{
    std::string mGUID;
    std::string mVendorName;
    std::string mModelName;
    std::string mSerialNumber;
};

/// Connects to a device. Errors as LxSystem::Connect().
LxResult ConnectGigEVision(const GevConnectRequest &aRequest, LxDeviceAccess aAccess,
                           std::unique_ptr<LxDevice> &aDevice);
LxResult ConnectUSB3Vision(const UsbConnectRequest &aRequest, LxDeviceAccess aAccess,
                           std::unique_ptr<LxDevice> &aDevice);

/// The USB3 Vision devices that this process may open (rights on the device node decide); empty where there is no USB.
std::vector<UsbDeviceDescription> ListUSB3VisionDevices();

}  // namespace LxDetail
