#pragma once

// Internal: enumeration features of a node map.

#include <memory>
#include <string>
#include <vector>

#include "LxGenICam/LxGenEnum.h"
#include "NodeMap/Feature.h"

namespace LxDetail
{

class EnumEntry : public LxGenEnumEntry
{
public:
    EnumEntry(NodeEngine &aEngine, const EnumEntryDescription &aDescription)
        : mEngine(aEngine), mDescription(aDescription)
    {
    }

    using LxGenEnumEntry::IsAvailable;

    LxResult GetName(LxString &aName) const override;
    LxResult GetDisplayName(LxString &aDisplayName) const override;
    LxResult GetToolTip(LxString &aToolTip) const override;
    LxResult GetDescription(LxString &aDescription) const override;
    LxResult GetValue(int64_t &aValue) const override;
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override;
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override;
    LxResult IsAvailable(bool &aAvailable) const override;

    const EnumEntryDescription &GetEntry() const { return mDescription; }

private:
    NodeEngine &mEngine;
    const EnumEntryDescription &mDescription;
};

class EnumFeature : public FeatureOf<LxGenEnum, LxGenTypeEnum>
{
public:
    EnumFeature(NodeEngine &aEngine, NodeIndex aNode, std::string aCategory, std::shared_ptr<SinkDomain> aDomain);

    LxResult GetValue(int64_t &aValue) const override;
    LxResult GetValue(LxString &aName) const override;
    LxResult SetValue(int64_t aValue) override;
    LxResult SetValue(const LxString &aName) override;
    LxResult GetEntriesCount(int64_t &aCount) const override;
    LxResult GetEntryByIndex(int64_t aIndex, const LxGenEnumEntry **aEntry) const override;
    LxResult GetEntryByValue(int64_t aValue, const LxGenEnumEntry **aEntry) const override;
    LxResult GetEntryByName(const LxString &aName, const LxGenEnumEntry **aEntry) const override;
    LxString ToString() const override;
    LxResult FromString(const LxString &aText) override;
    LxResult ReadState(std::string &aState) const override;

private:
    const EnumEntry *FindByValue(int64_t aValue) const;
    const EnumEntry *FindByName(const std::string &aName) const;
    LxResult SetEntry(const EnumEntry &aEntry);

    std::vector<std::unique_ptr<EnumEntry>> mEntries;
};

}  // namespace LxDetail
