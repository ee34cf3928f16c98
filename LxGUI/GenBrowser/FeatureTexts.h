#pragma once

// The texts of the feature browser that need neither a widget nor a device.

#include <QtCore/QString>
#include <cstdint>

#include "LxBase/LxResult.h"
#include "LxGenICam/LxGenTypes.h"

/// "Beginner" to "Invisible"; empty for any other number.
QString VisibilityText(LxGenVisibility aVisibility);
/// "Standard", "Custom" or "Invalid".
QString NameSpaceText(LxGenNameSpace aNameSpace);
/// "Integer" to "Register"; empty for any other number.
QString TypeText(LxGenType aType);

/// Whether a feature of this name (GenICam SFNC and vendors') holds an IPv4 address, whatever its representation.
bool IsIPAddressName(const QString &aName);
bool IsMACAddressName(const QString &aName);

/// The description of a result without the source location that it may start with ("LxGenParameter.cpp:120 Timeout").
QString CleanDescription(const QString &aDescription);
/// What went wrong, for the user: the cleaned description, or the name of the code when there is none.
QString FailureText(const LxResult &aResult);
/// The step that failed and why.
QString FailureText(const QString &aStage, const LxResult &aResult);

/// Six bytes of two hexadecimal digits, "00:11:1C:0A:0B:0C", of the low 48 bits.
QString FormatMACAddress(int64_t aValue);
/// "192.168.0.1", of the low 32 bits.
QString FormatIPAddress(int64_t aValue);
/// Reads four numbers of 0 to 255 with dots between them, decimal, octal (017) or hexadecimal (0x1F). False otherwise.
bool ParseIPAddress(const QString &aText, int64_t &aValue);

/// The value in decimal, or in hexadecimal for LxGenRepresentationHexNumber, a blank and the unit.
QString FormatInteger(int64_t aValue, int aRepresentation, const QString &aUnit);
/// Six significant digits, in the user's locale.
QString FormatFloat(double aValue);
/// What a description says about the limits of an integer.
QString IntegerRangeText(int64_t aMin, int64_t aMax, int aRepresentation);
