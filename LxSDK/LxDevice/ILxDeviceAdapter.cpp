#include "LxDevice/ILxDeviceAdapter.h"

#include "LxBase/LxLifetime.h"

ILxDeviceAdapter::~ILxDeviceAdapter()
{
    LxLifetime::End(this);
}
