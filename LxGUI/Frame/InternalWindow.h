#pragma once

#include <utility>

#include "LxGUI/Frame/ApplicationThread.h"
#include "LxGUI/Frame/Wnd.h"

// What the public classes do with their internal windows, which live on the application's thread only.

/// Makes the internal window of a public object; null, with a warning, on a wrong thread.
template <typename Window, typename... Arguments>
Window *MakeInternal(const char *aClass, Arguments &&...aArguments)
{
    return IsOnApplicationThread(aClass) ? new Window(std::forward<Arguments>(aArguments)...) : nullptr;
}

/// Deletes it, on a wrong thread with a warning and from the application's event loop, for which it waits.
void DeleteInternal(const char *aClass, Wnd *&aWnd);

/// The internal window for an operation: null when there is none, and, with a warning, on a wrong thread.
template <typename Window = Wnd>
Window *Internal(Wnd *aWnd, const char *aOperation)
{
    return aWnd && IsOnApplicationThread(aOperation) ? static_cast<Window *>(aWnd) : nullptr;
}

/// Calls an operation that cannot fail. InvalidArgument without a window and, with a warning, on a wrong thread.
template <typename Window, typename Call>
LxResult CallInternal(Wnd *aWnd, const char *aOperation, const Call &aCall)
{
    auto *const wnd = Internal<Window>(aWnd, aOperation);
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    aCall(*wnd);
    return LxResultCode::OK;
}

/// The same for public objects whose window may be deleted before them: OK without a window.
template <typename Window, typename Call>
LxResult CallInternalIfAny(Wnd *aWnd, const char *aOperation, const Call &aCall)
{
    return aWnd ? CallInternal<Window>(aWnd, aOperation, aCall) : LxResult(LxResultCode::OK);
}
