#pragma once

// Internal: ZIP files of one member, as cameras store their XML (GenICam GenCP, chapter "Manifest").

#include <string>

#include "LxBase/LxResult.h"

namespace LxDetail
{

bool IsZip(const std::string &aBytes);
/// Takes the first member out. InvalidDataFormat, with the reason, when that is not possible or it is larger than
/// aMaxSize.
LxResult ExtractZip(const std::string &aZip, size_t aMaxSize, std::string &aContent);
/// A ZIP file with one compressed member.
std::string MakeZip(const std::string &aName, const std::string &aContent);

}  // namespace LxDetail
