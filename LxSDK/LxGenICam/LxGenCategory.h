#pragma once

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

/// A category of features (GenApi ICategory). Owned by its LxGenParameterArray; usable from any thread.
class LX_API LxGenCategory
{
public:
    virtual ~LxGenCategory();

    virtual LxResult GetName(LxString &aName) const = 0;
    /// The name for people; the name when the XML gives none.
    virtual LxResult GetDisplayName(LxString &aDisplayName) const = 0;
    virtual LxResult GetToolTip(LxString &aToolTip) const = 0;
    virtual LxResult GetDescription(LxString &aDescription) const = 0;
    virtual LxResult GetVisibility(LxGenVisibility &aVisibility) const = 0;
    virtual LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const = 0;
    /// Whether the device has what the category is for; the only question here that may go to the device.
    virtual LxResult IsImplemented(bool &aImplemented) const = 0;
    /// The same with false for a failure.
    bool IsImplemented() const;
    /// Whether a user interface of this level shows the category.
    bool IsVisible(LxGenVisibility aLevel) const;
};
