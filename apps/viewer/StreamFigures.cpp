#include "StreamFigures.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QStatusBar>

#include "ViewerLog.h"

StreamFigures::StreamFigures(QStatusBar &aBar, QObject *aParent)
    : QObject(aParent),
      mFrameRate(new QLabel),
      mBandwidth(new QLabel),
      mLost(new QLabel),
      mDropped(new QLabel),
      mLate(new QLabel)
{
    const std::pair<QLabel *, const char *> figures[] = {{mFrameRate, "frameRateStatus"},
                                                         {mBandwidth, "bandwidthStatus"},
                                                         {mLost, "lostStatus"},
                                                         {mDropped, "droppedStatus"},
                                                         {mLate, "lateStatus"}};
    for (const auto &[label, name] : figures) {
        label->setObjectName(QLatin1String(name));
        aBar.addPermanentWidget(label);
    }
    mFrameRate->setToolTip(tr("Frames shown per second"));
    mBandwidth->setToolTip(tr("Picture data received per second"));
    mDropped->setToolTip(tr("Frames that arrived whole and were not shown because the display was too slow"));
    mLate->setToolTip(tr("Frames that were shown more than a tenth of a second after they had arrived"));
}

void StreamFigures::Show(const LxStreamStatistics &aStatistics, uint64_t aLate)
{
    mFrameRate->setText(tr("%L1 fps").arg(aStatistics.mFrameRate, 0, 'f', 1));
    mBandwidth->setText(tr("%L1 MB/s").arg(aStatistics.mBandwidth / 1e6, 0, 'f', 1));
    mLost->setText(tr("%1 lost").arg(aStatistics.mIncomplete + aStatistics.mMissed));
    mLost->setToolTip(tr("Frames lost on the wire: %1 never came, %2 came with gaps")
                          .arg(aStatistics.mMissed)
                          .arg(aStatistics.mIncomplete));
    mDropped->setText(tr("%1 dropped").arg(aStatistics.mDropped));
    mLate->setText(tr("%1 late").arg(aLate));
    Log(aStatistics);
}

void StreamFigures::Log(const LxStreamStatistics &aStatistics)
{
    // they count from the start of each stream
    const auto grown = [](uint64_t aNow, uint64_t aBefore) { return aNow > aBefore ? aNow - aBefore : 0; };
    const uint64_t missed = grown(aStatistics.mMissed, mLogged.mMissed);
    const uint64_t incomplete = grown(aStatistics.mIncomplete, mLogged.mIncomplete);
    const uint64_t dropped = grown(aStatistics.mDropped, mLogged.mDropped);
    if (missed > 0 || incomplete > 0 || dropped > 0) {
        qCInfo(LogStream) << "lost:" << missed << "frames never came," << incomplete << "came with gaps," << dropped
                          << "were dropped; of" << aStatistics.mDelivered << "so far";
    }
    mLogged = aStatistics;
}
