#include "LxGUI/SerialTerminal/TranscriptRows.h"

#include <gtest/gtest.h>

#include <QtCore/QStringList>

namespace
{

QStringList Rows(const QString &aText, int aColumns)
{
    QStringList rows;
    for (const TranscriptRow &row : LayOutRows(aText, aColumns)) {
        rows << aText.mid(row.mStart, row.mLength);
    }
    return rows;
}

}  // namespace

TEST(TranscriptRows, EndAtEveryKindOfLineEnd)
{
    EXPECT_EQ(Rows("", 80), QStringList({""}));
    EXPECT_EQ(Rows("a", 80), QStringList({"a"}));
    EXPECT_EQ(Rows("a\r\nb\nc\rd", 80), QStringList({"a", "b", "c", "d"}));
    EXPECT_EQ(Rows("a\r\n", 80), QStringList({"a", ""}));
    EXPECT_EQ(Rows("\n\r\r\n", 80), QStringList({"", "", "", ""}));
}

TEST(TranscriptRows, AreNoWiderThanTheColumns)
{
    EXPECT_EQ(Rows("abcdefg", 3), QStringList({"abc", "def", "g"}));
    EXPECT_EQ(Rows("abc\ndef", 3), QStringList({"abc", "def"}));
    EXPECT_EQ(Rows("abc", 1), QStringList({"a", "b", "c"}));
    EXPECT_EQ(Rows("ab\tc", 8), QStringList({"ab\t", "c"}));
    EXPECT_EQ(Rows("a\tb", 4), QStringList({"a", "\t", "b"})) << "a tab that is wider than a row has one of its own";
}

TEST(TranscriptRows, ShowTabsAndControlCharacters)
{
    EXPECT_EQ(RowText(u"ab\tc"), "ab      c");
    EXPECT_EQ(RowText(u"\t\t"), QString(16, ' '));
    EXPECT_EQ(RowText(QString("a") + QChar(1) + QChar(0x7F) + QChar(0x9F)), QString("a") + QString(3, QChar(0xB7)));
    EXPECT_EQ(RowText(u"\u00E9\u00A0"), QString::fromUtf8("\u00E9\u00A0"));
}

TEST(TranscriptRows, ConvertBetweenColumnsAndCharacters)
{
    const QString row = "ab\tc";
    EXPECT_EQ(ColumnOf(row, 0), 0);
    EXPECT_EQ(ColumnOf(row, 2), 2);
    EXPECT_EQ(ColumnOf(row, 3), 8);
    EXPECT_EQ(ColumnOf(row, 4), 9);
    EXPECT_EQ(ColumnOf(row, 99), 9);
    EXPECT_EQ(IndexAt(row, -5), 0);
    EXPECT_EQ(IndexAt(row, 0.4), 0);
    EXPECT_EQ(IndexAt(row, 0.6), 1);
    EXPECT_EQ(IndexAt(row, 3), 2);
    EXPECT_EQ(IndexAt(row, 7), 3);
    EXPECT_EQ(IndexAt(row, 99), 4);
    EXPECT_EQ(IndexAt(QString(), 3), 0);
}
