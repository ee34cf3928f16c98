#include "LxGenICam/LxGenRegister.h"

LxGenRegister::~LxGenRegister() = default;
