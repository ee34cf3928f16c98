#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "Wire.h"

class LxInterface;
class LxSystem;

// What tests do with cameras on a real network.

/// The interface whose text has a name in it, or null.
const LxInterface *FindInterface(const LxSystem &aSystem, const std::string &aName);
/// Searches until the interface of this name has a device.
const LxDeviceInfoGEV *FindAt(LxSystem &aSystem, const std::string &aInterface);
/// Connects with control; null, and a failure of the test, when it cannot be done.
std::unique_ptr<LxDeviceGEV> Connect(const LxDeviceInfo *aInfo);
/// Takes frames until so many complete ones came; 0 when they do not.
uint64_t TakeFrames(LxStream &aStream, int aCount);
/// Connects, takes some frames and disconnects.
void ExpectStreams(const LxDeviceInfo *aInfo);
/// The command of an emulator behind a wire, with mask 255.255.255.0.
std::vector<std::string> EmulatorBehind(const Wire &aWire, const std::string &aIP, const std::string &aMAC);
