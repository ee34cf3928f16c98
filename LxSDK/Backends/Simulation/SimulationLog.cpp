#include "Backends/Simulation/SimulationLog.h"

#include <chrono>

namespace LxDetail
{

namespace
{

constexpr size_t MostCalls = 10000;

}  // namespace

SimulationLog &SimulationLog::Get()
{
    // Never destroyed: devices may live until the very end of the process.
    static SimulationLog &log = *new SimulationLog;
    return log;
}

void SimulationLog::Record(const char *aName, const std::string &aArguments)
{
    if (!mRecording) {
        return;
    }
    LxSimulatedCall call;
    call.mName = aName;
    call.mArguments = aArguments;
    call.mThread = std::this_thread::get_id();
    call.mTime = static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
    std::lock_guard lock(mMutex);
    mCalls.push_back(std::move(call));
    if (mCalls.size() > MostCalls) {
        mCalls.pop_front();
    }
}

std::vector<LxSimulatedCall> SimulationLog::GetCalls(const std::string &aName) const
{
    std::lock_guard lock(mMutex);
    std::vector<LxSimulatedCall> calls;
    for (const LxSimulatedCall &call : mCalls) {
        if (aName.empty() || call.mName.GetString() == aName) {
            calls.push_back(call);
        }
    }
    return calls;
}

void SimulationLog::ClearCalls()
{
    std::lock_guard lock(mMutex);
    mCalls.clear();
}

void SimulationLog::QueueResult(const std::string &aOperation, const LxResult &aResult)
{
    std::lock_guard lock(mMutex);
    mResults[aOperation].push_back(aResult);
}

bool SimulationLog::TakeResult(const std::string &aOperation, LxResult &aResult)
{
    std::lock_guard lock(mMutex);
    const auto results = mResults.find(aOperation);
    if (results == mResults.end() || results->second.empty()) {
        return false;
    }
    aResult = results->second.front();
    results->second.pop_front();
    return true;
}

void SimulationLog::ClearResults()
{
    std::lock_guard lock(mMutex);
    mResults.clear();
}

}  // namespace LxDetail
