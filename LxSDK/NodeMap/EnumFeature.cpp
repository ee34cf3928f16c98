#include "NodeMap/EnumFeature.h"

#include "NodeMap/ValueText.h"

namespace LxDetail
{

namespace
{

LxResult NoEntry(int64_t aValue)
{
    return LxResult(LxResultCode::NotFound, "No entry has the value " + std::to_string(aValue) + ".");
}

LxResult NoEntry(const std::string &aName)
{
    return LxResult(LxResultCode::NotFound, "There is no entry \"" + aName + "\".");
}

}  // namespace

LxResult EnumEntry::GetName(LxString &aName) const
{
    return Give(aName, mDescription.mTexts.mName);
}

LxResult EnumEntry::GetDisplayName(LxString &aDisplayName) const
{
    return Give(aDisplayName, mDescription.mTexts.mDisplayName);
}

LxResult EnumEntry::GetToolTip(LxString &aToolTip) const
{
    return Give(aToolTip, mDescription.mTexts.mToolTip);
}

LxResult EnumEntry::GetDescription(LxString &aDescription) const
{
    return Give(aDescription, mDescription.mTexts.mDescription);
}

LxResult EnumEntry::GetValue(int64_t &aValue) const
{
    return Give(aValue, mDescription.mValue);
}

LxResult EnumEntry::GetVisibility(LxGenVisibility &aVisibility) const
{
    return Give(aVisibility, mDescription.mTexts.mVisibility);
}

LxResult EnumEntry::GetNameSpace(LxGenNameSpace &aNameSpace) const
{
    return Give(aNameSpace, mDescription.mTexts.mNameSpace);
}

LxResult EnumEntry::IsAvailable(bool &aAvailable) const
{
    const NodeAccess &access = mDescription.mAccess;
    if (access.mImplemented.empty() && access.mAvailable.empty() && access.mProblem.empty()) {
        return Give(aAvailable, true);
    }
    aAvailable = false;
    return mEngine.Run([&] { return mEngine.IsAvailable(access, aAvailable); });
}

EnumFeature::EnumFeature(NodeEngine &aEngine, NodeIndex aNode, std::string aCategory,
                         std::shared_ptr<SinkDomain> aDomain)
    : FeatureOf(aEngine, aNode, std::move(aCategory), std::move(aDomain))
{
    for (const EnumEntryDescription &entry : mCore.Description().mEntries) {
        mEntries.push_back(std::make_unique<EnumEntry>(aEngine, entry));
    }
}

LxResult EnumFeature::GetValue(int64_t &aValue) const
{
    return mCore.Read([&] { return mCore.mEngine.GetInteger(mCore.mNode, aValue); });
}

LxResult EnumFeature::GetValue(LxString &aName) const
{
    int64_t value = 0;
    LxResult result = GetValue(value);
    if (!result.IsOK()) {
        return result;
    }
    const EnumEntry *entry = FindByValue(value);
    return entry ? entry->GetName(aName) : NoEntry(value);
}

LxResult EnumFeature::SetValue(int64_t aValue)
{
    const EnumEntry *entry = FindByValue(aValue);
    return entry ? SetEntry(*entry) : mCore.Write([&] { return NoEntry(aValue); });
}

LxResult EnumFeature::SetValue(const LxString &aName)
{
    const EnumEntry *entry = FindByName(aName.GetString());
    return entry ? SetEntry(*entry) : mCore.Write([&] { return NoEntry(aName.GetString()); });
}

LxResult EnumFeature::SetEntry(const EnumEntry &aEntry)
{
    return mCore.Write([&] {
        bool available = false;
        LxResult result = aEntry.IsAvailable(available);
        if (!result.IsOK()) {
            return result;
        }
        if (!available) {
            return LxResult(LxResultCode::NotAvailable,
                            "The entry \"" + aEntry.GetEntry().mTexts.mName + "\" is not available at the moment.");
        }
        return mCore.mEngine.SetInteger(mCore.mNode, aEntry.GetEntry().mValue);
    });
}

LxResult EnumFeature::GetEntriesCount(int64_t &aCount) const
{
    return Give(aCount, static_cast<int64_t>(mEntries.size()));
}

LxResult EnumFeature::GetEntryByIndex(int64_t aIndex, const LxGenEnumEntry **aEntry) const
{
    if (!aEntry) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the entry.");
    }
    *aEntry = nullptr;
    if (aIndex < 0 || aIndex >= static_cast<int64_t>(mEntries.size())) {
        return LxResult(LxResultCode::OutOfRange, "There is no entry " + std::to_string(aIndex) + ".");
    }
    *aEntry = mEntries[static_cast<size_t>(aIndex)].get();
    return LxResult();
}

LxResult EnumFeature::GetEntryByValue(int64_t aValue, const LxGenEnumEntry **aEntry) const
{
    if (!aEntry) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the entry.");
    }
    *aEntry = FindByValue(aValue);
    return *aEntry ? LxResult() : NoEntry(aValue);
}

LxResult EnumFeature::GetEntryByName(const LxString &aName, const LxGenEnumEntry **aEntry) const
{
    if (!aEntry) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the entry.");
    }
    *aEntry = FindByName(aName.GetString());
    return *aEntry ? LxResult() : NoEntry(aName.GetString());
}

LxString EnumFeature::ToString() const
{
    LxString name;
    GetValue(name);
    return name;
}

LxResult EnumFeature::FromString(const LxString &aText)
{
    if (FindByName(aText.GetString())) {
        return SetValue(aText);
    }
    int64_t value = 0;
    if (IntegerFromText(aText.GetString(), value) && FindByValue(value)) {
        return SetValue(value);
    }
    return LxResult(LxResultCode::InvalidParameter, "There is no entry \"" + aText.GetString() + "\".");
}

LxResult EnumFeature::ReadState(std::string &aState) const
{
    int64_t value = 0;
    LxResult result = mCore.mEngine.GetInteger(mCore.mNode, value);
    aState += std::to_string(value);
    return result;
}

const EnumEntry *EnumFeature::FindByValue(int64_t aValue) const
{
    for (const auto &entry : mEntries) {
        if (entry->GetEntry().mValue == aValue) {
            return entry.get();
        }
    }
    return nullptr;
}

const EnumEntry *EnumFeature::FindByName(const std::string &aName) const
{
    for (const auto &entry : mEntries) {
        if (entry->GetEntry().mTexts.mName == aName) {
            return entry.get();
        }
    }
    return nullptr;
}

}  // namespace LxDetail
