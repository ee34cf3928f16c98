#pragma once

#include <cstdint>

#include "LxGUI/DeviceFinder/SubnetRules.h"

/// Which tile of the icon strip stands for what.
namespace IconTiles
{

constexpr int USBDevice = 17;

int GEV(bool aEnabled, bool aConfigurationValid);
int KelvraProtocol(bool aEnabled, bool aConfigurationValid);
/// @param aSpeed one of LxUSBSpeed
int U3V(bool aEnabled, bool aDriverInstalled, uint32_t aSpeed);
int USB(bool aEnabled);
/// @param aOwn the addresses of the adapter
/// @param aAll the addresses of all adapters
int NetworkAdapter(bool aDriverInstalled, const AdapterAddresses &aOwn, const AdapterAddresses &aAll);

}  // namespace IconTiles
