#include "OpenGLTest.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QOpenGLContext>
#include <QtGui/QScreen>
#include <algorithm>
#include <cstring>

#include "LxGUI/Display/RendererInfo.h"

namespace
{

OpenGLSpy *sSpy = nullptr;

PFNGLGENBUFFERSPROC sGenBuffers;
PFNGLBUFFERDATAPROC sBufferData;
PFNGLMAPBUFFERPROC sMapBuffer;
GLsizeiptr sBufferSize;
decltype(&::glBegin) sBegin;
decltype(&::glGenTextures) sGenTextures;
decltype(&::glTexImage2D) sTexImage;

void APIENTRY GenBuffers(GLsizei aCount, GLuint *aNames)
{
    sSpy->mBuffersMade += aCount;
    sGenBuffers(aCount, aNames);
}

void APIENTRY BufferData(GLenum aTarget, GLsizeiptr aSize, const void *aData, GLenum aUsage)
{
    sBufferSize = aSize;
    if (aTarget == GL_PIXEL_UNPACK_BUFFER && !aData && aUsage == GL_STREAM_DRAW) {
        sSpy->mStorage.push_back(aSize);
    }
    sBufferData(aTarget, aSize, aData, aUsage);
}

void *APIENTRY MapBuffer(GLenum aTarget, GLenum aAccess)
{
    ++sSpy->mMaps;
    void *memory = sSpy->mFailMaps ? nullptr : sMapBuffer(aTarget, aAccess);
    if (memory && sSpy->mDirtyMaps) {
        std::memset(memory, 0xA5, static_cast<size_t>(sBufferSize));
    }
    return memory;
}

void APIENTRY Begin(GLenum aMode)
{
    ++sSpy->mQuads;
    sBegin(aMode);
}

void APIENTRY GenTextures(GLsizei aCount, GLuint *aNames)
{
    sSpy->mTexturesMade += aCount;
    sGenTextures(aCount, aNames);
}

void APIENTRY TexImage(GLenum aTarget, GLint aLevel, GLint aInternal, GLsizei aWidth, GLsizei aHeight, GLint aBorder,
                       GLenum aFormat, GLenum aType, const void *aData)
{
    sSpy->mUploads.emplace_back(aWidth, aHeight);
    sTexImage(aTarget, aLevel, aInternal, aWidth, aHeight, aBorder, aFormat, aType, aData);
}

int SwapIntervalSGI(int aInterval)
{
    sSpy->mSwapControl.push_back("SGI " + std::to_string(aInterval));
    return 0;
}

int SwapIntervalMESA(unsigned aInterval)
{
    sSpy->mSwapControl.push_back("MESA " + std::to_string(aInterval));
    return 0;
}

const char *QueryExtensions(void *, int)
{
    return sSpy->mPlatformExtensions.constData();
}

template <typename Function>
QFunctionPointer Wrap(QFunctionPointer aReal, Function &aKept, Function aWrapper)
{
    aKept = reinterpret_cast<Function>(aReal);
    return reinterpret_cast<QFunctionPointer>(aWrapper);
}

QFunctionPointer Look(const char *aName)
{
    const std::string name = aName;
    QOpenGLContext *context = QOpenGLContext::currentContext();
    const QFunctionPointer real = context ? context->getProcAddress(aName) : nullptr;
    if (!sSpy || !real || sSpy->mMissing.count(name)) {
        return nullptr;
    }
    if (name == "glGenBuffers") {
        return Wrap<PFNGLGENBUFFERSPROC>(real, sGenBuffers, GenBuffers);
    }
    if (name == "glBufferData") {
        return Wrap<PFNGLBUFFERDATAPROC>(real, sBufferData, BufferData);
    }
    if (name == "glBegin") {
        return Wrap<decltype(&::glBegin)>(real, sBegin, Begin);
    }
    if (name == "glMapBuffer") {
        return Wrap<PFNGLMAPBUFFERPROC>(real, sMapBuffer, MapBuffer);
    }
    if (name == "glGenTextures") {
        return Wrap<decltype(&::glGenTextures)>(real, sGenTextures, GenTextures);
    }
    if (name == "glTexImage2D") {
        return Wrap<decltype(&::glTexImage2D)>(real, sTexImage, TexImage);
    }
    if (!sSpy->mPlatformExtensions.isEmpty()) {
        if (name == "glXQueryExtensionsString") {
            return reinterpret_cast<QFunctionPointer>(QueryExtensions);
        }
        if (name == "glXSwapIntervalSGI") {
            return reinterpret_cast<QFunctionPointer>(SwapIntervalSGI);
        }
        if (name == "glXSwapIntervalMESA") {
            return reinterpret_cast<QFunctionPointer>(SwapIntervalMESA);
        }
    }
    return real;
}

}  // namespace

OpenGLSpy::OpenGLSpy()
{
    sSpy = this;
    ReplaceOpenGLLookup(Look);
}

OpenGLSpy::~OpenGLSpy()
{
    ReplaceOpenGLLookup({});
}

void OpenGLTest::SetUp()
{
    ASSERT_EQ(RendererInfo::Get().mHighestMode, 1)
        << "no OpenGL: " << qPrintable(RendererInfo::Get().mStrings.mVersion);
    ASSERT_EQ(mDisplay.SetRendererMode(1).GetCode(), 0u);
}

QImage OpenGLTest::Screen(QWidget *aWidget)
{
    Settle();
    return aWidget->screen()->grabWindow(aWidget->winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

std::vector<QPoint> FindWrongPixels(const QImage &aShot, const LxImage &aPicture, QRgb aBackground, int aDistance)
{
    std::vector<QPoint> wrong;
    const int width = static_cast<int>(aPicture.GetWidth());
    const int height = static_cast<int>(aPicture.GetHeight());
    const QRect target = DisplayGeometry::ComputePlacement({}, aShot.size(), {width, height}, {}).mTarget;
    if (target.isEmpty()) {
        return {QPoint()};
    }
    const auto *pixels = static_cast<const QRgb *>(aPicture.GetDataPointer());
    const auto matches = [&](QRgb aColor, int aX, int aY) {
        for (int y = std::max(aY - aDistance, 0); y <= std::min(aY + aDistance, height - 1); ++y) {
            for (int x = std::max(aX - aDistance, 0); x <= std::min(aX + aDistance, width - 1); ++x) {
                if ((pixels[y * width + x] ^ aColor) << 8 == 0) {
                    return true;
                }
            }
        }
        return false;
    };
    // where the ends do not fall on whole pixels, renderers round them in their own ways
    const int edge = target.width() * height == target.height() * width ? 0 : 1;
    for (int y = 0; y < aShot.height(); ++y) {
        for (int x = 0; x < aShot.width(); ++x) {
            const QRgb color = aShot.pixel(x, y);
            bool right = true;
            if (target.adjusted(edge, edge, -edge, -edge).contains(x, y)) {
                right = matches(color, static_cast<int>((x - target.x() + 0.5) * width / target.width()),
                                static_cast<int>((y - target.y() + 0.5) * height / target.height()));
            }
            else if (!target.adjusted(-edge, -edge, edge, edge).contains(x, y)) {
                right = (color ^ aBackground) << 8 == 0;
            }
            if (!right) {
                wrong.emplace_back(x, y);
            }
        }
    }
    return wrong;
}

void ExpectFitted(const QImage &aShot, const LxImage &aPicture, QRgb aBackground, int aDistance)
{
    const std::vector<QPoint> wrong = FindWrongPixels(aShot, aPicture, aBackground, aDistance);
    EXPECT_TRUE(wrong.empty()) << wrong.size() << " of " << aShot.width() * aShot.height() << " pixels are wrong; "
                               << wrong.front().x() << ',' << wrong.front().y() << " is " << std::hex
                               << aShot.pixel(wrong.front());
}
