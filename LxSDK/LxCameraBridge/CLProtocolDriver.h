#pragma once

// Internal: the drivers of the GenICam CL Protocol (EMVA GenICam CLProtocol 1.2), each of which speaks the language of
// some cameras.

#include <memory>
#include <string>
#include <vector>

#include "LxCameraBridge/CameraRegisters.h"
#include "LxCameraBridge/CountedPort.h"

namespace LxDetail
{

/// Thread-safe.
class CLProtocolDriver
{
public:
    virtual ~CLProtocolDriver() = default;

    /// Device IDs cut off at the right: directory # file # manufacturer # family, at least up to the manufacturer.
    virtual std::vector<std::string> GetTemplates() const = 0;
    /// Whether a camera of the template answers; its whole device ID, and the IDs of the XMLs that fit it, the best
    /// first. NotFound, or Timeout, when there is none.
    virtual LxResult Probe(std::shared_ptr<CountedPort> aPort, const std::string &aTemplate, std::string &aCameraID,
                           std::vector<std::string> &aXMLIDs) = 0;
    /// The XML of an ID and the camera's registers.
    virtual LxResult Connect(std::shared_ptr<CountedPort> aPort, const std::string &aXMLID, std::string &aXML,
                             std::shared_ptr<CameraRegisters> &aRegisters) = 0;
};

/// The drivers that there are. Thread-safe.
namespace CLProtocolDrivers
{

/// Adding a driver again changes nothing.
void Add(const std::shared_ptr<CLProtocolDriver> &aDriver);
void Remove(const std::shared_ptr<CLProtocolDriver> &aDriver);
std::vector<std::shared_ptr<CLProtocolDriver>> Get();
/// The driver of a template, or of a camera ID, which begins with one; and that template. Null when there is none.
std::shared_ptr<CLProtocolDriver> Find(const std::string &aText, std::string &aTemplate);

}  // namespace CLProtocolDrivers

}  // namespace LxDetail
