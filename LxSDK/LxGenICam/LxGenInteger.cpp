#include "LxGenICam/LxGenInteger.h"

LxGenInteger::~LxGenInteger() = default;
