#pragma once

// Internal: the inside of a simulated camera that is controlled over a serial line.

#include <memory>
#include <string>

#include "NodeMap/MemoryPort.h"

namespace LxDetail
{

/// The registers of such a camera from SerialCameraAddress on, with their default values.
std::shared_ptr<MemoryPort> MakeSerialCameraRegisters();
constexpr uint64_t SerialCameraAddress = 0x20000;

/// Their GenICam XML. A minor version above 0 has the feature "StatusLED" too.
std::string MakeSerialCameraXML(const std::string &aVendor, const std::string &aModel, uint32_t aMinorVersion);

enum class SerialCameraKind
{
    Integer,  ///< 4 bytes, big-endian
    Float,    ///< 8 bytes, big-endian
    Text,     ///< 16 bytes
    Command,  ///< an integer; writing 1 executes it
};

struct SerialCameraRegister
{
    const char *mTextName;  ///< in text commands
    uint64_t mAddress;
    SerialCameraKind mKind;
    bool mWritable;
};

/// Null when there is none of this name.
const SerialCameraRegister *FindSerialCameraRegister(const std::string &aTextName);

}  // namespace LxDetail
