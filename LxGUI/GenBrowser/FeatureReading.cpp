#include "LxGUI/GenBrowser/FeatureReading.h"

#include <QtCore/QLatin1String>

#include "LxGUI/Frame/Text.h"
#include "LxGUI/GenBrowser/FeatureTexts.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenString.h"

namespace
{

constexpr const char *ValueStage = "Error reading value";

QString OutOfRangeText()
{
    return QStringLiteral("Parameter out of range");
}

/// The steps of one reading. Each returns false when the reading has ended.
class Reader
{
public:
    Reader(LxGenParameter &aParameter, const FeatureForm &aForm, const FeatureCache &aCache,
           const std::function<bool()> &aIsAbandoned)
        : mParameter(aParameter), mForm(aForm), mCache(aCache), mIsAbandoned(aIsAbandoned)
    {
    }

    std::optional<FeatureReading> Read()
    {
        if (ReadAccess()) {
            ReadValue();
        }
        return mAbandoned ? std::nullopt : std::optional(std::move(mReading));
    }

private:
    bool GoOn()
    {
        mAbandoned = mAbandoned || mIsAbandoned();
        return !mAbandoned;
    }

    bool Check(const char *aStage, const LxResult &aResult)
    {
        if (!aResult.IsOK()) {
            mReading.mError = FailureText(QLatin1String(aStage), aResult);
            return false;
        }
        return GoOn();
    }

    bool ReadAccess()
    {
        return GoOn() &&
               Check("Error retrieving implemented attribute", mParameter.IsImplemented(mReading.mImplemented)) &&
               Check("Error retrieving available attribute", mParameter.IsAvailable(mReading.mAvailable)) &&
               Check("Error retrieving readable attribute", mParameter.IsReadable(mReading.mReadable)) &&
               Check("Error retrieving writable attribute", mParameter.IsWritable(mReading.mWritable));
    }

    void ReadValue()
    {
        if (!mReading.mImplemented) {
            mReading.mValue = QStringLiteral("{Not implemented}");
        }
        else if (!mReading.mAvailable) {
            mReading.mValue = QStringLiteral("{Not available}");
        }
        else if (mForm.mType == LxGenTypeCommand) {
            ReadCommand();
        }
        else if (mForm.mType == LxGenTypeRegister) {
            mReading.mValue = QStringLiteral("{Register}");
        }
        else if (auto *boolean = dynamic_cast<LxGenBoolean *>(&mParameter)) {
            ReadBoolean(*boolean);
        }
        else if (auto *enumeration = dynamic_cast<LxGenEnum *>(&mParameter)) {
            ReadEnum(*enumeration);
        }
        else if (auto *number = dynamic_cast<LxGenFloat *>(&mParameter)) {
            ReadFloat(*number);
        }
        else if (auto *integer = dynamic_cast<LxGenInteger *>(&mParameter)) {
            ReadInteger(*integer);
        }
        else if (auto *text = dynamic_cast<LxGenString *>(&mParameter)) {
            ReadString(*text);
        }
    }

    void ReadCommand()
    {
        if (auto *command = dynamic_cast<LxGenCommand *>(&mParameter)) {
            command->IsDone(mReading.mIsDone);
        }
        mReading.mValue = mReading.mIsDone ? QStringLiteral("{Command}") : QStringLiteral("Executing");
    }

    void ReadBoolean(LxGenBoolean &aBoolean)
    {
        bool value = mCache.mInteger != 0;
        if (mReading.mReadable && !Check(ValueStage, aBoolean.GetValue(value))) {
            return;
        }
        if (HasValue()) {
            mReading.mValue = value ? QStringLiteral("True") : QStringLiteral("False");
        }
    }

    void ReadEnum(LxGenEnum &aEnum)
    {
        if (!mReading.mReadable) {
            if (mCache.mHasValue) {
                mReading.mValue = mCache.mEditText;
            }
            return;
        }
        mReading.mValue = mCache.mEditText;
        int64_t value = 0;
        const LxGenEnumEntry *entry = nullptr;
        if (!Check(ValueStage, aEnum.GetValue(value)) || !Check(ValueStage, aEnum.GetEntryByValue(value, &entry))) {
            return;
        }
        if (!entry) {
            Check(ValueStage, LxResult(LxResultCode::NotFound,
                                       ToLxString(QStringLiteral("No entry has the value %1.").arg(qlonglong(value)))));
            return;
        }
        LxString name;
        if (Check(ValueStage, mForm.mUseDisplayNames ? entry->GetDisplayName(name) : entry->GetName(name))) {
            mReading.mValue = ToQString(name);
        }
    }

    void ReadFloat(LxGenFloat &aFloat)
    {
        double value = mCache.mFloat;
        LxString unit;
        if ((mReading.mReadable && !Check(ValueStage, aFloat.GetValue(value))) ||
            !Check("Error reading unit", aFloat.GetUnit(unit)) || !HasValue())
        {
            return;
        }
        mReading.mValue = FormatFloat(value) + QLatin1Char(' ') + ToQString(unit);
        double min = 0.0;
        double max = 0.0;
        if (aFloat.GetMin(min).IsOK() && GoOn() && aFloat.GetMax(max).IsOK() && (value < min || value > max)) {
            mReading.mError = OutOfRangeText();
        }
    }

    void ReadInteger(LxGenInteger &aInteger)
    {
        int64_t value = mCache.mInteger;
        if (mReading.mReadable && !Check(ValueStage, aInteger.GetValue(value))) {
            return;
        }
        if (HasValue()) {
            mReading.mValue = FormatFeatureInteger(aInteger, mForm, value, &mReading.mError);
            GoOn();
        }
    }

    void ReadString(LxGenString &aString)
    {
        mReading.mValue = mCache.mEditText;
        LxString text;
        if (mReading.mReadable && Check(ValueStage, aString.GetValue(text))) {
            mReading.mValue = ToQString(text);
        }
    }

    bool HasValue() const { return mReading.mReadable || mCache.mHasValue; }

    LxGenParameter &mParameter;
    const FeatureForm &mForm;
    const FeatureCache &mCache;
    const std::function<bool()> &mIsAbandoned;
    FeatureReading mReading;
    bool mAbandoned = false;
};

QList<FeatureChoice> ReadEnumChoices(LxGenEnum &aEnum, const FeatureForm &aForm, int64_t aCachedValue,
                                     LxGenVisibility aEntryVisibility, int &aCurrent)
{
    int64_t value = aCachedValue;
    if (aEnum.IsReadable()) {
        int64_t current = 0;
        if (aEnum.GetValue(current).IsOK()) {
            value = current;
        }
    }
    QList<FeatureChoice> choices;
    int64_t count = 0;
    aEnum.GetEntriesCount(count);
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        if (!aEnum.GetEntryByIndex(i, &entry).IsOK() || !entry || !entry->IsAvailable() ||
            !entry->IsVisible(aEntryVisibility)) {
            continue;
        }
        FeatureChoice choice;
        LxString toolTip;
        entry->GetToolTip(toolTip);
        choice.mText = EntryText(*entry, aForm.mUseDisplayNames);
        choice.mToolTip = ToQString(toolTip);
        entry->GetValue(choice.mValue);
        if (choice.mValue == value && aCurrent < 0) {
            aCurrent = static_cast<int>(choices.size());
        }
        choices.append(choice);
    }
    return choices;
}

QList<FeatureChoice> ReadBooleanChoices(LxGenBoolean &aBoolean, bool aCachedValue, int &aCurrent)
{
    bool value = aCachedValue;
    if (aBoolean.IsReadable()) {
        bool current = false;
        if (aBoolean.GetValue(current).IsOK()) {
            value = current;
        }
    }
    aCurrent = value ? 1 : 0;
    const QString no = QStringLiteral("False");
    const QString yes = QStringLiteral("True");
    return {{no, no, 0}, {yes, yes, 1}};
}

}  // namespace

std::optional<FeatureReading> ReadFeature(LxGenParameter &aParameter, const FeatureForm &aForm,
                                          const FeatureCache &aCache, const std::function<bool()> &aIsAbandoned)
{
    return Reader(aParameter, aForm, aCache, aIsAbandoned).Read();
}

QString FormatFeatureInteger(LxGenInteger &aInteger, const FeatureForm &aForm, int64_t aValue, QString *aError)
{
    if (aForm.mIsMACAddress) {
        return FormatMACAddress(aValue);
    }
    if (aForm.mIsIPAddress) {
        return FormatIPAddress(aValue);
    }
    int representation = LxGenRepresentationPureNumber;
    LxString unit;
    aInteger.GetRepresentation(representation);
    aInteger.GetUnit(unit);
    int64_t min = 0;
    int64_t max = 0;
    if (aError && aInteger.GetMin(min).IsOK() && aInteger.GetMax(max).IsOK() && (aValue < min || aValue > max)) {
        *aError = OutOfRangeText();
    }
    return FormatInteger(aValue, representation, ToQString(unit));
}

QString EntryText(const LxGenEnumEntry &aEntry, bool aUseDisplayNames)
{
    LxString text;
    aUseDisplayNames ? aEntry.GetDisplayName(text) : aEntry.GetName(text);
    return ToQString(text);
}

QList<FeatureChoice> ReadChoices(LxGenParameter &aParameter, const FeatureForm &aForm, const FeatureCache &aCache,
                                 LxGenVisibility aEntryVisibility, int &aCurrent)
{
    aCurrent = -1;
    if (auto *enumeration = dynamic_cast<LxGenEnum *>(&aParameter)) {
        return ReadEnumChoices(*enumeration, aForm, aCache.mInteger, aEntryVisibility, aCurrent);
    }
    if (auto *boolean = dynamic_cast<LxGenBoolean *>(&aParameter)) {
        return ReadBooleanChoices(*boolean, aCache.mInteger != 0, aCurrent);
    }
    return {};
}
