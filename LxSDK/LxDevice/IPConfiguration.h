#pragma once

// Internal: what LxDeviceGEV and LxDeviceKelvraProtocol share for operations by address.

#include <functional>
#include <string>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

/// Asks one backend after the other until one knows the device, that is, until the result is not NotFound.
/// @param aNotFound the description when none knows it and none says more.
LxResult AskBackends(const std::function<LxResult(DeviceBackend &)> &aAsk, const std::string &aNotFound);

/// Reads "00:11:22:33:44:55", with colons or dashes and in either case; the first byte becomes the most significant of
/// the low 48 bits. False for anything else.
bool ParseMACAddress(const std::string &aText, uint64_t &aAddress);
/// "00:11:22:33:44:55", upper case.
std::string FormatMACAddress(uint64_t aAddress);

/// Reads "192.168.0.1", the first octet most significant; 0 for anything else.
uint32_t ParseIPAddress(const LxString &aText);

using SetIPConfigurationFunction = LxResult (DeviceBackend::*)(const LxString &, const LxString &, const LxString &,
                                                               const LxString &);
/// Checks the four texts and asks the backends.
LxResult SetIPConfiguration(SetIPConfigurationFunction aFunction, const LxString &aMACAddress,
                            const LxString &aIPAddress, const LxString &aSubnetMask, const LxString &aDefaultGateway);

}  // namespace LxDetail
