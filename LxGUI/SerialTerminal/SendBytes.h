#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// The bytes of a text: every character below 256 is its number, any other is 0.
QByteArray BytesOfText(const QString &aText);

/// Appends the bytes of hexadecimal numbers that are separated by single blanks: "03 64 0FF". The numbers may have any
/// length but not more than the value FF, and be written as QString::toUInt() reads them. A text that is empty has no
/// bytes; one more blank may follow the last number.
/// @return false, and the bytes unchanged, when the text is anything else.
bool AppendHexBytes(const QString &aText, QByteArray &aBytes);
