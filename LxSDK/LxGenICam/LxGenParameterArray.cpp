#include "LxGenICam/LxGenParameterArray.h"

#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"

namespace
{

LxResult Missing(const char *aKind, const LxString &aName)
{
    return LxResult(LxResultCode::NotFound,
                    std::string("There is no ") + aKind + " feature \"" + aName.GetString() + "\".");
}

}  // namespace

LxGenParameterArray::~LxGenParameterArray() = default;

LxGenInteger *LxGenParameterArray::GetInteger(const LxString &aName) const
{
    return dynamic_cast<LxGenInteger *>(Get(aName));
}

LxGenFloat *LxGenParameterArray::GetFloat(const LxString &aName) const
{
    return dynamic_cast<LxGenFloat *>(Get(aName));
}

LxGenEnum *LxGenParameterArray::GetEnum(const LxString &aName) const
{
    return dynamic_cast<LxGenEnum *>(Get(aName));
}

LxGenBoolean *LxGenParameterArray::GetBoolean(const LxString &aName) const
{
    return dynamic_cast<LxGenBoolean *>(Get(aName));
}

LxGenString *LxGenParameterArray::GetString(const LxString &aName) const
{
    return dynamic_cast<LxGenString *>(Get(aName));
}

LxGenCommand *LxGenParameterArray::GetCommand(const LxString &aName) const
{
    return dynamic_cast<LxGenCommand *>(Get(aName));
}

LxGenRegister *LxGenParameterArray::GetRegister(const LxString &aName) const
{
    return dynamic_cast<LxGenRegister *>(Get(aName));
}

LxResult LxGenParameterArray::GetIntegerValue(const LxString &aName, int64_t &aValue) const
{
    const LxGenInteger *feature = GetInteger(aName);
    return feature ? feature->GetValue(aValue) : Missing("integer", aName);
}

LxResult LxGenParameterArray::SetIntegerValue(const LxString &aName, int64_t aValue)
{
    LxGenInteger *feature = GetInteger(aName);
    return feature ? feature->SetValue(aValue) : Missing("integer", aName);
}

LxResult LxGenParameterArray::GetFloatValue(const LxString &aName, double &aValue) const
{
    const LxGenFloat *feature = GetFloat(aName);
    return feature ? feature->GetValue(aValue) : Missing("floating-point", aName);
}

LxResult LxGenParameterArray::SetFloatValue(const LxString &aName, double aValue)
{
    LxGenFloat *feature = GetFloat(aName);
    return feature ? feature->SetValue(aValue) : Missing("floating-point", aName);
}

LxResult LxGenParameterArray::GetEnumValue(const LxString &aName, LxString &aValue) const
{
    const LxGenEnum *feature = GetEnum(aName);
    return feature ? feature->GetValue(aValue) : Missing("enumeration", aName);
}

LxResult LxGenParameterArray::SetEnumValue(const LxString &aName, const LxString &aValue)
{
    LxGenEnum *feature = GetEnum(aName);
    return feature ? feature->SetValue(aValue) : Missing("enumeration", aName);
}

LxResult LxGenParameterArray::GetBooleanValue(const LxString &aName, bool &aValue) const
{
    const LxGenBoolean *feature = GetBoolean(aName);
    return feature ? feature->GetValue(aValue) : Missing("boolean", aName);
}

LxResult LxGenParameterArray::SetBooleanValue(const LxString &aName, bool aValue)
{
    LxGenBoolean *feature = GetBoolean(aName);
    return feature ? feature->SetValue(aValue) : Missing("boolean", aName);
}

LxResult LxGenParameterArray::GetStringValue(const LxString &aName, LxString &aValue) const
{
    const LxGenString *feature = GetString(aName);
    return feature ? feature->GetValue(aValue) : Missing("text", aName);
}

LxResult LxGenParameterArray::SetStringValue(const LxString &aName, const LxString &aValue)
{
    LxGenString *feature = GetString(aName);
    return feature ? feature->SetValue(aValue) : Missing("text", aName);
}

LxResult LxGenParameterArray::ExecuteCommand(const LxString &aName)
{
    LxGenCommand *feature = GetCommand(aName);
    return feature ? feature->Execute() : Missing("command", aName);
}
