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
    std::atomic<int> mUnregistrations{0};

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
        ++mUnregistrations;
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
    LxDetail::SinkList<LxGenEventSink> mSinks;
};

/// A value that can be read and written.
template <class Interface, class Value>
class FakeValue : public FakeOf<Interface>
{
public:
    using FakeOf<Interface>::FakeOf;

    using Interface::GetValue;
    using Interface::SetValue;

    std::atomic<Value> mValue{};

    LxResult GetValue(Value &aValue) const override { return this->Give("GetValue", aValue, mValue.load()); }
    LxResult SetValue(Value aValue) override
    {
        LxResult result = this->mScript.Call("SetValue");
        if (result.IsOK()) {
            mValue = aValue;
            if (this->mNotifies) {
                this->Notify();
            }
        }
        return result;
    }
};

template <class Interface, class Value>
class FakeNumber : public FakeValue<Interface, Value>
{
public:
    using FakeValue<Interface, Value>::FakeValue;

    std::atomic<Value> mMin{};
    std::atomic<Value> mMax{};
    std::string mUnit;
    int mRepresentation = LxGenRepresentationPureNumber;

    LxResult GetMin(Value &aMin) const override { return this->Give("GetMin", aMin, mMin.load()); }
    LxResult GetMax(Value &aMax) const override { return this->Give("GetMax", aMax, mMax.load()); }
    LxResult GetUnit(LxString &aUnit) const override { return this->Give("GetUnit", aUnit, mUnit); }
    LxResult GetRepresentation(int &aRepresentation) const override
    {
        return this->Give("GetRepresentation", aRepresentation, mRepresentation);
    }
};

class FakeInteger : public FakeNumber<LxGenInteger, int64_t>
{
public:
    explicit FakeInteger(const std::string &aName) : FakeNumber(aName, LxGenTypeInteger) { mMax = 100; }

    int64_t mIncrement = 1;

    LxResult GetIncrement(int64_t &aIncrement) const override { return Give("GetIncrement", aIncrement, mIncrement); }
    LxString ToString() const override
    {
        mScript.Call("ToString");
        return mAttributes.mText.IsEmpty() ? LxString(std::to_string(mValue.load())) : mAttributes.mText;
    }
};

class FakeFloat : public FakeNumber<LxGenFloat, double>
{
public:
    explicit FakeFloat(const std::string &aName) : FakeNumber(aName, LxGenTypeFloat) { mMax = 1e6; }
};

class FakeBoolean : public FakeValue<LxGenBoolean, bool>
{
public:
    explicit FakeBoolean(const std::string &aName) : FakeValue(aName, LxGenTypeBoolean) {}
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

/// What an entry and a category have in common. Texts that are not set are made from the name.
template <class Interface>
class FakeNamed : public Interface
{
public:
    explicit FakeNamed(const std::string &aName) : mName(aName) {}

    std::string mName;
    std::string mDescription;
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    LxGenNameSpace mNameSpace = LxGenNameSpaceStandard;
    LxResult mNameResult;

    LxResult GetName(LxString &aName) const override { return Give(aName, mName, mNameResult); }
    LxResult GetDisplayName(LxString &aName) const override { return Give(aName, "The " + mName, mNameResult); }
    LxResult GetToolTip(LxString &aTip) const override { return Give(aTip, "tip of " + mName); }
    LxResult GetDescription(LxString &aText) const override { return Give(aText, mDescription); }
    LxResult GetVisibility(LxGenVisibility &aVisibility) const override { return Give(aVisibility, mVisibility); }
    LxResult GetNameSpace(LxGenNameSpace &aNameSpace) const override { return Give(aNameSpace, mNameSpace); }

protected:
    template <class To, class From>
    static LxResult Give(To &aTo, const From &aFrom, const LxResult &aResult = LxResult())
    {
        aTo = aFrom;
        return aResult;
    }
};

class FakeEntry : public FakeNamed<LxGenEnumEntry>
{
public:
    FakeEntry(const std::string &aName, int64_t aValue) : FakeNamed(aName), mValue(aValue) {}

    using LxGenEnumEntry::IsAvailable;

    int64_t mValue;
    std::atomic<bool> mAvailable{true};

    LxResult GetValue(int64_t &aValue) const override { return Give(aValue, mValue); }
    LxResult IsAvailable(bool &aAvailable) const override { return Give(aAvailable, mAvailable.load()); }
};

class FakeCategory : public FakeNamed<LxGenCategory>
{
public:
    using FakeNamed::FakeNamed;
    using LxGenCategory::IsImplemented;

    std::atomic<bool> mImplemented{true};

    LxResult IsImplemented(bool &aImplemented) const override { return Give(aImplemented, mImplemented.load()); }
};

class FakeEnum : public FakeValue<LxGenEnum, int64_t>
{
public:
    explicit FakeEnum(const std::string &aName) : FakeValue(aName, LxGenTypeEnum) {}

    std::vector<std::unique_ptr<FakeEntry>> mEntries;
    bool mHasNullEntries = false;  // whether GetEntryByValue() succeeds with null

    FakeEntry &Add(const std::string &aName, int64_t aValue)
    {
        mEntries.push_back(std::make_unique<FakeEntry>(aName, aValue));
        return *mEntries.back();
    }

    using FakeValue::GetValue;
    using FakeValue::SetValue;
    LxResult GetValue(LxString &) const override { return LxResultCode::NotSupported; }
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
