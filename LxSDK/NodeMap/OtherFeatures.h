#pragma once

// Internal: text, command and register features of a node map.

#include <string>

#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"
#include "NodeMap/Feature.h"

namespace LxDetail
{

class StringFeature : public FeatureOf<LxGenString, LxGenTypeString>
{
public:
    using FeatureOf::FeatureOf;

    LxResult GetValue(LxString &aValue) const override;
    LxResult SetValue(const LxString &aValue) override;
    LxResult GetMaxLength(int64_t &aMaxLength) const override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;
};

class CommandFeature : public FeatureOf<LxGenCommand, LxGenTypeCommand>
{
public:
    using FeatureOf::FeatureOf;

    LxResult IsDone(bool &aDone) const override;
    LxResult Execute() override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;
};

class RegisterFeature : public FeatureOf<LxGenRegister, LxGenTypeRegister>
{
public:
    using FeatureOf::FeatureOf;

    LxResult GetLength(int64_t &aLength) const override;
    LxResult Get(uint8_t *aData, int64_t aLength) const override;
    LxResult Set(const uint8_t *aData, int64_t aLength) override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;
};

}  // namespace LxDetail
