#include "LxSystem/LxDeviceInfoU3V.h"

LxDeviceInfoU3V::~LxDeviceInfoU3V() = default;
