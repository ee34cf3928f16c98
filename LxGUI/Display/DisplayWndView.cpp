// What the display shows: its layout, zooming and scrolling, and drawing in software.

#include <QtCore/QMutexLocker>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QImage>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QResizeEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

#include "LxGUI/Display/DisplayWnd.h"
#include "LxGUI/Display/GLDisplay.h"
#include "LxGUI/Display/PictureAccessible.h"

using namespace DisplayGeometry;

namespace
{

constexpr double MenuZoomStep = 1.5;
constexpr double KeyZoomStep = 1.2;
constexpr double WheelZoomStep = 1.1;

constexpr const char *ZoomOneToOneText = "Zoom 1:1";
constexpr const char *ZoomFitText = "Zoom Fit";
constexpr const char *ZoomInText = "Zoom In";
constexpr const char *ZoomOutText = "Zoom Out";
constexpr const char *CenterHereText = "Center Here";

/// A scroll bar for a widget, in the state of the one that it replaces, which may be none.
QScrollBar *RemakeBar(QScrollBar *aBefore, bool aShown, Qt::Orientation aOrientation, QWidget *aParent)
{
    auto *bar = new QScrollBar(aOrientation, aParent);
    bar->setLayoutDirection(Qt::LeftToRight);  // the picture is not mirrored
    if (aBefore) {
        bar->setRange(aBefore->minimum(), aBefore->maximum());
        bar->setPageStep(aBefore->pageStep());
        bar->setSingleStep(aBefore->singleStep());
        bar->setValue(aBefore->value());
    }
    bar->setVisible(aShown);
    return bar;
}

}  // namespace

void DisplayWnd::CreateLayout()
{
    const bool horizontalShown = mHorizontalBar && !mHorizontalBar->isHidden();
    const bool verticalShown = mVerticalBar && !mVerticalBar->isHidden();
    delete mGLDisplay;
    QWidget *widget = BeginLayout();
    const auto remakeBar = [&](QPointer<QScrollBar> &aBar, bool aShown, Qt::Orientation aOrientation, const char *aName,
                               void (DisplayWnd::*aSlot)(int)) {
        QScrollBar *bar = RemakeBar(aBar, aShown, aOrientation, widget);
        delete aBar;
        aBar = bar;
        aBar->setObjectName(QLatin1String(aName));
        connect(aBar, &QScrollBar::valueChanged, this, aSlot);
    };
    remakeBar(mHorizontalBar, horizontalShown, Qt::Horizontal, "horizontalScrollBar", &DisplayWnd::OnHorizontalScroll);
    remakeBar(mVerticalBar, verticalShown, Qt::Vertical, "verticalScrollBar", &DisplayWnd::OnVerticalScroll);
    mHorizontalBar->setAccessibleName(tr("Horizontal position"));
    mVerticalBar->setAccessibleName(tr("Vertical position"));
    PlaceChildren(widget->size());

    widget->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    widget->setFocusPolicy(Qt::StrongFocus);
    if (widget->accessibleName().isEmpty()) {
        widget->setAccessibleName(Title().isEmpty() ? tr("Picture") : Title());
    }
    MakePictureAccessible(widget, this);
    ApplyBackground();
    TakePainting(widget);
    mRefreshPosted = false;  // what was on its way may have ended with an earlier application
    if (IsOpenGL()) {
        MakeGLDisplay();
    }
}

void DisplayWnd::MakeGLDisplay()
{
    // the OpenGL view always shows the whole frame
    mHorizontalBar->hide();
    mVerticalBar->hide();
    mScroll = {};
    mGLDisplay = new GLDisplay(*this);
    mGLDisplay->setObjectName(QStringLiteral("glDisplay"));
    mGLDisplay->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    mGLDisplay->SetBackground(mBackgroundColor);
    mGLDisplay->setParent(Content());
    PlaceChildren(Content()->size());
    mGLDisplay->lower();
    mGLDisplay->show();
    RestoreEmbedding();
    Refresh();  // for a frame that waits already
}

void DisplayWnd::OnOpen() {}

void DisplayWnd::OnClose() {}

QSize DisplayWnd::PictureSize()
{
    return mGLDisplay ? mGLDisplay->FrameSize() : ScrolledSize();
}

// The picture as far as zoom and scroll bars go by it.
QSize DisplayWnd::ScrolledSize()
{
    if (IsOpenGL()) {
        return {};  // a frame left over from the other renderer does not count
    }
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
    const QSize picture = ScrolledSize();
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
    if (!Content() || !mHorizontalBar || !mVerticalBar || ScrolledSize().isEmpty() || mZoom.mMode == ZoomFit) {
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

void DisplayWnd::PlaceChildren(const QSize &aSize)
{
    if (!mHorizontalBar || !mVerticalBar) {
        return;
    }
    mHorizontalBar->setGeometry(0, aSize.height() - ScrollBarThickness, aSize.width(), ScrollBarThickness);
    mVerticalBar->setGeometry(aSize.width() - ScrollBarThickness, 0, ScrollBarThickness, aSize.height());
    if (mGLDisplay) {
        mGLDisplay->setGeometry({{}, ViewSize(aSize, !mHorizontalBar->isHidden(), !mVerticalBar->isHidden())});
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
            ScrollByKey(aKey);
            return false;  // these keys are the host's too
    }
}

void DisplayWnd::ScrollByKey(int aKey)
{
    const auto act = [](QScrollBar *aBar, QAbstractSlider::SliderAction aAction) {
        if (aBar && !aBar->isHidden()) {
            aBar->triggerAction(aAction);
        }
    };
    switch (aKey) {
        case Qt::Key_Left:
            return act(mHorizontalBar, QAbstractSlider::SliderSingleStepSub);
        case Qt::Key_Right:
            return act(mHorizontalBar, QAbstractSlider::SliderSingleStepAdd);
        case Qt::Key_Up:
            return act(mVerticalBar, QAbstractSlider::SliderSingleStepSub);
        case Qt::Key_Down:
            return act(mVerticalBar, QAbstractSlider::SliderSingleStepAdd);
        case Qt::Key_PageUp:
            return act(mVerticalBar, QAbstractSlider::SliderPageStepSub);
        case Qt::Key_PageDown:
            return act(mVerticalBar, QAbstractSlider::SliderPageStepAdd);
        case Qt::Key_Home:
            act(mHorizontalBar, QAbstractSlider::SliderToMinimum);
            return act(mVerticalBar, QAbstractSlider::SliderToMinimum);
        case Qt::Key_End:
            act(mHorizontalBar, QAbstractSlider::SliderToMaximum);
            return act(mVerticalBar, QAbstractSlider::SliderToMaximum);
        default:
            return;
    }
}

void DisplayWnd::OnContextMenu(const QContextMenuEvent &aEvent)
{
    mMenuPoint = Content()->mapFromGlobal(aEvent.globalPos());
    QMenu menu(Content());
    // the background colour is that of the picture
    const QPalette palette = QApplication::palette(&menu);
    menu.setStyleSheet(QStringLiteral("background-color: %1; color: %2;")
                           .arg(palette.color(QPalette::Window).name(), palette.color(QPalette::WindowText).name()));
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
            if (mGLDisplay) {
                RepaintOpenGL();
            }
            else {
                Paint();
            }
            return true;
        case QEvent::Resize:
            PlaceChildren(static_cast<QResizeEvent *>(aEvent)->size());
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

QPoint DisplayWnd::PictureAt(const QPoint &aPoint)
{
    constexpr QPoint none(-1, -1);
    if (!Content()) {
        return none;
    }
    const QSize view = ViewSize(Content()->size(), mHorizontalBar && !mHorizontalBar->isHidden(),
                                mVerticalBar && !mVerticalBar->isHidden());
    const QSize picture = PictureSize();
    if (view.isEmpty() || picture.isEmpty() || !QRect({}, view).contains(aPoint)) {
        return none;
    }
    if (!mGLDisplay) {
        return DisplayGeometry::PictureAt(ComputePlacement(mZoom, view, picture, mScroll), picture, aPoint);
    }
    const QPoint pixel = FittedPictureAt(view, picture, aPoint);
    const QMutexLocker lock(&mImageMutex);
    return mIsHalved && pixel != none ? 2 * pixel : pixel;
}

// Paint() covers the whole widget: that Qt fills it before would cost as much as the picture. The widget may be the
// host's, which gets it back as it was.
void DisplayWnd::TakePainting(QWidget *aWidget)
{
    if (mPainted) {
        mPainted->setAttribute(Qt::WA_OpaquePaintEvent, false);
    }
    mPainted = aWidget && !aWidget->testAttribute(Qt::WA_OpaquePaintEvent) ? aWidget : nullptr;
    if (mPainted) {
        mPainted->setAttribute(Qt::WA_OpaquePaintEvent);
    }
}

void DisplayWnd::RepaintOpenGL()
{
    QPainter(Content()).fillRect(Content()->rect(), mBackgroundColor);
    {
        // a frame that waits keeps its mark: the parent may be painted between the mark and the widget's own paint
        const QMutexLocker lock(&mImageMutex);
        if (!mPendingImage) {
            mGLDisplay->SetNewUpload(false);
        }
    }
    mGLDisplay->update();
}

void DisplayWnd::Paint()
{
    QWidget *widget = Content();
    QPainter painter(widget);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    QMutexLocker lock(&mImageMutex);
    const LxImage *image = mInternalBuffer.GetImage();
    const QSize picture(static_cast<int>(image->GetWidth()), static_cast<int>(image->GetHeight()));
    // a host has access to the image and may have made anything of it
    const bool drawable = image->GetPixelType() == LxPixelType::BGRa8 && image->GetPaddingX() == 0;
    const QSize view = ViewSize(widget->size(), mHorizontalBar && !mHorizontalBar->isHidden(),
                                mVerticalBar && !mVerticalBar->isHidden());
    if (picture.isEmpty() || !image->GetDataPointer() || !drawable || view.isEmpty()) {
        painter.fillRect(widget->rect(), mBackgroundColor);
        return;
    }
    const Placement place = ComputePlacement(mZoom, view, picture, mScroll);

    // where the picture is drawn, nothing needs to be filled, unless its end leaves a gap
    QRegion around = widget->rect();
    if (QRect({}, picture).contains(place.mSource)) {
        around -= place.mTarget;
    }
    for (const QRect &rect : around) {
        painter.fillRect(rect, mBackgroundColor);
    }
    mPicturePainter.Draw(painter,
                         QImage(static_cast<const uchar *>(image->GetDataPointer()), picture.width(), picture.height(),
                                picture.width() * 4, QImage::Format_RGB32),
                         place);
    lock.unlock();
    painter.translate(place.mTarget.topLeft());
    DrawOverlay(painter);
}
