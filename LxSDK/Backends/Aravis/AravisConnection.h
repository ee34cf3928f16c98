#pragma once

// Internal: the connection to a real device, and its care.

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Backends/Aravis/AravisTransport.h"
#include "Backends/Aravis/ArvDevicePort.h"
#include "Backends/Aravis/EventDispatcher.h"
#include "Backends/Aravis/LinkMonitor.h"

namespace LxDetail
{

/// Opens a device, watches it on a thread of its own, and regains it when it was away.
///
/// Everything that takes the library's seconds (regaining, giving back a silent device) runs in the background and
/// keeps the connection alive meanwhile. Thread-safe.
class AravisConnection : public std::enable_shared_from_this<AravisConnection>
{
public:
    /// Opens the device; nothing is watched before Start().
    static LxResult Open(std::unique_ptr<AravisTransport> aTransport, std::shared_ptr<AravisConnection> &aConnection);
    ~AravisConnection();

    /// Called on a thread of the connection, in order, when the link is lost (false) and when it is back (true); the
    /// sinks of the register port have been told before.
    using Listener = std::function<void(bool aConnected)>;
    void Start(Listener aListener);
    /// Ends the connection: every access is answered with NotConnected from now on, and the listener is not called any
    /// more; a call of it that runs is not waited for. Idempotent.
    void Close();
    /// After Close(): waits until the listener does not run any more, unless called from it.
    void WaitForListener() { mDispatcher.Wait(); }

    /// As the device sent it.
    const std::string &GetXML() const { return mXML; }
    /// The registers; shares the ownership of the connection.
    std::shared_ptr<ArvDevicePort> GetPort();
    const LinkMonitor &GetLink() const { return mLink; }
    const AravisTransport &GetTransport() const { return *mTransport; }
    /// The one stream channel of the device; false when another stream has it.
    bool ClaimStream() { return !mStreamClaimed.exchange(true); }
    void ReleaseStream() { mStreamClaimed = false; }
    /// What the end of a stream could not tell a device that was away: that the acquisition ends.
    void OweStop() { mStopOwed = true; }
    bool TakeOwedStop() { return mStopOwed.exchange(false); }

private:
    explicit AravisConnection(std::unique_ptr<AravisTransport> aTransport);

    void Watch();
    void StartRestore();
    LxResult Restore();
    void OnLinkChange(LinkState aState);
    void Announce(LinkState aState);

    const std::unique_ptr<AravisTransport> mTransport;
    LinkMonitor mLink;
    ArvDevicePort mPort;
    std::string mXML;   // set before the connection is shared
    std::mutex mMutex;  // guards mStopped and mAnnounced
    std::condition_variable mWake;
    bool mStopped = false;
    bool mAnnounced = true;  // what the listener was told last
    Listener mListener;      // set before the threads start
    std::atomic<bool> mStreamClaimed{false};
    std::atomic<bool> mStopOwed{false};
    std::mutex mCloseMutex;  // guards mWatcher while it is joined
    std::thread mWatcher;
    EventDispatcher mDispatcher;
};

}  // namespace LxDetail
