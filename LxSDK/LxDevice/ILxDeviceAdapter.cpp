#include "LxDevice/ILxDeviceAdapter.h"

ILxDeviceAdapter::~ILxDeviceAdapter() = default;
