#include "LxDevice/LxDeviceU3V.h"

LxDeviceU3V::~LxDeviceU3V() = default;
