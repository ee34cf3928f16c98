#include "LxGUI/DeviceFinder/IPConfigurationRules.h"

#include "LxGUI/DeviceFinder/IPv4.h"

namespace
{

/// Multicast addresses and what is reserved behind them (RFC 1112).
bool IsUnassignable(uint32_t aAddress)
{
    return IPv4::GetOctet(aAddress, 0) >= 224;
}

QString UnassignableText()
{
    return QStringLiteral("IP addresses in the 224.*.*.* to 255.*.*.* range cannot be assigned to a device.");
}

QString FindAddressDoubt(uint32_t aAddress, uint32_t aNICAddress, uint32_t aNICMask)
{
    if (IsUnassignable(aAddress)) {
        return UnassignableText();
    }
    if (!IPv4::IsSameNetwork(aAddress, aNICAddress, aNICMask)) {
        return QStringLiteral("Device IP Address does not match Interface Subnet.");
    }
    const uint32_t last = IPv4::GetOctet(aAddress, 3);
    if (last == 0 || last == 255) {
        return QStringLiteral("IP addresses ending by 0 or 255 are invalid.");
    }
    if (aAddress == aNICAddress) {
        return QStringLiteral("The IP Address cannot be the same as the Interface!");
    }
    return QString();
}

QString FindMaskDoubt(uint32_t aMask, uint32_t aNICMask)
{
    if (aMask != 0 && aMask != aNICMask) {
        return QStringLiteral("Device Subnet Mask should match Interface Subnet Mask.");
    }
    // Only where the mask of the adapter is not contiguous either.
    if (!IPv4::IsContiguous(aMask)) {
        return QStringLiteral("Invalid subnet mask.");
    }
    return QString();
}

QString FindGatewayDoubt(uint32_t aGateway, uint32_t aNICAddress, uint32_t aNICMask)
{
    if (aGateway != 0 && !IPv4::IsSameNetwork(aGateway, aNICAddress, aNICMask)) {
        return QStringLiteral("Device Gateway does not match Interface Subnet.");
    }
    return QString();
}

}  // namespace

IPConfigurationDoubts FindDoubts(const IPConfiguration &aDevice, uint32_t aNICAddress, uint32_t aNICMask)
{
    return {FindAddressDoubt(aDevice.mIPAddress, aNICAddress, aNICMask), FindMaskDoubt(aDevice.mSubnetMask, aNICMask),
            FindGatewayDoubt(aDevice.mDefaultGateway, aNICAddress, aNICMask)};
}

QString FindBlockingError(const IPConfiguration &aDevice, const QString &aIPAddress, const QString &aNICAddress)
{
    if (!aNICAddress.isEmpty() && aIPAddress == aNICAddress) {
        return QStringLiteral("Cannot assign the same IP Address as the Interface!");
    }
    if (IsUnassignable(aDevice.mIPAddress)) {
        return UnassignableText();
    }
    if (IPv4::GetHostPart(aDevice.mIPAddress, aDevice.mSubnetMask) == 0) {
        return QStringLiteral("Cannot assign the device IP Address to be the same as its subnet!");
    }
    return QString();
}
