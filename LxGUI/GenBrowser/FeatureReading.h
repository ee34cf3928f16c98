#pragma once

// Reads a feature of a device the way that the browser shows it. Any thread; no widgets.

#include <QtCore/QList>
#include <QtCore/QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "LxGenICam/LxGenTypes.h"

class LxGenEnumEntry;
class LxGenInteger;
class LxGenParameter;

/// What is fixed about the way a feature is shown.
struct FeatureForm
{
    LxGenType mType = LxGenTypeUndefined;
    bool mIsIPAddress = false;
    bool mIsMACAddress = false;
    bool mUseDisplayNames = false;
};

/// The last values that were written through the browser; they stand in for the value of a write-only feature.
struct FeatureCache
{
    QString mEditText;
    int64_t mInteger = 0;
    double mFloat = 0.0;
    bool mHasValue = false;
};

/// What a refresh found out.
struct FeatureReading
{
    QString mError;
    QString mValue;
    bool mImplemented = false;
    bool mAvailable = false;
    bool mReadable = false;
    bool mWritable = false;
    bool mIsDone = true;
};

/// One entry that an editor offers.
struct FeatureChoice
{
    QString mText;
    QString mToolTip;
    int64_t mValue = 0;
};

/// Reads a feature. A failure ends it with an error text.
/// @param aIsAbandoned asked between the calls of the device; when it says true nobody wants the result any more.
/// @return nothing when it was abandoned.
std::optional<FeatureReading> ReadFeature(LxGenParameter &aParameter, const FeatureForm &aForm,
                                          const FeatureCache &aCache, const std::function<bool()> &aIsAbandoned);

/// An integer value as text. An error text that is asked for is set when the value is beyond the feature's limits.
QString FormatFeatureInteger(LxGenInteger &aInteger, const FeatureForm &aForm, int64_t aValue, QString *aError);

/// The name or the display name of an entry; an empty text when it cannot be had.
QString EntryText(const LxGenEnumEntry &aEntry, bool aUseDisplayNames);

/// The choices that an editor offers for an enumeration or a boolean, and which of them is the current one (-1 for
/// none); no choices for other kinds.
QList<FeatureChoice> ReadChoices(LxGenParameter &aParameter, const FeatureForm &aForm, const FeatureCache &aCache,
                                 LxGenVisibility aEntryVisibility, int &aCurrent);
