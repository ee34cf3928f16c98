#include "LxGUI/Frame/InternalWindow.h"

void DeleteInternal(const char *aClass, Wnd *&aWnd)
{
    if (aWnd && !IsOnApplicationThread(aClass)) {
        CallOnApplicationThread([&aWnd] { delete aWnd; });
    }
    else {
        delete aWnd;
    }
    aWnd = nullptr;
}
