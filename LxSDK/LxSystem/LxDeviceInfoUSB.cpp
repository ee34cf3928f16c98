#include "LxSystem/LxDeviceInfoUSB.h"

LxDeviceInfoUSB::~LxDeviceInfoUSB() = default;
