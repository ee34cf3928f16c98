#pragma once

#include <string>

#include "LxSDKExport.h"

/// A text at the public boundary: UTF-8 bytes, kept as given.
///
/// A value type: copies are independent. Not synchronised; one object must not be written by one thread while another
/// uses it.
class LX_API LxString
{
public:
    LxString() = default;
    /// Copies the text. A null pointer gives the empty text.
    LxString(const char *aText);
    LxString(std::string aText);

    /// The bytes, terminated by a zero byte; never null. Valid until the object is changed or destroyed.
    const char *GetAscii() const { return mText.c_str(); }
    /// The number of bytes.
    size_t GetLength() const { return mText.size(); }
    bool IsEmpty() const { return mText.empty(); }
    const std::string &GetString() const { return mText; }

    bool operator==(const LxString &aOther) const { return mText == aOther.mText; }
    bool operator!=(const LxString &aOther) const { return mText != aOther.mText; }
    bool operator<(const LxString &aOther) const { return mText < aOther.mText; }

private:
    std::string mText;
};
