#pragma once

#include <QtCore/QString>
#include <cstdint>

/// How an integer is written in an editor.
enum class NumberNotation
{
    Decimal = 0,
    PrefixedHexadecimal = 1,  ///< 0x1F
    SuffixedHexadecimal = 2,  ///< 1Fh
};

struct NumberText
{
    bool mIsValid = false;
    int64_t mValue = 0;
    NumberNotation mNotation = NumberNotation::Decimal;
};

/// Reads a number in any notation, blanks around it and letters of either case allowed.
NumberText ParseNumber(const QString &aText);
/// Writes a number so that ParseNumber() gives the same number and notation again.
QString FormatNumber(int64_t aValue, NumberNotation aNotation);
