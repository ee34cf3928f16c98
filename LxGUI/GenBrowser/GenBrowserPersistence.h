#pragma once

#include "LxGUI/GenBrowser/GenBrowserOptions.h"
#include "LxGenICam/LxGenTypes.h"

class LxPropertyList;

/// Adds the options of a browser to a list.
void SaveBrowserOptions(LxGenVisibility aVisibility, const GenBrowserOptions &aOptions, LxPropertyList &aList);
/// Takes over what the list has; the first property of a name counts.
void LoadBrowserOptions(LxPropertyList &aList, LxGenVisibility &aVisibility, GenBrowserOptions &aOptions);
