#include "TreeItemTest.h"

#include <QtCore/QLocale>

namespace
{

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

}  // namespace
