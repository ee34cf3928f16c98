#include "LxGUI/Display/PicturePainter.h"

#include <QtCore/QThread>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtGui/QRegion>
#include <algorithm>

using DisplayGeometry::Placement;
using DisplayGeometry::SourcePixel;

namespace
{

// What a thread takes at once.
constexpr int LinesAtOnce = 16;
// Pictures below this are drawn before a second thread is awake.
constexpr int LeastSharedPixels = 1 << 17;
constexpr QRgb Opaque = 0xFF000000;

/// The image that a painter draws on and whose pixels are as they will be seen, or null.
QImage *DirectDevice(const QPainter &aPainter)
{
    const QPaintEngine *engine = aPainter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster ||
        aPainter.deviceTransform().type() > QTransform::TxTranslate) {
        return nullptr;
    }
    QPaintDevice *device = engine->paintDevice();
    if (!device || device->devType() != QInternal::Image) {
        return nullptr;
    }
    auto *image = static_cast<QImage *>(device);
    const bool is32Bit =
        image->format() == QImage::Format_RGB32 || image->format() == QImage::Format_ARGB32_Premultiplied;
    return is32Bit ? image : nullptr;
}

}  // namespace

PicturePainter::PicturePainter()
{
    setAutoDelete(false);
    mHelper.setMaxThreadCount(1);
}

void PicturePainter::Draw(QPainter &aPainter, const QImage &aPicture, const Placement &aPlacement)
{
    QImage *device = DirectDevice(aPainter);
    const QRegion clip = device ? aPainter.paintEngine()->systemClip() : QRegion();
    // what lies beyond the picture is for QPainter to leave out
    if (clip.isEmpty() || !aPicture.rect().contains(aPlacement.mSource)) {
        aPainter.drawImage(aPlacement.mTarget, aPicture, aPlacement.mSource);
        return;
    }
    mPicture = &aPicture;
    mSource = aPlacement.mSource;
    mTarget = aPainter.deviceTransform().mapRect(aPlacement.mTarget);
    mColumns.resize(static_cast<size_t>(mTarget.width()));
    for (int x = 0; x < mTarget.width(); ++x) {
        mColumns[static_cast<size_t>(x)] =
            SourcePixel(x, mTarget.width(), mSource.x(), mSource.width(), aPicture.width());
    }
    for (const QRect &rect : clip &mTarget & device->rect()) {
        DrawRect(*device, rect);
    }
}

void PicturePainter::DrawRect(QImage &aDevice, const QRect &aRect)
{
    mRect = aRect;
    mBits = aDevice.bits();
    mStride = aDevice.bytesPerLine();
    mNextLine = mRect.top();
    const bool isShared = mRect.width() * mRect.height() >= LeastSharedPixels && QThread::idealThreadCount() > 1;
    if (isShared) {
        mIsHelping = true;
        mHelper.start(this);
    }
    DrawLines();
    if (isShared && !mHelper.tryTake(this)) {
        std::unique_lock lock(mHelpingMutex);
        mHelped.wait(lock, [this] { return !mIsHelping; });
    }
}

void PicturePainter::run()
{
    DrawLines();
    const std::lock_guard lock(mHelpingMutex);
    mIsHelping = false;
    mHelped.notify_one();
}

const QRgb *PicturePainter::SourceLine(int aLine) const
{
    const int line = std::min(aLine, mTarget.bottom()) - mTarget.top();
    const int y = SourcePixel(line, mTarget.height(), mSource.y(), mSource.height(), mPicture->height());
    return reinterpret_cast<const QRgb *>(mPicture->constScanLine(y));
}

void PicturePainter::DrawLines()
{
    // Taking lines comes first: it makes what Draw() has written visible to the helper's thread.
    for (int start = mNextLine.fetch_add(LinesAtOnce); start <= mRect.bottom();
         start = mNextLine.fetch_add(LinesAtOnce)) {
        const bool isScaled = mSource.width() != mTarget.width();
        const int *first = mColumns.data() + (mRect.left() - mTarget.left());
        for (int y = start; y < start + LinesAtOnce && y <= mRect.bottom(); ++y) {
            const QRgb *line = SourceLine(y);
            auto *output = reinterpret_cast<QRgb *>(mBits + y * mStride) + mRect.left();
            if (!isScaled) {
                std::transform(line + *first, line + *first + mRect.width(), output,
                               [](QRgb aPixel) { return aPixel | Opaque; });
                continue;
            }
            const QRgb *next = SourceLine(y + 1);
            for (int x = 0; x < mRect.width(); ++x) {
                __builtin_prefetch(next + first[x]);  // the lines are too far apart for the processor to guess
                output[x] = line[first[x]] | Opaque;
            }
        }
    }
}
