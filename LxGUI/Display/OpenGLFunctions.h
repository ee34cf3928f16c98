#pragma once

#include <QtGui/qopengl.h>
#include <QtGui/QSurfaceFormat>
#include <functional>

/// Finds an entry point of the current context by its name; null when there is none.
using OpenGLLookup = std::function<QFunctionPointer(const char *)>;

/// The lookup of the platform for the current context; for tests: what ReplaceOpenGLLookup() was given.
QFunctionPointer LookUpOpenGL(const char *aName);
/// Makes LookUpOpenGL() ask another function, for tests; an empty one goes back to the platform's own.
void ReplaceOpenGLLookup(OpenGLLookup aLookup);

/// What every context of the display is asked for: OpenGL with the fixed pipeline, whatever the host's default is.
QSurfaceFormat DisplaySurfaceFormat();

// Type and name of every function that the display calls.
#define LX_OPENGL_FUNCTIONS(X)                         \
    X(PFNGLBINDBUFFERPROC, glBindBuffer)               \
    X(PFNGLMAPBUFFERPROC, glMapBuffer)                 \
    X(PFNGLUNMAPBUFFERPROC, glUnmapBuffer)             \
    X(PFNGLDELETEBUFFERSPROC, glDeleteBuffers)         \
    X(PFNGLGENBUFFERSPROC, glGenBuffers)               \
    X(PFNGLBUFFERDATAPROC, glBufferData)               \
    X(decltype(&::glShadeModel), glShadeModel)         \
    X(decltype(&::glEnable), glEnable)                 \
    X(decltype(&::glDisable), glDisable)               \
    X(decltype(&::glBlendFunc), glBlendFunc)           \
    X(decltype(&::glTexEnvf), glTexEnvf)               \
    X(decltype(&::glMatrixMode), glMatrixMode)         \
    X(decltype(&::glClearColor), glClearColor)         \
    X(decltype(&::glGenTextures), glGenTextures)       \
    X(decltype(&::glBindTexture), glBindTexture)       \
    X(decltype(&::glTexParameterfv), glTexParameterfv) \
    X(decltype(&::glTexParameteri), glTexParameteri)   \
    X(decltype(&::glTexImage2D), glTexImage2D)         \
    X(decltype(&::glDeleteTextures), glDeleteTextures) \
    X(decltype(&::glViewport), glViewport)             \
    X(decltype(&::glPushMatrix), glPushMatrix)         \
    X(decltype(&::glPopMatrix), glPopMatrix)           \
    X(decltype(&::glScaled), glScaled)                 \
    X(decltype(&::glColor4f), glColor4f)               \
    X(decltype(&::glBegin), glBegin)                   \
    X(decltype(&::glTexCoord2f), glTexCoord2f)         \
    X(decltype(&::glVertex2f), glVertex2f)             \
    X(decltype(&::glEnd), glEnd)                       \
    X(decltype(&::glClear), glClear)                   \
    X(decltype(&::glLoadIdentity), glLoadIdentity)     \
    X(decltype(&::glGetIntegerv), glGetIntegerv)

/// The entry points of one context.
struct OpenGLFunctions
{
#define LX_DECLARE(type, name) type name = nullptr;
    LX_OPENGL_FUNCTIONS(LX_DECLARE)
#undef LX_DECLARE

    /// Looks every entry point up in the current context. False when one is missing.
    bool Load();
};

/// Sets whether swapping waits for the screen, where the platform lets one.
class SwapControl
{
public:
    /// Looks the platform's entry points up in the current context.
    void Load();
    void Set(bool aVSync) const;

private:
    int (*mSgi)(int) = nullptr;
    int (*mMesa)(unsigned) = nullptr;
};
