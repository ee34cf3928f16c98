#pragma once

// Internal: the register space of a device, as the GenICam node engine sees it.

#include <cstdint>

#include "LxBase/LxResult.h"
#include "LxBase/SinkList.h"

namespace LxDetail
{

/// Hears of the changes of a port's state.
class PortStateSink
{
public:
    virtual ~PortStateSink() = default;

    /// GetState() gives something else now. Called at once by whoever changed it, who may hold locks: only for asking
    /// for the state and waking threads.
    virtual void OnPortStateChange() = 0;
    /// Follows a change, or several, without a lock and on a thread on which event sinks may run.
    virtual void OnPortStateNews() = 0;
};

/// Reads and writes bytes of a device's register space. Thread-safe.
class RegisterPort
{
public:
    virtual ~RegisterPort() = default;

    virtual LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) = 0;
    virtual LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) = 0;

    /// OK while the device answers as far as is known; otherwise the result that every access gives at once (Timeout
    /// while the device is suspect, NotConnected once it is lost). Never blocks.
    virtual LxResult GetState() const { return LxResult(); }
    /// Whether writing is allowed at all (the application controls the device).
    virtual bool IsWritable() const { return true; }

    void AddStateSink(PortStateSink *aSink) { mStateSinks.Add(aSink); }
    /// When this returns no call of the sink runs on another thread, and none will come.
    void RemoveStateSink(PortStateSink *aSink) { mStateSinks.Remove(aSink); }

protected:
    /// To be called after each change of what GetState() gives.
    void ChangeState()
    {
        mStateSinks.Notify([](PortStateSink *aSink) { aSink->OnPortStateChange(); });
    }
    /// To be called some time after ChangeState(), without a lock.
    void TellState()
    {
        mStateSinks.Notify([](PortStateSink *aSink) { aSink->OnPortStateNews(); });
    }

private:
    SinkList<PortStateSink> mStateSinks;
};

}  // namespace LxDetail
