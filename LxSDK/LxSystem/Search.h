#pragma once

// Internal: one running search, and what ends it early.

#include <chrono>
#include <functional>
#include <mutex>

#include "LxDevice/DeviceBackend.h"

namespace LxDetail
{

/// A flag that a waiting thread can poll() together with sockets. Thread-safe.
class CancelEvent
{
public:
    CancelEvent();
    ~CancelEvent();
    CancelEvent(const CancelEvent &) = delete;
    CancelEvent &operator=(const CancelEvent &) = delete;

    void Set();
    void Reset();
    bool IsSet() const;
    /// Readable while the event is set; -1 when the system has no descriptors left.
    int GetDescriptor() const { return mDescriptor; }
    /// Waits until the event is set. False when the time passed first.
    bool Wait(std::chrono::milliseconds aTimeout) const;

private:
    const int mDescriptor;
    mutable std::mutex mMutex;  // guards mSet
    bool mSet = false;
};

/// The context of a search that reports to a function.
class Search : public SearchContext
{
public:
    using Report = std::function<void(const LxInterface *, const LxDeviceInfo *)>;

    Search(uint32_t aTimeout, bool aSubnetBroadcast, const CancelEvent &aCancel, Report aReport);

    uint32_t GetTimeout() const override { return mTimeout; }
    bool IsSubnetBroadcastEnabled() const override { return mSubnetBroadcast; }
    bool IsCancelled() const override { return mCancel.IsSet(); }
    int GetCancelDescriptor() const override { return mCancel.GetDescriptor(); }
    void ReportDevice(const LxInterface *aInterface, const LxDeviceInfo *aInfo) override;

private:
    const uint32_t mTimeout;
    const bool mSubnetBroadcast;
    const CancelEvent &mCancel;
    const Report mReport;
};

}  // namespace LxDetail
