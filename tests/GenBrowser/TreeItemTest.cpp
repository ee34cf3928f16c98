#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtTest/QSignalSpy>
#include <limits>
#include <thread>

#include "FakeFeatures.h"

namespace
{

constexpr auto sMin64 = std::numeric_limits<int64_t>::min();
constexpr auto sMax64 = std::numeric_limits<int64_t>::max();

/// A tree item of a fake.
struct Item : GenBrowserTreeItem
{
    explicit Item(LxGenParameter &aParameter, bool aUseDisplayNames = false,
                  LxGenVisibility aLevel = LxGenVisibilityBeginner)
        : GenBrowserTreeItem(nullptr, &aParameter, nullptr, aLevel, aUseDisplayNames)
    {
    }
    QString RefreshedText()
    {
        Refresh();
        return ValueText();
    }
    QString RefreshedError()
    {
        Refresh();
        return ErrorMsg();
    }
};

LxResult Located(const char *aText)
{
    return LxResult(LxResultCode::Timeout, std::string("LxGenParameter.cpp:120 ") + aText);
}

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
    feature.mMin = sMin64;
    feature.mMax = sMax64;
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

// Write-only features show what was written

TEST(TreeItem, AWriteOnlyIntegerShowsWhatWasWrittenAndNothingBefore)
{
    FakeInteger feature("Offset");
    feature.mReadable = false;
    feature.mUnit = "px";
    Item item(feature);
    EXPECT_EQ(item.ValueText(), "");
    QString error;
    ASSERT_TRUE(item.SetValue(int64_t(5), error));
    EXPECT_EQ(item.ValueText(), "5 px");
    EXPECT_EQ(item.EditText(), "5 px");
}

TEST(TreeItem, WriteOnlyFeaturesOfEveryKindShowWhatWasWritten)
{
    QString error;
    FakeBoolean boolean("B");
    boolean.mReadable = false;
    Item booleanItem(boolean);
    EXPECT_EQ(booleanItem.ValueText(), "");
    ASSERT_TRUE(booleanItem.SetValue(int64_t(7), error));
    EXPECT_EQ(booleanItem.ValueText(), "True");

    FakeEnum enumeration("E");
    enumeration.Add("Off", 0);
    enumeration.Add("On", 1);
    enumeration.mReadable = false;
    Item enumItem(enumeration);
    EXPECT_EQ(enumItem.ValueText(), "");
    ASSERT_TRUE(enumItem.SetValue(int64_t(1), error));
    EXPECT_EQ(enumItem.ValueText(), "On");

    FakeFloat number("F");
    number.mReadable = false;
    number.mUnit = "s";
    Item floatItem(number);
    EXPECT_EQ(floatItem.ValueText(), "");
    ASSERT_TRUE(floatItem.SetValue(2.5, error));
    EXPECT_EQ(floatItem.ValueText(), QLocale().toString(2.5, 'g', 6) + " s");

    FakeString text("S");
    text.mReadable = false;
    Item textItem(text);
    EXPECT_EQ(textItem.ValueText(), "");
    ASSERT_TRUE(textItem.SetValue(QString("x"), error));
    EXPECT_EQ(textItem.ValueText(), "x");
}

TEST(TreeItem, AnUnreadFeatureStartsItsEditorWithTheCachedNumber)
{
    FakeInteger feature("Offset");
    feature.mReadable = false;
    feature.mUnit = "px";
    Item item(feature);
    EXPECT_EQ(item.EditText(), "0 px");
}

// Writing

TEST(TreeItem, WhatIsNotWritableIsNotWritten)
{
    FakeInteger integer("I");
    FakeString text("S");
    FakeFloat number("F");
    integer.mWritable = text.mWritable = number.mWritable = false;
    QString error;
    EXPECT_FALSE(Item(integer).SetValue(int64_t(1), error));
    EXPECT_EQ(error, "Parameter is not (no longer?) writable.");
    error.clear();
    EXPECT_FALSE(Item(text).SetValue(QString("x"), error));
    EXPECT_EQ(error, "Parameter is not (no longer?) writable.");
    error.clear();
    EXPECT_FALSE(Item(number).SetValue(1.0, error));
    EXPECT_EQ(error, "Parameter is not (no longer?) writable.");
    EXPECT_EQ(integer.mScript.Count("SetValue") + text.mScript.Count("SetValue") + number.mScript.Count("SetValue"), 0);
}

TEST(TreeItem, AFailedWriteGivesTheCleanedReasonAndNoCachedValue)
{
    FakeInteger integer("I");
    FakeEnum enumeration("E");
    enumeration.Add("Off", 0);
    FakeBoolean boolean("B");
    FakeString text("S");
    FakeFloat number("F");
    QString error;
    const auto expectFailure = [&error](auto &aFeature, auto aValue) {
        aFeature.mReadable = false;
        aFeature.mScript.Fail("SetValue", Located("Value is locked"));
        Item item(aFeature);
        error.clear();
        EXPECT_FALSE(item.SetValue(aValue, error));
        EXPECT_EQ(error, "Value is locked");
        EXPECT_EQ(item.RefreshedText(), "");
    };
    expectFailure(integer, int64_t(1));
    expectFailure(enumeration, int64_t(0));
    expectFailure(boolean, int64_t(1));
    expectFailure(text, QString("x"));
    expectFailure(number, 1.0);
}

TEST(TreeItem, AnIPAddressIsWrittenAsItsNumber)
{
    FakeInteger feature("GevPersistentIPAddress");
    Item item(feature);
    QString error;
    EXPECT_TRUE(item.SetValue(QString("192.168.0.1"), error));
    EXPECT_EQ(feature.mValue, 0xC0A80001);
    EXPECT_EQ(item.ValueText(), "192.168.0.1");
}

TEST(TreeItem, AnInvalidIPAddressIsNotWritten)
{
    FakeInteger feature("GevPersistentIPAddress");
    Item item(feature);
    for (const char *text : {"192.168.0.256", "192.168.0", "", "-1.2.3.4", "hello"}) {
        QString error;
        EXPECT_FALSE(item.SetValue(QString(text), error)) << text;
        EXPECT_EQ(error, "Invalid IP Address.") << text;
    }
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST(TreeItem, ATextForAnyOtherKindOnlyRefreshes)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mValue = 9;
    QString error;
    EXPECT_TRUE(item.SetValue(QString("5"), error));
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
    EXPECT_EQ(item.ValueText(), "9 ");
}

TEST(TreeItem, ABooleanIsWrittenAsTrueForAnyNumberBut0)
{
    FakeBoolean feature("B");
    Item item(feature);
    QString error;
    EXPECT_TRUE(item.SetValue(int64_t(7), error));
    EXPECT_TRUE(feature.mValue);
    EXPECT_TRUE(item.SetValue(int64_t(0), error));
    EXPECT_FALSE(feature.mValue);
}

TEST(TreeItem, ANotificationWithinTheOwnWriteIsHandled)
{
    FakeInteger feature("Width");
    Item item(feature);
    QString error;
    EXPECT_TRUE(item.SetValue(int64_t(42), error));  // the fake notifies within SetValue()
    EXPECT_EQ(item.ValueText(), "42 ");
}

TEST(TreeItem, AnItemThatASinkOfTheHostDestroysWithinAWriteIsSurvived)
{
    FakeInteger feature("Width");
    auto *item = new Item(feature);
    struct DestroyingSink : LxGenEventSink
    {
        void OnParameterUpdate(LxGenParameter *) override
        {
            delete mItem;
            mItem = nullptr;
        }
        Item *mItem = nullptr;
    } sink;
    sink.mItem = item;
    // Only the host's sink is called, as the item must not be destroyed within its own.
    feature.mNotifies = false;
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "SetValue") {
            sink.OnParameterUpdate(&feature);
        }
    });
    QString error;
    EXPECT_TRUE(item->SetValue(int64_t(42), error));
}

// Commands

TEST(TreeItem, ExecuteRunsACommandAndNothingElse)
{
    FakeCommand command("Go");
    Item item(command);
    item.Execute();
    EXPECT_EQ(command.mScript.Count("Execute"), 1);
    FakeInteger integer("Width");
    Item other(integer);
    other.Execute();
    EXPECT_EQ(integer.mScript.Count("SetValue"), 0);
}

TEST(TreeItem, AFailingCommandIsNotAnError)
{
    FakeCommand command("DeviceReset");
    command.mScript.Fail("Execute", Located("Timeout"));
    Item item(command);
    item.Execute();
    EXPECT_EQ(item.ErrorMsg(), "");
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

// Descriptions

QString Footer(const QString &aName, const QString &aType)
{
    return "<p>Feature Name: <b>" + aName + "</b><br/>Type: <b>" + aType +
           "</b><br/>Name Space: <b>Standard</b><br/>Visibility: <b>Beginner</b></p>";
}

TEST(TreeItemDescription, OfAnIntegerHasRangeAndIncrement)
{
    FakeInteger feature("Width");
    feature.mMin = 0;
    feature.mMax = 65535;
    feature.mIncrement = 4;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Width</h3><p>about Width</p><p>Unbound unsigned 16 bits integer<br/>Increment: <b>4</b></p>" +
                  Footer("Width", "Integer"));
    feature.mMin = 1;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Width</h3><p>about Width</p><p>Min: <b>1</b> Max: <b>65535</b><br/>Increment: <b>4</b></p>" +
                  Footer("Width", "Integer"));
    feature.mRepresentation = LxGenRepresentationHexNumber;
    EXPECT_TRUE(Item(feature).Description().contains("Min: <b>1</b> Max: <b>ffff</b><br/>Increment: <b>4</b>"));
}

TEST(TreeItemDescription, OfAnAddressHasNoRange)
{
    FakeInteger ip("GevSCDA");
    ip.mAttributes.mDescription = "";
    EXPECT_EQ(Item(ip).Description(), "<h3>The GevSCDA</h3>" + Footer("GevSCDA", "Integer"));
    FakeInteger mac("GevMACAddress");
    mac.mAttributes.mDescription = "";
    EXPECT_EQ(Item(mac).Description(), "<h3>The GevMACAddress</h3>" + Footer("GevMACAddress", "Integer"));
}

TEST(TreeItemDescription, OfAFloatHasItsLimitsInTheLocale)
{
    FakeFloat feature("Exposure");
    feature.mMin = 0.5;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Exposure</h3><p>about Exposure</p><p>Min: <b>" + QLocale().toString(0.5, 'g', 6) +
                  "</b> Max: <b>" + QLocale().toString(1e6, 'g', 6) + "</b></p>" + Footer("Exposure", "Float"));
}

TEST(TreeItemDescription, OfStringsAndRegistersHasTheirLengths)
{
    FakeString text("Name");
    EXPECT_EQ(Item(text).Description(),
              "<h3>The Name</h3><p>about Name</p><p>Max Length: <b>16</b> bytes</p>" + Footer("Name", "String"));
    FakeRegister bytes("Lut");
    EXPECT_EQ(Item(bytes).Description(),
              "<h3>The Lut</h3><p>about Lut</p><p>This feature can only be accessed programmatically.<br/>Length: "
              "<b>64</b> bytes</p>" +
                  Footer("Lut", "Register"));
}

TEST(TreeItemDescription, OfBooleansAndCommandsHasNoLimits)
{
    FakeBoolean boolean("Flag");
    EXPECT_EQ(Item(boolean).Description(), "<h3>The Flag</h3><p>about Flag</p>" + Footer("Flag", "Boolean"));
    FakeCommand command("Go");
    EXPECT_EQ(Item(command).Description(), "<h3>The Go</h3><p>about Go</p>" + Footer("Go", "Command"));
}

TEST(TreeItemDescription, OfAnEnumerationEndsWithItsEntries)
{
    FakeEnum feature("Mode");
    feature.Add("Off", 0).mDescription = "nothing %1";
    feature.mEntries.push_back(nullptr);
    FakeEntry &on = feature.Add("On", 255);
    on.mNameSpace = LxGenNameSpaceCustom;
    on.mVisibility = LxGenVisibilityGuru;
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Mode</h3><p>about Mode</p>" + Footer("Mode", "Enum") +
                  "<h4>The Off</h4><p>nothing %1</p><p>Enum Entry Name: <b>Off</b><br/>Enum Entry Value: <b>0 "
                  "(0x0)</b><br/>Name Space: <b>Standard</b><br/>Visibility: <b>Beginner</b></p>"
                  "<h4>The On</h4><p>Enum Entry Name: <b>On</b><br/>Enum Entry Value: <b>255 (0xff)</b><br/>Name "
                  "Space: <b>Custom</b><br/>Visibility: <b>Guru</b></p>");
}

TEST(TreeItemDescription, NamesTheSelectors)
{
    FakeInteger first("LineSelector");
    FakeInteger second("CounterSelector");
    FakeBoolean feature("Flag");
    feature.mAttributes.mDescription = "";
    feature.mAttributes.mSelecting = {&first};
    EXPECT_EQ(Item(feature).Description(),
              "<h3>The Flag</h3>Selector: <b>LineSelector</b>\n\n" + Footer("Flag", "Boolean"));
    feature.mAttributes.mSelecting = {&first, &second};
    EXPECT_EQ(
        Item(feature).Description(),
        "<h3>The Flag</h3>Selectors: <b>LineSelector</b>, <b>CounterSelector</b>\n\n" + Footer("Flag", "Boolean"));
}

TEST(TreeItemDescription, OfACategory)
{
    FakeCategory category("Image");
    category.mDescription = "all about it";
    const GenBrowserTreeItem item(nullptr, nullptr, &category, LxGenVisibilityGuru, false);
    EXPECT_EQ(item.Description(),
              "<h3>The Image</h3></b><p>all about it</p><p>Feature Name: <b>Image</b><br/>Type: "
              "<b>Category</b><br/>Name Space: <b>Standard</b><br/></p>");
}

// Threads

TEST(TreeItemThreads, ARefreshElsewhereReachesTheTextsThroughTheEventLoop)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mValue = 7;
    std::thread([&] { item.Refresh(); }).join();
    EXPECT_EQ(item.ValueText(), "0 ");
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, AnOldReadingDoesNotReplaceANewerOne)
{
    FakeInteger feature("Width");
    Item item(feature);
    std::thread([&] { item.Refresh(); }).join();  // reads 0, which waits to be delivered
    feature.mValue = 7;
    EXPECT_EQ(item.RefreshedText(), "7 ");
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, AReadingThatEndsAfterANewerOneIsDropped)
{
    FakeInteger feature("Width");
    Item item(feature);
    // While the thread's reading is under way (value read, unit asked for), a newer one comes and goes.
    std::atomic<bool> first{true};
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "GetUnit" && first.exchange(false)) {
            feature.mValue = 7;
            std::thread([&] { item.Refresh(); }).join();
        }
    });
    std::thread([&] { item.Refresh(); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(item.ValueText(), "7 ");
}

TEST(TreeItemThreads, TheSignalCarriesWhatTheReadingFound)
{
    FakeInteger feature("Width");
    Item item(feature);
    feature.mWritable = false;
    feature.mValue = 500;
    QSignalSpy spy(&item, &GenBrowserTreeItem::UpdateDataSignal);
    item.Refresh();
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy[0], QVariantList({"Parameter out of range", "500 ", true, true, true, false, true}));
}

TEST(TreeItemThreads, DestroyingAnItemWaitsForItsNotification)
{
    FakeInteger feature("Width");
    auto item = std::make_unique<Item>(feature);
    std::atomic<bool> inside{false};
    std::atomic<bool> ended{false};
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "GetValue") {
            inside = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            ended = true;
        }
    });
    std::thread notifier([&] { feature.Notify(); });
    while (!inside) {
        std::this_thread::yield();
    }
    item.reset();
    EXPECT_TRUE(ended);
    notifier.join();
}

}  // namespace
