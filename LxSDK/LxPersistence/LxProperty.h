#pragma once

#include <cstdint>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

/// A named value in text form. A value type.
/// @thread{any; one object by one thread at a time}
class LX_API LxProperty
{
public:
    LxProperty() = default;
    /// Copies both.
    LxProperty(const LxString &aName, const LxString &aValue);
    /// The value becomes the number in decimal.
    LxProperty(const LxString &aName, uint32_t aValue);

    /// Replaces the name.
    void SetName(const LxString &aName);
    /// Replaces the value.
    void SetValue(const LxString &aValue);
    /// Replaces the value; null makes it empty.
    void SetValue(const char *aValue);
    /// The value becomes the number in decimal.
    void SetValue(uint32_t aValue);

    /// The name.
    LxString GetName() const { return mName; }
    /// The value.
    LxString GetValue() const { return mValue; }
    /// Reads the value as a decimal number. InvalidDataFormat, and aValue untouched, unless the whole text is one to
    /// ten decimal digits of a number of 0 to 4294967295.
    LxResult GetValue(uint32_t &aValue) const;

private:
    LxString mName;
    LxString mValue;
};
