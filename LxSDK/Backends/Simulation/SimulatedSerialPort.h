#pragma once

// Internal: a serial port of a simulated device.

#include <memory>
#include <mutex>
#include <thread>

#include "Backends/Simulation/SerialQueue.h"
#include "LxDevice/SerialPortSource.h"
#include "LxSimulation/LxSimulatedSerial.h"

namespace LxDetail
{

class SimulatedSerialSession;

/// A serial port: its settings, what is connected to it, and the application that has it open. Thread-safe; no lock is
/// held while the peer is called.
class SimulatedSerialPort : public LxSimulatedSerialLine, public std::enable_shared_from_this<SimulatedSerialPort>
{
public:
    void SetConditions(const LxSimulatedSerialConditions &aConditions);
    LxSimulatedSerialConditions GetConditions() const;
    void SetPeer(std::shared_ptr<LxSimulatedSerialPeer> aPeer);
    /// Features of the device.
    void SetBaudRate(uint32_t aBaudRate);
    void SetLoopback(bool aLoopback);
    /// What accesses fail with while the device is away; OK: it is there. What was on its way is lost.
    void SetLink(const LxResult &aLink);

    /// Opens the port for somebody. Busy while it is open.
    LxResult Open(const std::string &aName, const void *aOwner, std::shared_ptr<SerialPortChannel> &aChannel);
    /// The connection that opened the port has ended: from now on accesses fail with NotConnected.
    void Release(const void *aOwner);

    uint32_t Send(const uint8_t *aData, uint32_t aCount) override;
    uint32_t GetBaudRate() const override;
    bool IsOpen() const override;

private:
    friend class SimulatedSerialSession;

    std::chrono::nanoseconds GetByteTime() const;
    /// Bytes from the host have arrived at the other end; on the session's thread.
    void Deliver(SimulatedSerialSession &aSession, uint8_t *aData, uint32_t aCount);
    void Garble(const LxSimulatedSerialPeer &aPeer, uint8_t *aData, uint32_t aCount) const;
    LxResult GetFault(bool aReading) const;
    void Apply(SimulatedSerialSession &aSession);
    void End(const SimulatedSerialSession *aSession);

    mutable std::mutex mMutex;  // guards all members below
    LxSimulatedSerialConditions mConditions;
    std::shared_ptr<LxSimulatedSerialPeer> mPeer;
    std::weak_ptr<SimulatedSerialSession> mSession;
    uint32_t mBaudRate = 115200;
    bool mLoopback = false;
    LxResult mLink;
};

}  // namespace LxDetail
