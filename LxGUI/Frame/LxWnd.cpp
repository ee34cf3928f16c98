#include "LxGUI/LxWnd.h"

#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUIVersion.h"

namespace
{

// What an operation answers when there is no window to forward to.
LxResult NoWindow()
{
    return LxResultCode::InvalidArgument;
}

}  // namespace

LxWnd::LxWnd() = default;
LxWnd::~LxWnd() = default;

LxResult LxWnd::Create(HWND aParent, int aReserved)
{
    Wnd *const wnd = Internal(mWnd, "Create()");
    return wnd ? wnd->Create(aParent, aReserved) : NoWindow();
}

LxResult LxWnd::Create(QWidget *aHost)
{
    Wnd *const wnd = Internal(mWnd, "Create()");
    return wnd ? wnd->Create(aHost) : NoWindow();
}

LxResult LxWnd::ShowModal()
{
    return ShowModal(nullptr);
}

LxResult LxWnd::ShowModal(QWidget *aParent)
{
    Wnd *const wnd = Internal(mWnd, "ShowModal()");
    return wnd ? wnd->ShowModal(aParent) : NoWindow();
}

LxResult LxWnd::ShowModeless()
{
    return ShowModeless(static_cast<QWidget *>(nullptr));
}

LxResult LxWnd::ShowModeless(QWidget *aParent)
{
    Wnd *const wnd = Internal(mWnd, "ShowModeless()");
    return wnd ? wnd->ShowModeless(aParent) : NoWindow();
}

LxResult LxWnd::ShowModeless(HWND aParent)
{
    Wnd *const wnd = Internal(mWnd, "ShowModeless()");
    return wnd ? wnd->ShowModeless(aParent) : NoWindow();
}

LxResult LxWnd::Close()
{
    if (!mWnd) {
        return LxResult();
    }
    Wnd *const wnd = Internal(mWnd, "Close()");
    return wnd ? wnd->Close() : NoWindow();
}

void LxWnd::SetPosition(int aX, int aY, int aWidth, int aHeight)
{
    if (Wnd *const wnd = Internal(mWnd, "SetPosition()")) {
        wnd->SetPosition(aX, aY, aWidth, aHeight);
    }
}

void LxWnd::GetPosition(int &aX, int &aY, int &aWidth, int &aHeight)
{
    if (Wnd *const wnd = Internal(mWnd, "GetPosition()")) {
        wnd->GetPosition(aX, aY, aWidth, aHeight);
    }
    else {
        aX = aY = aWidth = aHeight = -1;
    }
}

HWND LxWnd::GetHandle() const
{
    Wnd *const wnd = Internal(mWnd, "GetHandle()");
    return wnd ? wnd->GetHandle() : nullptr;
}

bool LxWnd::IsVisible() const
{
    Wnd *const wnd = Internal(mWnd, "IsVisible()");
    return wnd && wnd->IsVisible();
}

QWidget *LxWnd::GetQWidget()
{
    Wnd *const wnd = Internal(mWnd, "GetQWidget()");
    return wnd ? wnd->GetQWidget() : nullptr;
}

LxString LxWnd::GetTitle() const
{
    Wnd *const wnd = Internal(mWnd, "GetTitle()");
    return wnd ? wnd->GetTitle() : LxString();
}

void LxWnd::SetTitle(const LxString &aTitle)
{
    if (Wnd *const wnd = Internal(mWnd, "SetTitle()")) {
        wnd->SetTitle(aTitle);
    }
}

LxString LxWnd::GetVersion()
{
    return LXGUI_VERSION_STRING;
}

void LxWnd::DoEvents()
{
    if (IsOnApplicationThread("DoEvents()")) {
        Wnd::DoEvents();
    }
}
