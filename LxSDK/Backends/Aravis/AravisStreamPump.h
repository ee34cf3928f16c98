#pragma once

// Internal: the thread of a stream.

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "Backends/Aravis/AravisConnection.h"
#include "Backends/Aravis/AravisStreamSession.h"
#include "LxBufferReceive/FrameQueue.h"
#include "NodeMap/NodeMap.h"

namespace LxDetail
{

/// Runs one stream from Start() to Stop() on a thread of its own, which opens the stream channel, starts the
/// acquisition, passes the frames on, and does the same again after the device was away. All calls of the library that
/// may get stuck happen there, so that neither Start() nor Stop() waits for a device that does not answer.
class AravisStreamPump : public std::enable_shared_from_this<AravisStreamPump>
{
public:
    /// @param aQueue gets the frames, and no more of them when Stop() has returned.
    AravisStreamPump(std::shared_ptr<AravisConnection> aConnection, std::shared_ptr<NodeMap> aNodeMap,
                     const LxStreamConfiguration &aConfiguration, std::shared_ptr<FrameQueue> aQueue);

    /// Returns when the acquisition runs, or with what went wrong. Called once.
    LxResult Start();
    /// Returns when the acquisition has been stopped, or at once when the device does not answer. Idempotent.
    void Stop();

    /// Ends the acquisition of a device that was away when its stream ended. Once the device is back; any thread.
    static void SettleStop(AravisConnection &aConnection, NodeMap &aNodeMap);

private:
    void Run();
    bool RunSession();
    LxResult OpenSession();
    void CloseSession();
    LxResult ChoosePacketSize(_ArvDevice *aDevice);
    LxResult GetFormat(StreamFormat &aFormat) const;
    bool IsOutgrown() const;
    void Pass(std::shared_ptr<const LxBuffer> aFrame);
    void Count();
    void SetLost(bool aLost);
    bool IsStopped() const;
    bool WaitForStop(std::chrono::milliseconds aTime);
    void WaitUntilDone(std::unique_lock<std::mutex> &aLock, const bool &aDone);

    const std::shared_ptr<AravisConnection> mConnection;
    const std::shared_ptr<NodeMap> mNodeMap;
    const LxStreamConfiguration mConfiguration;
    const std::shared_ptr<FrameQueue> mQueue;
    mutable std::mutex mMutex;  // guards the members below up to mStartResult
    std::condition_variable mChanged;
    bool mStopped = false;
    bool mStarted = false;  // mStartResult is known
    bool mEnded = false;
    LxResult mStartResult;
    // used by the thread only
    std::shared_ptr<AravisStreamSession> mSession;
    StreamCounters mPast;     // of the sessions that ended
    uint64_t mUnderruns = 0;  // that the queue knows of
    bool mLost = false;       // as the queue knows
};

}  // namespace LxDetail
