#pragma once

#include <QtOpenGLWidgets/QOpenGLWidget>

#include "LxGUI/Display/RendererProbe.h"

/// What the machine can draw with; asked once for the process. The object is never shown, keeps no native resources
/// after its construction and is never destroyed.
class RendererInfo : public QOpenGLWidget
{
    Q_OBJECT

public:
    struct Facts
    {
        RendererStrings mStrings;
        int mHighestMode = 0;
    };

    /// Callable from any thread; the first call asks OpenGL on the GUI thread and waits for it. Without an application
    /// that can have windows nothing is asked, and a later call may still do so.
    static const Facts &Get();

private:
    RendererInfo();

    Facts mFacts;
};
