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
    return CallInternal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::SetVisibility()",
                                       [&](GenBrowserWnd &aWnd) { aWnd.SetVisibility(aVisibility); });
}

LxGenVisibility LxGenBrowserWnd::GetVisibility()
{
    return mWnd ? Options(mWnd)->GetVisibility() : LxGenVisibilityBeginner;
}

LxResult LxGenBrowserWnd::SetRefreshMode(LxGenRefresh aMode)
{
    return CallInternal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::SetRefreshMode()",
                                       [&](GenBrowserWnd &aWnd) { aWnd.SetRefreshMode(aMode); });
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
    return CallInternal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::Save()", [&](GenBrowserWnd &aWnd) { aWnd.Save(aList); });
}

LxResult LxGenBrowserWnd::Load(LxPropertyList &aList)
{
    return CallInternal<GenBrowserWnd>(mWnd, "LxGenBrowserWnd::Load()", [&](GenBrowserWnd &aWnd) { aWnd.Load(aList); });
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
