#include "LxGUI/Display/DisplayWnd.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QMutexLocker>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QImage>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QResizeEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

#include "LxGUI/Display/RendererInfo.h"

using namespace DisplayGeometry;

namespace
{

// Private event types, posted to the DisplayWnd.
constexpr auto RefreshEvent = static_cast<QEvent::Type>(11244);
constexpr auto ClearEvent = static_cast<QEvent::Type>(11245);

constexpr double MenuZoomStep = 1.5;
constexpr double KeyZoomStep = 1.2;
constexpr double WheelZoomStep = 1.1;

constexpr const char *ZoomOneToOneText = "Zoom 1:1";
constexpr const char *ZoomFitText = "Zoom Fit";
constexpr const char *ZoomInText = "Zoom In";
constexpr const char *ZoomOutText = "Zoom Out";
constexpr const char *CenterHereText = "Center Here";

LxResult NoImage()
{
    return LxResult(LxResultCode::NoImage, "There is no image to show.");
}

}  // namespace

DisplayWnd::DisplayWnd() : mOverlayFont(QStringLiteral("Monospace"), 11, QFont::DemiBold, false) {}

DisplayWnd::~DisplayWnd()
{
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

    const QMutexLocker lock(&mImageMutex);
    LxResult result;
    if (!mInternalBuffer.GetDataPointer()) {
        result = mInternalBuffer.GetImage()->Alloc(aImage->GetWidth(), aImage->GetHeight(), LxPixelType::BGRa8);
    }
    if (result.IsOK()) {
        result = mConverter.Convert(aImage, &mInternalBuffer, true, false);
    }
    Refresh();
    return result;
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
        const QMutexLocker lock(&mImageMutex);
        const LxResult retrieved = RetrieveFrame(mInternalBuffer.GetImage());
        if (!retrieved.IsOK()) {
            return any ? LxResult() : LxResult(LxResultCode::Failed, "The H.264 data gave no picture.");
        }
        Refresh();
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
    mShownOverlayText = mOverlayText;
}

void DisplayWnd::Clear()
{
    {
        const QMutexLocker lock(&mOverlayMutex);
        mOverlayText.clear();
        mShownOverlayText.clear();
    }
    if (mRendererMode == LxRendererModeSoftware) {
        const QMutexLocker lock(&mImageMutex);
        if (mInternalBuffer.GetDataPointer()) {
            mInternalBuffer.Free();
        }
    }
    QCoreApplication::postEvent(this, new QEvent(ClearEvent));
}

void DisplayWnd::Refresh()
{
    QCoreApplication::postEvent(this, new QEvent(RefreshEvent));
}

LxResult DisplayWnd::SetBackgroundColor(const QColor &aColor)
{
    mBackgroundColor = aColor;
    ApplyBackground();
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
}

int DisplayWnd::GetTextOverlaySize()
{
    const QMutexLocker lock(&mOverlayMutex);
    return mOverlayFont.pointSize();
}

LxResult DisplayWnd::SetRendererMode(int aMode)
{
    if (aMode < LxRendererModeSoftware || aMode > LxRendererModeReserved) {
        return LxResult(LxResultCode::InvalidArgument, "There is no such renderer mode.");
    }
    if (aMode > RendererInfo::Get().HighestMode()) {
        return LxResult(LxResultCode::Unavailable, "The renderer mode is not available on this machine.");
    }
    {
        const QMutexLocker lock(&mRendererMutex);
        if (aMode == mRendererMode) {
            return LxResult();
        }
        mRendererMode = aMode;
    }
    Clear();
    return LxResult();
}

bool DisplayWnd::event(QEvent *aEvent)
{
    if (aEvent->type() == RefreshEvent || aEvent->type() == ClearEvent) {
        const QMutexLocker lock(&mRendererMutex);
        if (Content()) {
            Content()->update();
        }
        return true;
    }
    return Wnd::event(aEvent);
}

void DisplayWnd::CreateLayout()
{
    QWidget *widget = BeginLayout();
    const auto makeBar = [&](QPointer<QScrollBar> &aBar, Qt::Orientation aOrientation, const char *aName,
                             void (DisplayWnd::*aSlot)(int)) {
        if (aBar && aBar->parentWidget() == widget) {
            return;
        }
        delete aBar;
        aBar = new QScrollBar(aOrientation, widget);
        aBar->setObjectName(QLatin1String(aName));
        connect(aBar, &QScrollBar::valueChanged, this, aSlot);
        aBar->hide();
    };
    makeBar(mHorizontalBar, Qt::Horizontal, "horizontalScrollBar", &DisplayWnd::OnHorizontalScroll);
    makeBar(mVerticalBar, Qt::Vertical, "verticalScrollBar", &DisplayWnd::OnVerticalScroll);
    mHorizontalBar->setAccessibleName(tr("Horizontal position"));
    mVerticalBar->setAccessibleName(tr("Vertical position"));
    PlaceScrollBars(widget->size());

    widget->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    widget->setFocusPolicy(Qt::StrongFocus);
    ApplyBackground();
}

void DisplayWnd::OnOpen() {}

void DisplayWnd::OnClose() {}

QSize DisplayWnd::PictureSize()
{
    const QMutexLocker lock(&mImageMutex);
    const LxImage *image = mInternalBuffer.GetImage();
    return {static_cast<int>(image->GetWidth()), static_cast<int>(image->GetHeight())};
}

void DisplayWnd::OnMainZoom1To1()
{
    mZoomPending = true;
    ChangeZoom(ZoomOneToOne, 1.0);
}

void DisplayWnd::OnMainZoomFit()
{
    mZoomPending = true;
    ChangeZoom(ZoomFit, mZoom.mFactor);
}

void DisplayWnd::OnMainZoomIn()
{
    mZoomPending = true;
    ChangeZoom(ZoomFree, mZoom.mFactor * MenuZoomStep);
}

void DisplayWnd::OnMainZoomOut()
{
    mZoomPending = true;
    ChangeZoom(ZoomFree, mZoom.mFactor / MenuZoomStep);
}

void DisplayWnd::ChangeZoom(ZoomMode aMode, double aFactor)
{
    mZoom = {aMode, aFactor};
    ApplyZoom();
}

void DisplayWnd::ApplyZoom()
{
    const QSize picture = PictureSize();
    if (!Content() || Content()->size().isEmpty() || picture.isEmpty()) {
        return;
    }
    mZoom = DisplayGeometry::ApplyZoom(mZoom, Content()->size(), picture);
    mLastAppliedZoom = mZoom.mFactor;
    mZoomPending = false;
    UpdateScrollBars(picture);
    Refresh();
}

void DisplayWnd::UpdateScrollBars(const QSize &aPicture)
{
    if (!mHorizontalBar || !mVerticalBar) {
        return;
    }
    const ScrollBars bars = ComputeScrollBars(mZoom, Content()->size(), aPicture);
    const auto apply = [](QScrollBar &aWidget, const ScrollBar &aBar) {
        if (aBar.mNeeded) {
            aWidget.setRange(0, aBar.mMaximum);
            aWidget.setPageStep(aBar.mPageStep);
            aWidget.setSingleStep(aBar.mSingleStep);
            aWidget.setValue(aBar.mValue);
        }
        aWidget.setVisible(aBar.mNeeded);
    };
    apply(*mHorizontalBar, bars.mHorizontal);
    apply(*mVerticalBar, bars.mVertical);
    mScroll = {bars.mHorizontal.mValue, bars.mVertical.mValue};
}

void DisplayWnd::OnMainCenterHere()
{
    if (!Content() || !mHorizontalBar || !mVerticalBar || PictureSize().isEmpty() || mZoom.mMode == ZoomFit) {
        return;
    }
    const bool horizontal = !mHorizontalBar->isHidden();
    const bool vertical = !mVerticalBar->isHidden();
    const QSize view = ViewSize(Content()->size(), horizontal, vertical);
    if (horizontal) {
        mHorizontalBar->setValue(CenteredScroll(mMenuPoint.x(), view.width(), mScroll.x(), mHorizontalBar->maximum()));
    }
    if (vertical) {
        mVerticalBar->setValue(CenteredScroll(mMenuPoint.y(), view.height(), mScroll.y(), mVerticalBar->maximum()));
    }
    Refresh();
}

void DisplayWnd::OnHorizontalScroll(int aValue)
{
    mScroll.setX(aValue);
    Refresh();
}

void DisplayWnd::OnVerticalScroll(int aValue)
{
    mScroll.setY(aValue);
    Refresh();
}

void DisplayWnd::PlaceScrollBars(const QSize &aSize)
{
    if (mHorizontalBar) {
        mHorizontalBar->setGeometry(0, aSize.height() - ScrollBarThickness, aSize.width(), ScrollBarThickness);
    }
    if (mVerticalBar) {
        mVerticalBar->setGeometry(aSize.width() - ScrollBarThickness, 0, ScrollBarThickness, aSize.height());
    }
}

bool DisplayWnd::OnKeyPress(int aKey)
{
    switch (aKey) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            ChangeZoom(ZoomFree, mZoom.mFactor * KeyZoomStep);
            return true;
        case Qt::Key_Minus:
        case Qt::Key_Underscore:
            ChangeZoom(ZoomFree, mZoom.mFactor / KeyZoomStep);
            return true;
        default:
            return false;
    }
}

void DisplayWnd::OnContextMenu(const QContextMenuEvent &aEvent)
{
    mMenuPoint = Content()->mapFromGlobal(aEvent.globalPos());
    QMenu menu(Content());
    for (const char *text : {ZoomOneToOneText, ZoomFitText, ZoomInText, ZoomOutText, CenterHereText}) {
        menu.addAction(QLatin1String(text));
    }
    const QPointer<DisplayWnd> self(this);
    const QAction *chosen = menu.exec(aEvent.globalPos());
    if (!self || !chosen) {
        return;
    }
    const QString text = chosen->text();
    if (text == QLatin1String(ZoomOneToOneText)) {
        OnMainZoom1To1();
    }
    else if (text == QLatin1String(ZoomFitText)) {
        OnMainZoomFit();
    }
    else if (text == QLatin1String(ZoomInText)) {
        OnMainZoomIn();
    }
    else if (text == QLatin1String(ZoomOutText)) {
        OnMainZoomOut();
    }
    else if (text == QLatin1String(CenterHereText)) {
        OnMainCenterHere();
    }
}

bool DisplayWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    if (!Content() || aObject != Content()) {
        return QObject::eventFilter(aObject, aEvent);
    }
    switch (aEvent->type()) {
        case QEvent::MouseButtonPress: {
            const auto button = static_cast<QMouseEvent *>(aEvent)->button();
            if (button == Qt::LeftButton || button == Qt::RightButton || button == Qt::MiddleButton) {
                Content()->setFocus();
            }
            return false;
        }
        case QEvent::KeyPress:
            return OnKeyPress(static_cast<QKeyEvent *>(aEvent)->key());
        case QEvent::Paint:
            Paint();
            return true;
        case QEvent::Resize:
            PlaceScrollBars(static_cast<QResizeEvent *>(aEvent)->size());
            return false;
        case QEvent::Wheel: {
            const bool out = static_cast<QWheelEvent *>(aEvent)->angleDelta().y() < 1;
            ChangeZoom(ZoomFree, out ? mZoom.mFactor / WheelZoomStep : mZoom.mFactor * WheelZoomStep);
            return true;
        }
        case QEvent::ContextMenu:
            OnContextMenu(*static_cast<QContextMenuEvent *>(aEvent));
            return true;
        default:
            return QObject::eventFilter(aObject, aEvent);
    }
}

void DisplayWnd::Paint()
{
    QWidget *widget = Content();
    QMutexLocker lock(&mImageMutex);
    const LxImage *image = mInternalBuffer.GetImage();
    const QSize picture(static_cast<int>(image->GetWidth()), static_cast<int>(image->GetHeight()));
    if (picture.isEmpty() || !image->GetDataPointer()) {
        return;
    }
    const QSize view = ViewSize(widget->size(), mHorizontalBar && !mHorizontalBar->isHidden(),
                                mVerticalBar && !mVerticalBar->isHidden());
    if (view.isEmpty()) {
        return;
    }
    const Placement place = ComputePlacement(mZoom, view, picture, mScroll);

    QPainter painter(widget);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setPen(mBackgroundColor);
    painter.setBrush(mBackgroundColor);
    painter.drawRect(0, 0, widget->width(), widget->height());
    painter.drawImage(place.mTarget,
                      QImage(static_cast<const uchar *>(image->GetDataPointer()), picture.width(), picture.height(),
                             picture.width() * 4, QImage::Format_RGB32),
                      place.mSource);
    lock.unlock();
    painter.translate(place.mTarget.topLeft());
    DrawOverlay(painter);
}

QRect DisplayWnd::DrawOverlay(QPainter &aPainter)
{
    const QMutexLocker lock(&mOverlayMutex);
    if (mShownOverlayText.isEmpty()) {
        return {};
    }
    aPainter.setPen(Qt::green);
    aPainter.setFont(mOverlayFont);
    aPainter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QRect viewport = aPainter.viewport();
    const int x = mOverlayOffsetX;
    const int y = mOverlayOffsetY;
    QRect covered;
    aPainter.drawText(QRect(x, y, viewport.width() - x, viewport.height() - y), Qt::AlignLeft | Qt::AlignTop,
                      mShownOverlayText, &covered);
    return covered;
}
