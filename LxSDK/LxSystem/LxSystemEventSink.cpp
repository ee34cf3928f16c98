#include "LxSystem/LxSystemEventSink.h"

LxSystemEventSink::~LxSystemEventSink() = default;
