#pragma once

#include <QtCore/QThread>
#include <atomic>

class SerialTerminalWnd;

/// Reads the open port of a terminal until it is stopped, hands what came to the window and lets it show that.
class SerialTerminalThread : public QThread
{
    Q_OBJECT

public:
    /// The window owns this thread.
    explicit SerialTerminalThread(SerialTerminalWnd *aWnd) : mWnd(aWnd) {}
    /// Stops and waits.
    ~SerialTerminalThread() override;

    void Stop() { mStop = true; }

protected:
    void run() override;

private:
    SerialTerminalWnd *mWnd;
    std::atomic<bool> mStop = false;
};
