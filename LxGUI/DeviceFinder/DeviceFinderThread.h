#pragma once

#include <QtCore/QThread>
#include <atomic>
#include <memory>

struct DiscoveryState;

/// Searches devices again and again. What is found reaches the window as event sink of the system.
class DeviceFinderThread : public QThread
{
    Q_OBJECT

public:
    explicit DeviceFinderThread(std::shared_ptr<DiscoveryState> aState);
    /// Stops the thread.
    ~DeviceFinderThread() override;

    /// Does nothing while the thread runs.
    void Start();
    /// Waits for the end of the running search, up to the detection time-out.
    void Stop();
    /// Ends the running search early, for when its results are no longer wanted.
    void Cancel();

protected:
    void run() override;

private:
    const std::shared_ptr<DiscoveryState> mState;
    std::atomic<bool> mStop{false};
};
