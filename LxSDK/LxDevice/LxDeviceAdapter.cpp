#include "LxDevice/LxDeviceAdapter.h"

#include "LxBase/LxLifetime.h"
#include "LxDevice/LxDevice.h"

LxDeviceAdapter::LxDeviceAdapter(LxDevice *aDevice) : mDevice(aDevice) {}

LxDeviceAdapter::~LxDeviceAdapter()
{
    LxLifetime::End(static_cast<ILxDeviceAdapter *>(this));
}

LxGenParameterArray *LxDeviceAdapter::GetParameters()
{
    return mDevice ? mDevice->GetParameters() : nullptr;
}

LxString LxDeviceAdapter::GetUniqueID() const
{
    return mDevice ? mDevice->GetUniqueID() : LxString();
}
