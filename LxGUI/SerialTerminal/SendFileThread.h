#pragma once

#include <QtCore/QString>
#include <QtCore/QThread>
#include <atomic>
#include <cstdint>

class SerialTerminalWnd;

/// Sends one file through the open port of a terminal and reports how that went.
class SendFileThread : public QThread
{
    Q_OBJECT

public:
    /// The window owns this thread.
    SendFileThread(SerialTerminalWnd *aWnd, const QString &aPath);
    /// Stops and waits.
    ~SendFileThread() override;

    /// Before start(): whether the bytes are expected back, and whether they are reported by printBytes().
    void SetLoopback(bool aLoopback) { mLoopback = aLoopback; }
    void SetEcho(bool aEcho) { mEcho = aEcho; }
    const QString &Path() const { return mPath; }
    /// Ends the sending before the next chunk; what was sent is reported nevertheless.
    void Stop() { mStop = true; }

signals:
    /// The last signal. False, and no other signal before it, when the file cannot be read or is empty.
    void completed(bool aReadResult);
    /// These bytes are sent next. They are valid during the signal only.
    void printBytes(uint8_t *aBytes, uint32_t aByteCount);
    void printText(const QString &aText);

protected:
    void run() override;

private:
    void Report(qint64 aElapsed, uint64_t aSent, qint64 aSize);

    SerialTerminalWnd *mWnd;
    std::atomic<bool> mStop = false;
    const QString mPath;
    bool mLoopback = false;
    bool mEcho = false;
};
