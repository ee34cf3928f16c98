#pragma once

#include <string>

#include "LxSDKExport.h"

/// A text at the public boundary: UTF-8 bytes, kept as given.
///
/// A value type: copies are independent. Not synchronised; one object must not be written by one thread while another
/// uses it.
/// @thread{any; one object by one thread at a time}
class LX_API LxString
{
public:
    LxString() = default;
    /// Copies the text. A null pointer gives the empty text.
    LxString(const char *aText);
    /// Takes the bytes over; they may hold zero bytes, which GetAscii() then ends at.
    LxString(std::string aText);

    /// The bytes, terminated by a zero byte; never null. Valid until the object is changed or destroyed.
    const char *GetAscii() const { return mText.c_str(); }
    /// The number of bytes.
    size_t GetLength() const { return mText.size(); }
    /// Whether there is no byte.
    bool IsEmpty() const { return mText.empty(); }
    /// The same bytes; valid until the object is changed or destroyed.
    const std::string &GetString() const { return mText; }

    /// Whether the bytes are the same.
    bool operator==(const LxString &aOther) const { return mText == aOther.mText; }
    /// The opposite.
    bool operator!=(const LxString &aOther) const { return mText != aOther.mText; }
    /// Order by bytes, not by any language.
    bool operator<(const LxString &aOther) const { return mText < aOther.mText; }

private:
    std::string mText;
};
