#pragma once

#include <QtCore/QString>
#include <cstdint>

/// How properties of interfaces and devices are written in the information tables.
namespace InfoFormat
{

/// "0x" and lower-case digits, zero-padded to a width.
QString Hex(uint32_t aValue, int aWidth);
QString Dec(uint32_t aValue);
/// "major.minor"
QString Version(uint32_t aMajor, uint32_t aMinor);
/// "True" or "False"
QString Bool(bool aValue);
/// "Valid" or "Invalid"
QString Validity(bool aValid);
QString Milliampere(uint32_t aValue);
/// By LxUSBSpeed.
QString USBSpeed(uint32_t aSpeed);
/// The device class of GigE Vision; empty for a number that has none.
QString DeviceClass(int aClass);
/// By LxAccessType.
QString AccessType(int aType);
/// By LxDeviceInfoUSB::GetStatus().
QString USBStatus(int aStatus);

}  // namespace InfoFormat
