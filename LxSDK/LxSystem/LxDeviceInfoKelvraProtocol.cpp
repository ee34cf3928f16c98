#include "LxSystem/LxDeviceInfoKelvraProtocol.h"

LxDeviceInfoKelvraProtocol::~LxDeviceInfoKelvraProtocol() = default;
