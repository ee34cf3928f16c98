#pragma once

// Internal: a register port that fails on demand.

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "NodeMap/RegisterPort.h"

namespace LxDetail
{

/// A decorator that injects faults into another port. Thread-safe; every setting takes effect with the next access.
class FaultPort : public RegisterPort, private PortStateSink
{
public:
    explicit FaultPort(std::shared_ptr<RegisterPort> aPort);
    ~FaultPort() override;

    enum class Access
    {
        Read,
        Write,
        Both,
    };

    /// Every access that overlaps the range fails with the result; the first rule that matches wins.
    void FailRange(uint64_t aAddress, uint64_t aLength, const LxResult &aResult, Access aAccess = Access::Both);
    /// The n-th access from now on (1 is the next) fails, once.
    void FailCall(uint32_t aNumber, const LxResult &aResult);
    void FailAll(const LxResult &aResult);
    /// Removes all rules.
    void ClearFailures();
    /// Every access takes this much longer.
    void SetDelay(std::chrono::microseconds aDelay);
    /// While frozen every access blocks, and then fails with Timeout when the time-out of the port has passed; thawing
    /// lets waiting accesses go on.
    void Freeze(std::chrono::milliseconds aTimeout = std::chrono::milliseconds(500));
    void Thaw();
    /// The device is gone: every access fails at once with NotConnected and GetState() says so, until Return().
    void Vanish();
    void Return();
    /// What GetState() says beside that: new accesses fail with it at once, while those that are stuck stay stuck, as
    /// when a watcher finds that the device does not answer. OK ends it.
    void SetState(const LxResult &aState);

    /// Accesses so far, those that failed included.
    uint64_t GetReadCount() const;
    uint64_t GetWriteCount() const;

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    LxResult GetState() const override;
    bool IsWritable() const override;

private:
    void OnPortStateChange() override { ChangeState(); }
    void OnPortStateNews() override { TellState(); }

    struct RangeRule
    {
        uint64_t mAddress;
        uint64_t mLength;
        LxResult mResult;
        Access mAccess;
    };

    LxResult Inject(uint64_t aAddress, uint32_t aLength, Access aAccess);
    LxResult CheckState() const;
    void NotifyState();

    const std::shared_ptr<RegisterPort> mPort;
    mutable std::mutex mMutex;         // guards all members below
    std::condition_variable mChanged;  // thawed or vanished
    std::vector<RangeRule> mRanges;
    std::optional<LxResult> mFailAll;
    uint64_t mFailCall = 0;  // 0: none
    LxResult mFailCallResult;
    uint64_t mReads = 0;
    uint64_t mWrites = 0;
    std::chrono::microseconds mDelay{0};
    bool mFrozen = false;
    std::chrono::milliseconds mFreezeTimeout{500};
    bool mVanished = false;
    LxResult mState;
};

}  // namespace LxDetail
