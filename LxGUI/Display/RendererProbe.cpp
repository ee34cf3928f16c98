#include "LxGUI/Display/RendererProbe.h"

#include <QtCore/QStringList>
#include <algorithm>
#include <iterator>

namespace
{

// The number that a text starts with: drivers write "1.5 Mesa 22.3" as well as "1.5.0".
double LeadingNumber(const QString &aText)
{
    const auto end = std::find_if_not(aText.begin(), aText.end(), [](QChar aChar) { return aChar.isDigit(); });
    return aText.left(std::distance(aText.begin(), end)).toDouble();
}

bool IsVersionSufficient(const QString &aVersion)
{
    const QStringList parts = aVersion.split(QLatin1Char('.'));
    if (parts.first().toDouble() == 1.0) {
        return parts.size() > 1 && LeadingNumber(parts[1]) >= 5.0;
    }
    return parts.first().toInt(nullptr, 10) >= 2;
}

bool HasSwapInterval(const HasEntryPoint &aHasEntryPoint)
{
    if (aHasEntryPoint("wglSwapIntervalEXT")) {
        return true;
    }
#ifndef Q_OS_WIN
    // what other window systems have in its place
    for (const char *name : {"glXSwapIntervalSGI", "glXSwapIntervalMESA", "glXSwapIntervalEXT"}) {
        if (aHasEntryPoint(name)) {
            return true;
        }
    }
#endif
    return false;
}

bool HasEntryPoints(const HasEntryPoint &aHasEntryPoint)
{
    for (const char *name : {"glGenBuffersARB", "glBindBufferARB", "glBufferDataARB", "glDeleteBuffersARB",
                             "glMapBufferARB", "glUnmapBufferARB"})
    {
        if (!aHasEntryPoint(name)) {
            return false;
        }
    }
    return HasSwapInterval(aHasEntryPoint);
}

}  // namespace

int FindHighestRendererMode(const RendererStrings &aStrings, const HasEntryPoint &aHasEntryPoint)
{
    if (!aStrings.mExtensions.contains(QLatin1String("GL_ARB_pixel_buffer_object")) ||
        !IsVersionSufficient(aStrings.mVersion))
    {
        return 0;
    }
    // software and Mesa drivers are trusted whatever the lookups say
    const bool usable = HasEntryPoints(aHasEntryPoint) || aStrings.mRenderer.contains(QLatin1String("Mesa")) ||
                        aStrings.mRenderer.contains(QLatin1String("Software"));
    return usable ? 1 : 0;
}
