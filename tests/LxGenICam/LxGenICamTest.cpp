// What the parameter classes do by themselves, with the least that a parameter can be.

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "LxGenICam/CameraLinkPorts.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenEnumEntry.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxGenICam/LxGenParameterArrayCL.h"
#include "LxGenICam/LxGenParameterList.h"

namespace
{

struct FakeInteger : LxGenInteger
{
    LxResult GetType(LxGenType &aType) const override { return Give(aType, LxGenTypeInteger); }
    LxResult GetName(LxString &aText) const override { return Give(aText, LxString("Fake")); }
    LxResult GetDisplayName(LxString &aText) const override { return Give(aText, LxString("Fake")); }
    LxResult GetToolTip(LxString &aText) const override { return Give(aText, LxString()); }
    LxResult GetDescription(LxString &aText) const override { return Give(aText, LxString()); }
    LxResult GetCategory(LxString &aText) const override { return Give(aText, LxString("Root")); }
    LxResult GetVisibility(LxGenVisibility &aValue) const override { return Give(aValue, mVisibility); }
    LxResult GetNameSpace(LxGenNameSpace &aValue) const override { return Give(aValue, LxGenNameSpaceCustom); }
    using LxGenParameter::IsAvailable;
    using LxGenParameter::IsImplemented;
    using LxGenParameter::IsReadable;
    using LxGenParameter::IsWritable;
    LxResult IsImplemented(bool &aAnswer) const override { return Give(aAnswer, mAnswer); }
    LxResult IsAvailable(bool &aAnswer) const override { return Give(aAnswer, mAnswer); }
    LxResult IsReadable(bool &aAnswer) const override { return Give(aAnswer, mAnswer); }
    LxResult IsWritable(bool &aAnswer) const override { return Give(aAnswer, mAnswer); }
    LxResult GetSelectedParameters(LxGenParameterList &aList) const override
    {
        aList.Clear();
        return mResult;
    }
    LxResult GetSelectingParameters(LxGenParameterList &aList) const override
    {
        aList.Clear();
        return mResult;
    }
    LxString ToString() const override { return std::to_string(mValue); }
    LxResult FromString(const LxString &) override { return LxResultCode::NotSupported; }
    LxResult RegisterEventSink(LxGenEventSink *) override { return mResult; }
    LxResult UnregisterEventSink(LxGenEventSink *) override { return mResult; }
    LxResult GetValue(int64_t &aValue) const override { return Give(aValue, mValue); }
    LxResult SetValue(int64_t aValue) override { return Give(mValue, aValue); }
    LxResult GetMin(int64_t &aValue) const override { return Give(aValue, int64_t(0)); }
    LxResult GetMax(int64_t &aValue) const override { return Give(aValue, int64_t(9)); }
    LxResult GetIncrement(int64_t &aValue) const override { return Give(aValue, int64_t(1)); }
    LxResult GetUnit(LxString &aText) const override { return Give(aText, LxString()); }
    LxResult GetRepresentation(int &aValue) const override { return Give(aValue, 3); }

    template <class Value>
    LxResult Give(Value &aTo, const Value &aFrom) const
    {
        aTo = aFrom;
        return mResult;
    }

    LxResult mResult;
    bool mAnswer = true;
    LxGenVisibility mVisibility = LxGenVisibilityExpert;
    int64_t mValue = 0;
};

struct FakeArray : LxGenParameterArray
{
    uint32_t GetCount() const override { return 1; }
    LxGenParameter *operator[](uint32_t aIndex) const override { return aIndex == 0 ? &mFeature : nullptr; }
    LxGenParameter *Get(const LxString &aName) const override
    {
        return aName == LxString("Fake") ? &mFeature : nullptr;
    }
    LxGenCategory *GetCategory(const LxString &) const override { return nullptr; }
    int GetAccessMode() const override { return 0; }
    void InvalidateCache() override {}
    LxResult Poll() override { return LxResult(); }

    mutable FakeInteger mFeature;
};

}  // namespace

TEST(LxGenParameter, BoolFormsAreFalseForAFailure)
{
    FakeInteger feature;
    EXPECT_TRUE(feature.IsImplemented());
    EXPECT_TRUE(feature.IsAvailable());
    EXPECT_TRUE(feature.IsReadable());
    EXPECT_TRUE(feature.IsWritable());
    feature.mResult = LxResultCode::Timeout;
    EXPECT_FALSE(feature.IsImplemented());
    EXPECT_FALSE(feature.IsAvailable());
    EXPECT_FALSE(feature.IsReadable());
    EXPECT_FALSE(feature.IsWritable());
    EXPECT_FALSE(feature.IsVisible(LxGenVisibilityInvisible));
    feature.mResult = LxResult();
    feature.mAnswer = false;
    EXPECT_FALSE(feature.IsImplemented());
}

TEST(LxGenParameter, ALevelShowsItselfAndTheLowerOnes)
{
    FakeInteger feature;
    for (uint32_t level = 0; level < 4; ++level) {
        for (uint32_t own = 0; own < 4; ++own) {
            feature.mVisibility = LxGenVisibility(own);
            EXPECT_EQ(feature.IsVisible(LxGenVisibility(level)), own <= level) << own << " at " << level;
        }
    }
    feature.mVisibility = LxGenVisibility(9);
    EXPECT_FALSE(feature.IsVisible(LxGenVisibilityInvisible));
}

TEST(LxGenParameterArray, ShortFormsWorkByNameAndKind)
{
    FakeArray array;
    EXPECT_EQ(array.GetInteger("Fake"), &array.mFeature);
    EXPECT_EQ(array.GetBoolean("Fake"), nullptr);
    EXPECT_EQ(array.GetInteger("Other"), nullptr);
    EXPECT_TRUE(array.SetIntegerValue("Fake", 5).IsOK());
    int64_t integer = 0;
    EXPECT_TRUE(array.GetIntegerValue("Fake", integer).IsOK());
    EXPECT_EQ(integer, 5);
    array.mFeature.mResult = LxResultCode::Busy;
    EXPECT_EQ(array.SetIntegerValue("Fake", 6), LxResultCode::Busy);
    double real = 0;
    bool boolean = false;
    LxString text;
    EXPECT_EQ(array.GetIntegerValue("Other", integer), LxResultCode::NotFound);
    EXPECT_EQ(array.SetIntegerValue("Other", 1), LxResultCode::NotFound);
    EXPECT_EQ(array.GetFloatValue("Fake", real), LxResultCode::NotFound);
    EXPECT_EQ(array.SetFloatValue("Fake", 1), LxResultCode::NotFound);
    EXPECT_EQ(array.GetEnumValue("Fake", text), LxResultCode::NotFound);
    EXPECT_EQ(array.SetEnumValue("Fake", "x"), LxResultCode::NotFound);
    EXPECT_EQ(array.GetBooleanValue("Fake", boolean), LxResultCode::NotFound);
    EXPECT_EQ(array.SetBooleanValue("Fake", true), LxResultCode::NotFound);
    EXPECT_EQ(array.GetStringValue("Fake", text), LxResultCode::NotFound);
    EXPECT_EQ(array.SetStringValue("Fake", "x"), LxResultCode::NotFound);
    EXPECT_EQ(array.ExecuteCommand("Fake"), LxResultCode::NotFound);
    EXPECT_EQ(array.ExecuteCommand("Fake").GetDescription(), LxString("There is no command feature \"Fake\"."));
}

TEST(LxGenParameterList, WalksFromTheFirstToTheEnd)
{
    FakeInteger one;
    FakeInteger two;
    LxGenParameterList list;
    EXPECT_EQ(list.GetFirst(), nullptr);
    EXPECT_EQ(list.GetNext(), nullptr);
    list.Add(&one);
    list.Add(&two);
    EXPECT_EQ(list.GetCount(), 2u);
    EXPECT_EQ(list.GetFirst(), &one);
    EXPECT_EQ(list.GetNext(), &two);
    EXPECT_EQ(list.GetNext(), nullptr);
    EXPECT_EQ(list.GetNext(), nullptr);
    EXPECT_EQ(list.GetFirst(), &one);
    list.Clear();
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_EQ(list.GetNext(), nullptr);
}

TEST(LxGenParameterArrayCL, ListsTheRegisteredPorts)
{
    LxStringList list;
    list.Add("old");
    EXPECT_TRUE(LxGenParameterArrayCL::GetPortIDs(list).IsOK());
    EXPECT_EQ(list.GetSize(), 0u);
    EXPECT_TRUE(LxDetail::RegisterCameraLinkPort("b"));
    EXPECT_TRUE(LxDetail::RegisterCameraLinkPort("a"));
    EXPECT_FALSE(LxDetail::RegisterCameraLinkPort("b")) << "taken";
    EXPECT_TRUE(LxGenParameterArrayCL::GetPortIDs(list).IsOK());
    ASSERT_EQ(list.GetSize(), 2u);
    EXPECT_EQ(list.GetItem(0), LxString("b"));
    EXPECT_EQ(list.GetItem(1), LxString("a"));
    LxDetail::UnregisterCameraLinkPort("b");
    LxDetail::UnregisterCameraLinkPort("never");
    LxDetail::UnregisterCameraLinkPort("a");
    EXPECT_TRUE(LxGenParameterArrayCL::GetPortIDs(list).IsOK());
    EXPECT_EQ(list.GetSize(), 0u);
}
