#pragma once

// Internal: values as text, in both directions.

#include <cstdint>
#include <string>

namespace LxDetail
{

/// An integer in the form of its representation (an LxGenRepresentation): "0xAB" for hexadecimal numbers,
/// "192.168.0.1" for IPv4 addresses, "AA:BB:CC:DD:EE:FF" for MAC addresses, else decimal. An address that needs more
/// bits than it has is shown in decimal.
std::string IntegerToText(int64_t aValue, int aRepresentation);
/// Reads any of these forms, whatever the representation, with blanks around it. False when it is none.
bool IntegerFromText(const std::string &aText, int64_t &aValue);

/// The shortest decimal form that gives the same number again.
std::string FloatToText(double aValue);
/// A decimal number with a point, whatever the locale, with blanks around it. False when it is none, or not finite.
bool FloatFromText(const std::string &aText, double &aValue);

std::string BooleanToText(bool aValue);
/// "True", "False" in any case, "1" and "0".
bool BooleanFromText(const std::string &aText, bool &aValue);

}  // namespace LxDetail
