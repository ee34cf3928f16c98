#include "LxGUI/GenBrowser/NumberText.h"

#include <gtest/gtest.h>

#include <limits>

#include "LxGUI/GenBrowser/QDoubleSpinBoxExact.h"
#include "LxGUI/GenBrowser/QSpinBox64.h"

namespace
{

constexpr auto Min64 = std::numeric_limits<int64_t>::min();
constexpr auto Max64 = std::numeric_limits<int64_t>::max();

/// A spin box whose protected side can be asked.
class TestSpinBox : public QSpinBox64
{
public:
    bool CanStepUp() const { return stepEnabled() & StepUpEnabled; }
    bool CanStepDown() const { return stepEnabled() & StepDownEnabled; }
    QString Stepped(const QString &aText, int aSteps)
    {
        SetText(aText);
        stepBy(aSteps);
        return text();
    }
};

TEST(NumberText, EveryNotationIsRead)
{
    struct Case
    {
        const char *mText;
        int64_t mValue;
        NumberNotation mNotation;
    };
    const Case cases[] = {
        {"31", 31, NumberNotation::Decimal},
        {" -5 ", -5, NumberNotation::Decimal},
        {"+5", 5, NumberNotation::Decimal},
        {"0x1F", 31, NumberNotation::PrefixedHexadecimal},
        {"0X1f", 31, NumberNotation::PrefixedHexadecimal},
        {"1Fh", 31, NumberNotation::SuffixedHexadecimal},
        {"1fH", 31, NumberNotation::SuffixedHexadecimal},
        {"0h", 0, NumberNotation::SuffixedHexadecimal},
        {"9223372036854775807", Max64, NumberNotation::Decimal},
        {"-9223372036854775808", Min64, NumberNotation::Decimal},
        {"0x7FFFFFFFFFFFFFFF", Max64, NumberNotation::PrefixedHexadecimal},
        {"0x-8000000000000000", Min64, NumberNotation::PrefixedHexadecimal},
        {"8000000000000000h", Min64, NumberNotation::SuffixedHexadecimal},
        {"FFFFFFFFFFFFFFFFh", -1, NumberNotation::SuffixedHexadecimal},
    };
    for (const Case &c : cases) {
        const NumberText number = ParseNumber(c.mText);
        EXPECT_TRUE(number.mIsValid) << c.mText;
        EXPECT_EQ(number.mValue, c.mValue) << c.mText;
        EXPECT_EQ(number.mNotation, c.mNotation) << c.mText;
    }
}

TEST(NumberText, TextsThatAreNoNumberAreRefused)
{
    for (const char *text : {"", " ", "abc", "0x", "h", "0xG", "Gh", "1.5", "5 us", "0x1Fh", "9223372036854775808",
                             "-9223372036854775809", "0xFFFFFFFFFFFFFFFF", "1FFFFFFFFFFFFFFFFh", "1,000"})
    {
        EXPECT_FALSE(ParseNumber(text).mIsValid) << text;
    }
}

TEST(NumberText, WhatIsWrittenIsReadAgain)
{
    for (const int64_t value : {int64_t(0), int64_t(31), int64_t(-1), Min64, Max64}) {
        for (const NumberNotation notation :
             {NumberNotation::Decimal, NumberNotation::PrefixedHexadecimal, NumberNotation::SuffixedHexadecimal})
        {
            const NumberText number = ParseNumber(FormatNumber(value, notation));
            EXPECT_TRUE(number.mIsValid) << FormatNumber(value, notation).toStdString();
            EXPECT_EQ(number.mValue, value);
            EXPECT_EQ(number.mNotation, notation);
        }
    }
}

TEST(SpinBox64, StartsFrom0To100InStepsOf1)
{
    const TestSpinBox box;
    EXPECT_EQ(box.Minimum(), 0);
    EXPECT_EQ(box.Maximum(), 100);
    EXPECT_EQ(box.Step(), 1);
}

TEST(SpinBox64, AStepKeepsTheNotation)
{
    TestSpinBox box;
    EXPECT_EQ(box.Stepped("0x1f", 1), "0x20");
    EXPECT_EQ(box.Stepped("1fh", 1), "20h");
    EXPECT_EQ(box.Stepped("-5", 1), "-4");
    EXPECT_EQ(box.Stepped("0x1a", 1), "0x1B");
    EXPECT_EQ(box.Stepped("19h", 1), "1Ah");
    EXPECT_EQ(box.Stepped("5", -3), "2");
}

TEST(SpinBox64, StepsAreNotLimitedToTheRange)
{
    TestSpinBox box;
    box.SetRange(0, 10);
    box.SetStep(7);
    EXPECT_EQ(box.Stepped("10", 2), "24");
    EXPECT_EQ(box.Stepped("0", -1), "-7");
}

TEST(SpinBox64, ATextThatIsNoNumberIsLeftAsItIs)
{
    TestSpinBox box;
    EXPECT_EQ(box.Stepped("abc", 1), "abc");
    EXPECT_EQ(box.Stepped("", 1), "");
}

TEST(SpinBox64, AStepThatWouldOverflowChangesNothing)
{
    TestSpinBox box;
    box.SetRange(Min64, Max64);
    EXPECT_EQ(box.Stepped("9223372036854775807", 1), "9223372036854775807");
    EXPECT_EQ(box.Stepped("-9223372036854775808", -1), "-9223372036854775808");
    EXPECT_EQ(box.Stepped("0x7FFFFFFFFFFFFFFF", 1), "0x7FFFFFFFFFFFFFFF");
    EXPECT_EQ(box.Stepped("8000000000000000h", -1), "8000000000000000h");
    box.SetStep(Max64);
    EXPECT_EQ(box.Stepped("5", 10), "5");
}

TEST(SpinBox64, ArrowsAreOffWhereAStepWouldLeaveTheRange)
{
    TestSpinBox box;
    box.SetRange(0, 10);
    box.SetText("10");
    EXPECT_FALSE(box.CanStepUp());
    EXPECT_TRUE(box.CanStepDown());
    box.SetText("0");
    EXPECT_TRUE(box.CanStepUp());
    EXPECT_FALSE(box.CanStepDown());
    box.SetText("0xA");
    EXPECT_FALSE(box.CanStepUp());
}

TEST(SpinBox64, ArrowsTakeATextThatIsNoNumberFor0)
{
    TestSpinBox box;
    box.SetText("abc");
    box.SetRange(0, 10);
    EXPECT_TRUE(box.CanStepUp());
    EXPECT_FALSE(box.CanStepDown());
    box.SetRange(-1, 0);
    EXPECT_FALSE(box.CanStepUp());
    EXPECT_TRUE(box.CanStepDown());
}

TEST(SpinBox64, ArrowsAreOffWhereAStepWouldOverflow)
{
    TestSpinBox box;
    box.SetRange(Min64, Max64);
    box.SetText("9223372036854775807");
    EXPECT_FALSE(box.CanStepUp());
    EXPECT_TRUE(box.CanStepDown());
    box.SetText("8000000000000000h");
    EXPECT_TRUE(box.CanStepUp());
    EXPECT_FALSE(box.CanStepDown());
}

TEST(DoubleSpinBox, KeepsEveryValueExactly)
{
    QDoubleSpinBoxExact box;
    struct Case
    {
        double mMin;
        double mMax;
        double mValue;
    };
    const Case cases[] = {{0.001, 0.009, 0.0034},
                          {0.0, 1e6, 10000.123456789},
                          {-1e300, 1e300, 1.0 / 3.0},
                          {-std::numeric_limits<double>::max(), std::numeric_limits<double>::max(), 12.5},
                          {0.0, 1.0, 1.2345678901234567e-12},
                          {0.0, 100.0, 0.0}};
    for (const Case &c : cases) {
        box.Set(c.mMin, c.mMax, c.mValue);
        EXPECT_EQ(box.minimum(), c.mMin);
        EXPECT_EQ(box.maximum(), c.mMax);
        EXPECT_EQ(box.value(), c.mValue);
        box.interpretText();  // as when the focus leaves it
        EXPECT_EQ(box.value(), c.mValue) << box.text().toStdString();
    }
}

TEST(DoubleSpinBox, ShowsNoMoreDigitsThanNeeded)
{
    QDoubleSpinBoxExact box;
    box.setLocale(QLocale::c());
    box.Set(0.0, 1e6, 10000.5);
    EXPECT_EQ(box.text(), "10000.5");
    box.Set(0.001, 0.009, 0.0034);
    EXPECT_EQ(box.text(), "0.0034");
}

}  // namespace
