#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "ControlFaults.h"
#include "ControlPrivilege.h"
#include "GigEVision/GvcpPacket.h"
#include "NodeMap/MemoryPort.h"
#include "UdpSocket.h"

namespace LxEmulator
{

namespace Gvcp = LxDetail::Gvcp;

/// A datagram to be sent back, and when.
struct GvcpAnswer
{
    std::vector<uint8_t> mBytes;
    bool mBroadcast = false;
    ControlPrivilege::Clock::time_point mDue;
};

struct ControlStatistics
{
    uint64_t mCommands = 0;  ///< understood, executed or refused
    uint64_t mInvalid = 0;   ///< datagrams that are no commands
    uint64_t mIgnored = 0;   ///< datagrams that a fault kept from the camera
    uint64_t mRepeats = 0;   ///< commands that came again and were answered without being executed again
    uint64_t mDenied = 0;
    uint64_t mExpired = 0;  ///< heartbeats that stayed away
};

/// The device side of the GigE Vision control protocol without its sockets: takes a datagram, works on the registers
/// and says what to answer. Thread-safe; the functions of Actions are called without any lock.
class GvcpResponder
{
public:
    using Clock = ControlPrivilege::Clock;

    /// What commands do beyond reading and writing registers.
    struct Actions
    {
        /// False when the address cannot be taken.
        std::function<bool(const Gvcp::ForceIP &)> mForceIP;
        std::function<void(const Gvcp::PacketResend &)> mResend;
        /// The application in control gave it up, stayed silent for too long, or had it taken away.
        std::function<void()> mControlLost;
    };

    GvcpResponder(std::shared_ptr<LxDetail::MemoryPort> aPort, Actions aActions);

    /// aBroadcast says that the datagram was not addressed to this camera alone.
    std::vector<GvcpAnswer> Respond(std::span<const uint8_t> aDatagram, const Endpoint &aSource, bool aBroadcast,
                                    Clock::time_point aNow);

    /// Ends the control of an application that stayed silent. Returns when to look again, nothing when nobody is in
    /// control.
    std::optional<Clock::time_point> CheckHeartbeat(Clock::time_point aNow);

    /// Acts as if another application had taken control (a value of the privilege register) or, with 0, as if the one
    /// in control had released it.
    void OverrideControl(const Endpoint &aHolder, uint32_t aValue);
    uint32_t GetControlValue() const;
    std::optional<Endpoint> GetController() const;

    void SetFaults(const ControlFaults &aFaults);
    ControlFaults GetFaults() const;
    ControlStatistics GetStatistics() const;

private:
    struct Command : Gvcp::CommandPacket
    {
        Endpoint mSource;
        Clock::time_point mNow;
    };
    struct Outcome
    {
        Gvcp::Status mStatus = Gvcp::Status::Success;
        std::vector<uint8_t> mPayload;
        std::chrono::milliseconds mPending{0};
    };
    /// The last command of an application that changed something, and its answers.
    struct Executed
    {
        Endpoint mSource;
        std::vector<uint8_t> mDatagram;
        Clock::time_point mTime;
        std::vector<GvcpAnswer> mAnswers;
    };

    std::optional<Outcome> Execute(const Command &aCommand, bool aBroadcast);
    Outcome Discover() const;
    std::optional<Outcome> ForceIP(const Command &aCommand);
    Outcome ReadRegisters(const Command &aCommand);
    Outcome WriteRegisters(const Command &aCommand);
    Outcome ReadMemory(const Command &aCommand);
    Outcome WriteMemory(const Command &aCommand);
    void Resend(const Command &aCommand);

    Gvcp::Status Read(const Endpoint &aSource, uint32_t aAddress, uint8_t *aData, uint32_t aLength, Outcome &aOutcome);
    Gvcp::Status Write(const Endpoint &aSource, uint32_t aAddress, const uint8_t *aData, uint32_t aLength,
                       Outcome &aOutcome);
    Gvcp::Status WriteControl(const Endpoint &aSource, uint32_t aValue);
    /// The status that a fault prescribes for an access, Success for none; also notes what is to be pending.
    Gvcp::Status ApplyRules(uint32_t aAddress, uint32_t aLength, bool aWrite, Outcome &aOutcome);
    bool IsInSubnet(uint32_t aAddress) const;
    std::chrono::milliseconds GetHeartbeatTimeout() const;
    /// Brings the registers that show who is in control up to date.
    void ShowControl();

    std::vector<GvcpAnswer> MakeAnswers(const Command &aCommand, const Outcome &aOutcome);
    std::vector<GvcpAnswer> Deliver(std::vector<GvcpAnswer> aAnswers);
    std::optional<std::vector<GvcpAnswer>> FindRepeat(std::span<const uint8_t> aDatagram, const Command &aCommand);
    void Remember(std::span<const uint8_t> aDatagram, const Command &aCommand, const std::vector<GvcpAnswer> &aAnswers);

    const std::shared_ptr<LxDetail::MemoryPort> mPort;
    const Actions mActions;
    mutable std::mutex mMutex;  // guards all members below
    ControlPrivilege mPrivilege;
    ControlFaults mFaults;
    ControlStatistics mStatistics;
    std::vector<Executed> mExecuted;
    std::minstd_rand mRandom;
};

}  // namespace LxEmulator
