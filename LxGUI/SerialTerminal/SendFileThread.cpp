#include "LxGUI/SerialTerminal/SendFileThread.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMetaType>
#include <algorithm>
#include <vector>

#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

namespace
{

constexpr qint64 Chunk = 256;  // bytes
// The time that the last bytes get to come back: a second (milliseconds), in parts, so that a moment in which the whole
// program stands still does not use it up.
constexpr unsigned long LoopbackPart = 100;
constexpr int LoopbackParts = 10;

QString Number(double aNumber)
{
    return QString::number(aNumber, 'g', 6);
}

}  // namespace

SendFileThread::SendFileThread(SerialTerminalWnd *aWnd, const QString &aPath) : mWnd(aWnd), mPath(aPath)
{
    qRegisterMetaType<uint32_t>("uint32_t");
}

SendFileThread::~SendFileThread()
{
    Stop();
    wait();
}

void SendFileThread::run()
{
    QFile file(mPath);
    // Opening a pipe would wait for its other end, and folders have a size too.
    if (!QFileInfo(mPath).isFile() || !file.open(QIODevice::ReadOnly) || file.size() < 1) {
        emit completed(false);
        return;
    }
    const qint64 size = file.size();
    std::vector<uint8_t> chunk(static_cast<size_t>(std::min(size, Chunk)));
    QElapsedTimer clock;
    clock.start();
    uint64_t sent = 0;
    while (!mStop) {
        const qint64 read = file.read(reinterpret_cast<char *>(chunk.data()), static_cast<qint64>(chunk.size()));
        if (read <= 0) {
            break;
        }
        const auto count = static_cast<uint32_t>(read);
        if (mLoopback) {
            mWnd->Loopback().Expect(chunk.data(), count);
        }
        if (mEcho) {
            emit printBytes(chunk.data(), count);
        }
        if (mWnd->Port().IsOpened()) {
            uint32_t written = 0;
            mWnd->Port().Write(chunk.data(), count, written);
            sent += written;
        }
    }
    mWnd->RequestShow();
    const qint64 elapsed = clock.elapsed();
    for (int i = 0; i < LoopbackParts; ++i) {
        msleep(LoopbackPart);
    }
    Report(elapsed, sent, size);
    emit completed(true);
}

void SendFileThread::Report(qint64 aElapsed, uint64_t aSent, qint64 aSize)
{
    emit printText(QLatin1Char('\n') + Number(static_cast<double>(aElapsed) / 1000.0) + QLatin1String("s\n"));
    emit printText(QString::number(aSent) + QLatin1Char('/') + QString::number(aSize) +
                   QLatin1String(" successfully transmitted bytes (") +
                   Number(static_cast<double>(aSent) * 100.0 / static_cast<double>(aSize)) + QLatin1String("%)\n"));
    if (mLoopback) {
        const LoopbackRecord::Counts counts = mWnd->Loopback().GetCounts();
        emit printText(QString::number(counts.mMatched) + QLatin1Char('/') + QString::number(counts.mQueued) +
                       tr(" bytes received from loopback (") +
                       Number(static_cast<double>(counts.mMatched) * 100.0 / static_cast<double>(counts.mQueued)) +
                       QLatin1String("%)\n"));
    }
}
