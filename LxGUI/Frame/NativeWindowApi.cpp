#include "LxGUI/Frame/NativeWindowApi.h"

#include <QtGui/QGuiApplication>

#include "LxGUI/Frame/NoNativeWindowApi.h"
#if defined(Q_OS_WIN)
#include "LxGUI/Frame/Win32NativeWindowApi.h"
#else
#include "LxGUI/Frame/X11NativeWindowApi.h"
#endif

namespace
{

NativeWindowApi *sReplacement = nullptr;

}  // namespace

bool NoNativeWindowApi::HasWindows() const
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

NativeWindowApi &NativeWindows()
{
    static NoNativeWindowApi sNone;
    if (sReplacement) {
        return *sReplacement;
    }
#if defined(Q_OS_WIN)
    static Win32NativeWindowApi sWin32;
    if (QGuiApplication::platformName() == QLatin1String("windows")) {
        return sWin32;
    }
#else
    static X11NativeWindowApi sX11;
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        return sX11;
    }
#endif
    return sNone;
}

void ReplaceNativeWindows(NativeWindowApi *aApi)
{
    sReplacement = aApi;
}
