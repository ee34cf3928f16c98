#include "LxPersistence/LxProperty.h"

#include <charconv>
#include <string>

LxProperty::LxProperty(const LxString &aName, const LxString &aValue) : mName(aName), mValue(aValue) {}

LxProperty::LxProperty(const LxString &aName, uint32_t aValue) : mName(aName), mValue(std::to_string(aValue)) {}

void LxProperty::SetName(const LxString &aName)
{
    mName = aName;
}

void LxProperty::SetValue(const LxString &aValue)
{
    mValue = aValue;
}

void LxProperty::SetValue(const char *aValue)
{
    mValue = LxString(aValue);
}

void LxProperty::SetValue(uint32_t aValue)
{
    mValue = std::to_string(aValue);
}

LxResult LxProperty::GetValue(uint32_t &aValue) const
{
    const std::string &text = mValue.GetString();
    const char *end = text.data() + text.size();
    uint32_t value = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || text.size() > 10) {
        return LxResult(LxResultCode::InvalidDataFormat,
                        "The value \"" + text + "\" of the property \"" + mName.GetString() + "\" is no number.");
    }
    aValue = value;
    return LxResult();
}
