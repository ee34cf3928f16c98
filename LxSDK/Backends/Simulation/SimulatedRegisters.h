#pragma once

// Internal: the register table of the simulated camera, and the XML nodes that it becomes.

#include <cstdint>
#include <string>
#include <vector>

namespace LxDetail
{

enum class RegisterAccess
{
    RO,
    RW,
    WO,
};

enum class RegisterKind
{
    Int,      ///< Unsigned integer.
    Signed,   ///< Signed integer.
    Float,    ///< IEEE 754, 8 bytes.
    String,   ///< UTF-8, filled with zero bytes.
    Bytes,    ///< Anything else.
    Command,  ///< Writing 1 executes; reads 1 until done.
};

/// One line of SimulatedRegisters.inc; see there.
struct RegisterSpec
{
    const char *mName;
    uint64_t mAddress;
    uint32_t mLength;
    uint32_t mCount;
    const char *mIndex;
    RegisterAccess mAccess;
    RegisterKind mKind;
    uint32_t mPollingTime;
    const char *mInvalidators;
    double mDefault;
    double mMin;  ///< NaN: none
    double mMax;  ///< NaN: none

    uint64_t GetEnd() const { return mAddress + uint64_t(mLength) * mCount; }
};

/// The registers in the order of their addresses.
const std::vector<RegisterSpec> &GetSimulatedRegisters();
/// The XML register nodes ("WidthReg") of all registers and of their parts.
std::string GetSimulatedRegisterNodes();

/// The addresses, by name.
namespace SimulatedRegister
{
#define LX_REGISTER(name, address, ...) constexpr uint64_t name = address;
#include "Backends/Simulation/SimulatedRegisters.inc"
#undef LX_REGISTER
}  // namespace SimulatedRegister

}  // namespace LxDetail
