#pragma once

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

/// One entry of an enumeration feature. Owned by the enumeration; usable from any thread.
///
/// Only IsAvailable() may talk to the device. A text that an implementation cannot give is a failure and leaves the
/// argument as it was.
/// @thread{any}
class LX_API LxGenEnumEntry
{
public:
    virtual ~LxGenEnumEntry();

    /// The name in the XML.
    virtual LxResult GetName(LxString &aName) const = 0;
    /// The name for people; the name when the XML gives none.
    virtual LxResult GetDisplayName(LxString &aDisplayName) const = 0;
    /// A short text; empty when the XML gives none.
    virtual LxResult GetToolTip(LxString &aToolTip) const = 0;
    /// A longer text; empty when the XML gives none.
    virtual LxResult GetDescription(LxString &aDescription) const = 0;
    /// The number that is written to choose the entry.
    virtual LxResult GetValue(int64_t &aValue) const = 0;
    /// Beginner when the XML gives none.
    virtual LxResult GetVisibility(LxGenVisibility &aVisibility) const = 0;
    /// Custom when the XML gives none.
    virtual LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const = 0;
    /// Whether the entry can be chosen now: implemented and available.
    virtual LxResult IsAvailable(bool &aAvailable) const = 0;
    /// The same with false for a failure.
    bool IsAvailable() const;
    /// Whether a user interface of this level shows the entry.
    bool IsVisible(LxGenVisibility aLevel) const;
};
