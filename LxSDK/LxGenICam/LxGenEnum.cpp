#include "LxGenICam/LxGenEnum.h"

LxGenEnum::~LxGenEnum() = default;
