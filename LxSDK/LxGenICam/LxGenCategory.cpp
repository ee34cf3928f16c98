#include "LxGenICam/LxGenCategory.h"

LxGenCategory::~LxGenCategory() = default;

bool LxGenCategory::IsImplemented() const
{
    bool value = false;
    return IsImplemented(value).IsOK() && value;
}

bool LxGenCategory::IsVisible(LxGenVisibility aLevel) const
{
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    return GetVisibility(visibility).IsOK() && visibility <= aLevel;
}
