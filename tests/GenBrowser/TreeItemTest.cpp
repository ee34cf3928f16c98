#include "TreeItemTest.h"

#include <QtCore/QLocale>
#include <QtTest/QSignalSpy>
#include <limits>

namespace
{

// What the constructor reads

TEST(TreeItem, AFeatureHasItsTexts)
{
    FakeInteger feature("Width");
    feature.mAttributes.mVisibility = LxGenVisibilityExpert;
    feature.mAttributes.mNameSpace = LxGenNameSpaceCustom;
    const Item item(feature);
    EXPECT_EQ(item.Name(), "Width");
    EXPECT_EQ(item.DisplayName(), "The Width");
    EXPECT_EQ(item.ToolTip(), "tip of Width");
    EXPECT_EQ(item.TypeText(), "Integer");
    EXPECT_EQ(item.NameSpaceText(), "Custom");
    EXPECT_EQ(item.VisibilityText(), "Expert");
    EXPECT_EQ(item.Parameter(), &feature);
    EXPECT_EQ(item.Category(), nullptr);
}

TEST(TreeItem, ACategoryHasItsTextsAndNoValue)
{
    FakeCategory category("Image");
    GenBrowserTreeItem item(nullptr, nullptr, &category, LxGenVisibilityGuru, false);
    EXPECT_EQ(item.Name(), "Image");
    EXPECT_EQ(item.DisplayName(), "The Image");
    EXPECT_EQ(item.ToolTip(), "tip of Image");
    EXPECT_EQ(item.NameSpaceText(), "Standard");
    EXPECT_EQ(item.TypeText(), "");
    EXPECT_EQ(item.VisibilityText(), "");
    EXPECT_EQ(item.ValueText(), "");
    EXPECT_EQ(item.ErrorMsg(), "");
    EXPECT_FALSE(item.IsReadable() || item.IsWritable() || item.IsImplemented() || item.IsAvailable());
    EXPECT_TRUE(item.IsDone());
}

TEST(TreeItem, TheRootIsEmpty)
{
    const GenBrowserTreeItem item(nullptr, nullptr, nullptr, LxGenVisibilityGuru, false);
    EXPECT_EQ(item.Name(), "");
    EXPECT_EQ(item.Description(), "");
    EXPECT_EQ(item.ValueText(), "");
}

TEST(TreeItem, FailuresOfTheConstructorsReadsAreIgnored)
{
    FakeInteger feature("Width");
    for (const char *call : {"GetName", "GetToolTip", "GetDisplayName", "GetVisibility", "GetNameSpace", "GetType",
                             "GetSelectedParameters", "GetSelectingParameters", "RegisterEventSink"})
    {
        feature.mScript.Fail(call, Located("Timeout"));
    }
    feature.mAttributes.mSelected = {&feature};
    const Item item(feature);
    EXPECT_EQ(item.Name(), "");
    EXPECT_EQ(item.TypeText(), "");
    EXPECT_TRUE(item.SelectedParameters().isEmpty());
}

TEST(TreeItem, SelectorsAndSelectedFeaturesAreKept)
{
    FakeInteger feature("Gain");
    FakeInteger selector("GainSelector");
    FakeInteger selected("GainAuto");
    feature.mAttributes.mSelecting = {&selector};
    feature.mAttributes.mSelected = {&selected, &selector};
    const Item item(feature);
    EXPECT_EQ(item.SelectingParameters(), QList<LxGenParameter *>({&selector}));
    EXPECT_EQ(item.SelectedParameters(), QList<LxGenParameter *>({&selected, &selector}));
}

TEST(TreeItem, TheRepresentationMakesAnAddressWhereTheNameDoesNot)
{
    FakeInteger ip("Peer");
    ip.mRepresentation = LxGenRepresentationIPV4Address;
    FakeInteger mac("PeerHardware");
    mac.mRepresentation = LxGenRepresentationMACAddress;
    FakeInteger named("GevMACAddress");
    named.mRepresentation = LxGenRepresentationIPV4Address;
    FakeInteger failing("Other");
    failing.mRepresentation = LxGenRepresentationIPV4Address;
    failing.mScript.Fail("GetRepresentation", Located("Timeout"));
    EXPECT_TRUE(Item(ip).IsIPAddress());
    EXPECT_TRUE(Item(mac).IsMACAddress());
    EXPECT_TRUE(Item(named).IsMACAddress());
    EXPECT_FALSE(Item(named).IsIPAddress());
    EXPECT_FALSE(Item(failing).IsIPAddress());
}

TEST(TreeItem, TheNameMakesAnAddressOfAnyKind)
{
    FakeString text("SourceIPAddress");
    EXPECT_TRUE(Item(text).IsIPAddress());
}

TEST(TreeItem, AnswersBothOfItsNamesToTheMetaObjectSystem)
{
    FakeInteger feature("Width");
    Item item(feature);
    EXPECT_NE(item.qt_metacast("GenBrowserTreeItem"), nullptr);
    EXPECT_NE(item.qt_metacast("LxGenEventSink"), nullptr);
    EXPECT_EQ(item.qt_metacast("Other"), nullptr);
    for (const char *slot : {"Execute()", "UpdateDataSlot(QString,QString,bool,bool,bool,bool,bool)"}) {
        EXPECT_GE(item.metaObject()->indexOfSlot(slot), 0) << slot;
    }
    EXPECT_GE(item.metaObject()->indexOfSignal("UpdateDataSignal(QString,QString,bool,bool,bool,bool,bool)"), 0);
}

TEST(TreeItem, IsASinkOfItsFeatureAsLongAsItLives)
{
    FakeInteger feature("Width");
    {
        const Item item(feature);
        EXPECT_TRUE(feature.HasSinks());
    }
    EXPECT_FALSE(feature.HasSinks());
}

// Refreshing

TEST(TreeItem, TheFirstAccessQuestionThatFailsEndsTheRefreshWithItsStage)
{
    const std::pair<const char *, const char *> stages[] = {
        {"IsImplemented", "Error retrieving implemented attribute: Timeout"},
        {"IsAvailable", "Error retrieving available attribute: Timeout"},
        {"IsReadable", "Error retrieving readable attribute: Timeout"},
        {"IsWritable", "Error retrieving writable attribute: Timeout"},
    };
    for (const auto &[call, text] : stages) {
        FakeInteger feature("Width");
        feature.mScript.Fail(call, Located("Timeout"));
        Item item(feature);
        EXPECT_EQ(item.ErrorMsg(), text);
        EXPECT_EQ(item.ValueText(), "");
        EXPECT_EQ(feature.mScript.Count("GetValue"), 0);
    }
}

TEST(TreeItem, AccessFlagsArriveWithTheRefresh)
{
    FakeInteger feature("Width");
    feature.mWritable = false;
    Item item(feature);
    EXPECT_TRUE(item.IsImplemented() && item.IsAvailable() && item.IsReadable());
    EXPECT_FALSE(item.IsWritable());
    feature.mReadable = false;
    EXPECT_EQ(item.RefreshedText(), "");
    EXPECT_FALSE(item.IsReadable());
}

TEST(TreeItem, WhatIsNotImplementedOrNotAvailableSaysSo)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mAvailable = false;
    EXPECT_EQ(item.RefreshedText(), "{Not available}");
    feature.mImplemented = false;
    EXPECT_EQ(item.RefreshedText(), "{Not implemented}");
    EXPECT_EQ(feature.mScript.Count("GetValue"), 1);
}

TEST(TreeItem, ACommandWhoseIsDoneSaysFalseShowsExecuting)
{
    FakeCommand command("Go");
    Item item(command);
    EXPECT_EQ(item.ValueText(), "{Command}");
    EXPECT_TRUE(item.IsDone());
    command.mDone = false;
    EXPECT_EQ(item.RefreshedText(), "Executing");
    EXPECT_FALSE(item.IsDone());
    command.mScript.Fail("IsDone", Located("Timeout"));  // unchecked
    EXPECT_EQ(item.RefreshedText(), "{Command}");
    EXPECT_EQ(item.ErrorMsg(), "");
}

TEST(TreeItem, ARegisterShowsThatItIsOne)
{
    FakeRegister bytes("Lut");
    EXPECT_EQ(Item(bytes).ValueText(), "{Register}");
}

TEST(TreeItem, ABooleanShowsItsValue)
{
    FakeBoolean feature("Flag");
    Item item(feature);
    EXPECT_EQ(item.ValueText(), "False");
    feature.mValue = true;
    EXPECT_EQ(item.RefreshedText(), "True");
    feature.mReadable = false;
    EXPECT_EQ(item.RefreshedText(), "");
}

TEST(TreeItem, AnEnumerationShowsTheNameOrTheDisplayNameOfItsEntry)
{
    FakeEnum feature("Mode");
    feature.Add("Off", 0);
    feature.Add("On", 1);
    feature.mValue = 1;
    EXPECT_EQ(Item(feature).ValueText(), "On");
    EXPECT_EQ(Item(feature, true).ValueText(), "The On");
}

TEST(TreeItem, AnEnumerationWhoseEntryCannotBeHadIsAFailedValueRead)
{
    FakeEnum feature("Mode");
    FakeEntry &entry = feature.Add("Off", 0);
    Item item(feature);
    feature.mValue = 7;
    EXPECT_EQ(item.RefreshedError(), "Error reading value: No such entry.");
    feature.mHasNullEntries = true;  // success and a null entry
    EXPECT_EQ(item.RefreshedError(), "Error reading value: No entry has the value 7.");
    feature.mValue = 0;
    entry.mNameResult = Located("no name");
    EXPECT_EQ(item.RefreshedError(), "Error reading value: no name");
}

TEST(TreeItem, AFailedValueReadIsShownAsTheStageAndTheReason)
{
    FakeInteger integer("I");
    FakeFloat number("F");
    FakeBoolean boolean("B");
    FakeString text("S");
    FakeEnum enumeration("E");
    enumeration.Add("Off", 0);
    const auto expectFailure = [](auto &aFeature) {
        aFeature.mScript.Fail("GetValue", Located("Timeout"));
        EXPECT_EQ(Item(aFeature).ErrorMsg(), "Error reading value: Timeout");
        EXPECT_EQ(Item(aFeature).ValueText(), "");
        aFeature.mScript.Succeed("GetValue");
        EXPECT_EQ(Item(aFeature).ErrorMsg(), "");
    };
    expectFailure(integer);
    expectFailure(number);
    expectFailure(boolean);
    expectFailure(text);
    expectFailure(enumeration);
}

TEST(TreeItem, AFailedValueReadKeepsWhatWasSetBefore)
{
    FakeString text("S");
    Item item(text);
    QString error;
    ASSERT_TRUE(item.SetValue(QString("written"), error));
    text.mScript.Fail("GetValue", Located("Timeout"));
    EXPECT_EQ(item.RefreshedText(), "written");
    EXPECT_EQ(item.ErrorMsg(), "Error reading value: Timeout");
}

TEST(TreeItem, AFloatShowsSixDigitsABlankAndTheUnit)
{
    FakeFloat feature("Exposure");
    feature.mValue = 123456.789;
    feature.mUnit = "us %1";
    Item item(feature);
    EXPECT_EQ(item.ValueText(), QLocale().toString(123456.789, 'g', 6) + " us %1");
    feature.mUnit = "";
    EXPECT_EQ(item.RefreshedText(), QLocale().toString(123456.789, 'g', 6) + " ");
    feature.mScript.Fail("GetUnit", Located("Timeout"));
    EXPECT_EQ(item.RefreshedError(), "Error reading unit: Timeout");
    EXPECT_EQ(item.ValueText(), "");
}

TEST(TreeItem, AFloatBeyondItsLimitsSaysSoAndKeepsItsText)
{
    FakeFloat feature("Exposure");
    feature.mValue = 2e6;
    Item item(feature);
    EXPECT_EQ(item.ErrorMsg(), "Parameter out of range");
    EXPECT_EQ(item.ValueText(), QLocale().toString(2e6, 'g', 6) + " ");
    feature.mScript.Fail("GetMax", Located("Timeout"));
    EXPECT_EQ(item.RefreshedError(), "");
    feature.mScript.Succeed("GetMax");
    feature.mValue = -1;
    EXPECT_EQ(item.RefreshedError(), "Parameter out of range");
}

TEST(TreeItem, AnIntegerBeyondItsLimitsSaysSoUnlessItIsAnAddress)
{
    FakeInteger feature("Width");
    feature.mValue = 101;
    feature.mUnit = "px";
    EXPECT_EQ(Item(feature).ErrorMsg(), "Parameter out of range");
    EXPECT_EQ(Item(feature).ValueText(), "101 px");
    FakeInteger address("GevCurrentIPAddress");
    address.mValue = 0xC0A80001;
    EXPECT_EQ(Item(address).ErrorMsg(), "");
    EXPECT_EQ(Item(address).ValueText(), "192.168.0.1");
}

TEST(TreeItem, AMACAddressIsShownAsOne)
{
    FakeInteger feature("GevMACAddress");
    feature.mValue = 0x0000AABBCCDDEEFF;
    EXPECT_EQ(Item(feature).ValueText(), "AA:BB:CC:DD:EE:FF");
}

TEST(TreeItem, AnIntegerIsWrittenInItsRepresentation)
{
    FakeInteger feature("Address");
    feature.mRepresentation = LxGenRepresentationHexNumber;
    feature.mMin = std::numeric_limits<int64_t>::min();
    feature.mMax = std::numeric_limits<int64_t>::max();
    feature.mValue = 0xBEEF;
    feature.mUnit = "%2";
    EXPECT_EQ(Item(feature).ValueText(), "0xbeef %2");
}

TEST(TreeItem, AStringShowsItsText)
{
    FakeString feature("Name");
    feature.SetText("K\xC3\xA4mera");
    EXPECT_EQ(Item(feature).ValueText(), QString::fromUtf8("K\xC3\xA4mera"));
}

// Choices

TEST(TreeItem, AnEnumerationOffersItsAvailableAndVisibleEntries)
{
    FakeEnum feature("Mode");
    feature.Add("Off", 10);
    feature.Add("Hidden", 11).mVisibility = LxGenVisibilityGuru;
    feature.Add("Gone", 12).mAvailable = false;
    feature.mEntries.push_back(nullptr);
    feature.Add("On", 13);
    feature.mValue = 13;
    int current = -7;
    const QList<FeatureChoice> choices = Item(feature).Choices(current);
    ASSERT_EQ(choices.size(), 2);
    EXPECT_EQ(choices[0].mText, "Off");
    EXPECT_EQ(choices[0].mToolTip, "tip of Off");
    EXPECT_EQ(choices[0].mValue, 10);
    EXPECT_EQ(choices[1].mText, "On");
    EXPECT_EQ(current, 1);
    EXPECT_EQ(Item(feature, true).Choices(current)[1].mText, "The On");
    feature.mValue = 12;
    Item(feature).Choices(current);
    EXPECT_EQ(current, -1);
    EXPECT_EQ(Item(feature, false, LxGenVisibilityGuru).Choices(current).size(), 3);
}

TEST(TreeItem, AnUnreadableEnumerationOffersTheWrittenEntryAsTheCurrentOne)
{
    FakeEnum feature("Mode");
    feature.Add("Off", 0);
    feature.Add("On", 1);
    feature.mReadable = false;
    Item item(feature);
    int current = -7;
    item.Choices(current);
    EXPECT_EQ(current, 0);
    QString error;
    ASSERT_TRUE(item.SetValue(int64_t(1), error));
    item.Choices(current);
    EXPECT_EQ(current, 1);
}

TEST(TreeItem, ABooleanOffersFalseAndTrue)
{
    FakeBoolean feature("Flag");
    feature.mValue = true;
    Item item(feature);
    int current = -7;
    const QList<FeatureChoice> choices = item.Choices(current);
    ASSERT_EQ(choices.size(), 2);
    EXPECT_EQ(choices[0].mText, "False");
    EXPECT_EQ(choices[0].mToolTip, "False");
    EXPECT_EQ(choices[0].mValue, 0);
    EXPECT_EQ(choices[1].mText, "True");
    EXPECT_EQ(choices[1].mToolTip, "True");
    EXPECT_EQ(choices[1].mValue, 1);
    EXPECT_EQ(current, 1);
    feature.mValue = false;
    item.Choices(current);
    EXPECT_EQ(current, 0);
}

TEST(TreeItem, OtherKindsOfferNoChoices)
{
    FakeInteger feature("Width");
    int current = 5;
    EXPECT_TRUE(Item(feature).Choices(current).isEmpty());
    EXPECT_EQ(current, -1);
}

}  // namespace
