#pragma once

#include <cstdint>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

/// A named value in text form. A value type.
class LX_API LxProperty
{
public:
    LxProperty() = default;
    LxProperty(const LxString &aName, const LxString &aValue);
    /// The value becomes the number in decimal.
    LxProperty(const LxString &aName, uint32_t aValue);

    void SetName(const LxString &aName);
    void SetValue(const LxString &aValue);
    void SetValue(const char *aValue);
    /// The value becomes the number in decimal.
    void SetValue(uint32_t aValue);

    LxString GetName() const { return mName; }
    LxString GetValue() const { return mValue; }
    /// Reads the value as a decimal number. InvalidDataFormat, and aValue untouched, unless the whole text is one to
    /// ten decimal digits of a number of 0 to 4294967295.
    LxResult GetValue(uint32_t &aValue) const;

private:
    LxString mName;
    LxString mValue;
};
