#include "LxSystem/LxDeviceInfoGEV.h"

LxDeviceInfoGEV::~LxDeviceInfoGEV() = default;
