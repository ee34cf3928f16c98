#pragma once

// Internal: one device of the simulated host.

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "Backends/Simulation/SimulatedCamera.h"
#include "Backends/Simulation/SimulatedGrabberRegisters.h"
#include "Backends/Simulation/SimulatedSerialPort.h"
#include "Backends/Simulation/SimulatedSerialRegisters.h"
#include "Backends/Simulation/SimulationClock.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxSimulation/LxSimulation.h"
#include "NodeMap/FaultPort.h"

namespace LxDetail
{

class SimulatedConnection;

/// A simulated device: its values, whether it is there, the camera inside, and who is connected. Thread-safe; no lock
/// is held while event sinks or listeners run.
class SimulatedUnit : public std::enable_shared_from_this<SimulatedUnit>
{
public:
    enum class Link : int
    {
        Connected,
        Suspect,  ///< It did not answer in time.
        Lost,
    };

    SimulatedUnit(SimulationClock &aClock, LxSimulatedDevice aValues);
    ~SimulatedUnit();
    SimulatedUnit(const SimulatedUnit &) = delete;
    SimulatedUnit &operator=(const SimulatedUnit &) = delete;

    /// What identifies the device; the key of everything.
    const LxString &GetID() const { return mID; }
    LxSimulatedDevice GetValues() const;
    void SetValues(LxSimulatedDevice aValues);
    static LxString MakeID(const LxSimulatedDevice &aValues);
    /// AccessDenied while an application controls it.
    LxResult SetIPConfiguration(uint32_t aAddress, uint32_t aMask, uint32_t aGateway);

    bool IsPresent() const { return mPresent; }
    void SetPresent(bool aPresent) { mPresent = aPresent; }
    /// Whether it can be reached at all: it is plugged in, and an interface that it is at exists.
    void SetReachable(bool aReachable);
    void Freeze(std::chrono::milliseconds aTimeout);
    void Thaw();
    bool IsFrozen() const { return mFrozen; }
    /// An access timed out.
    void NoteTimeout();
    Link GetLink() const { return mLink; }
    /// How often the link was lost so far: tells of a loss that is over before anybody looked.
    uint64_t GetLossCount() const { return mLossCount; }
    LxResult GetLinkResult() const;

    std::chrono::milliseconds GetFindDelay(std::chrono::milliseconds aDefault) const;
    void SetFindDelay(std::optional<std::chrono::milliseconds> aDelay);
    void SkipFrames(uint32_t aCount) { mSkip = aCount; }
    void DamageFrames(uint32_t aCount) { mDamage = aCount; }
    bool TakeSkip() { return TakeOne(mSkip); }
    bool TakeDamage() { return TakeOne(mDamage); }

    /// The camera inside and the port with its faults; made when they are first needed.
    std::shared_ptr<SimulatedCamera> GetCamera();
    std::shared_ptr<FaultPort> GetPort();

    bool HasSerialPort(LxDeviceSerial aPort) const;
    /// Whether it is there or not; null for a number that no port has.
    std::shared_ptr<SimulatedSerialPort> GetSerialPort(LxDeviceSerial aPort) const;

    LxResult Connect(LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice);
    void Release(const SimulatedConnection *aConnection);
    LxAccessType GetAccessType() const;
    /// Does something on the simulation's thread.
    void Post(std::function<void()> aTask) { mClock.Post(std::move(aTask)); }

private:
    static bool TakeOne(std::atomic<uint32_t> &aCount);
    void MakeCamera();
    void ChangeLink(Link aLink);
    void PublishControl();
    LxResult CheckAccess(LxDeviceAccess aAccess) const;
    LxAccessType GetGrantedAccess() const;
    std::vector<std::shared_ptr<SimulatedConnection>> GetConnections() const;

    SimulationClock &mClock;
    const LxString mID;
    SimulatedSerialPorts mSerialPorts;         // never changed after the constructor
    std::atomic<Link> mLink{Link::Connected};  // written under mMutex
    std::atomic<uint64_t> mLossCount{0};       // written under mMutex, before mLink
    std::atomic<bool> mPresent{true};
    std::atomic<bool> mFrozen{false};  // written under mMutex
    std::atomic<uint32_t> mSkip{0};
    std::atomic<uint32_t> mDamage{0};

    std::mutex mChangeMutex;    // held while the link is changed from outside, so that changes follow one another
    mutable std::mutex mMutex;  // guards all members below
    LxSimulatedDevice mValues;
    bool mReachable = true;
    uint64_t mFreezes = 0;  // so that a thawed and frozen device is not declared lost too early
    std::optional<std::chrono::milliseconds> mFindDelay;
    std::shared_ptr<SimulatedCamera> mCamera;
    std::shared_ptr<FaultPort> mPort;
    std::shared_ptr<SimulatedSerialRegisters> mSerialRegisters;    // null for a device without serial ports
    std::shared_ptr<SimulatedGrabberRegisters> mGrabberRegisters;  // as well
    std::vector<std::weak_ptr<SimulatedConnection>> mConnections;
    std::weak_ptr<SimulatedConnection> mController;
};

}  // namespace LxDetail
