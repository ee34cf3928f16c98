#include "LxDevice/IPConfiguration.h"

#include <cstdio>

#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

int GetHexDigit(char aCharacter)
{
    if (aCharacter >= '0' && aCharacter <= '9') {
        return aCharacter - '0';
    }
    if (aCharacter >= 'A' && aCharacter <= 'F') {
        return aCharacter - 'A' + 10;
    }
    if (aCharacter >= 'a' && aCharacter <= 'f') {
        return aCharacter - 'a' + 10;
    }
    return -1;
}

}  // namespace

LxResult AskBackends(const std::function<LxResult(DeviceBackend &)> &aAsk, const std::string &aNotFound)
{
    LxResult last(LxResultCode::NotFound, aNotFound);
    try {
        for (const auto &backend : DeviceBackends::Get()) {
            const LxResult result = aAsk(*backend);
            if (result != LxResultCode::NotFound) {
                return result;
            }
            if (!result.GetDescription().IsEmpty()) {
                last = result;
            }
        }
    }
    catch (const std::exception &error) {
        return LxResult(LxResultCode::Failed, error.what());
    }
    return last;
}

bool ParseMACAddress(const std::string &aText, uint64_t &aAddress)
{
    constexpr size_t length = 17;
    if (aText.size() != length || (aText[2] != ':' && aText[2] != '-')) {
        return false;
    }
    uint64_t address = 0;
    for (size_t i = 0; i < length; i += 3) {
        const int high = GetHexDigit(aText[i]);
        const int low = GetHexDigit(aText[i + 1]);
        if (high < 0 || low < 0 || (i + 2 < length && aText[i + 2] != aText[2])) {
            return false;
        }
        address = address << 8 | static_cast<uint64_t>(high << 4 | low);
    }
    aAddress = address;
    return true;
}

std::string FormatMACAddress(uint64_t aAddress)
{
    char text[18];
    std::snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", static_cast<unsigned>(aAddress >> 40 & 0xFF),
                  static_cast<unsigned>(aAddress >> 32 & 0xFF), static_cast<unsigned>(aAddress >> 24 & 0xFF),
                  static_cast<unsigned>(aAddress >> 16 & 0xFF), static_cast<unsigned>(aAddress >> 8 & 0xFF),
                  static_cast<unsigned>(aAddress & 0xFF));
    return text;
}

uint32_t ParseIPAddress(const LxString &aText)
{
    YrUtilsLib::Network::IpAddress address;
    address.Set(aText.GetAscii());
    return address.Get();
}

LxResult SetIPConfiguration(SetIPConfigurationFunction aFunction, const LxString &aMACAddress,
                            const LxString &aIPAddress, const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    uint64_t mac = 0;
    if (!ParseMACAddress(aMACAddress.GetString(), mac)) {
        return LxResult(LxResultCode::InvalidArgument, "\"" + aMACAddress.GetString() + "\" is no MAC address.");
    }
    for (const LxString *text : {&aIPAddress, &aSubnetMask, &aDefaultGateway}) {
        YrUtilsLib::Network::IpAddress address;
        if (!address.Set(text->GetAscii()).IsOK()) {
            return LxResult(LxResultCode::InvalidArgument, "\"" + text->GetString() + "\" is no IP address.");
        }
    }
    const LxString macText = FormatMACAddress(mac);
    return AskBackends(
        [&](DeviceBackend &aBackend) {
            return (aBackend.*aFunction)(macText, aIPAddress, aSubnetMask, aDefaultGateway);
        },
        "No device with the MAC address " + macText.GetString() + " is known.");
}

}  // namespace LxDetail
