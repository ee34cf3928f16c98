#pragma once

#include <QtCore/QObject>
#include <cstdint>

#include "LxBufferReceive/LxStream.h"

class QLabel;
class QStatusBar;

/// What a stream has counted, in the status bar, and in the log where frames were lost. GUI thread.
class StreamFigures : public QObject
{
    Q_OBJECT

public:
    StreamFigures(QStatusBar &aBar, QObject *aParent);

    /// @param aLate frames that were shown late.
    void Show(const LxStreamStatistics &aStatistics, uint64_t aLate);

private:
    void Log(const LxStreamStatistics &aStatistics);

    QLabel *mFrameRate;
    QLabel *mBandwidth;
    QLabel *mLost;
    QLabel *mDropped;
    QLabel *mLate;
    LxStreamStatistics mLogged;
};
