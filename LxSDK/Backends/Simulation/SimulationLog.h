#pragma once

// Internal: the calls that the simulation has seen, results that were ordered for them, and what lives.

#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "LxSimulation/LxSimulation.h"

namespace LxDetail
{

/// Thread-safe.
class SimulationLog
{
public:
    static SimulationLog &Get();

    void SetRecording(bool aEnabled) { mRecording = aEnabled; }
    bool IsRecording() const { return mRecording; }
    void Record(const char *aName, const std::string &aArguments);
    std::vector<LxSimulatedCall> GetCalls(const std::string &aName) const;
    void ClearCalls();

    void QueueResult(const std::string &aOperation, const LxResult &aResult);
    /// True, and the result, when one was ordered for this call.
    bool TakeResult(const std::string &aOperation, LxResult &aResult);
    void ClearResults();

    std::atomic<uint32_t> mScanners{0};
    std::atomic<uint32_t> mDeviceInfos{0};
    std::atomic<uint32_t> mDevices{0};
    std::atomic<uint32_t> mReceivers{0};
    std::atomic<uint32_t> mSerialPorts{0};

private:
    std::atomic<bool> mRecording{false};
    mutable std::mutex mMutex;  // guards all members below
    std::deque<LxSimulatedCall> mCalls;
    std::map<std::string, std::deque<LxResult>> mResults;
};

/// Counts an object for as long as it lives.
class SimulationCount
{
public:
    explicit SimulationCount(std::atomic<uint32_t> &aCounter) : mCounter(aCounter) { ++mCounter; }
    ~SimulationCount() { --mCounter; }
    SimulationCount(const SimulationCount &) = delete;
    SimulationCount &operator=(const SimulationCount &) = delete;

private:
    std::atomic<uint32_t> &mCounter;
};

}  // namespace LxDetail
