#pragma once

// Internal: the features of a simulated frame grabber that concern the cameras at it.

#include <memory>
#include <string>

#include "LxSimulation/LxSimulation.h"
#include "NodeMap/MemoryPort.h"

namespace LxDetail
{

/// The sources of pictures and the power over Camera Link, behind the registers of the serial ports.
class SimulatedGrabberRegisters
{
public:
    explicit SimulatedGrabberRegisters(const LxSimulatedDevice &aValues);

    /// The category "FrameGrabberControl" and all nodes under it.
    std::string MakeXML() const;
    void Attach(const std::shared_ptr<MemoryPort> &aMemory);
    /// As after switching the device off and on.
    void Restart();

private:
    const uint32_t mSources;
    const bool mPoCL;
    std::shared_ptr<MemoryPort> mMemory;
};

}  // namespace LxDetail
