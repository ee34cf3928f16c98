#include "LxGenICam/LxGenFloat.h"

LxGenFloat::~LxGenFloat() = default;
