#include "LxBase/LxDeviceSerial.h"

LxString LxDeviceSerialToString(LxDeviceSerial aPort)
{
    const auto number = static_cast<uint32_t>(aPort);
    if (number <= static_cast<uint32_t>(LxDeviceSerial::Serial1)) {
        return "Serial" + std::to_string(number);
    }
    if (number <= static_cast<uint32_t>(LxDeviceSerial::Bulk7)) {
        return "Bulk" + std::to_string(number - static_cast<uint32_t>(LxDeviceSerial::Bulk0));
    }
    return "Invalid";
}
