#pragma once

#include <QtCore/QString>
#include <functional>

/// What OpenGL says about itself.
struct RendererStrings
{
    QString mExtensions;
    QString mVersion = QStringLiteral("N/A");
    QString mRenderer = QStringLiteral("Default");
};

/// Whether an entry point of this name can be had.
using HasEntryPoint = std::function<bool(const char *)>;

/// The highest renderer mode that a driver allows: 1 (OpenGL) when it has OpenGL 1.5 with pixel buffer objects and
/// either all entry points for them and for the swap interval, or "Mesa" or "Software" in its name; otherwise 0.
int FindHighestRendererMode(const RendererStrings &aStrings, const HasEntryPoint &aHasEntryPoint);
