#pragma once

#include <QtCore/QString>

class LxDeviceInfo;

/// Which camera: what is kept of it from one run of the viewer to the next.
struct CameraIdentity
{
    QString mUniqueID;  ///< LxDeviceInfo::GetUniqueID(); empty when not known yet.
    QString mAddress;   ///< Where it was found last: LxDeviceInfo::GetConnectionID().
    QString mName;      ///< For people.
    QString mModel;     ///< Vendor and model.

    static CameraIdentity Of(const LxDeviceInfo &aInfo);
};
