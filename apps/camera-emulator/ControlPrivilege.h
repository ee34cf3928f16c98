#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "UdpSocket.h"

namespace LxEmulator
{

/// Who controls the camera: the control channel privilege register of GigE Vision and its heartbeat. Not thread-safe.
class ControlPrivilege
{
public:
    using Clock = std::chrono::steady_clock;

    /// Bits of the register.
    static constexpr uint32_t Exclusive = 0x1;
    static constexpr uint32_t Control = 0x2;
    static constexpr uint32_t Switchover = 0x4;

    /// What the register reads: the bits that are granted; 0 when nobody is in control.
    uint32_t GetValue() const { return mValue; }
    std::optional<Endpoint> GetHolder() const { return mHolder; }
    bool IsHolder(const Endpoint &aWho) const { return mHolder && *mHolder == aWho; }

    /// Under exclusive access only the holder reads.
    bool MayRead(const Endpoint &aWho) const { return IsHolder(aWho) || !(mHolder && (mValue & Exclusive)); }
    bool MayWrite(const Endpoint &aWho) const { return IsHolder(aWho); }

    /// A write of the register. False when it is denied: another application is in control and has not offered to hand
    /// over under this key (the upper half of aValue).
    bool Request(const Endpoint &aWho, uint32_t aValue, uint16_t aSwitchoverKey, Clock::time_point aNow);
    /// Gives control to an application without asking anyone.
    void Force(const Endpoint &aWho, uint32_t aValue, Clock::time_point aNow);
    void Release();

    /// The application was heard of. Does nothing when it is not in control.
    void Refresh(const Endpoint &aWho, Clock::time_point aNow);
    /// Whether the holder was not heard of for longer than the time-out.
    bool IsExpired(Clock::time_point aNow, std::chrono::milliseconds aTimeout) const;
    /// When it will have expired; nothing when nobody is in control.
    std::optional<Clock::time_point> GetExpiry(std::chrono::milliseconds aTimeout) const;

private:
    uint32_t mValue = 0;
    std::optional<Endpoint> mHolder;
    Clock::time_point mHeard;
};

}  // namespace LxEmulator
