#pragma once

#include <QtCore/QString>

/// What the machine can draw with; probed once for the process.
class RendererInfo
{
public:
    /// The shared object, made on first use and never destroyed. Callable from any thread.
    static RendererInfo &Get();

    /// The highest usable renderer mode.
    int HighestMode() const { return mHighestMode; }
    const QString &Renderer() const { return mRenderer; }
    const QString &Version() const { return mVersion; }

private:
    RendererInfo() = default;

    int mHighestMode = 0;
    QString mRenderer = QStringLiteral("Default");
    QString mVersion = QStringLiteral("N/A");
};
