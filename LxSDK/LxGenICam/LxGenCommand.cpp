#include "LxGenICam/LxGenCommand.h"

LxGenCommand::~LxGenCommand() = default;
