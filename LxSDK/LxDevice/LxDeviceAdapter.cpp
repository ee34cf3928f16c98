#include "LxDevice/LxDeviceAdapter.h"

#include "LxDevice/LxDevice.h"

LxDeviceAdapter::LxDeviceAdapter(LxDevice *aDevice) : mDevice(aDevice) {}

LxDeviceAdapter::~LxDeviceAdapter() = default;

LxGenParameterArray *LxDeviceAdapter::GetParameters()
{
    return mDevice ? mDevice->GetParameters() : nullptr;
}

LxString LxDeviceAdapter::GetUniqueID() const
{
    return mDevice ? mDevice->GetUniqueID() : LxString();
}
