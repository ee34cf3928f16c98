#pragma once

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

/// A category of features (GenApi ICategory). Owned by its LxGenParameterArray; usable from any thread. What asks for
/// texts, visibility and name space always succeeds.
/// @thread{any}
class LX_API LxGenCategory
{
public:
    virtual ~LxGenCategory();

    /// The name in the XML.
    virtual LxResult GetName(LxString &aName) const = 0;
    /// The name for people; the name when the XML gives none.
    virtual LxResult GetDisplayName(LxString &aDisplayName) const = 0;
    /// A short text; empty when the XML gives none.
    virtual LxResult GetToolTip(LxString &aToolTip) const = 0;
    /// A longer text; empty when the XML gives none.
    virtual LxResult GetDescription(LxString &aDescription) const = 0;
    /// Beginner when the XML gives none.
    virtual LxResult GetVisibility(LxGenVisibility &aVisibility) const = 0;
    /// Custom when the XML gives none.
    virtual LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const = 0;
    /// Whether the device has what the category is for; the only question here that may go to the device,
    /// and fail with what that reports.
    virtual LxResult IsImplemented(bool &aImplemented) const = 0;
    /// The same with false for a failure.
    bool IsImplemented() const;
    /// Whether a user interface of this level shows the category.
    bool IsVisible(LxGenVisibility aLevel) const;
};
