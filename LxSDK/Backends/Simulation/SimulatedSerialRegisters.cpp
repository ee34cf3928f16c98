#include "Backends/Simulation/SimulatedSerialRegisters.h"

#include <algorithm>
#include <cstdio>

namespace LxDetail
{

namespace
{

// 4 bytes each, big-endian; the arrays by the number of LxDeviceSerial.
constexpr uint64_t FirstAddress = 0xC000;
constexpr uint64_t BulkSelectorAddress = FirstAddress;
constexpr uint64_t BaudRateAddress = 0xC040;
constexpr uint64_t LoopbackAddress = 0xC080;
constexpr uint64_t DividerAddress = 0xC0C0;
constexpr uint64_t SerialEnd = 0xC100;

constexpr uint32_t PortCount = 10;
constexpr uint32_t FirstBulk = static_cast<uint32_t>(LxDeviceSerial::Bulk0);
constexpr uint32_t DefaultBaudRate = 115200;
constexpr uint32_t LowestBaudRate = 1200;
constexpr uint32_t HighestBaudRate = 921600;
constexpr uint32_t SystemClock = 100000000;
constexpr uint32_t DefaultDivider = 868;  // next to 115200 baud
constexpr uint32_t HighestDivider = 65535;
constexpr uint32_t LowestDivider = 100;
constexpr uint32_t BaudRates[] = {9600, 14400, 19200, 28800, 38400, 57600, 115200, 230400, 460800, 921600};

std::string Child(const std::string &aName, const std::string &aValue)
{
    return "  <" + aName + ">" + aValue + "</" + aName + ">\n";
}

std::string Head(const std::string &aKind, const std::string &aName, const std::string &aToolTip)
{
    return "<" + aKind + " Name=\"" + aName + "\" NameSpace=\"Custom\">\n" + Child("ToolTip", aToolTip) +
           Child("Visibility", "Beginner");
}

/// A feature with its register; those of the bulk ports are elements of arrays, which the selector chooses from.
std::string Register(const std::string &aFeature, uint64_t aAddress, bool aSelected)
{
    char address[24];
    std::snprintf(address, sizeof(address), "0x%llX", static_cast<unsigned long long>(aAddress));
    return "<IntReg Name=\"" + aFeature + "Reg\">\n" + Child("Address", address) +
           (aSelected ? "  <pIndex Offset=\"4\">BulkSelectorReg</pIndex>\n" : "") + Child("Length", "4") +
           Child("AccessMode", "RW") + Child("pPort", "Device") + Child("Cachable", "WriteThrough") +
           Child("Sign", "Unsigned") + Child("Endianess", "BigEndian") + "</IntReg>\n";
}

std::string Entry(const std::string &aName, uint32_t aValue)
{
    return "  <EnumEntry Name=\"" + aName + "\" NameSpace=\"Custom\">\n  " + Child("Value", std::to_string(aValue)) +
           "  </EnumEntry>\n";
}

std::string Integer(const std::string &aName, const std::string &aToolTip, uint32_t aMin, uint32_t aMax,
                    const std::string &aUnit)
{
    return Head("Integer", aName, aToolTip) + Child("pValue", aName + "Reg") + Child("Min", std::to_string(aMin)) +
           Child("Max", std::to_string(aMax)) + (aUnit.empty() ? "" : Child("Unit", aUnit)) + "</Integer>\n";
}

/// The feature for the speed of a port, or none.
std::string Speed(const std::string &aPrefix, LxSimulatedSpeed aKind, uint32_t aPort, bool aSelected)
{
    const std::string name = aPrefix + "BaudRate";
    const uint64_t address = BaudRateAddress + 4 * aPort;
    switch (aKind) {
        case LxSimulatedSpeed::Enumeration: {
            std::string text = Head("Enumeration", name, "Speed of the port in baud.");
            for (const uint32_t rate : BaudRates) {
                text += Entry("Baud" + std::to_string(rate), rate);
            }
            return text + Child("pValue", name + "Reg") + "</Enumeration>\n" + Register(name, address, aSelected);
        }
        case LxSimulatedSpeed::Integer:
            return Integer(name, "Speed of the port.", LowestBaudRate, HighestBaudRate, "baud") +
                   Register(name, address, aSelected);
        case LxSimulatedSpeed::ClockDivider:
            return Integer("BulkSystemClockDivider", "By what the system clock of 100 MHz is divided.", LowestDivider,
                           HighestDivider, "") +
                   Register("BulkSystemClockDivider", DividerAddress + 4 * aPort, aSelected);
        case LxSimulatedSpeed::None:
            break;
    }
    return "";
}

std::string Loopback(const std::string &aPrefix, uint32_t aPort, bool aSelected)
{
    const std::string name = aPrefix + "Loopback";
    return Head("Boolean", name, "Whether the port hears what it sends.") + Child("pValue", name + "Reg") +
           Child("OnValue", "1") + Child("OffValue", "0") + "</Boolean>\n" +
           Register(name, LoopbackAddress + 4 * aPort, aSelected);
}

/// The names of the features in the text, without registers.
std::string References(const std::string &aText, const std::string &aElement)
{
    static const std::string tag = " Name=\"";
    std::string references;
    for (const char *kind : {"<Enumeration", "<Integer", "<Boolean"}) {
        for (size_t at = aText.find(kind + tag); at != std::string::npos; at = aText.find(kind + tag, at + 1)) {
            const size_t name = aText.find(tag, at) + tag.size();
            references += Child(aElement, aText.substr(name, aText.find('"', name) - name));
        }
    }
    return references;
}

}  // namespace

SimulatedSerialRegisters::SimulatedSerialRegisters(const LxSimulatedDevice &aValues, const SimulatedSerialPorts &aPorts)
    : mPresent(aValues.mSerialPorts & ((1u << PortCount) - 1)),
      mSpeeds{aValues.mUart0Speed, aValues.mUart1Speed, aValues.mBulkSpeed},
      mLoopback(aValues.mSerialLoopback),
      mPorts(aPorts)
{
}

LxSimulatedSpeed SimulatedSerialRegisters::GetSpeedKind(uint32_t aPort) const
{
    const LxSimulatedSpeed kind = mSpeeds[std::min(aPort, FirstBulk)];
    return kind == LxSimulatedSpeed::ClockDivider && aPort < FirstBulk ? LxSimulatedSpeed::None : kind;
}

std::string SimulatedSerialRegisters::MakeXML() const
{
    std::string features;
    for (uint32_t port = 0; port < FirstBulk; ++port) {
        if (Has(port)) {
            const std::string prefix = "Uart" + std::to_string(port);
            features += Speed(prefix, GetSpeedKind(port), port, false);
            features += mLoopback ? Loopback(prefix, port, false) : "";
        }
    }
    if (HasBulk()) {
        std::string selected = Speed("Bulk", GetSpeedKind(FirstBulk), FirstBulk, true);
        selected += mLoopback ? Loopback("Bulk", FirstBulk, true) : "";
        features += Head("Enumeration", "BulkSelector", "Which of the bulk ports the features below are of.");
        for (uint32_t port = FirstBulk; port < PortCount; ++port) {
            if (Has(port)) {
                features += Entry("Bulk" + std::to_string(port - FirstBulk), port - FirstBulk);
            }
        }
        features += Child("pValue", "BulkSelectorReg") + References(selected, "pSelected") + "</Enumeration>\n" +
                    Register("BulkSelector", BulkSelectorAddress, false) + selected;
    }
    return "<Group Comment=\"SerialControl\">\n<Category Name=\"SerialControl\" NameSpace=\"Custom\">\n" +
           Child("ToolTip", "The serial ports to the cameras.") + References(features, "pFeature") + "</Category>\n" +
           features + "</Group>\n";
}

void SimulatedSerialRegisters::Attach(const std::shared_ptr<MemoryPort> &aMemory)
{
    mMemory = aMemory;
    mMemory->Map(FirstAddress, SerialEnd - FirstAddress);
    mMemory->OnWrite(FirstAddress, SerialEnd - FirstAddress,
                     [this](MemoryPort &, uint64_t aAddress, uint32_t aLength) { return OnWrite(aAddress, aLength); });
    Restart();
}

void SimulatedSerialRegisters::Restart()
{
    std::lock_guard lock(mMutex);
    for (uint32_t port = 0; port < PortCount; ++port) {
        mMemory->Poke32(BaudRateAddress + 4 * port, DefaultBaudRate);
        mMemory->Poke32(LoopbackAddress + 4 * port, 0);
        mMemory->Poke32(DividerAddress + 4 * port, DefaultDivider);
    }
    uint32_t bulk = FirstBulk;
    while (HasBulk() && !Has(bulk)) {
        ++bulk;
    }
    mMemory->Poke32(BulkSelectorAddress, bulk - FirstBulk);
    Apply();
}

LxResult SimulatedSerialRegisters::Check(uint64_t aAddress, uint32_t aValue) const
{
    bool good = true;
    const auto port = static_cast<uint32_t>((aAddress & 0x3F) / 4);
    if (aAddress >= DividerAddress) {
        good = aValue >= LowestDivider && aValue <= HighestDivider;
    }
    else if (aAddress >= LoopbackAddress) {
        good = aValue <= 1;
    }
    else if (aAddress >= BaudRateAddress) {
        good = GetSpeedKind(port) == LxSimulatedSpeed::Enumeration
                   ? std::find(std::begin(BaudRates), std::end(BaudRates), aValue) != std::end(BaudRates)
                   : aValue >= LowestBaudRate && aValue <= HighestBaudRate;
    }
    else if (aAddress == BulkSelectorAddress) {
        good = aValue < PortCount - FirstBulk && Has(FirstBulk + aValue);
    }
    return good ? LxResult() : LxResult(LxResultCode::InvalidParameter, "The serial port cannot be set to this value.");
}

LxResult SimulatedSerialRegisters::OnWrite(uint64_t aAddress, uint32_t aLength)
{
    std::lock_guard lock(mMutex);
    LxResult result;
    for (uint64_t address = aAddress & ~3ull; address < aAddress + aLength; address += 4) {
        if (result.IsOK()) {
            result = Check(address, mMemory->Peek32(address));
        }
    }
    if (result.IsOK()) {
        Apply();
    }
    else {
        mMemory->Poke(FirstAddress, mShadow.data(), static_cast<uint32_t>(mShadow.size()));
    }
    return result;
}

void SimulatedSerialRegisters::Apply()
{
    mShadow.resize(SerialEnd - FirstAddress);
    mMemory->Peek(FirstAddress, mShadow.data(), static_cast<uint32_t>(mShadow.size()));
    for (uint32_t port = 0; port < PortCount; ++port) {
        uint32_t speed = DefaultBaudRate;
        if (GetSpeedKind(port) == LxSimulatedSpeed::ClockDivider) {
            speed = SystemClock / std::max(mMemory->Peek32(DividerAddress + 4 * port), 1u);
        }
        else if (GetSpeedKind(port) != LxSimulatedSpeed::None) {
            speed = mMemory->Peek32(BaudRateAddress + 4 * port);
        }
        mPorts[port]->SetBaudRate(speed);
        mPorts[port]->SetLoopback(mMemory->Peek32(LoopbackAddress + 4 * port) != 0);
    }
}

}  // namespace LxDetail
