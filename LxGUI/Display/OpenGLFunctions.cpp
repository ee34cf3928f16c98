#include "LxGUI/Display/OpenGLFunctions.h"

#include <QtCore/QByteArray>
#include <QtGui/QOpenGLContext>
#include <utility>

namespace
{

OpenGLLookup &ReplacedLookup()
{
    static OpenGLLookup lookup;
    return lookup;
}

// Whether the entry points of GLX belong to the current context: with EGL, as on Wayland, they are there by name only.
bool IsGLX()
{
#if QT_CONFIG(xcb_glx_plugin)
    const QOpenGLContext *context = QOpenGLContext::currentContext();
    return context && context->nativeInterface<QNativeInterface::QGLXContext>();
#else
    return false;
#endif
}

// A dispatch library hands out entry points for every name, also for what the driver lacks: only the list of extensions
// tells which may be called.
QList<QByteArray> PlatformExtensions()
{
    if (!ReplacedLookup() && !IsGLX()) {
        return {};
    }
    const auto getDisplay = reinterpret_cast<void *(*)()>(LookUpOpenGL("glXGetCurrentDisplay"));
    const auto getExtensions = reinterpret_cast<const char *(*)(void *, int)>(LookUpOpenGL("glXQueryExtensionsString"));
    void *display = getDisplay && getExtensions ? getDisplay() : nullptr;
    const char *extensions = display ? getExtensions(display, 0) : nullptr;
    return QByteArray(extensions).split(' ');
}

}  // namespace

QFunctionPointer LookUpOpenGL(const char *aName)
{
    if (ReplacedLookup()) {
        return ReplacedLookup()(aName);
    }
    QOpenGLContext *context = QOpenGLContext::currentContext();
    return context ? context->getProcAddress(aName) : nullptr;
}

void ReplaceOpenGLLookup(OpenGLLookup aLookup)
{
    ReplacedLookup() = std::move(aLookup);
}

QSurfaceFormat DisplaySurfaceFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    return format;
}

bool OpenGLFunctions::Load()
{
    bool complete = true;
#define LX_LOAD(type, name)                             \
    name = reinterpret_cast<type>(LookUpOpenGL(#name)); \
    complete = complete && name;
    LX_OPENGL_FUNCTIONS(LX_LOAD)
#undef LX_LOAD
    return complete;
}

void SwapControl::Load()
{
    const QList<QByteArray> extensions = PlatformExtensions();
    mSgi = nullptr;
    mMesa = nullptr;
    if (extensions.contains("GLX_SGI_swap_control")) {
        mSgi = reinterpret_cast<int (*)(int)>(LookUpOpenGL("glXSwapIntervalSGI"));
    }
    if (extensions.contains("GLX_MESA_swap_control")) {
        mMesa = reinterpret_cast<int (*)(unsigned)>(LookUpOpenGL("glXSwapIntervalMESA"));
    }
}

void SwapControl::Set(bool aVSync) const
{
    // GLX_SGI_swap_control cannot switch off what it has switched on: an interval of 0 is an error there
    if (mMesa && (!aVSync || !mSgi)) {
        mMesa(aVSync ? 1 : 0);
    }
    else if (mSgi) {
        mSgi(aVSync ? 1 : 0);
    }
}
