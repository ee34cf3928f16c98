#include "LxGUI/DeviceFinder/DeviceFinderWndSink.h"

#include "LxGUI/LxDeviceFinderWnd.h"

DeviceFinderWndSink::DeviceFinderWndSink(LxDeviceFinderWnd *aPublic) : mPublic(aPublic) {}

DeviceFinderWndSink::~DeviceFinderWndSink()
{
    StopDiscovery();
}

bool DeviceFinderWndSink::OnFound(const LxDeviceInfo *aInfo)
{
    return !aInfo || mPublic->OnFound(aInfo);
}
