#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <cstdint>
#include <vector>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"

class LxGenParameter;
class LxGenParameterArray;

// The features of a device that belong to one of its serial ports. A null array has no features, and a feature that is
// not implemented counts as absent.

bool IsBulkPort(LxDeviceSerial aPort);

/// Makes the features of the bulk ports mean this one, if the device has a selector for them. Nothing for other ports.
void SelectBulkPort(LxGenParameterArray *aParameters, LxDeviceSerial aPort);
/// The feature that sets the speed of a port, or null.
LxGenParameter *FindSpeedFeature(LxGenParameterArray *aParameters, LxDeviceSerial aPort);
/// The feature that makes a port hear itself, or null.
LxGenParameter *FindLoopbackFeature(LxGenParameterArray *aParameters, LxDeviceSerial aPort);

/// What a speed can be set to, as texts, and which of them it is now.
struct SpeedChoices
{
    QStringList mTexts;
    int mCurrent = -1;  ///< -1: it cannot be read, or is none of the texts.
};

/// The values to offer for a number: all that there are when these are few (at most 32); else those of aPreferred that
/// are in the range and on the increment; always with the current one. In ascending order.
std::vector<int64_t> NumbersToOffer(int64_t aMin, int64_t aMax, int64_t aIncrement, int64_t aCurrent,
                                    const std::vector<int64_t> &aPreferred);
/// The names of the entries of an enumeration that can be chosen now, or NumbersToOffer(): usual baud rates, and powers
/// of two for a clock divider. Features of other kinds have no choices.
SpeedChoices ReadSpeed(LxGenParameter &aFeature);
/// Errors: InvalidParameter when the text is no value of the feature, and those of the device.
LxResult WriteSpeed(LxGenParameter &aFeature, const QString &aText);

/// A boolean, or a number or an enumeration that is not 0. False when it cannot be read.
bool ReadFlag(LxGenParameter &aFeature);
LxResult WriteFlag(LxGenParameter &aFeature, bool aValue);
