#include "CameraIdentity.h"

#include "LxSystem/LxDeviceInfo.h"

namespace
{

QString Text(const LxString &aText)
{
    return QString::fromUtf8(aText.GetAscii());
}

}  // namespace

CameraIdentity CameraIdentity::Of(const LxDeviceInfo &aInfo)
{
    CameraIdentity identity;
    identity.mUniqueID = Text(aInfo.GetUniqueID());
    identity.mAddress = Text(aInfo.GetConnectionID());
    const QString user = Text(aInfo.GetUserDefinedName());
    const QString name = user.isEmpty() ? Text(aInfo.GetModelName()) : user;
    identity.mName = name.isEmpty() ? identity.mAddress : QStringLiteral("%1 (%2)").arg(name, identity.mAddress);
    identity.mModel = QStringLiteral("%1 %2").arg(Text(aInfo.GetVendorName()), Text(aInfo.GetModelName())).trimmed();
    return identity;
}
