#include "LxGUI/LxDeviceFinderWnd.h"

#include "LxGUI/DeviceFinder/DeviceFinderWndSink.h"

namespace
{

DeviceFinderWnd *Window(Wnd *aWnd)
{
    return static_cast<DeviceFinderWnd *>(aWnd);
}

}  // namespace

LxDeviceFinderWnd::LxDeviceFinderWnd()
{
    mWnd = new DeviceFinderWndSink(this);
}

LxDeviceFinderWnd::~LxDeviceFinderWnd()
{
    delete mWnd;
    mWnd = nullptr;
}

bool LxDeviceFinderWnd::OnFound(const LxDeviceInfo * /*aInfo*/)
{
    return true;
}

const LxDeviceInfo *LxDeviceFinderWnd::GetSelected() const
{
    return Window(mWnd)->GetSelected();
}

void LxDeviceFinderWnd::SetGEVEnabled(bool aEnabled, bool aVisible)
{
    Window(mWnd)->SetGEVEnabled(aEnabled, aVisible);
}

void LxDeviceFinderWnd::GetGEVEnabled(bool &aEnabled, bool &aVisible) const
{
    Window(mWnd)->GetGEVEnabled(aEnabled, aVisible);
}

void LxDeviceFinderWnd::SetU3VEnabled(bool aEnabled, bool aVisible)
{
    Window(mWnd)->SetU3VEnabled(aEnabled, aVisible);
}

void LxDeviceFinderWnd::GetU3VEnabled(bool &aEnabled, bool &aVisible) const
{
    Window(mWnd)->GetU3VEnabled(aEnabled, aVisible);
}

void LxDeviceFinderWnd::SetKelvraProtocolEnabled(bool aEnabled, bool aVisible)
{
    Window(mWnd)->SetKelvraProtocolEnabled(aEnabled, aVisible);
}

void LxDeviceFinderWnd::GetKelvraProtocolEnabled(bool &aEnabled, bool &aVisible) const
{
    Window(mWnd)->GetKelvraProtocolEnabled(aEnabled, aVisible);
}
