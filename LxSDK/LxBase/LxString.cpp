#include "LxBase/LxString.h"

#include <utility>

LxString::LxString(const char *aText) : mText(aText ? aText : "") {}

LxString::LxString(std::string aText) : mText(std::move(aText)) {}
