#pragma once

// Internal: integer, floating-point and boolean features of a node map.

#include <string>

#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "NodeMap/Feature.h"

namespace LxDetail
{

class IntegerFeature : public FeatureOf<LxGenInteger, LxGenTypeInteger>
{
public:
    using FeatureOf::FeatureOf;

    LxResult GetValue(int64_t &aValue) const override;
    LxResult SetValue(int64_t aValue) override;
    LxResult GetMin(int64_t &aMin) const override;
    LxResult GetMax(int64_t &aMax) const override;
    LxResult GetIncrement(int64_t &aIncrement) const override;
    LxResult GetUnit(LxString &aUnit) const override;
    LxResult GetRepresentation(int &aRepresentation) const override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;

private:
    LxResult CheckRange(int64_t aValue) const;
};

class FloatFeature : public FeatureOf<LxGenFloat, LxGenTypeFloat>
{
public:
    using FeatureOf::FeatureOf;

    LxResult GetValue(double &aValue) const override;
    LxResult SetValue(double aValue) override;
    LxResult GetMin(double &aMin) const override;
    LxResult GetMax(double &aMax) const override;
    LxResult GetUnit(LxString &aUnit) const override;
    LxResult GetRepresentation(int &aRepresentation) const override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;

private:
    LxResult CheckRange(double aValue) const;
};

class BooleanFeature : public FeatureOf<LxGenBoolean, LxGenTypeBoolean>
{
public:
    using FeatureOf::FeatureOf;

    LxResult GetValue(bool &aValue) const override;
    LxResult SetValue(bool aValue) override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;
};

}  // namespace LxDetail
