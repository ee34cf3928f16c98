#include "LxGUI/DeviceFinder/IconTiles.h"

#include <algorithm>

#include "LxSystem/LxUSBHostController.h"

namespace IconTiles
{

int GEV(bool aEnabled, bool aConfigurationValid)
{
    if (!aEnabled) {
        return 25;
    }
    return aConfigurationValid ? 1 : 3;
}

int KelvraProtocol(bool aEnabled, bool aConfigurationValid)
{
    if (!aEnabled) {
        return 26;
    }
    return aConfigurationValid ? 0 : 2;
}

int U3V(bool aEnabled, bool aDriverInstalled, uint32_t aSpeed)
{
    if (!aEnabled) {
        return 27;
    }
    if (!aDriverInstalled) {
        return 24;
    }
    return aSpeed == LxUSBSpeedSuper ? 21 : 23;
}

int USB(bool aEnabled)
{
    return aEnabled ? USBDevice : 28;
}

int NetworkAdapter(bool aDriverInstalled, const AdapterAddresses &aOwn, const AdapterAddresses &aAll)
{
    // The first address decides for the whole adapter whether address and mask are set.
    if (!aOwn.empty() && IsUnset(aOwn.front().mIPAddress)) {
        return aDriverInstalled ? 10 : 8;
    }
    const bool hasMask = aOwn.empty() || !IsUnset(aOwn.front().mSubnetMask);
    const bool unique = std::all_of(aOwn.begin(), aOwn.end(),
                                    [&aAll](const AdapterAddress &aAddress) { return IsSubnetUnique(aAddress, aAll); });
    if (!hasMask || !unique) {
        return aDriverInstalled ? 11 : 9;
    }
    return aDriverInstalled ? 7 : 5;
}

}  // namespace IconTiles
