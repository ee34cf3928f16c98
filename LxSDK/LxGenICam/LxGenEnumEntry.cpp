#include "LxGenICam/LxGenEnumEntry.h"

LxGenEnumEntry::~LxGenEnumEntry() = default;

bool LxGenEnumEntry::IsAvailable() const
{
    bool value = false;
    return IsAvailable(value).IsOK() && value;
}

bool LxGenEnumEntry::IsVisible(LxGenVisibility aLevel) const
{
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    return GetVisibility(visibility).IsOK() && visibility <= aLevel;
}
