#include "Backends/GigEVisionBackend.h"

#include "Backends/Aravis/AravisConnect.h"
#include "GigEVision/DeviceInfoGEV.h"
#include "GigEVision/GigEVisionScanner.h"
#include "GigEVision/GvcpClient.h"
#include "LxDevice/IPConfiguration.h"
#include "LxDevice/LxDeviceGEV.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

using YrUtilsLib::Network::IpAddress;

std::string FormatSubnet(uint32_t aAddress, uint32_t aMask)
{
    return IpAddress(aAddress & aMask).ToString() + " (mask " + IpAddress(aMask).ToString() + ')';
}

// Says which subnets the camera and the adapter are on.
LxResult MakeWrongSubnet(const Gvcp::Discovery &aDevice, const AdapterData &aAdapter)
{
    std::string text;
    if (aDevice.mIPAddress == 0) {
        text = "The camera has no IP address";
    }
    else {
        text = "The camera at " + IpAddress(aDevice.mIPAddress).ToString() + " is on the subnet " +
               FormatSubnet(aDevice.mIPAddress, aDevice.mSubnetMask != 0 ? aDevice.mSubnetMask : 0xFFFFFF00);
    }
    text += ", but the network adapter " + aAdapter.mName;
    if (aAdapter.mAddresses.empty()) {
        text += " has no IP address";
    }
    else {
        text += " is on ";
        for (const AdapterAddress &address : aAdapter.mAddresses) {
            text += &address == &aAdapter.mAddresses.front() ? "" : " and ";
            text += FormatSubnet(address.mAddress, address.mMask);
        }
    }
    return LxResult(LxResultCode::Unavailable,
                    text +
                        ". Give the camera an address on the subnet of the adapter, or the adapter one on the subnet "
                        "of the camera.");
}

// Whether the access is possible beside what others have now.
LxResult CheckAccess(int aType, LxDeviceAccess aAccess, const std::string &aAddress)
{
    const bool readable = aType != LxAccessExclusive;
    const bool controllable = readable && aType != LxAccessControl;
    if (aAccess == LxDeviceAccess::ReadOnly ? readable : controllable) {
        return LxResult();
    }
    return LxResult(LxResultCode::AccessDenied,
                    "Another application controls the camera at " + aAddress +
                        ". Close that application, or disconnect the camera there, and try again. (When an application "
                        "ended without disconnecting, the camera is free again after a few seconds.)");
}

}  // namespace

std::unique_ptr<DeviceScanner> GigEVisionBackend::CreateScanner()
{
    return std::make_unique<GigEVisionScanner>();
}

LxResult GigEVisionBackend::Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess,
                                    std::unique_ptr<LxDevice> &aDevice)
{
    const auto *info = dynamic_cast<const DeviceInfoGEV *>(&aInfo);
    if (!info) {
        return LxResultCode::NotSupported;
    }
    const Gvcp::Discovery discovery = info->GetDiscovery();
    const std::string address = IpAddress(discovery.mIPAddress).ToString();
    const std::vector<AdapterData> adapters = ListNetworkAdapters();
    // Asked first, because opening takes seconds to fail and does not say why. A camera behind a router may well answer
    // although no adapter is on its subnet.
    int type = LxAccessUnknown;
    LxResult answer = discovery.mIPAddress == 0 ? LxResult(LxResultCode::Timeout) : GetAccessType(address, type);
    const uint32_t local = GetLocalAddress(adapters, discovery.mIPAddress);
    if (answer == LxResultCode::Timeout || local == 0) {
        if (!info->IsConfigurationValid()) {
            return MakeWrongSubnet(discovery, info->GetAdapter().GetData());
        }
        return LxResult(LxResultCode::Timeout, "The camera at " + address +
                                                   " does not answer. Check that it is switched on and that its cable "
                                                   "is plugged in, and search for it again.");
    }
    if (!answer.IsOK()) {
        return answer;
    }
    if (const LxResult access = CheckAccess(type, aAccess, address); !access.IsOK()) {
        return access;
    }
    GevConnectRequest request;
    request.mDeviceAddress = address;
    request.mLocalAddress = IpAddress(local).ToString();
    request.mUniqueID = info->GetUniqueID().GetString();
    request.mInterfaceName = info->GetAdapter().GetData().mName;
    return ConnectGigEVision(request, aAccess, aDevice);
}

LxResult GigEVisionBackend::GetAccessType(const LxString &aIPAddress, int &aType)
{
    aType = LxAccessUnknown;
    uint32_t privilege = 0;
    const LxResult result = ReadRegister(ListNetworkAdapters(), ParseIPAddress(aIPAddress),
                                         Gvcp::Register::controlChannelPrivilege, GvcpPatience(), privilege);
    if (result == LxResultCode::AccessDenied) {
        aType = LxAccessExclusive;  // nobody else may read even this
        return LxResult();
    }
    if (result == LxResultCode::Timeout) {
        return result;
    }
    if (!result.IsOK()) {
        return LxResult(LxResultCode::ProtocolError, result.GetDescription());
    }
    aType = (privilege & Gvcp::privilegeExclusive) != 0 ? LxAccessExclusive
            : (privilege & Gvcp::privilegeControl) != 0 ? LxAccessControl
                                                        : LxAccessOpen;
    return LxResult();
}

LxResult GigEVisionBackend::SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                  const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    Gvcp::ForceIP configuration;
    if (!ParseMACAddress(aMACAddress.GetString(), configuration.mMACAddress)) {
        return LxResult(LxResultCode::InvalidArgument, "\"" + aMACAddress.GetString() + "\" is no MAC address.");
    }
    configuration.mIPAddress = ParseIPAddress(aIPAddress);
    configuration.mSubnetMask = ParseIPAddress(aSubnetMask);
    configuration.mDefaultGateway = ParseIPAddress(aDefaultGateway);
    return ForceIP(ListNetworkAdapters(), configuration);
}

}  // namespace LxDetail
