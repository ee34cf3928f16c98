#include "CameraIdentity.h"

#include "LxSystem/LxDeviceInfo.h"
#include "Texts.h"

CameraIdentity CameraIdentity::Of(const LxDeviceInfo &aInfo)
{
    CameraIdentity identity;
    identity.mUniqueID = ToQString(aInfo.GetUniqueID());
    identity.mAddress = ToQString(aInfo.GetConnectionID());
    const QString user = ToQString(aInfo.GetUserDefinedName());
    const QString name = user.isEmpty() ? ToQString(aInfo.GetModelName()) : user;
    identity.mName = name.isEmpty() ? identity.mAddress : QStringLiteral("%1 (%2)").arg(name, identity.mAddress);
    identity.mModel =
        QStringLiteral("%1 %2").arg(ToQString(aInfo.GetVendorName()), ToQString(aInfo.GetModelName())).trimmed();
    return identity;
}
