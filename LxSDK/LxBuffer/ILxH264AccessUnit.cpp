#include "LxBuffer/ILxH264AccessUnit.h"

ILxH264AccessUnit::~ILxH264AccessUnit() = default;
