#include "LxGenICam/LxGenString.h"

LxGenString::~LxGenString() = default;
