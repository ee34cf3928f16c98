#include "LxSystem/LxInterface.h"

LxInterface::~LxInterface() = default;
