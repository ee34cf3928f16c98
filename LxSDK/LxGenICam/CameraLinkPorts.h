#pragma once

// Internal: the ports that started serial bridges offer through the Camera Link serial interface.

#include "LxBase/LxStringList.h"

namespace LxDetail
{

/// Adds a port to those of the process. False when the ID is taken. Usable from any thread.
bool RegisterCameraLinkPort(const LxString &aID);
/// Removes a port; nothing happens when it is not registered.
void UnregisterCameraLinkPort(const LxString &aID);
/// The registered ports in the order of registration.
LxStringList GetCameraLinkPorts();

}  // namespace LxDetail
