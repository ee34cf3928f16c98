#include "LxGUI/SerialTerminal/SerialTerminalThread.h"

#include <QtCore/QElapsedTimer>

#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

namespace
{

constexpr uint32_t ReadSize = 64;       // bytes
constexpr uint32_t ReadTimeout = 250;   // milliseconds
constexpr unsigned long BackOff = 250;  // milliseconds
// Fewer characters than this are shown only after the time (milliseconds).
constexpr qsizetype CharactersToShow = 64;
constexpr qint64 TimeToShow = 250;

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
    uint8_t chunk[ReadSize] = {};
    bool waits = true;
    while (!mStop) {
        uint32_t count = 0;
        const LxResult result = mWnd->Port().Read(chunk, ReadSize, count, ReadTimeout);
        if (result.IsOK()) {
            mWnd->Render(chunk, count);
            mWnd->Loopback().Compare(chunk, count);
        }
        else if (result != LxResultCode::SerialTimeout) {
            msleep(BackOff);
        }
        const qsizetype pending = mWnd->PendingCount();
        if (pending > 0 && (pending >= CharactersToShow || sinceShown.elapsed() >= TimeToShow)) {
            mWnd->RequestShow();
            sinceShown.start();
            waits = mWnd->HasRoom(waits);  // a window that keeps it waiting must not keep the port waiting, too
        }
    }
}
