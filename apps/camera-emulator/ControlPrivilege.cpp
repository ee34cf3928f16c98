#include "ControlPrivilege.h"

namespace LxEmulator
{

bool ControlPrivilege::Request(const Endpoint &aWho, uint32_t aValue, uint16_t aSwitchoverKey, Clock::time_point aNow)
{
    const bool takes = (aValue & (Exclusive | Control)) != 0;
    if (mHolder && !IsHolder(aWho)) {
        const bool offered = (mValue & Switchover) && (aValue >> 16) == aSwitchoverKey;
        if (!offered || !takes) {
            return false;
        }
    }
    if (takes) {
        Force(aWho, aValue, aNow);
    }
    else {
        Release();
    }
    return true;
}

void ControlPrivilege::Force(const Endpoint &aWho, uint32_t aValue, Clock::time_point aNow)
{
    mValue = aValue & (Exclusive | Control | Switchover);
    mHolder = aWho;
    mHeard = aNow;
}

void ControlPrivilege::Release()
{
    mValue = 0;
    mHolder.reset();
}

void ControlPrivilege::Refresh(const Endpoint &aWho, Clock::time_point aNow)
{
    if (IsHolder(aWho)) {
        mHeard = aNow;
    }
}

bool ControlPrivilege::IsExpired(Clock::time_point aNow, std::chrono::milliseconds aTimeout) const
{
    const auto expiry = GetExpiry(aTimeout);
    return expiry && aNow >= *expiry;
}

std::optional<ControlPrivilege::Clock::time_point> ControlPrivilege::GetExpiry(std::chrono::milliseconds aTimeout) const
{
    if (!mHolder) {
        return std::nullopt;
    }
    return mHeard + aTimeout;
}

}  // namespace LxEmulator
