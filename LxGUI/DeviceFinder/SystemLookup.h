#pragma once

#include <QtCore/QByteArray>

class LxDeviceInfo;
class LxInterface;
class LxSystem;

/// The interface with a unique ID, or null.
const LxInterface *FindInterface(const LxSystem &aSystem, const QByteArray &aUniqueID);
/// The device with a unique ID among those that the last search found at an interface, or null.
const LxDeviceInfo *FindDeviceInfo(const LxInterface &aInterface, const QByteArray &aUniqueID);
