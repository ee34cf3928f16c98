#pragma once

#include <QtCore/QMutex>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QWaitCondition>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <atomic>

#include "LxBuffer/LxBuffer.h"
#include "LxCodec/LxBufferConverter.h"
#include "LxCodec/LxH264Decoder.h"
#include "LxGUI/Display/DisplayGeometry.h"
#include "LxGUI/Display/PicturePainter.h"
#include "LxGUI/Frame/Wnd.h"
#include "LxGUI/LxDisplayWnd.h"

class GLDisplay;
class QContextMenuEvent;
class QPainter;
class QScrollBar;

/// Shows images. Frames come from any thread; all widget work happens on the GUI thread.
///
/// Drawing in software, Display() converts the frame into the internal buffer and posts a refresh. Drawing by OpenGL,
/// it leaves the frame pending, posts a refresh and waits until the child widget GLDisplay has taken it, at most 500
/// ms.
class DisplayWnd : public Wnd
{
    Q_OBJECT

public:
    DisplayWnd();
    ~DisplayWnd() override;

    LxResult Display(const LxBuffer &aBuffer, bool aVSync);
    LxResult Display(const ILxImage *aImage, bool aVSync);
    LxResult Display(const ILxGenDCImage *aImage, bool aVSync);
    void Clear();
    void Refresh();

    LxBufferConverter &GetConverter() { return mConverter; }
    LxBuffer &GetInternalBuffer() { return mInternalBuffer; }

    LxResult SetBackgroundColor(const QColor &aColor);
    QColor GetBackgroundColor() const { return mBackgroundColor; }
    void SetTextOverlay(const QString &aText);
    QString GetTextOverlay();
    void SetTextOverlaySize(int aSize);
    int GetTextOverlaySize();
    void SetTextOverlayOffsetX(unsigned aOffset);
    void SetTextOverlayOffsetY(unsigned aOffset);
    int GetTextOverlayOffsetX() const { return mOverlayOffsetX.load(); }
    int GetTextOverlayOffsetY() const { return mOverlayOffsetY.load(); }

    /// The pixel of the shown picture at a point of the widget; (-1, -1) where there is none.
    QPoint PictureAt(const QPoint &aPoint);
    /// Of the picture that is shown; empty when there is none.
    QSize PictureSize();
    const DisplayGeometry::Zoom &GetZoom() const { return mZoom; }
    int GetRendererMode() const { return mRendererMode.load(); }
    LxResult SetRendererMode(int aMode);

    /// Draws the overlay at the painter's origin; returns what it covers, empty when there is no text.
    QRect DrawOverlay(QPainter &aPainter);
    /// Whether DrawOverlay() has something to draw.
    bool HasOverlay();
    /// Another number whenever DrawOverlay() may draw something else than before.
    unsigned OverlayVersion() const { return mOverlayVersion; }

    // for GLDisplay
    QMutex &ImageMutex() { return mImageMutex; }
    /// The frame that a caller of Display() waits with, or null; valid while the image mutex is held.
    const ILxImage *PendingImage() const { return mPendingImage; }
    /// Lets those go on who wait in Display(), the image mutex being held.
    void WakeProducers() { mUploadDone.wakeAll(); }
    bool IsVSync() const { return mVSync; }

    bool event(QEvent *aEvent) override;
    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

public slots:
    void OnMainZoom1To1();
    void OnMainZoomFit();
    void OnMainZoomIn();
    void OnMainZoomOut();
    void OnMainCenterHere();
    void OnHorizontalScroll(int aValue);
    void OnVerticalScroll(int aValue);

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;

    /// The two steps of decoding; tests replace them.
    virtual LxResult ProcessAccessUnit(const ILxH264AccessUnit *aUnit);
    virtual LxResult RetrieveFrame(LxImage *aImage);

private:
    LxResult DisplayAccessUnit(const ILxH264AccessUnit *aUnit, bool aVSync);
    LxResult ConvertFrame(const ILxImage *aImage);
    void HandOver(const ILxImage *aImage);
    void TakeOverlay(bool aVSync);
    bool IsOpenGL() const { return mRendererMode == LxRendererModeOpenGL; }
    LxResult ChangeRendererMode(int aMode);
    void MakeGLDisplay();
    QSize ScrolledSize();
    void ApplyBackground();
    void ChangeZoom(DisplayGeometry::ZoomMode aMode, double aFactor);
    void ApplyZoom();
    void UpdateScrollBars(const QSize &aPicture);
    void PlaceChildren(const QSize &aSize);
    bool OnKeyPress(int aKey);
    void ScrollByKey(int aKey);
    void OnContextMenu(const QContextMenuEvent &aEvent);
    void TakePainting(QWidget *aWidget);
    void RepaintOpenGL();
    void Paint();

    // GUI thread only
    QColor mBackgroundColor = Qt::darkGray;
    DisplayGeometry::Zoom mZoom;
    double mLastAppliedZoom = 0.0;
    bool mZoomPending = true;
    QPoint mMenuPoint;
    QPoint mScroll;
    QPointer<QScrollBar> mHorizontalBar;
    QPointer<QScrollBar> mVerticalBar;
    QPointer<GLDisplay> mGLDisplay;  // in OpenGL mode, when there is a widget
    QPointer<QWidget> mPainted;      // whose background Qt leaves out for us
    PicturePainter mPicturePainter;

    QMutex mImageMutex;  // guards mInternalBuffer, mConverter, mDecoder, mPendingImage, mWaitingProducers,
                         // mEnding and mIsHalved
    QWaitCondition mUploadDone;
    QWaitCondition mProducersGone;
    const ILxImage *mPendingImage = nullptr;
    int mWaitingProducers = 0;
    bool mEnding = false;
    bool mIsHalved = false;  // the frame last handed to the OpenGL widget, for its size
    LxBuffer mInternalBuffer{LxPayloadType::Image};
    LxBufferConverter mConverter{-1};
    LxH264Decoder mDecoder;

    QMutex mRendererMutex;  // guards changes of mRendererMode and the handling of the private events
    std::atomic<int> mRendererMode{0};
    std::atomic<bool> mVSync{false};
    std::atomic<bool> mRefreshPosted{false};

    QMutex mOverlayMutex;  // guards both texts and the font
    QString mOverlayText;
    QString mShownOverlayText;
    QFont mOverlayFont;
    std::atomic<int> mOverlayOffsetX{10};
    std::atomic<int> mOverlayOffsetY{10};
    std::atomic<unsigned> mOverlayVersion{0};
};
