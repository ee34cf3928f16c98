#pragma once

// Internal: the CL Protocol drivers of the simulated host.

#include <memory>

#include "LxCameraBridge/CLProtocolDriver.h"

namespace LxDetail
{

/// A driver for LxSimulatedTextCamera, and a catalogue of families that it knows but that no simulated camera is of.
class SimulatedCLProtocol : public CLProtocolDriver
{
public:
    static const std::shared_ptr<SimulatedCLProtocol> &Get();

    std::vector<std::string> GetTemplates() const override;
    LxResult Probe(std::shared_ptr<CountedPort> aPort, const std::string &aTemplate, std::string &aCameraID,
                   std::vector<std::string> &aXMLIDs) override;
    LxResult Connect(std::shared_ptr<CountedPort> aPort, const std::string &aXMLID, std::string &aXML,
                     std::shared_ptr<CameraRegisters> &aRegisters) override;
};

}  // namespace LxDetail
