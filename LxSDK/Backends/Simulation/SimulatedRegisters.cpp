#include "Backends/Simulation/SimulatedRegisters.h"

#include <cinttypes>
#include <cstdio>
#include <limits>
#include <sstream>

namespace LxDetail
{

namespace
{

std::string Element(const std::string &aName, const std::string &aValue)
{
    return "    <" + aName + ">" + aValue + "</" + aName + ">\n";
}

std::string Hex(uint64_t aValue)
{
    char text[24];
    std::snprintf(text, sizeof(text), "0x%" PRIX64, aValue);
    return text;
}

const char *ToText(RegisterAccess aAccess)
{
    switch (aAccess) {
        case RegisterAccess::RO:
            return "RO";
        case RegisterAccess::WO:
            return "WO";
        case RegisterAccess::RW:
            break;
    }
    return "RW";
}

const char *GetNodeType(RegisterKind aKind)
{
    switch (aKind) {
        case RegisterKind::Float:
            return "FloatReg";
        case RegisterKind::String:
            return "StringReg";
        default:
            return "IntReg";
    }
}

/// "Selector" or "Selector:stride" for each index.
std::string IndexElements(const RegisterSpec &aSpec)
{
    std::string elements;
    std::istringstream words(aSpec.mIndex);
    for (std::string word; words >> word;) {
        const size_t colon = word.find(':');
        const std::string stride = colon == std::string::npos ? std::to_string(aSpec.mLength) : word.substr(colon + 1);
        elements += "    <pIndex Offset=\"" + stride + "\">" + word.substr(0, colon) + "Reg</pIndex>\n";
    }
    return elements;
}

std::string RegisterNode(const std::string &aType, const std::string &aName, const RegisterSpec &aSpec,
                         uint32_t aLength, RegisterAccess aAccess, const std::string &aIndex, const std::string &aBits)
{
    const bool numeric = aType != "StringReg";
    // The value of a register that changes by itself, or that only triggers something, must not be remembered.
    const bool cachable = aSpec.mPollingTime == 0 && aSpec.mKind != RegisterKind::Command;
    std::string node = "  <" + aType + " Name=\"" + aName + "Reg\">\n";
    node += Element("Address", Hex(aSpec.mAddress)) + aIndex + Element("Length", std::to_string(aLength));
    node += Element("AccessMode", ToText(aAccess)) + Element("pPort", "Device");
    node += Element("Cachable", cachable ? "WriteThrough" : "NoCache");
    if (aSpec.mPollingTime != 0) {
        node += Element("PollingTime", std::to_string(aSpec.mPollingTime));
    }
    std::istringstream invalidators(aSpec.mInvalidators);
    for (std::string invalidator; invalidators >> invalidator;) {
        node += Element("pInvalidator", invalidator);
    }
    node += aBits;
    if (numeric && aType != "FloatReg") {
        node += Element("Sign", aSpec.mKind == RegisterKind::Signed ? "Signed" : "Unsigned");
    }
    if (numeric) {
        node += Element("Endianess", "BigEndian");
    }
    return node + "  </" + aType + ">\n";
}

const RegisterSpec &FindRegister(uint64_t aAddress)
{
    for (const RegisterSpec &spec : GetSimulatedRegisters()) {
        if (spec.mAddress == aAddress) {
            return spec;
        }
    }
    return GetSimulatedRegisters().front();
}

std::string BitsNode(const std::string &aName, uint64_t aAddress, uint32_t aLow, uint32_t aHigh, RegisterAccess aAccess)
{
    const RegisterSpec &spec = FindRegister(aAddress);
    // Bit 0 of a big-endian register is its most significant one.
    const std::string bits =
        aLow == aHigh ? Element("Bit", std::to_string(31 - aLow))
                      : Element("LSB", std::to_string(31 - aLow)) + Element("MSB", std::to_string(31 - aHigh));
    return RegisterNode("MaskedIntReg", aName, spec, spec.mLength, aAccess, "", bits);
}

}  // namespace

const std::vector<RegisterSpec> &GetSimulatedRegisters()
{
    constexpr double None = std::numeric_limits<double>::quiet_NaN();
    using enum RegisterAccess;
    using enum RegisterKind;
    static const std::vector<RegisterSpec> registers = {
#define LX_REGISTER(name, address, length, count, index, access, kind, polling, invalidators, value, min, max) \
    {#name, address, length, count, index, access, kind, polling, invalidators, value, min, max},
#include "Backends/Simulation/SimulatedRegisters.inc"
#undef LX_REGISTER
    };
    return registers;
}

std::string GetSimulatedRegisterNodes()
{
    std::string nodes;
    for (const RegisterSpec &spec : GetSimulatedRegisters()) {
        if (spec.mKind == RegisterKind::Bytes) {
            continue;  // reserved, or a feature that is itself a register node
        }
        nodes += RegisterNode(GetNodeType(spec.mKind), spec.mName, spec, spec.mLength, spec.mAccess,
                              IndexElements(spec), "");
    }
#define LX_REGISTER(...)
#define LX_REGISTER_BITS(name, base, low, high, access) \
    nodes += BitsNode(#name, SimulatedRegister::base, low, high, RegisterAccess::access);
#include "Backends/Simulation/SimulatedRegisters.inc"
#undef LX_REGISTER
#undef LX_REGISTER_BITS
    return nodes;
}

}  // namespace LxDetail
