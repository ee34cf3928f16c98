#include "Backends/Aravis/GevTransport.h"

#include <arpa/inet.h>
#include <ifaddrs.h>

#include <cstring>
#include <memory>
#include <thread>

#include "Backends/Aravis/BackgroundTasks.h"
#include "GigEVision/GvcpPacket.h"
#include "NodeMap/Arv.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

using YrUtilsLib::Network::IpAddress;

/// How long to wait for a device that is asked before it is opened.
constexpr std::chrono::milliseconds askTimeout{200};
constexpr int askTries = 3;
/// From the heartbeat's reading of the privilege to its recording.
constexpr std::chrono::milliseconds heartbeatSettles{20};

uint32_t ParseAddress(const std::string &aText)
{
    IpAddress address;
    address.Set(aText.c_str());
    return address.Get();
}

bool IsLocalAddress(uint32_t aAddress)
{
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0) {
        return false;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, &freeifaddrs);
    for (const ifaddrs *entry = list; entry; entry = entry->ifa_next) {
        if (entry->ifa_addr && entry->ifa_addr->sa_family == AF_INET) {
            sockaddr_in address{};
            std::memcpy(&address, entry->ifa_addr, sizeof(address));
            const uint32_t number = ntohl(address.sin_addr.s_addr);
            if (number == aAddress || (number >> 24 == 127 && aAddress >> 24 == 127)) {
                return true;
            }
        }
    }
    return false;
}

LxResult ControlledByOther()
{
    return LxResult(LxResultCode::AccessDenied,
                    "Another application controls the device. Close the device there and try again, or connect "
                    "read-only. After that application has crashed, the device needs a few seconds until it can be "
                    "controlled again.");
}

}  // namespace

GevTransport::GevTransport(const GevConnectRequest &aRequest, LxDeviceAccess aAccess)
    : mRequest(aRequest),
      mAccess(aAccess),
      mProbe(ParseAddress(aRequest.mDeviceAddress), ParseAddress(aRequest.mLocalAddress))
{
}

LxResult GevTransport::Open(GObjectPtr<_ArvDevice> &aDevice)
{
    if (LxResult result = LoadArv(); !result.IsOK()) {
        return result;
    }
    if (LxResult result = CheckAddresses(); !result.IsOK()) {
        return result;
    }
    if (LxResult result = CheckPrivilege(); !result.IsOK()) {
        return result;
    }
    const GObjectPtr<GInetAddress> local(g_inet_address_new_from_string(mRequest.mLocalAddress.c_str()));
    const GObjectPtr<GInetAddress> remote(g_inet_address_new_from_string(mRequest.mDeviceAddress.c_str()));
    ArvError error;
    GObjectPtr<ArvDevice> device;
    {
        const std::lock_guard lock(ArvParserMutex());
        device.reset(arv_gv_device_new(local.get(), remote.get(), error.Out()));
    }
    if (!device || error.IsSet()) {
        LxResult result = error.ToResult();
        if (result == LxResultCode::Timeout) {
            return LxResult(LxResultCode::Timeout,
                            "The device at " + mRequest.mDeviceAddress + " stopped answering while it was opened.");
        }
        if (result == LxResultCode::GenICamError) {
            return LxResult(LxResultCode::GenICamError, "The device's GenICam XML is missing or cannot be read: " +
                                                            result.GetDescription().GetString() + '.');
        }
        return result.IsOK() ? LxResult(LxResultCode::Failed, "The device cannot be opened.") : result;
    }
    if (LxResult result = CheckIdentity(device.get()); !result.IsOK()) {
        return result;
    }
    if (mAccess == LxDeviceAccess::ReadOnly) {
        // the library takes control whenever it is free
        if (arv_gv_device_is_controller(ARV_GV_DEVICE(device.get()))) {
            arv_gv_device_leave_control(ARV_GV_DEVICE(device.get()), nullptr);
        }
    }
    else if (LxResult result = TakeAccess(device.get()); !result.IsOK()) {
        GiveBackInBackground(std::move(device));
        return result;
    }
    aDevice = std::move(device);
    return LxResult();
}

LxResult GevTransport::Regain(_ArvDevice *aDevice)
{
    if (LxResult result = CheckIdentity(aDevice); !result.IsOK()) {
        return result;
    }
    if (mAccess == LxDeviceAccess::ReadOnly) {
        return LxResult();
    }
    LxResult result = TakeAccess(aDevice);
    // the library's heartbeat may be about to record what it read before: that nobody had control
    std::this_thread::sleep_for(heartbeatSettles);
    if (result.IsOK() && !arv_gv_device_is_controller(ARV_GV_DEVICE(aDevice))) {
        result = TakeAccess(aDevice);
    }
    return result;
}

LinkSign GevTransport::Look(_ArvDevice *aDevice, std::chrono::milliseconds aTimeout)
{
    if (!mProbe.IsAlive(aTimeout)) {
        return LinkSign::NoAnswer;
    }
    // the library reads the privilege once a second and remembers when it is gone
    if (mAccess != LxDeviceAccess::ReadOnly && aDevice && !arv_gv_device_is_controller(ARV_GV_DEVICE(aDevice))) {
        return LinkSign::NoControl;
    }
    return LinkSign::Answer;
}

// The library crashes when it is told to send from an address that this computer does not have.
LxResult GevTransport::CheckAddresses() const
{
    if (ParseAddress(mRequest.mDeviceAddress) == 0) {
        return LxResult(LxResultCode::Unavailable,
                        "The device has no IP address. Give it one before you connect to it.");
    }
    if (!IsLocalAddress(ParseAddress(mRequest.mLocalAddress))) {
        return LxResult(LxResultCode::Unavailable, "This computer does not have the address " + mRequest.mLocalAddress +
                                                       " any more, from which the device was found. Search again.");
    }
    return LxResult();
}

// Asks before the device is opened: opening one that is silent or not free takes the library seconds.
LxResult GevTransport::CheckPrivilege()
{
    LivenessProbe probe(ParseAddress(mRequest.mDeviceAddress), ParseAddress(mRequest.mLocalAddress));
    LxResult result(LxResultCode::Timeout);
    uint32_t privilege = 0;
    for (int i = 0; i < askTries && result == LxResultCode::Timeout; ++i) {
        result = probe.Read(Gvcp::Register::controlChannelPrivilege, askTimeout, privilege);
    }
    if (result == LxResultCode::Timeout) {
        return LxResult(LxResultCode::Timeout,
                        "The device at " + mRequest.mDeviceAddress +
                            " does not answer. Check its power, its cable and a firewall on this computer.");
    }
    if (result == LxResultCode::AccessDenied || (privilege & Gvcp::privilegeExclusive) != 0) {
        return LxResult(LxResultCode::AccessDenied,
                        "Another application has the device for itself. Close the device there and try again.");
    }
    if (mAccess != LxDeviceAccess::ReadOnly && (privilege & Gvcp::privilegeControl) != 0) {
        return ControlledByOther();
    }
    return LxResult();  // what else is wrong shows when the device is opened
}

// After the device was away another one may have its address.
LxResult GevTransport::CheckIdentity(_ArvDevice *aDevice)
{
    ArvError error;
    guint32 high = 0;
    guint32 low = 0;
    if (!arv_device_read_register(aDevice, Gvcp::Register::macAddressHigh, &high, error.Out()) ||
        !arv_device_read_register(aDevice, Gvcp::Register::macAddressLow, &low, error.Out()))
    {
        return error.ToResult();
    }
    const uint64_t address = (static_cast<uint64_t>(high & 0xFFFF) << 32) | low;
    if (mMACAddress != 0 && address != mMACAddress) {
        return LxResult(LxResultCode::NotFound, "Another device answers at " + mRequest.mDeviceAddress + '.');
    }
    mMACAddress = address;
    return LxResult();
}

LxResult GevTransport::TakeAccess(_ArvDevice *aDevice) const
{
    ArvGvDevice *device = ARV_GV_DEVICE(aDevice);
    ArvError error;
    if (!arv_gv_device_take_control(device, error.Out())) {
        const LxResult result = error.ToResult();
        return result == LxResultCode::AccessDenied || result.IsOK() ? ControlledByOther() : result;
    }
    if (mAccess == LxDeviceAccess::Exclusive &&
        !arv_device_write_register(aDevice, Gvcp::Register::controlChannelPrivilege, Gvcp::privilegeExclusive,
                                   error.Out()))
    {
        return error.ToResult();
    }
    return LxResult();
}

}  // namespace LxDetail
