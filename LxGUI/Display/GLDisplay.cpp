#include "LxGUI/Display/GLDisplay.h"

#include <QtCore/QMutexLocker>
#include <QtGui/QOpenGLContext>
#include <QtGui/QPainter>
#include <algorithm>
#include <cstring>

#include "LxGUI/Display/DisplayWnd.h"
#include "LxGUI/Display/HalveImage.h"

GLDisplay::GLDisplay(DisplayWnd &aWindow) : mWindow(aWindow)
{
    setFormat(DisplaySurfaceFormat());
}

GLDisplay::~GLDisplay()
{
    if (context()) {
        disconnect(context(), nullptr, this, nullptr);
    }
    DeleteObjects();
}

void GLDisplay::TakeFrameNow()
{
    repaint();
    if (mNewUpload) {
        grabFramebuffer();  // what is not exposed is not repainted
    }
}

void GLDisplay::SetBackground(const QColor &aColor)
{
    mBackground = aColor;
    mInitialised = false;
    update();
}

void GLDisplay::Clear()
{
    DeleteObjects();
    mNewUpload = true;
    update();
}

void GLDisplay::paintGL()
{
    if (!mInitialised) {
        SetUp();
    }
    UploadFrame();
    if (!mUsable) {
        return;
    }
    UpdateOverlay();
    mSwapControl.Set(mWindow.IsVSync());
    mGL.glClear(GL_COLOR_BUFFER_BIT);
    mGL.glEnable(GL_TEXTURE_2D);
    mGL.glLoadIdentity();
    mGL.glDisable(GL_BLEND);  // frames are opaque
    Draw(mFrame);
    mGL.glEnable(GL_BLEND);
    Draw(mOverlay);
}

void GLDisplay::SetUp()
{
    mInitialised = true;
    // another top-level window brings another context; this one takes all objects with it
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &GLDisplay::OnContextEnding,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    mUsable = mGL.Load();
    if (!mUsable) {
        return;
    }
    mSwapControl.Load();
    mGL.glShadeModel(GL_FLAT);
    mGL.glEnable(GL_TEXTURE_2D);
    mGL.glEnable(GL_BLEND);
    mGL.glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    mGL.glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    mGL.glMatrixMode(GL_MODELVIEW);
    mGL.glClearColor(mBackground.redF(), mBackground.greenF(), mBackground.blueF(), 1.0f);
    Resize(mFrame, mFrame.mSize);
    Resize(mOverlay, mOverlay.mSize);
    mOverlayRect = {};
}

void GLDisplay::OnContextEnding()
{
    DeleteObjects();
    mInitialised = false;
}

// The frame

void GLDisplay::UploadFrame()
{
    bool converted = false;
    {
        const QMutexLocker lock(&mWindow.ImageMutex());
        const ILxImage *image = mWindow.PendingImage();
        if (!image || !mNewUpload || !image->GetDataPointer() || image->GetWidth() == 0 || image->GetHeight() == 0 ||
            image->GetPixelType() == LxPixelType::None)
        {
            return;
        }
        converted = mUsable && Convert(*image);
        mNewUpload = false;
        mWindow.WakeProducers();
    }
    if (converted) {
        UploadTexture(mFrame);
    }
    else {
        mFrame.mLive = false;
    }
}

// False when the frame's memory holds nothing to show.
bool GLDisplay::Convert(const ILxImage &aImage)
{
    uint32_t width = aImage.GetWidth();
    uint32_t height = aImage.GetHeight();
    if (IsHalvedForUpload(width, height)) {
        width /= 2;
        height = std::max(height / 2, 1u);
    }
    if (std::max(width, height) > MostTextureLength()) {
        return false;  // before memory is asked for that a frame only says it needs
    }
    const QSize size(static_cast<int>(width), static_cast<int>(height));
    if (size != mFrame.mSize) {
        Resize(mFrame, size);
    }
    void *memory = MapAnew(mFrame);
    if (!memory) {
        return false;
    }
    LxResult result = mUploadBuffer.GetImage()->Attach(memory, width, height, LxPixelType::BGRa8);
    if (result.IsOK()) {
        result = mWindow.GetConverter().Convert(&aImage, &mUploadBuffer, false, false);
    }
    mUploadBuffer.Detach();
    Unmap();
    return result.IsOK();
}

// The overlay

void GLDisplay::UpdateOverlay()
{
    const QSize device = DeviceSize();
    if (mFrame.mSize.isEmpty() || device.isEmpty()) {
        return;
    }
    const QSize fitted = DisplayGeometry::ComputePlacement({}, device, mFrame.mSize, {}).mTarget.size();
    const unsigned version = mWindow.OverlayVersion();
    const bool resized = fitted != mOverlay.mSize;
    if (resized) {
        Resize(mOverlay, fitted);
        mOverlayRect = {};
    }
    if (fitted.isEmpty() || (!resized && mOverlay.mLive && version == mOverlayVersion)) {
        return;  // the texture still shows the same text
    }
    mOverlay.mLive = false;
    mOverlayVersion = version;
    const bool hadText = !mOverlayRect.isEmpty();
    mOverlayRect = {};
    if (!hadText && !mWindow.HasOverlay()) {
        return;
    }
    // painted beside the mapped memory, which must not be read back, and copied as a whole;
    // premultiplied while it is painted, as otherwise Qt darkens the edges of text
    if (mOverlayImage.size() != fitted) {
        mOverlayImage = QImage(fitted, QImage::Format_ARGB32_Premultiplied);
    }
    mOverlayImage.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    mOverlayImage.setDevicePixelRatio(devicePixelRatioF());
    mOverlayImage.fill(0);
    QPainter painter(&mOverlayImage);
    mOverlayRect = mWindow.DrawOverlay(painter);
    painter.end();
    mOverlayImage.convertTo(QImage::Format_ARGB32);  // what the blending takes
    if (void *memory = MapAnew(mOverlay)) {
        std::memcpy(memory, mOverlayImage.constBits(), static_cast<size_t>(mOverlay.ByteCount()));
        Unmap();
        UploadTexture(mOverlay);
    }
}

// Drawing

void GLDisplay::Draw(const Layer &aLayer)
{
    const QSize device = DeviceSize();
    if (!aLayer.mLive || aLayer.mTexture == 0 || aLayer.mSize.isEmpty() || device.isEmpty()) {
        return;  // a texture without an image would be drawn white
    }
    mGL.glPushMatrix();
    mGL.glBindTexture(GL_TEXTURE_2D, aLayer.mTexture);
    mGL.glViewport(0, 0, device.width(), device.height());
    const double width = device.width();
    const double height = device.height();
    const double ratio = static_cast<double>(aLayer.mSize.width()) / aLayer.mSize.height();
    if (width / height > ratio) {
        mGL.glScaled(ratio * height / width, 1.0, 0.0);
    }
    else {
        mGL.glScaled(1.0, width / ratio / height, 0.0);
    }
    mGL.glColor4f(1, 1, 1, 1);
    mGL.glBegin(GL_QUADS);
    mGL.glTexCoord2f(0, 0);
    mGL.glVertex2f(-1, 1);
    mGL.glTexCoord2f(1, 0);
    mGL.glVertex2f(1, 1);
    mGL.glTexCoord2f(1, 1);
    mGL.glVertex2f(1, -1);
    mGL.glTexCoord2f(0, 1);
    mGL.glVertex2f(-1, -1);
    mGL.glEnd();
    mGL.glBindTexture(GL_TEXTURE_2D, 0);
    mGL.glPopMatrix();
}

QSize GLDisplay::DeviceSize() const
{
    return size() * devicePixelRatioF();
}

// Buffers and textures

// New storage at every frame: the driver may still read the old one.
void *GLDisplay::MapAnew(const Layer &aLayer)
{
    if (aLayer.mSize.isEmpty()) {
        return nullptr;
    }
    mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, aLayer.mBuffer);
    mGL.glBufferData(GL_PIXEL_UNPACK_BUFFER, aLayer.ByteCount(), nullptr, GL_STREAM_DRAW);
    void *memory = mGL.glMapBuffer(GL_PIXEL_UNPACK_BUFFER, GL_WRITE_ONLY);
    if (!memory) {
        mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    }
    return memory;
}

void GLDisplay::Unmap()
{
    mGL.glUnmapBuffer(GL_PIXEL_UNPACK_BUFFER);
    mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
}

uint32_t GLDisplay::MostTextureLength() const
{
    GLint limit = 0;
    mGL.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    return static_cast<uint32_t>(std::max(limit, 0));
}

void GLDisplay::UploadTexture(Layer &aLayer)
{
    const auto longest = static_cast<uint32_t>(std::max(aLayer.mSize.width(), aLayer.mSize.height()));
    aLayer.mLive = !aLayer.mSize.isEmpty() && longest <= MostTextureLength();
    if (!aLayer.mLive) {
        return;
    }
    mGL.glBindTexture(GL_TEXTURE_2D, aLayer.mTexture);
    mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, aLayer.mBuffer);
    mGL.glTexImage2D(GL_TEXTURE_2D, 0, 4, aLayer.mSize.width(), aLayer.mSize.height(), 0, GL_BGRA, GL_UNSIGNED_BYTE,
                     nullptr);
    mGL.glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    mGL.glBindTexture(GL_TEXTURE_2D, 0);
}

void GLDisplay::Resize(Layer &aLayer, const QSize &aSize)
{
    aLayer.mSize = aSize;
    aLayer.mLive = false;
    MakeBuffer(aLayer);
    MakeTexture(aLayer);
}

void GLDisplay::MakeBuffer(Layer &aLayer)
{
    DeleteBuffer(aLayer);
    mGL.glGenBuffers(1, &aLayer.mBuffer);
    if (void *memory = MapAnew(aLayer)) {
        std::memset(memory, 0, static_cast<size_t>(aLayer.ByteCount()));
        Unmap();
    }
    ++mLiveBuffers;
}

void GLDisplay::MakeTexture(Layer &aLayer)
{
    DeleteTexture(aLayer);
    mGL.glGenTextures(1, &aLayer.mTexture);
    mGL.glBindTexture(GL_TEXTURE_2D, aLayer.mTexture);
    const GLfloat border[] = {static_cast<GLfloat>(mBackground.redF()), static_cast<GLfloat>(mBackground.greenF()),
                              static_cast<GLfloat>(mBackground.blueF()), 1.0f};
    mGL.glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, border);
    mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    mGL.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    mGL.glBindTexture(GL_TEXTURE_2D, 0);
    ++mLiveTextures;
}

void GLDisplay::DeleteBuffer(Layer &aLayer)
{
    if (aLayer.mBuffer != 0) {
        mGL.glDeleteBuffers(1, &aLayer.mBuffer);
        aLayer.mBuffer = 0;
        --mLiveBuffers;
    }
}

void GLDisplay::DeleteTexture(Layer &aLayer)
{
    if (aLayer.mTexture != 0) {
        mGL.glDeleteTextures(1, &aLayer.mTexture);
        aLayer.mTexture = 0;
        --mLiveTextures;
    }
}

void GLDisplay::DeleteObjects()
{
    if (mLiveBuffers + mLiveTextures > 0 && context()) {
        makeCurrent();
        for (Layer *layer : {&mFrame, &mOverlay}) {
            DeleteBuffer(*layer);
            DeleteTexture(*layer);
        }
        doneCurrent();
    }
    mFrame = {};
    mOverlay = {};
    mOverlayRect = {};
}
