#pragma once

#include <QtCore/QRunnable>
#include <QtCore/QThreadPool>
#include <QtGui/QImage>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "LxGUI/Display/DisplayGeometry.h"

class QPainter;

/// Draws pictures of 32 bits a pixel, at their size or another: the very pixels that QPainter draws without smoothing,
/// in less time. To read the picture is what takes the time, so two threads share the lines. One picture at a time.
class PicturePainter : private QRunnable
{
public:
    PicturePainter();

    /// @param aPainter only moved, not scaled or clipped by its user; drawn on as CompositionMode_Source does.
    /// @param aPicture Format_RGB32.
    void Draw(QPainter &aPainter, const QImage &aPicture, const DisplayGeometry::Placement &aPlacement);

private:
    void DrawRect(QImage &aDevice, const QRect &aRect);
    void DrawLines();
    const QRgb *SourceLine(int aLine) const;
    void run() override;  // on the helper's thread

    const QImage *mPicture = nullptr;
    QRect mSource;
    QRect mTarget;              // in pixels of the device
    QRect mRect;                // the part of it that is drawn now
    std::vector<int> mColumns;  // of the picture, one for each of the target
    uchar *mBits = nullptr;     // of the device
    qsizetype mStride = 0;
    std::atomic<int> mNextLine{0};  // the first that nobody has taken
    std::mutex mHelpingMutex;       // guards mIsHelping
    std::condition_variable mHelped;
    bool mIsHelping = false;
    QThreadPool mHelper;  // ends first
};
