#pragma once

#include <QtCore/QString>
#include <cstdint>

/// Reads the text of an address or value field. Surrounding blanks and a "0x" in front of at least one more character
/// are dropped; reading ends at the first character that is no hexadecimal digit. What more than eight digits give is
/// left to sscanf(). False, and the value unchanged, when the text does not begin with a number.
bool ParseHexField(const QString &aText, uint32_t &aValue);

/// Eight upper-case digits.
QString FormatHexField(uint32_t aValue);
