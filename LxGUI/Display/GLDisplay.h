#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtOpenGLWidgets/QOpenGLWidget>

#include "LxBuffer/LxBuffer.h"
#include "LxGUI/Display/OpenGLFunctions.h"

class DisplayWnd;
class ILxImage;

/// Draws a display's frames by OpenGL: the whole frame fitted into the widget, centred, the text overlay on top.
///
/// A frame is converted straight into the memory of a pixel buffer object, from which the driver takes the texture; the
/// producer waits in DisplayWnd meanwhile. GUI thread only.
class GLDisplay : public QOpenGLWidget
{
    Q_OBJECT

public:
    /// @param aWindow where the frames come from; it outlives this widget.
    explicit GLDisplay(DisplayWnd &aWindow);
    ~GLDisplay() override;

    /// Whether the next paint takes the pending frame.
    void SetNewUpload(bool aNew) { mNewUpload = aNew; }
    /// Paints at once and takes the pending frame thereby, also while the window is not on the screen yet.
    void TakeFrameNow();
    void SetBackground(const QColor &aColor);
    /// Forgets frame and overlay.
    void Clear();

    unsigned LiveBufferCount() const { return mLiveBuffers; }
    unsigned LiveTextureCount() const { return mLiveTextures; }
    /// The size of the frame that was uploaded last; empty when there is none.
    QSize FrameSize() const { return mFrame.mSize; }

protected:
    void paintGL() override;

private:
    /// A texture and the pixel buffer object that it is filled from; names of 0 are none.
    struct Layer
    {
        GLuint mBuffer = 0;
        GLuint mTexture = 0;
        QSize mSize{0, 0};
        bool mLive = false;  ///< The texture has a picture.

        GLsizeiptr ByteCount() const { return GLsizeiptr{4} * mSize.width() * mSize.height(); }
    };

    void SetUp();
    void OnContextEnding();
    void UploadFrame();
    bool Convert(const ILxImage &aImage);
    void UpdateOverlay();
    void Draw(const Layer &aLayer);
    void *MapAnew(const Layer &aLayer);
    void Unmap();
    uint32_t MostTextureLength() const;
    void UploadTexture(Layer &aLayer);
    void Resize(Layer &aLayer, const QSize &aSize);
    void MakeBuffer(Layer &aLayer);
    void MakeTexture(Layer &aLayer);
    void DeleteBuffer(Layer &aLayer);
    void DeleteTexture(Layer &aLayer);
    void DeleteObjects();
    QSize DeviceSize() const;

    DisplayWnd &mWindow;
    OpenGLFunctions mGL;
    SwapControl mSwapControl;
    bool mInitialised = false;
    bool mUsable = false;  // every entry point was found
    bool mNewUpload = false;
    QColor mBackground = Qt::black;
    Layer mFrame;
    Layer mOverlay;
    QImage mOverlayImage;
    QRect mOverlayRect;
    unsigned mOverlayVersion = 0;
    unsigned mLiveBuffers = 0;
    unsigned mLiveTextures = 0;
    LxBuffer mUploadBuffer{LxPayloadType::Image};
};
