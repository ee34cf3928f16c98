#pragma once

#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"

class LxDeviceFinderWnd;

/// Takes the question whether a device is listed to the application.
class DeviceFinderWndSink : public DeviceFinderWnd
{
    Q_OBJECT

public:
    explicit DeviceFinderWndSink(LxDeviceFinderWnd *aPublic);
    ~DeviceFinderWndSink() override;

protected:
    bool OnFound(const LxDeviceInfo *aInfo) override;

private:
    LxDeviceFinderWnd *const mPublic;
};
