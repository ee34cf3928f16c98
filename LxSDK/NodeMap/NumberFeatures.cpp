#include "NodeMap/NumberFeatures.h"

#include <cfloat>
#include <cmath>

#include "NodeMap/ValueText.h"

namespace LxDetail
{

namespace
{

LxResult OutOfRange(const std::string &aValue, const std::string &aWhy, const std::string &aLimit)
{
    return LxResult(LxResultCode::OutOfRange, "The value " + aValue + " is " + aWhy + " " + aLimit + ".");
}

LxResult NoNumber(const LxString &aText)
{
    return LxResult(LxResultCode::InvalidParameter, "\"" + aText.GetString() + "\" is no such number.");
}

// A limit whose formula cannot be evaluated does not limit; that the device does not answer is an error.
bool IsLimit(const LxResult &aResult)
{
    return aResult.IsOK();
}

bool IsFatal(const LxResult &aResult)
{
    return !aResult.IsOK() && aResult != LxResultCode::Failed;
}

}  // namespace

LxResult IntegerFeature::GetValue(int64_t &aValue) const
{
    return mCore.Read([&] { return mCore.mEngine.GetInteger(mCore.mNode, aValue); });
}

LxResult IntegerFeature::SetValue(int64_t aValue)
{
    return mCore.Write([&] {
        LxResult result = CheckRange(aValue);
        return result.IsOK() ? mCore.mEngine.SetInteger(mCore.mNode, aValue) : result;
    });
}

LxResult IntegerFeature::CheckRange(int64_t aValue) const
{
    NodeEngine &engine = mCore.mEngine;
    const auto text = [this](int64_t aNumber) { return IntegerToText(aNumber, Representation()); };
    int64_t min = 0;
    LxResult result = engine.GetIntegerMin(mCore.mNode, min);
    if (IsFatal(result)) {
        return result;
    }
    if (IsLimit(result) && aValue < min) {
        return OutOfRange(text(aValue), "below the minimum of", text(min));
    }
    int64_t max = 0;
    LxResult maxResult = engine.GetIntegerMax(mCore.mNode, max);
    if (IsFatal(maxResult)) {
        return maxResult;
    }
    if (IsLimit(maxResult) && aValue > max) {
        return OutOfRange(text(aValue), "above the maximum of", text(max));
    }
    int64_t increment = 1;
    LxResult incrementResult = engine.GetIntegerIncrement(mCore.mNode, increment);
    if (IsFatal(incrementResult)) {
        return incrementResult;
    }
    const int64_t base = !IsLimit(result) || min == INT64_MIN ? 0 : min;
    // without a minimum the steps go both ways from 0
    const uint64_t distance = aValue >= base ? static_cast<uint64_t>(aValue) - static_cast<uint64_t>(base)
                                             : static_cast<uint64_t>(base) - static_cast<uint64_t>(aValue);
    if (IsLimit(incrementResult) && distance % static_cast<uint64_t>(increment) != 0) {
        return OutOfRange(text(aValue), "off the increment of",
                          std::to_string(increment) + (base == 0 ? "" : " from " + text(base)));
    }
    return LxResult();
}

LxResult IntegerFeature::GetMin(int64_t &aMin) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetIntegerMin(mCore.mNode, aMin); });
}

LxResult IntegerFeature::GetMax(int64_t &aMax) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetIntegerMax(mCore.mNode, aMax); });
}

LxResult IntegerFeature::GetIncrement(int64_t &aIncrement) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetIntegerIncrement(mCore.mNode, aIncrement); });
}

LxResult IntegerFeature::GetUnit(LxString &aUnit) const
{
    return Give(aUnit, mCore.Description().mUnit);
}

LxResult IntegerFeature::GetRepresentation(int &aRepresentation) const
{
    return Give(aRepresentation, Representation());
}

LxString IntegerFeature::ToString() const
{
    int64_t value = 0;
    return GetValue(value).IsOK() ? LxString(IntegerToText(value, Representation())) : LxString();
}

LxResult IntegerFeature::FromString(const LxString &aText)
{
    int64_t value = 0;
    return IntegerFromText(aText.GetString(), value) ? SetValue(value) : NoNumber(aText);
}

LxResult IntegerFeature::ReadState(std::string &aState) const
{
    NodeEngine &engine = mCore.mEngine;
    int64_t numbers[4] = {0, 0, 0, 0};
    LxResult result = engine.GetInteger(mCore.mNode, numbers[0]);
    const LxResult others[3] = {engine.GetIntegerMin(mCore.mNode, numbers[1]),
                                engine.GetIntegerMax(mCore.mNode, numbers[2]),
                                engine.GetIntegerIncrement(mCore.mNode, numbers[3])};
    for (const LxResult &other : others) {
        aState += std::to_string(other.GetCode()) + " ";
    }
    aState.append(reinterpret_cast<const char *>(numbers), sizeof(numbers));
    return result;
}

LxResult FloatFeature::GetValue(double &aValue) const
{
    return mCore.Read([&] { return mCore.mEngine.GetFloat(mCore.mNode, aValue); });
}

LxResult FloatFeature::SetValue(double aValue)
{
    return mCore.Write([&] {
        LxResult result = CheckRange(aValue);
        return result.IsOK() ? mCore.mEngine.SetFloat(mCore.mNode, aValue) : result;
    });
}

// The increment of a floating-point feature is a hint and not checked.
LxResult FloatFeature::CheckRange(double aValue) const
{
    if (!std::isfinite(aValue)) {
        return LxResult(LxResultCode::OutOfRange, "The value is no finite number.");
    }
    double limit = 0;
    LxResult result = mCore.mEngine.GetFloatMin(mCore.mNode, limit);
    if (IsFatal(result)) {
        return result;
    }
    if (IsLimit(result) && aValue < limit) {
        return OutOfRange(FloatToText(aValue), "below the minimum of", FloatToText(limit));
    }
    result = mCore.mEngine.GetFloatMax(mCore.mNode, limit);
    if (IsFatal(result)) {
        return result;
    }
    if (IsLimit(result) && aValue > limit) {
        return OutOfRange(FloatToText(aValue), "above the maximum of", FloatToText(limit));
    }
    return LxResult();
}

LxResult FloatFeature::GetMin(double &aMin) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetFloatMin(mCore.mNode, aMin); });
}

LxResult FloatFeature::GetMax(double &aMax) const
{
    return mCore.mEngine.Run([&] { return mCore.mEngine.GetFloatMax(mCore.mNode, aMax); });
}

LxResult FloatFeature::GetUnit(LxString &aUnit) const
{
    return Give(aUnit, mCore.Description().mUnit);
}

LxResult FloatFeature::GetRepresentation(int &aRepresentation) const
{
    return Give(aRepresentation, Representation());
}

LxString FloatFeature::ToString() const
{
    double value = 0;
    return GetValue(value).IsOK() ? LxString(FloatToText(value)) : LxString();
}

LxResult FloatFeature::FromString(const LxString &aText)
{
    double value = 0;
    return FloatFromText(aText.GetString(), value) ? SetValue(value) : NoNumber(aText);
}

LxResult FloatFeature::ReadState(std::string &aState) const
{
    NodeEngine &engine = mCore.mEngine;
    double numbers[3] = {0, 0, 0};
    LxResult result = engine.GetFloat(mCore.mNode, numbers[0]);
    const LxResult others[2] = {engine.GetFloatMin(mCore.mNode, numbers[1]),
                                engine.GetFloatMax(mCore.mNode, numbers[2])};
    for (const LxResult &other : others) {
        aState += std::to_string(other.GetCode()) + " ";
    }
    aState.append(reinterpret_cast<const char *>(numbers), sizeof(numbers));
    return result;
}

LxResult BooleanFeature::GetValue(bool &aValue) const
{
    return mCore.Read([&] { return mCore.mEngine.GetBoolean(mCore.mNode, aValue); });
}

LxResult BooleanFeature::SetValue(bool aValue)
{
    return mCore.Write([&] { return mCore.mEngine.SetBoolean(mCore.mNode, aValue); });
}

LxString BooleanFeature::ToString() const
{
    bool value = false;
    return GetValue(value).IsOK() ? LxString(BooleanToText(value)) : LxString();
}

LxResult BooleanFeature::FromString(const LxString &aText)
{
    bool value = false;
    return BooleanFromText(aText.GetString(), value)
               ? SetValue(value)
               : LxResult(LxResultCode::InvalidParameter,
                          "\"" + aText.GetString() + "\" is neither \"True\" nor \"False\".");
}

LxResult BooleanFeature::ReadState(std::string &aState) const
{
    bool value = false;
    LxResult result = mCore.mEngine.GetBoolean(mCore.mNode, value);
    aState += BooleanToText(value);
    return result;
}

}  // namespace LxDetail
