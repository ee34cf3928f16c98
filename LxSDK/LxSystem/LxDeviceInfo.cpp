#include "LxSystem/LxDeviceInfo.h"

LxDeviceInfo::~LxDeviceInfo() = default;
