#include <gtest/gtest.h>

#include "LxPersistence/LxPropertyList.h"

TEST(LxProperty, HoldsNameAndValue)
{
    LxProperty property("Name", LxString("Value"));
    EXPECT_EQ(property.GetName(), LxString("Name"));
    EXPECT_EQ(property.GetValue(), LxString("Value"));
    property.SetName("Other");
    property.SetValue("1");
    EXPECT_EQ(property.GetName(), LxString("Other"));
    EXPECT_EQ(property.GetValue(), LxString("1"));
}

TEST(LxProperty, ReadsWholeDecimalNumbersOnly)
{
    const std::pair<const char *, uint32_t> good[] = {{"0", 0}, {"115200", 115200}, {"4294967295", 0xFFFFFFFF}};
    for (const auto &[text, expected] : good) {
        uint32_t value = 7;
        EXPECT_TRUE(LxProperty("n", LxString(text)).GetValue(value).IsOK()) << text;
        EXPECT_EQ(value, expected);
    }
    for (const char *text : {"", " 1", "1 ", "-1", "+1", "0x10", "1.0", "4294967296", "12a", "00000000001"}) {
        uint32_t value = 7;
        EXPECT_EQ(LxProperty("n", LxString(text)).GetValue(value), LxResult(LxResultCode::InvalidDataFormat)) << text;
        EXPECT_EQ(value, 7u) << text;
    }
}

TEST(LxProperty, NumbersBecomeDecimalText)
{
    EXPECT_EQ(LxProperty("n", 4294967295u).GetValue(), LxString("4294967295"));
    LxProperty property;
    property.SetValue(9600u);
    EXPECT_EQ(property.GetValue(), LxString("9600"));
}

TEST(LxPropertyList, WalksInOrderWithDuplicates)
{
    LxPropertyList list;
    EXPECT_EQ(list.GetFirst(), nullptr);
    EXPECT_EQ(list.GetNext(), nullptr);
    list.Add(LxProperty("a", LxString("1")));
    list.Add(LxProperty("b", LxString("2")));
    list.Add(LxProperty("a", LxString("3")));
    list.Add(nullptr);
    ASSERT_EQ(list.GetCount(), 3u);
    EXPECT_EQ(list.GetFirst()->GetValue(), LxString("1"));
    EXPECT_EQ(list.GetNext()->GetValue(), LxString("2"));
    EXPECT_EQ(list.GetNext()->GetValue(), LxString("3"));
    EXPECT_EQ(list.GetNext(), nullptr);
    EXPECT_EQ(list.GetNext(), nullptr);
    EXPECT_EQ(list.GetProperty("a")->GetValue(), LxString("1"));
    EXPECT_EQ(list.GetProperty("A"), nullptr);
}

TEST(LxPropertyList, AddCopies)
{
    LxPropertyList list;
    LxProperty property("a", LxString("1"));
    list.Add(&property);
    property.SetValue("2");
    EXPECT_EQ(list.GetProperty("a")->GetValue(), LxString("1"));
}

TEST(LxPropertyList, CopiesWalkOnTheirOwn)
{
    LxPropertyList list;
    list.Add(LxProperty("a", LxString("1")));
    list.Add(LxProperty("b", LxString("2")));
    list.GetFirst();
    LxPropertyList copy = list;
    EXPECT_EQ(copy.GetNext(), nullptr);
    EXPECT_EQ(list.GetNext()->GetValue(), LxString("2"));
    copy = list;
    list.Clear();
    EXPECT_EQ(copy.GetFirst()->GetValue(), LxString("1"));
}
