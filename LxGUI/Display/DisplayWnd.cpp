#include "LxGUI/Display/DisplayWnd.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtGui/QPainter>

#include "LxGUI/Display/DisplayEvent.h"
#include "LxGUI/Display/GLDisplay.h"
#include "LxGUI/Display/HalveImage.h"
#include "LxGUI/Display/RendererInfo.h"
#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/OwnedApplication.h"

namespace
{

// How long a frame waits for the OpenGL widget, in milliseconds.
constexpr unsigned long UploadTimeout = 500;

LxResult NoImage()
{
    return LxResult(LxResultCode::NoImage, "There is no image to show.");
}

}  // namespace

DisplayWnd::DisplayWnd() : mOverlayFont(QStringLiteral("Monospace"), 11, QFont::DemiBold, false) {}

DisplayWnd::~DisplayWnd()
{
    {
        QMutexLocker lock(&mImageMutex);
        mEnding = true;
        mUploadDone.wakeAll();
        while (mWaitingProducers > 0) {
            mProducersGone.wait(&mImageMutex);
        }
    }
    if (OwnedApplication::CanMakeWidgets()) {
        delete mGLDisplay;
        TakePainting(nullptr);
    }
    QCoreApplication::removePostedEvents(this);
}

LxResult DisplayWnd::Display(const LxBuffer &aBuffer, bool aVSync)
{
    if (const ILxGenDCContainer *container = aBuffer.GetGenDC()) {
        for (uint32_t c = 0; c < container->GetComponentCount(); ++c) {
            const ILxGenDCComponent *component = container->GetComponent(c);
            for (uint32_t p = 0; component && p < component->GetPartCount(); ++p) {
                const ILxGenDCPart *part = component->GetPart(p);
                if (const ILxGenDCImage *image = part ? part->GetImage() : nullptr) {
                    return Display(image, aVSync);
                }
            }
        }
    }
    if (const LxImage *image = aBuffer.GetImage()) {
        return Display(static_cast<const ILxImage *>(image), aVSync);
    }
    if (const ILxH264AccessUnit *unit = aBuffer.GetH264AccessUnit()) {
        return DisplayAccessUnit(unit, aVSync);
    }
    return NoImage();
}

LxResult DisplayWnd::Display(const ILxImage *aImage, bool aVSync)
{
    if (!aImage) {
        return LxResult(LxResultCode::InvalidArgument, "An image is needed to show it.");
    }
    if (aImage->GetWidth() == 0 || aImage->GetHeight() == 0 || aImage->GetPixelType() == LxPixelType::None) {
        return NoImage();
    }
    TakeOverlay(aVSync);
    if (IsOpenGL()) {
        HandOver(aImage);
        return LxResult();
    }
    return ConvertFrame(aImage);
}

LxResult DisplayWnd::ConvertFrame(const ILxImage *aImage)
{
    const QMutexLocker lock(&mImageMutex);
    // makes the picture's memory too, once the frame has proved to be what it says
    const LxResult result = mConverter.Convert(aImage, &mInternalBuffer, true, false);
    Refresh();
    return result;
}

// Leaves a frame for the OpenGL widget and waits until it was taken. A frame that is not taken in time is dropped.
void DisplayWnd::HandOver(const ILxImage *aImage)
{
    LxBuffer halved(LxPayloadType::Image);
    QMutexLocker lock(&mImageMutex);
    const ILxImage *image = aImage;
    mIsHalved = IsHalvedForUpload(aImage->GetWidth(), aImage->GetHeight()) && HalveImage(*aImage, *halved.GetImage());
    if (mIsHalved) {
        image = halved.GetImage();
    }
    mPendingImage = image;
    Refresh();
    if (QThread::currentThread() == thread()) {
        // nobody else can paint: it is done here and now, after what came before
        lock.unlock();
        QCoreApplication::sendPostedEvents(this, DisplayEvent::ClearType);
        QCoreApplication::sendPostedEvents(this, DisplayEvent::RefreshType);
        if (mGLDisplay) {
            mGLDisplay->TakeFrameNow();
        }
        lock.relock();
    }
    else if (!mEnding) {
        ++mWaitingProducers;
        mUploadDone.wait(&mImageMutex, UploadTimeout);
        if (--mWaitingProducers == 0) {
            mProducersGone.wakeAll();
        }
    }
    if (mPendingImage == image) {  // another caller may have left its own
        mPendingImage = nullptr;
    }
}

LxResult DisplayWnd::Display(const ILxGenDCImage *aImage, bool aVSync)
{
    if (!aImage) {
        return LxResult(LxResultCode::InvalidArgument, "An image is needed to show it.");
    }
    if (aImage->GetWidth() == 0 || aImage->GetHeight() == 0 || aImage->GetPixelType() == LxPixelType::None) {
        return NoImage();
    }
    LxBuffer buffer(LxPayloadType::Image);
    // only read from, whatever the type says
    LxResult result = buffer.GetImage()->AttachSized(
        const_cast<void *>(aImage->GetDataPointer()), aImage->GetDataSize(), aImage->GetWidth(), aImage->GetHeight(),
        aImage->GetPixelType(), aImage->GetPaddingX(), aImage->GetPaddingY());
    if (!result.IsOK()) {
        return result;
    }
    return Display(static_cast<const ILxImage *>(buffer.GetImage()), aVSync);
}

LxResult DisplayWnd::DisplayAccessUnit(const ILxH264AccessUnit *aUnit, bool aVSync)
{
    const LxResult processed = ProcessAccessUnit(aUnit);
    if (!processed.IsOK()) {
        return LxResult(LxResultCode::Failed, processed.GetDescription());
    }
    TakeOverlay(aVSync);
    for (bool any = false;; any = true) {
        {
            const QMutexLocker lock(&mImageMutex);
            if (!RetrieveFrame(mInternalBuffer.GetImage()).IsOK()) {
                return any ? LxResult() : LxResult(LxResultCode::Failed, "The H.264 data gave no picture.");
            }
            Refresh();
        }
        if (IsOpenGL()) {
            HandOver(mInternalBuffer.GetImage());
        }
    }
}

LxResult DisplayWnd::ProcessAccessUnit(const ILxH264AccessUnit *aUnit)
{
    const QMutexLocker lock(&mImageMutex);
    return mDecoder.Process(aUnit);
}

LxResult DisplayWnd::RetrieveFrame(LxImage *aImage)
{
    return mDecoder.Retrieve(aImage);
}

void DisplayWnd::TakeOverlay(bool aVSync)
{
    mVSync = aVSync;
    const QMutexLocker lock(&mOverlayMutex);
    if (mShownOverlayText != mOverlayText) {
        mShownOverlayText = mOverlayText;
        ++mOverlayVersion;
    }
}

void DisplayWnd::Clear()
{
    {
        const QMutexLocker lock(&mOverlayMutex);
        mOverlayText.clear();
        mShownOverlayText.clear();
        ++mOverlayVersion;
    }
    if (!IsOpenGL()) {
        const QMutexLocker lock(&mImageMutex);
        if (mInternalBuffer.GetDataPointer()) {
            mInternalBuffer.Free();
        }
    }
    QCoreApplication::postEvent(this, new DisplayEvent(DisplayEvent::ClearType));
}

void DisplayWnd::Refresh()
{
    // one that is still on its way shows the new state as well
    if (!mRefreshPosted.exchange(true)) {
        QCoreApplication::postEvent(this, new DisplayEvent(DisplayEvent::RefreshType));
    }
}

LxResult DisplayWnd::SetBackgroundColor(const QColor &aColor)
{
    mBackgroundColor = aColor;
    ApplyBackground();
    if (mGLDisplay) {
        mGLDisplay->SetBackground(aColor);
    }
    return LxResult();
}

void DisplayWnd::ApplyBackground()
{
    if (Content()) {
        Content()->setStyleSheet(QStringLiteral("background-color: rgb(%1, %2, %3);")
                                     .arg(mBackgroundColor.red())
                                     .arg(mBackgroundColor.green())
                                     .arg(mBackgroundColor.blue()));
    }
}

void DisplayWnd::SetTextOverlay(const QString &aText)
{
    const QMutexLocker lock(&mOverlayMutex);
    mOverlayText = aText;
}

QString DisplayWnd::GetTextOverlay()
{
    const QMutexLocker lock(&mOverlayMutex);
    return mOverlayText;
}

void DisplayWnd::SetTextOverlaySize(int aSize)
{
    const QMutexLocker lock(&mOverlayMutex);
    mOverlayFont.setPointSize(aSize);
    ++mOverlayVersion;
}

int DisplayWnd::GetTextOverlaySize()
{
    const QMutexLocker lock(&mOverlayMutex);
    return mOverlayFont.pointSize();
}

void DisplayWnd::SetTextOverlayOffsetX(unsigned aOffset)
{
    mOverlayOffsetX = static_cast<int>(aOffset);
    ++mOverlayVersion;
}

void DisplayWnd::SetTextOverlayOffsetY(unsigned aOffset)
{
    mOverlayOffsetY = static_cast<int>(aOffset);
    ++mOverlayVersion;
}

bool DisplayWnd::HasOverlay()
{
    const QMutexLocker lock(&mOverlayMutex);
    return !mShownOverlayText.isEmpty();
}

LxResult DisplayWnd::SetRendererMode(int aMode)
{
    if (aMode < LxRendererModeSoftware || aMode > LxRendererModeReserved) {
        return LxResult(LxResultCode::InvalidArgument, "There is no such renderer mode.");
    }
    if (aMode > RendererInfo::Get().mHighestMode) {
        return LxResult(LxResultCode::Unavailable, "The renderer mode is not available on this machine.");
    }
    LxResult result;
    CallOnApplicationThread([&] { result = ChangeRendererMode(aMode); });
    return result;
}

LxResult DisplayWnd::ChangeRendererMode(int aMode)
{
    if (Content() && !OwnedApplication::CanMakeWidgets()) {
        return LxResult(LxResultCode::InvalidArgument, "The application of the window has ended.");
    }
    {
        const QMutexLocker lock(&mRendererMutex);
        if (aMode == mRendererMode) {
            return LxResult();
        }
        mRendererMode = aMode;
    }
    if (!IsOpenGL()) {
        delete mGLDisplay;
    }
    else if (Content()) {
        MakeGLDisplay();
    }
    {
        const QMutexLocker lock(&mImageMutex);
        mInternalBuffer.Free();
        mUploadDone.wakeAll();  // no widget will take what is pending
    }
    Clear();
    return LxResult();
}

bool DisplayWnd::event(QEvent *aEvent)
{
    if (aEvent->type() != DisplayEvent::RefreshType && aEvent->type() != DisplayEvent::ClearType) {
        return Wnd::event(aEvent);
    }
    const QMutexLocker lock(&mRendererMutex);
    if (aEvent->type() == DisplayEvent::RefreshType) {
        mRefreshPosted = false;
        if (mGLDisplay) {
            mGLDisplay->SetNewUpload(true);
            mGLDisplay->update();
        }
    }
    else if (mGLDisplay) {
        mGLDisplay->Clear();
    }
    if (Content() && !mGLDisplay) {
        Content()->update();
    }
    return true;
}

QRect DisplayWnd::DrawOverlay(QPainter &aPainter)
{
    const QMutexLocker lock(&mOverlayMutex);
    if (mShownOverlayText.isEmpty()) {
        return {};
    }
    aPainter.setLayoutDirection(Qt::LeftToRight);  // the offset counts from the left, whatever the layout
    aPainter.setPen(Qt::green);
    aPainter.setFont(mOverlayFont);
    aPainter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QRect viewport = aPainter.viewport();
    const QPoint offset(mOverlayOffsetX, mOverlayOffsetY);
    QRect covered;
    aPainter.drawText(QRect(offset, QPoint(viewport.width() - 1, viewport.height() - 1)), Qt::AlignLeft | Qt::AlignTop,
                      mShownOverlayText, &covered);
    return covered;
}
