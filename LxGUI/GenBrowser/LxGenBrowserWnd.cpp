#include "LxGUI/LxGenBrowserWnd.h"

#include "LxGUI/Frame/InternalWindow.h"
#include "LxGUI/GenBrowser/GenBrowserWnd.h"

namespace
{

// For the options, which need no window; the defaults when there is none.
GenBrowserWnd *Options(Wnd *aWnd)
{
    return static_cast<GenBrowserWnd *>(aWnd);
}

}  // namespace

LxGenBrowserWnd::LxGenBrowserWnd()
{
    mWnd = MakeInternal<GenBrowserWnd>("LxGenBrowserWnd", this);
}

LxGenBrowserWnd::~LxGenBrowserWnd()
{
    DeleteInternal("~LxGenBrowserWnd", mWnd);
}

void LxGenBrowserWnd::SetGenParameterArray(LxGenParameterArray *aParameters)
{
    if (auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::SetGenParameterArray()")) {
        wnd->SetGenParameterArray(aParameters);
    }
}

LxResult LxGenBrowserWnd::SetVisibility(LxGenVisibility aVisibility)
{
    auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::SetVisibility()");
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    wnd->SetVisibility(aVisibility);
    return LxResultCode::OK;
}

LxGenVisibility LxGenBrowserWnd::GetVisibility()
{
    return mWnd ? Options(mWnd)->GetVisibility() : LxGenVisibilityBeginner;
}

LxResult LxGenBrowserWnd::SetRefreshMode(LxGenRefresh aMode)
{
    auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::SetRefreshMode()");
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    wnd->SetRefreshMode(aMode);
    return LxResultCode::OK;
}

LxGenRefresh LxGenBrowserWnd::GetRefreshMode()
{
    return mWnd ? Options(mWnd)->GetRefreshMode() : LxGenRefreshAutomatic;
}

void LxGenBrowserWnd::Refresh()
{
    if (auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::Refresh()")) {
        wnd->Refresh();
    }
}

LxResult LxGenBrowserWnd::Save(LxPropertyList &aList)
{
    auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::Save()");
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    wnd->Save(aList);
    return LxResultCode::OK;
}

LxResult LxGenBrowserWnd::Load(LxPropertyList &aList)
{
    auto *const wnd = Internal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::Load()");
    if (!wnd) {
        return LxResultCode::InvalidArgument;
    }
    wnd->Load(aList);
    return LxResultCode::OK;
}

bool LxGenBrowserWnd::HasChanged()
{
    return mWnd && Options(mWnd)->HasChanged();
}

void LxGenBrowserWnd::ResetChanged()
{
    if (mWnd) {
        Options(mWnd)->ResetChanged();
    }
}

bool LxGenBrowserWnd::IsParameterDisplayed(LxGenParameter * /*aParameter*/)
{
    return true;
}
