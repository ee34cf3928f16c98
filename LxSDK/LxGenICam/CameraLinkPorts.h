#pragma once

// Internal: the ports that started serial bridges offer through the Camera Link serial interface.

#include <cstdint>
#include <memory>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxBase/LxStringList.h"

namespace LxDetail
{

/// A port that is offered, as its user sees it. Thread-safe.
class CameraLinkPort
{
public:
    virtual ~CameraLinkPort() = default;

    /// Makes the caller its only user. Busy when it has one, NotConnected when it is offered no longer.
    virtual LxResult Claim() = 0;
    virtual void Release() = 0;
    /// As the operations of LxCameraLinkPort.
    virtual LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten) = 0;
    virtual LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout) = 0;
    virtual std::vector<uint32_t> GetSupportedBaudRates() const = 0;
    virtual LxResult SetBaudRate(uint32_t aBaudRate) = 0;
};

/// Adds a port to those of the process; null: only its ID. False when the ID is taken. Usable from any thread.
bool RegisterCameraLinkPort(const LxString &aID, std::shared_ptr<CameraLinkPort> aPort = nullptr);
/// Removes a port; nothing happens when it is not registered.
void UnregisterCameraLinkPort(const LxString &aID);
/// The registered ports in the order of registration.
LxStringList GetCameraLinkPorts();
/// Null when there is none of this ID, or only an ID.
std::shared_ptr<CameraLinkPort> FindCameraLinkPort(const LxString &aID);

}  // namespace LxDetail
