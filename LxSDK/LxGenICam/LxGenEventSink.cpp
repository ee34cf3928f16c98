#include "LxGenICam/LxGenEventSink.h"

LxGenEventSink::~LxGenEventSink() = default;
