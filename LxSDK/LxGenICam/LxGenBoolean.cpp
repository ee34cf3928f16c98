#include "LxGenICam/LxGenBoolean.h"

LxGenBoolean::~LxGenBoolean() = default;
