#include "LxGUI/LxDeviceFinderWnd.h"

#include "LxGUI/DeviceFinder/DeviceFinderWndSink.h"
#include "LxGUI/Frame/InternalWindow.h"

namespace
{

DeviceFinderWnd *Window(Wnd *aWnd)
{
    return static_cast<DeviceFinderWnd *>(aWnd);
}

}  // namespace

LxDeviceFinderWnd::LxDeviceFinderWnd()
{
    mWnd = MakeInternal<DeviceFinderWndSink>("LxDeviceFinderWnd", this);
}

LxDeviceFinderWnd::~LxDeviceFinderWnd()
{
    DeleteInternal("~LxDeviceFinderWnd", mWnd);
}

bool LxDeviceFinderWnd::OnFound(const LxDeviceInfo * /*aInfo*/)
{
    return true;
}

const LxDeviceInfo *LxDeviceFinderWnd::GetSelected() const
{
    return mWnd ? Window(mWnd)->GetSelected() : nullptr;
}

void LxDeviceFinderWnd::SetGEVEnabled(bool aEnabled, bool aVisible)
{
    if (auto *const wnd = Internal<DeviceFinderWnd>(mWnd, "LxDeviceFinderWnd::SetGEVEnabled()")) {
        wnd->SetGEVEnabled(aEnabled, aVisible);
    }
}

void LxDeviceFinderWnd::GetGEVEnabled(bool &aEnabled, bool &aVisible) const
{
    if (mWnd) {
        Window(mWnd)->GetGEVEnabled(aEnabled, aVisible);
    }
    else {
        aEnabled = aVisible = false;
    }
}

void LxDeviceFinderWnd::SetU3VEnabled(bool aEnabled, bool aVisible)
{
    if (auto *const wnd = Internal<DeviceFinderWnd>(mWnd, "LxDeviceFinderWnd::SetU3VEnabled()")) {
        wnd->SetU3VEnabled(aEnabled, aVisible);
    }
}

void LxDeviceFinderWnd::GetU3VEnabled(bool &aEnabled, bool &aVisible) const
{
    if (mWnd) {
        Window(mWnd)->GetU3VEnabled(aEnabled, aVisible);
    }
    else {
        aEnabled = aVisible = false;
    }
}

void LxDeviceFinderWnd::SetKelvraProtocolEnabled(bool aEnabled, bool aVisible)
{
    if (auto *const wnd = Internal<DeviceFinderWnd>(mWnd, "LxDeviceFinderWnd::SetKelvraProtocolEnabled()")) {
        wnd->SetKelvraProtocolEnabled(aEnabled, aVisible);
    }
}

void LxDeviceFinderWnd::GetKelvraProtocolEnabled(bool &aEnabled, bool &aVisible) const
{
    if (mWnd) {
        Window(mWnd)->GetKelvraProtocolEnabled(aEnabled, aVisible);
    }
    else {
        aEnabled = aVisible = false;
    }
}
