#include "LxGUI/LxWnd.h"

#include "LxGUI/Frame/Wnd.h"

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
    return mWnd ? mWnd->Create(aParent, aReserved) : NoWindow();
}

LxResult LxWnd::Create(QWidget *aHost)
{
    return mWnd ? mWnd->Create(aHost) : NoWindow();
}

LxResult LxWnd::ShowModal()
{
    return mWnd ? mWnd->ShowModal(nullptr) : NoWindow();
}

LxResult LxWnd::ShowModal(QWidget *aParent)
{
    return mWnd ? mWnd->ShowModal(aParent) : NoWindow();
}

LxResult LxWnd::ShowModeless()
{
    return mWnd ? mWnd->ShowModeless(static_cast<QWidget *>(nullptr)) : NoWindow();
}

LxResult LxWnd::ShowModeless(QWidget *aParent)
{
    return mWnd ? mWnd->ShowModeless(aParent) : NoWindow();
}

LxResult LxWnd::ShowModeless(HWND aParent)
{
    return mWnd ? mWnd->ShowModeless(aParent) : NoWindow();
}

LxResult LxWnd::Close()
{
    return mWnd ? mWnd->Close() : LxResult();
}

void LxWnd::SetPosition(int aX, int aY, int aWidth, int aHeight)
{
    if (mWnd) {
        mWnd->SetPosition(aX, aY, aWidth, aHeight);
    }
}

void LxWnd::GetPosition(int &aX, int &aY, int &aWidth, int &aHeight)
{
    if (mWnd) {
        mWnd->GetPosition(aX, aY, aWidth, aHeight);
    }
    else {
        aX = aY = aWidth = aHeight = -1;
    }
}

HWND LxWnd::GetHandle() const
{
    return mWnd ? mWnd->GetHandle() : nullptr;
}

bool LxWnd::IsVisible() const
{
    return mWnd && mWnd->IsVisible();
}

QWidget *LxWnd::GetQWidget()
{
    return mWnd ? mWnd->GetQWidget() : nullptr;
}

LxString LxWnd::GetTitle() const
{
    return mWnd ? mWnd->GetTitle() : LxString();
}

void LxWnd::SetTitle(const LxString &aTitle)
{
    if (mWnd) {
        mWnd->SetTitle(aTitle);
    }
}

void LxWnd::DoEvents()
{
    Wnd::DoEvents();
}
