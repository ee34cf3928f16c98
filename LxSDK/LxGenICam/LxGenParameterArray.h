#pragma once

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

class LxGenBoolean;
class LxGenCategory;
class LxGenCommand;
class LxGenEnum;
class LxGenFloat;
class LxGenInteger;
class LxGenParameter;
class LxGenRegister;
class LxGenString;

/// The features of a device, in the order of its GenICam XML.
///
/// Owned by the device (or the bridge) that hands it out and valid until that is disconnected or destroyed; the
/// features and categories live as long as the array. Usable from any thread.
class LX_API LxGenParameterArray
{
public:
    virtual ~LxGenParameterArray();

    virtual uint32_t GetCount() const = 0;
    /// The feature at an index of 0 to GetCount() - 1, else null.
    virtual LxGenParameter *operator[](uint32_t aIndex) const = 0;
    /// The feature of this name, or null.
    virtual LxGenParameter *Get(const LxString &aName) const = 0;
    /// The feature of this name if it is of the kind, else null.
    LxGenInteger *GetInteger(const LxString &aName) const;
    LxGenFloat *GetFloat(const LxString &aName) const;
    LxGenEnum *GetEnum(const LxString &aName) const;
    LxGenBoolean *GetBoolean(const LxString &aName) const;
    LxGenString *GetString(const LxString &aName) const;
    LxGenCommand *GetCommand(const LxString &aName) const;
    LxGenRegister *GetRegister(const LxString &aName) const;

    /// The category at a path as LxGenParameter::GetCategory() gives it, or of that bare name; null when there is none.
    virtual LxGenCategory *GetCategory(const LxString &aPath) const = 0;

    /// 0 while the device can be read, otherwise not 0 (the device is lost).
    virtual int GetAccessMode() const = 0;
    /// Forgets every remembered value, so that the next Poll() reports what it reads as changed only against new ones.
    virtual void InvalidateCache() = 0;
    /// Reads the features that have event sinks and notifies those that changed since the last look, on the calling
    /// thread; a feature that got a sink since then counts as changed. Ends with the device's error, Timeout or
    /// NotConnected, when it does not answer; a feature that fails otherwise does not keep it from the next ones.
    virtual LxResult Poll() = 0;

    /// Short forms for hosts: NotFound when there is no feature of the name and kind.
    LxResult GetIntegerValue(const LxString &aName, int64_t &aValue) const;
    LxResult SetIntegerValue(const LxString &aName, int64_t aValue);
    LxResult GetFloatValue(const LxString &aName, double &aValue) const;
    LxResult SetFloatValue(const LxString &aName, double aValue);
    LxResult GetEnumValue(const LxString &aName, LxString &aValue) const;
    LxResult SetEnumValue(const LxString &aName, const LxString &aValue);
    LxResult GetBooleanValue(const LxString &aName, bool &aValue) const;
    LxResult SetBooleanValue(const LxString &aName, bool aValue);
    LxResult GetStringValue(const LxString &aName, LxString &aValue) const;
    LxResult SetStringValue(const LxString &aName, const LxString &aValue);
    LxResult ExecuteCommand(const LxString &aName);
};
