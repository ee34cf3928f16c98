#include "LxGUI/DeviceFinder/SubnetRules.h"

#include <algorithm>

#include "LxGUI/DeviceFinder/IPv4.h"
#include "LxGUI/Frame/Text.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxSystem.h"

namespace
{

uint32_t GetSubnet(const AdapterAddress &aAddress)
{
    return IPv4::GetNetwork(IPv4::ToNumber(aAddress.mIPAddress), IPv4::ToNumber(aAddress.mSubnetMask));
}

}  // namespace

AdapterAddresses GetAddresses(const LxNetworkAdapter &aAdapter)
{
    AdapterAddresses addresses;
    const uint32_t count = aAdapter.GetIPAddressCount();
    for (uint32_t i = 0; i < count; ++i) {
        addresses.push_back({ToQString(aAdapter.GetIPAddress(i)), ToQString(aAdapter.GetSubnetMask(i))});
    }
    return addresses;
}

AdapterAddresses GetAddresses(const LxSystem &aSystem)
{
    AdapterAddresses all;
    for (uint32_t i = 0; i < aSystem.GetInterfaceCount(); ++i) {
        if (const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(aSystem.GetInterface(i))) {
            const AdapterAddresses some = GetAddresses(*adapter);
            all.insert(all.end(), some.begin(), some.end());
        }
    }
    return all;
}

bool IsUnset(const QString &aAddress)
{
    return aAddress == QLatin1String("0.0.0.0");
}

bool IsSubnetUnique(const AdapterAddress &aAddress, const AdapterAddresses &aAll)
{
    if (IPv4::ToNumber(aAddress.mSubnetMask) == 0) {
        return true;
    }
    const uint32_t subnet = GetSubnet(aAddress);
    return std::count_if(aAll.begin(), aAll.end(),
                         [subnet](const AdapterAddress &aOther) { return GetSubnet(aOther) == subnet; }) <= 1;
}
