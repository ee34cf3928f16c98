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
/// @thread{any}
class LX_API LxGenParameterArray
{
public:
    virtual ~LxGenParameterArray();

    /// The number of features; it does not change.
    virtual uint32_t GetCount() const = 0;
    /// The feature at an index of 0 to GetCount() - 1, else null.
    virtual LxGenParameter *operator[](uint32_t aIndex) const = 0;
    /// The feature of this name, or null.
    virtual LxGenParameter *Get(const LxString &aName) const = 0;
    /// The feature of this name if it is an integer, else null.
    LxGenInteger *GetInteger(const LxString &aName) const;
    /// The feature of this name if it is a float, else null.
    LxGenFloat *GetFloat(const LxString &aName) const;
    /// The feature of this name if it is an enumeration, else null.
    LxGenEnum *GetEnum(const LxString &aName) const;
    /// The feature of this name if it is a boolean, else null.
    LxGenBoolean *GetBoolean(const LxString &aName) const;
    /// The feature of this name if it is a text, else null.
    LxGenString *GetString(const LxString &aName) const;
    /// The feature of this name if it is a command, else null.
    LxGenCommand *GetCommand(const LxString &aName) const;
    /// The feature of this name if it is a register, else null.
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

    /// LxGenInteger::GetValue() by name; NotFound when there is no such integer.
    LxResult GetIntegerValue(const LxString &aName, int64_t &aValue) const;
    /// LxGenInteger::SetValue() by name; NotFound when there is no such integer.
    LxResult SetIntegerValue(const LxString &aName, int64_t aValue);
    /// LxGenFloat::GetValue() by name; NotFound when there is no such float.
    LxResult GetFloatValue(const LxString &aName, double &aValue) const;
    /// LxGenFloat::SetValue() by name; NotFound when there is no such float.
    LxResult SetFloatValue(const LxString &aName, double aValue);
    /// The current entry's name; NotFound when there is no such enumeration.
    LxResult GetEnumValue(const LxString &aName, LxString &aValue) const;
    /// LxGenEnum::SetValue() by name; NotFound when there is no such enumeration.
    LxResult SetEnumValue(const LxString &aName, const LxString &aValue);
    /// LxGenBoolean::GetValue() by name; NotFound when there is no such boolean.
    LxResult GetBooleanValue(const LxString &aName, bool &aValue) const;
    /// LxGenBoolean::SetValue() by name; NotFound when there is no such boolean.
    LxResult SetBooleanValue(const LxString &aName, bool aValue);
    /// LxGenString::GetValue() by name; NotFound when there is no such text.
    LxResult GetStringValue(const LxString &aName, LxString &aValue) const;
    /// LxGenString::SetValue() by name; NotFound when there is no such text.
    LxResult SetStringValue(const LxString &aName, const LxString &aValue);
    /// LxGenCommand::Execute() by name; NotFound when there is no such command.
    LxResult ExecuteCommand(const LxString &aName);
};
