#include "LxGUI/Display/RendererInfo.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtGui/QOffscreenSurface>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions>

#include "LxGUI/Display/OpenGLFunctions.h"
#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/OwnedApplication.h"

namespace
{

QString OpenGLString(QOpenGLContext &aContext, GLenum aName, const QString &aDefault)
{
    const GLubyte *text = aContext.functions()->glGetString(aName);
    return text ? QString::fromLatin1(reinterpret_cast<const char *>(text)) : aDefault;
}

}  // namespace

const RendererInfo::Facts &RendererInfo::Get()
{
    static const Facts none;
    static QMutex mutex;  // guards info
    static const RendererInfo *info = nullptr;
    const auto get = [] {
        const QMutexLocker lock(&mutex);
        return info;
    };
    if (const RendererInfo *known = get()) {
        return known->mFacts;
    }
    if (!OwnedApplication::CanMakeWidgets()) {
        return none;
    }
    CallOnApplicationThread([&get] {
        if (!get()) {
            // deliberately leaked: displays may be used until the very end of the process
            const auto *made = new RendererInfo;
            const QMutexLocker lock(&mutex);
            info = made;
        }
    });
    const RendererInfo *made = get();  // null when the application ended before it was asked
    return made ? made->mFacts : none;
}

RendererInfo::RendererInfo()
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setFormat(DisplaySurfaceFormat());
    // A widget that was never shown has no context. This one ends with the constructor, as nothing native may outlive
    // the application.
    QOpenGLContext context;
    context.setFormat(format());
    QOffscreenSurface surface;
    surface.setFormat(format());
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
        return;
    }
    RendererStrings &strings = mFacts.mStrings;
    strings.mExtensions = OpenGLString(context, GL_EXTENSIONS, strings.mExtensions);
    strings.mVersion = OpenGLString(context, GL_VERSION, strings.mVersion);
    strings.mRenderer = OpenGLString(context, GL_RENDERER, strings.mRenderer);
    mFacts.mHighestMode =
        FindHighestRendererMode(strings, [](const char *aName) { return LookUpOpenGL(aName) != nullptr; });
    context.doneCurrent();
}
