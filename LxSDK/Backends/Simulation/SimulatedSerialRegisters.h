#pragma once

// Internal: the features of a simulated frame grabber's serial ports.

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Backends/Simulation/SimulatedSerialPort.h"
#include "LxSimulation/LxSimulation.h"
#include "NodeMap/MemoryPort.h"

namespace LxDetail
{

/// All ports that a device can have, by the number of LxDeviceSerial.
using SimulatedSerialPorts = std::array<std::shared_ptr<SimulatedSerialPort>, 10>;

/// The registers through which the ports are set, behind those of the camera, and their GenICam XML. Thread-safe.
class SimulatedSerialRegisters
{
public:
    SimulatedSerialRegisters(const LxSimulatedDevice &aValues, const SimulatedSerialPorts &aPorts);

    /// The category "SerialControl" and all nodes under it.
    std::string MakeXML() const;
    /// Maps the registers; this object must live as long as the memory.
    void Attach(const std::shared_ptr<MemoryPort> &aMemory);
    /// As after switching the device off and on.
    void Restart();

private:
    bool Has(uint32_t aPort) const { return (mPresent >> aPort & 1) != 0; }
    bool HasBulk() const { return mPresent >> 2 != 0; }
    LxSimulatedSpeed GetSpeedKind(uint32_t aPort) const;
    LxResult Check(uint64_t aAddress, uint32_t aValue) const;
    LxResult OnWrite(uint64_t aAddress, uint32_t aLength);
    /// Remembers the registers and sets the ports by them.
    void Apply();

    const uint32_t mPresent;
    const std::array<LxSimulatedSpeed, 3> mSpeeds;  // of Serial0, Serial1 and the bulk ports
    const bool mLoopback;
    const SimulatedSerialPorts mPorts;
    std::shared_ptr<MemoryPort> mMemory;
    std::mutex mMutex;             // held while the registers are changed; guards mShadow
    std::vector<uint8_t> mShadow;  // the last accepted content
};

}  // namespace LxDetail
