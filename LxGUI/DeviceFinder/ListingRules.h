#pragma once

#include <QtCore/QtGlobal>

/// What the application wants to see in the device finder.
struct ListingOptions
{
    bool mShowUnreachable = false;
    bool mGEVEnabled = true;
    bool mU3VEnabled = true;
    bool mKelvraEnabled = false;
    bool mGEVVisible = true;
    bool mU3VVisible = true;
    bool mKelvraVisible = true;

    /// Whether network devices are listed at all.
    bool IsNetworkVisible() const { return mGEVVisible || mKelvraVisible; }
};

/// By LxDeviceInfoType; kinds that are not known are never listed.
bool IsDeviceListed(int aType, const ListingOptions &aOptions);
/// Whether a listed device may be chosen.
bool IsDeviceEnabled(int aType, const ListingOptions &aOptions);
/// Whether devices of a kind have an IP configuration.
bool IsNetworkDevice(int aType);
/// By LxInterfaceType.
bool IsInterfaceListed(int aType, const ListingOptions &aOptions);

/// Whether a device has not been reported for too long.
/// @param aElapsed milliseconds since its last report; half a day and more counts as none, since that is a clock that
///        was set.
bool IsReportTooOld(qint64 aElapsed);
