#include "LxGUI/GenBrowser/GenBrowserPersistence.h"

#include <optional>

#include "LxPersistence/LxPropertyList.h"

namespace
{

const char *VisibilityValue(LxGenVisibility aVisibility)
{
    switch (aVisibility) {
        case LxGenVisibilityExpert:
            return "Expert";
        case LxGenVisibilityGuru:
            return "Guru";
        case LxGenVisibilityInvisible:
            return "Invisible";
        default:
            return "Beginner";
    }
}

const char *RefreshValue(LxGenRefresh aRefresh)
{
    switch (aRefresh) {
        case LxGenRefreshPolling:
            return "PollingRefresh";
        case LxGenRefreshManual:
            return "ManualRefresh";
        default:
            return "AutoRefresh";
    }
}

void Add(LxPropertyList &aList, const char *aName, const char *aValue)
{
    LxProperty property;
    property.SetName(aName);
    property.SetValue(aValue);
    aList.Add(property);
}

std::optional<LxString> Find(LxPropertyList &aList, const char *aName)
{
    for (const LxProperty *property = aList.GetFirst(); property; property = aList.GetNext()) {
        if (property->GetName() == aName) {
            return property->GetValue();
        }
    }
    return std::nullopt;
}

}  // namespace

void SaveBrowserOptions(LxGenVisibility aVisibility, const GenBrowserOptions &aOptions, LxPropertyList &aList)
{
    Add(aList, "Visibility", VisibilityValue(aVisibility));
    Add(aList, "Names", aOptions.mDisplayNames ? "DisplayNames" : "FeatureNames");
    Add(aList, "View", aOptions.mTreeView ? "Tree" : "AlphabeticalList");
    Add(aList, "Refresh", RefreshValue(aOptions.mRefresh));
}

void LoadBrowserOptions(LxPropertyList &aList, LxGenVisibility &aVisibility, GenBrowserOptions &aOptions)
{
    if (const auto value = Find(aList, "Visibility")) {
        aVisibility = LxGenVisibilityBeginner;
        for (const LxGenVisibility level : {LxGenVisibilityExpert, LxGenVisibilityGuru, LxGenVisibilityInvisible}) {
            if (*value == VisibilityValue(level)) {
                aVisibility = level;
            }
        }
    }
    if (const auto value = Find(aList, "Names")) {
        aOptions.mDisplayNames = *value == "DisplayNames";
    }
    // The list is sorted by feature names, so it is not chosen while others are shown.
    if (const auto value = Find(aList, "View"); value && !aOptions.mDisplayNames) {
        aOptions.mTreeView = *value != "AlphabeticalList";
    }
    if (const auto value = Find(aList, "Refresh")) {
        aOptions.mRefresh = LxGenRefreshAutomatic;
        for (const LxGenRefresh mode : {LxGenRefreshPolling, LxGenRefreshManual}) {
            if (*value == RefreshValue(mode)) {
                aOptions.mRefresh = mode;
            }
        }
    }
}
