#pragma once

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxGenICam/LxGenTypes.h"

class LxGenEventSink;
class LxGenParameterList;

/// A feature of a device, as its GenICam XML describes it (GenApi standard).
///
/// Handed out by an LxGenParameterArray, which owns it. All operations may be called from any thread. Operations that
/// ask for attributes (name, tool tip, description, visibility) never talk to the device and always succeed; those that
/// ask for access, limits or values may, and then take as long as the device does. They fail with what the device
/// reports, and at once with Timeout or NotConnected while it does not answer; the argument is then as it was.
/// @thread{any}
class LX_API LxGenParameter
{
public:
    virtual ~LxGenParameter();

    /// The kind; the object can be cast (dynamic_cast) to the class of that kind.
    virtual LxResult GetType(LxGenType &aType) const = 0;
    /// The name in the XML, unique in the array.
    virtual LxResult GetName(LxString &aName) const = 0;
    /// The name for people; the name when the XML gives none.
    virtual LxResult GetDisplayName(LxString &aDisplayName) const = 0;
    /// A short text; empty when the XML gives none.
    virtual LxResult GetToolTip(LxString &aToolTip) const = 0;
    /// A longer text; empty when the XML gives none.
    virtual LxResult GetDescription(LxString &aDescription) const = 0;
    /// The path of the category that lists the feature, from "Root" on, with backslashes: "Root\ImageFormatControl".
    virtual LxResult GetCategory(LxString &aCategory) const = 0;
    /// Beginner when the XML gives none.
    virtual LxResult GetVisibility(LxGenVisibility &aVisibility) const = 0;
    /// Custom when the XML gives none.
    virtual LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const = 0;

    /// Whether the device has the feature at all.
    virtual LxResult IsImplemented(bool &aImplemented) const = 0;
    /// Whether the feature can be used now; an unimplemented one cannot.
    virtual LxResult IsAvailable(bool &aAvailable) const = 0;
    /// Whether the feature can be read now: implemented, available, not write-only.
    virtual LxResult IsReadable(bool &aReadable) const = 0;
    /// Whether the feature can be written now: implemented, available, not locked, not read-only, and the application
    /// controls the device.
    virtual LxResult IsWritable(bool &aWritable) const = 0;
    /// The same with false for a failure.
    bool IsImplemented() const;
    /// The same with false for a failure.
    bool IsAvailable() const;
    /// The same with false for a failure.
    bool IsReadable() const;
    /// The same with false for a failure.
    bool IsWritable() const;
    /// Whether a user interface of this level shows the feature.
    bool IsVisible(LxGenVisibility aLevel) const;

    /// Fills the list with the features that this one selects; empty when it is no selector.
    virtual LxResult GetSelectedParameters(LxGenParameterList &aList) const = 0;
    /// Fills the list with the selectors of this feature.
    virtual LxResult GetSelectingParameters(LxGenParameterList &aList) const = 0;

    /// The value as text, as it is best shown: numbers by their representation, entries and booleans by name. Empty
    /// when it cannot be read; "{Command}", "{Register}" for these kinds.
    virtual LxString ToString() const = 0;
    /// The reverse of ToString() for integers, floats, booleans, enumerations and strings: parses and writes.
    /// InvalidParameter when the text is no such value, NotSupported for commands and registers.
    virtual LxResult FromString(const LxString &aText) = 0;

    /// Adds a sink, which the application owns; it is never called from within this call. Adding the same sink again
    /// changes nothing. InvalidArgument for null.
    virtual LxResult RegisterEventSink(LxGenEventSink *aSink) = 0;
    /// Removes a sink. When this returns no call of the sink for this feature runs on another thread, and none will
    /// come. May be called from within the sink's own callback. NotFound when it was not registered.
    virtual LxResult UnregisterEventSink(LxGenEventSink *aSink) = 0;
};
