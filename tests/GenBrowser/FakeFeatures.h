#pragma once

// Features written by hand: every call can fail, take its time, be counted. For what no GenICam XML can express.

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "LxBase/SinkList.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxGenICam/LxGenParameterList.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"

/// What a fake does when it is called: the same for all kinds. Thread-safe.
class FakeScript
{
public:
    /// From now on a call of this name ends with the result.
    void Fail(const std::string &aCall, const LxResult &aResult)
    {
        const std::lock_guard lock(mMutex);
        mFailures[aCall] = aResult;
    }
    void Succeed(const std::string &aCall)
    {
        const std::lock_guard lock(mMutex);
        mFailures.erase(aCall);
    }
    /// Runs at every call, on the caller's thread, with its name.
    void OnCall(std::function<void(const std::string &)> aHook)
    {
        const std::lock_guard lock(mMutex);
        mHook = std::move(aHook);
    }
    void SetDelay(std::chrono::microseconds aDelay) { mDelay = aDelay.count(); }
    int Count(const std::string &aCall) const
    {
        const std::lock_guard lock(mMutex);
        const auto found = mCalls.find(aCall);
        return found == mCalls.end() ? 0 : found->second;
    }

    LxResult Call(const std::string &aCall)
    {
        std::function<void(const std::string &)> hook;
        LxResult result;
        {
            const std::lock_guard lock(mMutex);
            ++mCalls[aCall];
            hook = mHook;
            if (const auto found = mFailures.find(aCall); found != mFailures.end()) {
                result = found->second;
            }
        }
        if (hook) {
            hook(aCall);
        }
        if (mDelay > 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(mDelay));
        }
        return result;
    }

private:
    mutable std::mutex mMutex;  // guards everything below
    std::map<std::string, LxResult> mFailures;
    std::map<std::string, int> mCalls;
    std::function<void(const std::string &)> mHook;
    std::atomic<long long> mDelay{0};
};

/// What all kinds have.
struct FakeAttributes
{
    std::string mName;
    std::string mDisplayName;
    std::string mToolTip;
    std::string mDescription;
    std::string mCategory = "Root\\General";
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    LxGenNameSpace mNameSpace = LxGenNameSpaceStandard;
    std::vector<LxGenParameter *> mSelected;
    std::vector<LxGenParameter *> mSelecting;
    LxString mText;  // of ToString()
};

template <class Interface>
class FakeOf : public Interface
{
public:
    FakeOf(const std::string &aName, LxGenType aType) : mType(aType)
    {
        mAttributes.mName = aName;
        mAttributes.mDisplayName = "The " + aName;
        mAttributes.mToolTip = "tip of " + aName;
        mAttributes.mDescription = "about " + aName;
    }

    using Interface::IsAvailable;
    using Interface::IsImplemented;
    using Interface::IsReadable;
    using Interface::IsWritable;

    FakeAttributes mAttributes;
    mutable FakeScript mScript;
    LxGenType mType;
    std::atomic<bool> mImplemented{true};
    std::atomic<bool> mAvailable{true};
    std::atomic<bool> mReadable{true};
    std::atomic<bool> mWritable{true};
    std::atomic<bool> mNotifies{true};  // whether a write calls the sinks

    void Notify()
    {
        mSinks.Notify([this](LxGenEventSink *aSink) { aSink->OnParameterUpdate(this); });
    }
    bool HasSinks() const { return !mSinks.IsEmpty(); }

    LxResult GetType(LxGenType &aType) const override { return Give("GetType", aType, mType); }
    LxResult GetName(LxString &aName) const override { return Give("GetName", aName, mAttributes.mName); }
    LxResult GetDisplayName(LxString &aName) const override
    {
        return Give("GetDisplayName", aName, mAttributes.mDisplayName);
    }
    LxResult GetToolTip(LxString &aTip) const override { return Give("GetToolTip", aTip, mAttributes.mToolTip); }
    LxResult GetDescription(LxString &aText) const override
    {
        return Give("GetDescription", aText, mAttributes.mDescription);
    }
    LxResult GetCategory(LxString &aPath) const override { return Give("GetCategory", aPath, mAttributes.mCategory); }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override
    {
        return Give("GetVisibility", aVisibility, mAttributes.mVisibility);
    }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override
    {
        return Give("GetNameSpace", aNameSpace, mAttributes.mNameSpace);
    }
    LxResult IsImplemented(bool &aValue) const override { return Give("IsImplemented", aValue, mImplemented.load()); }
    LxResult IsAvailable(bool &aValue) const override { return Give("IsAvailable", aValue, mAvailable.load()); }
    LxResult IsReadable(bool &aValue) const override { return Give("IsReadable", aValue, mReadable.load()); }
    LxResult IsWritable(bool &aValue) const override { return Give("IsWritable", aValue, mWritable.load()); }
    LxResult GetSelectedParameters(LxGenParameterList &aList) const override
    {
        return Fill("GetSelectedParameters", aList, mAttributes.mSelected);
    }
    LxResult GetSelectingParameters(LxGenParameterList &aList) const override
    {
        return Fill("GetSelectingParameters", aList, mAttributes.mSelecting);
    }
    LxString ToString() const override
    {
        mScript.Call("ToString");
        return mAttributes.mText;
    }
    LxResult FromString(const LxString &) override { return LxResultCode::NotSupported; }
    LxResult RegisterEventSink(LxGenEventSink *aSink) override
    {
        mSinks.Add(aSink);
        return mScript.Call("RegisterEventSink");
    }
    LxResult UnregisterEventSink(LxGenEventSink *aSink) override
    {
        return mSinks.Remove(aSink) ? LxResult() : LxResult(LxResultCode::NotFound);
    }

protected:
    template <class To, class From>
    LxResult Give(const char *aCall, To &aTo, const From &aFrom) const
    {
        LxResult result = mScript.Call(aCall);
        if (result.IsOK()) {
            aTo = aFrom;
        }
        return result;
    }
    LxResult Fill(const char *aCall, LxGenParameterList &aList, const std::vector<LxGenParameter *> &aFrom) const
    {
        aList.Clear();
        for (LxGenParameter *parameter : aFrom) {
            aList.Add(parameter);
        }
        return mScript.Call(aCall);
    }
    template <class Value>
    LxResult Take(std::atomic<Value> &aTo, Value aFrom)
    {
        LxResult result = mScript.Call("SetValue");
        if (result.IsOK()) {
            aTo = aFrom;
            if (mNotifies) {
                Notify();
            }
        }
        return result;
    }

    LxDetail::SinkList<LxGenEventSink> mSinks;
};

class FakeInteger : public FakeOf<LxGenInteger>
{
public:
    explicit FakeInteger(const std::string &aName) : FakeOf(aName, LxGenTypeInteger) {}

    std::atomic<int64_t> mValue{0};
    std::atomic<int64_t> mMin{0};
    std::atomic<int64_t> mMax{100};
    int64_t mIncrement = 1;
    std::string mUnit;
    int mRepresentation = LxGenRepresentationPureNumber;

    LxResult GetValue(int64_t &aValue) const override { return Give("GetValue", aValue, mValue.load()); }
    LxResult SetValue(int64_t aValue) override { return Take(mValue, aValue); }
    LxResult GetMin(int64_t &aMin) const override { return Give("GetMin", aMin, mMin.load()); }
    LxResult GetMax(int64_t &aMax) const override { return Give("GetMax", aMax, mMax.load()); }
    LxResult GetIncrement(int64_t &aIncrement) const override { return Give("GetIncrement", aIncrement, mIncrement); }
    LxResult GetUnit(LxString &aUnit) const override { return Give("GetUnit", aUnit, mUnit); }
    LxResult GetRepresentation(int &aRepresentation) const override
    {
        return Give("GetRepresentation", aRepresentation, mRepresentation);
    }
    LxString ToString() const override
    {
        mScript.Call("ToString");
        return mAttributes.mText.IsEmpty() ? LxString(std::to_string(mValue.load())) : mAttributes.mText;
    }
};

class FakeFloat : public FakeOf<LxGenFloat>
{
public:
    explicit FakeFloat(const std::string &aName) : FakeOf(aName, LxGenTypeFloat) {}

    std::atomic<double> mValue{0.0};
    std::atomic<double> mMin{0.0};
    std::atomic<double> mMax{1e6};
    std::string mUnit;

    LxResult GetValue(double &aValue) const override { return Give("GetValue", aValue, mValue.load()); }
    LxResult SetValue(double aValue) override { return Take(mValue, aValue); }
    LxResult GetMin(double &aMin) const override { return Give("GetMin", aMin, mMin.load()); }
    LxResult GetMax(double &aMax) const override { return Give("GetMax", aMax, mMax.load()); }
    LxResult GetUnit(LxString &aUnit) const override { return Give("GetUnit", aUnit, mUnit); }
    LxResult GetRepresentation(int &aRepresentation) const override
    {
        aRepresentation = LxGenRepresentationPureNumber;
        return LxResult();
    }
};

class FakeBoolean : public FakeOf<LxGenBoolean>
{
public:
    explicit FakeBoolean(const std::string &aName) : FakeOf(aName, LxGenTypeBoolean) {}

    std::atomic<bool> mValue{false};

    LxResult GetValue(bool &aValue) const override { return Give("GetValue", aValue, mValue.load()); }
    LxResult SetValue(bool aValue) override { return Take(mValue, aValue); }
};

class FakeString : public FakeOf<LxGenString>
{
public:
    explicit FakeString(const std::string &aName) : FakeOf(aName, LxGenTypeString) {}

    int64_t mMaxLength = 16;

    std::string Text() const
    {
        const std::lock_guard lock(mMutex);
        return mValue;
    }
    void SetText(const std::string &aText)
    {
        const std::lock_guard lock(mMutex);
        mValue = aText;
    }
    LxResult GetValue(LxString &aValue) const override { return Give("GetValue", aValue, Text()); }
    LxResult SetValue(const LxString &aValue) override
    {
        LxResult result = mScript.Call("SetValue");
        if (result.IsOK()) {
            SetText(aValue.GetString());
            Notify();
        }
        return result;
    }
    LxResult GetMaxLength(int64_t &aMaxLength) const override { return Give("GetMaxLength", aMaxLength, mMaxLength); }

private:
    mutable std::mutex mMutex;  // guards mValue
    std::string mValue;
};

class FakeCommand : public FakeOf<LxGenCommand>
{
public:
    explicit FakeCommand(const std::string &aName) : FakeOf(aName, LxGenTypeCommand) { mReadable = false; }

    std::atomic<bool> mDone{true};

    LxResult IsDone(bool &aDone) const override { return Give("IsDone", aDone, mDone.load()); }
    LxResult Execute() override
    {
        LxResult result = mScript.Call("Execute");
        Notify();
        return result;
    }
};

class FakeRegister : public FakeOf<LxGenRegister>
{
public:
    explicit FakeRegister(const std::string &aName) : FakeOf(aName, LxGenTypeRegister) {}

    int64_t mLength = 64;

    LxResult GetLength(int64_t &aLength) const override { return Give("GetLength", aLength, mLength); }
    LxResult Get(uint8_t *, int64_t) const override { return LxResultCode::NotSupported; }
    LxResult Set(const uint8_t *, int64_t) override { return LxResultCode::NotSupported; }
};

class FakeEntry : public LxGenEnumEntry
{
public:
    FakeEntry(const std::string &aName, int64_t aValue) : mName(aName), mValue(aValue) {}

    using LxGenEnumEntry::IsAvailable;

    std::string mName;
    int64_t mValue;
    std::string mDescription;
    std::atomic<bool> mAvailable{true};
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    LxGenNameSpace mNameSpace = LxGenNameSpaceStandard;
    LxResult mNameResult;

    LxResult GetName(LxString &aName) const override
    {
        aName = mName;
        return mNameResult;
    }
    LxResult GetDisplayName(LxString &aName) const override
    {
        aName = "The " + mName;
        return mNameResult;
    }
    LxResult GetToolTip(LxString &aToolTip) const override
    {
        aToolTip = "tip of " + mName;
        return LxResult();
    }
    LxResult GetDescription(LxString &aText) const override
    {
        aText = mDescription;
        return LxResult();
    }
    LxResult GetValue(int64_t &aValue) const override
    {
        aValue = mValue;
        return LxResult();
    }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override
    {
        aVisibility = mVisibility;
        return LxResult();
    }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override
    {
        aNameSpace = mNameSpace;
        return LxResult();
    }
    LxResult IsAvailable(bool &aAvailable) const override
    {
        aAvailable = mAvailable;
        return LxResult();
    }
};

class FakeEnum : public FakeOf<LxGenEnum>
{
public:
    explicit FakeEnum(const std::string &aName) : FakeOf(aName, LxGenTypeEnum) {}

    std::atomic<int64_t> mValue{0};
    std::vector<std::unique_ptr<FakeEntry>> mEntries;
    bool mHasNullEntries = false;  // whether GetEntryByValue() succeeds with null

    FakeEntry &Add(const std::string &aName, int64_t aValue)
    {
        mEntries.push_back(std::make_unique<FakeEntry>(aName, aValue));
        return *mEntries.back();
    }

    LxResult GetValue(int64_t &aValue) const override { return Give("GetValue", aValue, mValue.load()); }
    LxResult GetValue(LxString &) const override { return LxResultCode::NotSupported; }
    LxResult SetValue(int64_t aValue) override { return Take(mValue, aValue); }
    LxResult SetValue(const LxString &) override { return LxResultCode::NotSupported; }
    LxResult GetEntriesCount(int64_t &aCount) const override
    {
        return Give("GetEntriesCount", aCount, static_cast<int64_t>(mEntries.size()));
    }
    LxResult GetEntryByIndex(int64_t aIndex, const LxGenEnumEntry **aEntry) const override
    {
        *aEntry = mEntries[static_cast<size_t>(aIndex)].get();
        return LxResult();
    }
    LxResult GetEntryByValue(int64_t aValue, const LxGenEnumEntry **aEntry) const override
    {
        *aEntry = nullptr;
        for (const auto &entry : mEntries) {
            if (entry && entry->mValue == aValue) {
                *aEntry = entry.get();
            }
        }
        LxResult result = mScript.Call("GetEntryByValue");
        return result.IsOK() && !*aEntry && !mHasNullEntries
                   ? LxResult(LxResultCode::NotFound, "LxGenEnum.cpp:77 No such entry.")
                   : result;
    }
    LxResult GetEntryByName(const LxString &, const LxGenEnumEntry **) const override
    {
        return LxResultCode::NotSupported;
    }
};

class FakeCategory : public LxGenCategory
{
public:
    explicit FakeCategory(const std::string &aName) : mName(aName) {}

    using LxGenCategory::IsImplemented;

    std::string mName;
    std::string mDescription;
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    LxGenNameSpace mNameSpace = LxGenNameSpaceStandard;
    std::atomic<bool> mImplemented{true};

    LxResult GetName(LxString &aName) const override
    {
        aName = mName;
        return LxResult();
    }
    LxResult GetDisplayName(LxString &aName) const override
    {
        aName = "The " + mName;
        return LxResult();
    }
    LxResult GetToolTip(LxString &aToolTip) const override
    {
        aToolTip = "tip of " + mName;
        return LxResult();
    }
    LxResult GetDescription(LxString &aText) const override
    {
        aText = mDescription;
        return LxResult();
    }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override
    {
        aVisibility = mVisibility;
        return LxResult();
    }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override
    {
        aNameSpace = mNameSpace;
        return LxResult();
    }
    LxResult IsImplemented(bool &aImplemented) const override
    {
        aImplemented = mImplemented;
        return LxResult();
    }
};

/// An array of fakes. Categories are looked up by their bare names.
class FakeArray : public LxGenParameterArray
{
public:
    template <class Feature>
    Feature &Add(const std::string &aName, const std::string &aCategory = "Root\\General")
    {
        auto feature = std::make_unique<Feature>(aName);
        feature->mAttributes.mCategory = aCategory;
        Feature &added = *feature;
        mFeatures.push_back(std::move(feature));
        return added;
    }
    FakeCategory &AddCategory(const std::string &aName)
    {
        auto &category = mCategories[aName];
        category = std::make_unique<FakeCategory>(aName);
        return *category;
    }

    FakeScript mScript;
    std::atomic<int> mAccessMode{0};
    std::function<void()> mOnPoll;  // set before the array is used

    uint32_t GetCount() const override { return static_cast<uint32_t>(mFeatures.size()); }
    LxGenParameter *operator[](uint32_t aIndex) const override { return mFeatures[aIndex].get(); }
    LxGenParameter *Get(const LxString &) const override { return nullptr; }
    LxGenCategory *GetCategory(const LxString &aName) const override
    {
        const auto found = mCategories.find(aName.GetString());
        return found == mCategories.end() ? nullptr : found->second.get();
    }
    int GetAccessMode() const override { return mAccessMode; }
    void InvalidateCache() override { mScript.Call("InvalidateCache"); }
    LxResult Poll() override
    {
        LxResult result = mScript.Call("Poll");
        if (mOnPoll) {
            mOnPoll();
        }
        return result;
    }

private:
    std::vector<std::unique_ptr<LxGenParameter>> mFeatures;
    std::map<std::string, std::unique_ptr<FakeCategory>> mCategories;
};
