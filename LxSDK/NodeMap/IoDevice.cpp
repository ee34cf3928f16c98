#include "NodeMap/IoDevice.h"

#include <string>

#include "NodeMap/Arv.h"

namespace
{

using LxDetail::IoTarget;

struct LxIoDevice
{
    ArvDevice mParent;
    IoTarget *mTarget;
};

struct LxIoDeviceClass
{
    ArvDeviceClass mParent;
};

gboolean Finish(IoTarget &aTarget, const LxResult &aResult, GError **aError)
{
    if (aResult.IsOK()) {
        return TRUE;
    }
    aTarget.mError = aResult;
    LxDetail::SetArvError(aError, aResult);
    return FALSE;
}

IoTarget &GetTarget(ArvDevice *aDevice)
{
    return *reinterpret_cast<LxIoDevice *>(aDevice)->mTarget;
}

gboolean ReadMemory(ArvDevice *aDevice, guint64 aAddress, guint32 aSize, void *aBuffer, GError **aError)
{
    IoTarget &target = GetTarget(aDevice);
    return Finish(target, target.mPort->Read(aAddress, aBuffer, aSize), aError);
}

gboolean WriteMemory(ArvDevice *aDevice, guint64 aAddress, guint32 aSize, void *aBuffer, GError **aError)
{
    IoTarget &target = GetTarget(aDevice);
    return Finish(target, target.mPort->Write(aAddress, aBuffer, aSize), aError);
}

gboolean ReadRegister(ArvDevice *aDevice, guint64 aAddress, guint32 *aValue, GError **aError)
{
    guint32 value = 0;
    if (!ReadMemory(aDevice, aAddress, sizeof(value), &value, aError)) {
        return FALSE;
    }
    *aValue = GUINT32_FROM_BE(value);
    return TRUE;
}

gboolean WriteRegister(ArvDevice *aDevice, guint64 aAddress, guint32 aValue, GError **aError)
{
    guint32 value = GUINT32_TO_BE(aValue);
    return WriteMemory(aDevice, aAddress, sizeof(value), &value, aError);
}

void InitClass(gpointer aClass, gpointer)
{
    auto *deviceClass = static_cast<ArvDeviceClass *>(aClass);
    deviceClass->read_memory = ReadMemory;
    deviceClass->write_memory = WriteMemory;
    deviceClass->read_register = ReadRegister;
    deviceClass->write_register = WriteRegister;
}

GType RegisterIoDeviceType()
{
    // the name is the process's, where another copy of this library may have it already
    std::string name = "LxIoDevice";
    while (g_type_from_name(name.c_str()) != 0) {
        name += '_';
    }
    return g_type_register_static_simple(ARV_TYPE_DEVICE, name.c_str(), sizeof(LxIoDeviceClass), InitClass,
                                         sizeof(LxIoDevice), nullptr, GTypeFlags(0));
}

GType GetIoDeviceType()
{
    static const GType type = RegisterIoDeviceType();
    return type;
}

}  // namespace

namespace LxDetail
{

GObjectPtr<_ArvDevice> MakeIoDevice(IoTarget *aTarget)
{
    auto *device = static_cast<LxIoDevice *>(g_object_new(GetIoDeviceType(), nullptr));
    device->mTarget = aTarget;
    return GObjectPtr<_ArvDevice>(&device->mParent);
}

}  // namespace LxDetail
