#include "LxGUI/SerialTerminal/SerialTerminalThread.h"

#include <QtCore/QElapsedTimer>

#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

namespace
{

constexpr uint32_t sReadSize = 64;       // bytes
constexpr uint32_t sReadTimeout = 250;   // milliseconds
constexpr unsigned long sBackOff = 250;  // milliseconds
// Fewer characters than this are shown only after the time (milliseconds).
constexpr qsizetype sCharactersToShow = 64;
constexpr qint64 sTimeToShow = 250;

}  // namespace

SerialTerminalThread::~SerialTerminalThread()
{
    Stop();
    wait();
}

void SerialTerminalThread::run()
{
    QElapsedTimer sinceShown;
    sinceShown.start();
    uint8_t chunk[sReadSize] = {};
    bool waits = true;
    while (!mStop) {
        uint32_t count = 0;
        const LxResult result = mWnd->Port().Read(chunk, sReadSize, count, sReadTimeout);
        if (result.IsOK()) {
            mWnd->Render(chunk, count);
            mWnd->Loopback().Compare(chunk, count);
        }
        else if (result != LxResultCode::SerialTimeout) {
            msleep(sBackOff);
        }
        const qsizetype pending = mWnd->PendingCount();
        if (pending > 0 && (pending >= sCharactersToShow || sinceShown.elapsed() >= sTimeToShow)) {
            mWnd->RequestShow();
            sinceShown.start();
            waits = mWnd->HasRoom(waits);  // a window that keeps it waiting must not keep the port waiting, too
        }
    }
}
