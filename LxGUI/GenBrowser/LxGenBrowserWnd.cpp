#include "LxGUI/LxGenBrowserWnd.h"

#include "LxGUI/GenBrowser/GenBrowserWnd.h"

namespace
{

GenBrowserWnd &Internal(Wnd *aWnd)
{
    return *static_cast<GenBrowserWnd *>(aWnd);
}

}  // namespace

LxGenBrowserWnd::LxGenBrowserWnd()
{
    mWnd = new GenBrowserWnd(this);
}

LxGenBrowserWnd::~LxGenBrowserWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

void LxGenBrowserWnd::SetGenParameterArray(LxGenParameterArray *aParameters)
{
    Internal(mWnd).SetGenParameterArray(aParameters);
}

LxResult LxGenBrowserWnd::SetVisibility(LxGenVisibility aVisibility)
{
    Internal(mWnd).SetVisibility(aVisibility);
    return LxResultCode::OK;
}

LxGenVisibility LxGenBrowserWnd::GetVisibility()
{
    return Internal(mWnd).GetVisibility();
}

LxResult LxGenBrowserWnd::SetRefreshMode(LxGenRefresh aMode)
{
    Internal(mWnd).SetRefreshMode(aMode);
    return LxResultCode::OK;
}

LxGenRefresh LxGenBrowserWnd::GetRefreshMode()
{
    return Internal(mWnd).GetRefreshMode();
}

void LxGenBrowserWnd::Refresh()
{
    Internal(mWnd).Refresh();
}

LxResult LxGenBrowserWnd::Save(LxPropertyList &aList)
{
    Internal(mWnd).Save(aList);
    return LxResultCode::OK;
}

LxResult LxGenBrowserWnd::Load(LxPropertyList &aList)
{
    Internal(mWnd).Load(aList);
    return LxResultCode::OK;
}

bool LxGenBrowserWnd::HasChanged()
{
    return Internal(mWnd).HasChanged();
}

void LxGenBrowserWnd::ResetChanged()
{
    Internal(mWnd).ResetChanged();
}

bool LxGenBrowserWnd::IsParameterDisplayed(LxGenParameter * /*aParameter*/)
{
    return true;
}
