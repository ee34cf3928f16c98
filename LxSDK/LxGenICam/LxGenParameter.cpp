#include "LxGenICam/LxGenParameter.h"

LxGenParameter::~LxGenParameter() = default;

bool LxGenParameter::IsImplemented() const
{
    bool value = false;
    return IsImplemented(value).IsOK() && value;
}

bool LxGenParameter::IsAvailable() const
{
    bool value = false;
    return IsAvailable(value).IsOK() && value;
}

bool LxGenParameter::IsReadable() const
{
    bool value = false;
    return IsReadable(value).IsOK() && value;
}

bool LxGenParameter::IsWritable() const
{
    bool value = false;
    return IsWritable(value).IsOK() && value;
}

bool LxGenParameter::IsVisible(LxGenVisibility aLevel) const
{
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    return GetVisibility(visibility).IsOK() && visibility <= aLevel;
}
