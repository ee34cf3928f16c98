#include "FeatureSettings.h"

#include <QtCore/QCoreApplication>
#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxGenICam/LxGenParameterList.h"
#include "Texts.h"

namespace
{

using FeatureSettings::Outcome;

// More values than this and a selector is taken as it stands: nobody waits for a table of thousands.
constexpr size_t MostCombinations = 256;
// A camera whose features undo one another must not be written for ever.
constexpr int MostPasses = 6;

using Features = std::vector<LxGenParameter *>;

QString SettingsText(const char *aText)
{
    return QCoreApplication::translate("FeatureSettings", aText);
}

std::string NameOf(const LxGenParameter &aFeature)
{
    LxString name;
    aFeature.GetName(name);
    return name.GetString();
}

Features ToVector(LxGenParameterList &aList)
{
    Features features;
    for (LxGenParameter *feature = aList.GetFirst(); feature; feature = aList.GetNext()) {
        features.push_back(feature);
    }
    return features;
}

Features SelectorsOf(const LxGenParameter &aFeature)
{
    LxGenParameterList list;
    aFeature.GetSelectingParameters(list);
    return ToVector(list);
}

bool IsSelector(const LxGenParameter &aFeature)
{
    LxGenParameterList list;
    aFeature.GetSelectedParameters(list);
    return list.GetCount() > 0;
}

bool IsSetting(const LxGenParameter &aFeature)
{
    LxGenType type = LxGenTypeUndefined;
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    LxString category;
    aFeature.GetType(type);
    aFeature.GetVisibility(visibility);
    aFeature.GetCategory(category);
    if (type == LxGenTypeCommand || type == LxGenTypeRegister || type == LxGenTypeUndefined ||
        visibility == LxGenVisibilityInvisible || NameOf(aFeature) == "DeviceUserID")
    {
        return false;
    }
    const QStringList path = ToQString(category).split(QLatin1Char('\\'));
    return std::none_of(path.begin(), path.end(), [](const QString &aName) {
        return aName == QLatin1String("TransportLayerControl") || aName == QLatin1String("UserSetControl") ||
               aName == QLatin1String("FileAccessControl");
    });
}

// The values that a selector can be given now, as text.
std::vector<LxString> ValuesOf(LxGenParameter &aSelector)
{
    std::vector<LxString> values;
    if (const auto *selector = dynamic_cast<LxGenEnum *>(&aSelector)) {
        int64_t count = 0;
        selector->GetEntriesCount(count);
        for (int64_t i = 0; i < count; ++i) {
            const LxGenEnumEntry *entry = nullptr;
            LxString name;
            if (selector->GetEntryByIndex(i, &entry).IsOK() && entry && entry->IsAvailable() &&
                entry->GetName(name).IsOK()) {
                values.push_back(name);
            }
        }
    }
    else if (const auto *index = dynamic_cast<LxGenInteger *>(&aSelector)) {
        int64_t least = 0;
        int64_t most = 0;
        int64_t step = 1;
        if (index->GetMin(least).IsOK() && index->GetMax(most).IsOK() && index->GetIncrement(step).IsOK() && step > 0 &&
            most >= least)
        {
            const uint64_t steps =
                (static_cast<uint64_t>(most) - static_cast<uint64_t>(least)) / static_cast<uint64_t>(step);
            for (uint64_t i = 0; steps < MostCombinations && i <= steps; ++i) {
                values.push_back(LxString(std::to_string(least + static_cast<int64_t>(i) * step).c_str()));
            }
        }
    }
    if (values.empty() || !aSelector.IsWritable()) {
        values = {aSelector.ToString()};
    }
    return values;
}

class Collector
{
public:
    Collector(LxGenParameterArray &aParameters, LxPropertyList &aList) : mParameters(aParameters), mList(aList) {}

    Outcome Run()
    {
        std::vector<std::pair<Features, Features>> groups;  // selectors, and what they select
        Features selectors;
        for (uint32_t i = 0; i < mParameters.GetCount(); ++i) {
            LxGenParameter *feature = mParameters[i];
            if (!feature || !IsSetting(*feature)) {
                continue;
            }
            if (IsSelector(*feature)) {
                selectors.push_back(feature);
                continue;
            }
            const Features key = SelectorsOf(*feature);
            const auto known =
                std::find_if(groups.begin(), groups.end(), [&](const auto &aGroup) { return aGroup.first == key; });
            (known != groups.end() ? *known : groups.emplace_back(key, Features())).second.push_back(feature);
        }
        for (const auto &[key, features] : groups) {
            std::vector<LxString> before;
            for (const LxGenParameter *selector : key) {
                before.push_back(selector->ToString());
            }
            mCombinations = 0;
            Select(key, 0, std::string(), features);
            for (size_t i = 0; i < key.size(); ++i) {
                Change(*key[i], before[i]);
            }
        }
        for (LxGenParameter *selector : selectors) {
            Take(*selector, std::string());
        }
        return mOutcome;
    }

private:
    static LxResult Change(LxGenParameter &aSelector, const LxString &aValue)
    {
        return aSelector.ToString() == aValue ? LxResult() : aSelector.FromString(aValue);
    }

    void Select(const Features &aSelectors, size_t aIndex, const std::string &aContext, const Features &aFeatures)
    {
        if (aIndex == aSelectors.size()) {
            ++mCombinations;
            for (LxGenParameter *feature : aFeatures) {
                Take(*feature, aContext);
            }
            return;
        }
        LxGenParameter &selector = *aSelectors[aIndex];
        for (const LxString &value : ValuesOf(selector)) {
            if (mCombinations < MostCombinations && Change(selector, value).IsOK()) {
                Select(aSelectors, aIndex + 1,
                       aContext + (aContext.empty() ? "" : ",") + NameOf(selector) + '=' + value.GetString(),
                       aFeatures);
            }
        }
    }

    void Take(LxGenParameter &aFeature, const std::string &aContext)
    {
        if (!aFeature.IsReadable() || !aFeature.IsWritable()) {
            return;
        }
        const std::string name = NameOf(aFeature) + (aContext.empty() ? "" : '[' + aContext + ']');
        LxGenType type = LxGenTypeUndefined;
        aFeature.GetType(type);
        const LxString value = aFeature.ToString();
        if (value.IsEmpty() && type != LxGenTypeString) {
            mOutcome.mProblems << SettingsText("%1 could not be read.").arg(QString::fromStdString(name));
            return;
        }
        mList.Add(LxProperty(LxString(name.c_str()), value));
        ++mOutcome.mCount;
    }

    LxGenParameterArray &mParameters;
    LxPropertyList &mList;
    size_t mCombinations = 0;
    Outcome mOutcome;
};

/// One value that is to be restored.
struct Setting
{
    LxGenParameter *mFeature = nullptr;
    std::vector<std::pair<LxGenParameter *, LxString>> mSelectors;
    LxString mValue;
    QString mName;
    bool mIsRestored = false;
    std::optional<QString> mProblem;
};

class Restorer
{
public:
    explicit Restorer(LxGenParameterArray &aParameters) : mParameters(aParameters) {}

    Outcome Run(const LxPropertyList &aList)
    {
        std::vector<Setting> values;
        std::vector<Setting> selectors;
        for (size_t i = 0; i < aList.GetCount(); ++i) {
            const Setting setting = Parse(*aList.GetAt(i));
            (setting.mFeature && IsSelector(*setting.mFeature) ? selectors : values).push_back(setting);
        }
        bool changed = true;
        for (int pass = 0; pass < MostPasses && changed && !mHasGone; ++pass) {
            changed = false;
            for (Setting &setting : values) {
                changed = Apply(setting) || changed;
            }
        }
        for (Setting &setting : selectors) {
            Apply(setting);
        }
        Outcome outcome;
        for (const std::vector<Setting> *settings : {&values, &selectors}) {
            for (const Setting &setting : *settings) {
                outcome.mCount += setting.mIsRestored ? 1 : 0;
                if (setting.mProblem) {
                    outcome.mProblems << QStringLiteral("%1: %2").arg(setting.mName, *setting.mProblem);
                }
            }
        }
        if (mHasGone) {
            outcome.mProblems = {SettingsText("The camera stopped answering.")};
        }
        return outcome;
    }

private:
    // "Name" or "Name[Selector=Value,Selector=Value]"
    Setting Parse(const LxProperty &aProperty)
    {
        Setting setting;
        setting.mName = ToQString(aProperty.GetName());
        setting.mValue = aProperty.GetValue();
        const QString name = setting.mName.section(QLatin1Char('['), 0, 0);
        setting.mFeature = Find(setting, name);
        QString context = setting.mName.mid(name.size() + 1);
        if (context.endsWith(QLatin1Char(']'))) {
            context.chop(1);
        }
        for (const QString &part : context.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            if (LxGenParameter *selector = Find(setting, part.section(QLatin1Char('='), 0, 0))) {
                setting.mSelectors.emplace_back(selector, part.section(QLatin1Char('='), 1).toUtf8().constData());
            }
        }
        if (setting.mProblem) {
            setting.mFeature = nullptr;
        }
        return setting;
    }

    LxGenParameter *Find(Setting &aSetting, const QString &aName)
    {
        LxGenParameter *feature = mParameters.Get(LxString(aName.toUtf8().constData()));
        if (!feature) {
            aSetting.mProblem = aName == aSetting.mName ? SettingsText("The camera has no such feature.")
                                                        : SettingsText("The camera has no feature %1.").arg(aName);
        }
        return feature;
    }

    // Whether a value of the camera was changed.
    bool Apply(Setting &aSetting)
    {
        if (!aSetting.mFeature || mHasGone) {
            return false;
        }
        for (const auto &[selector, value] : aSetting.mSelectors) {
            if (selector->ToString() == value) {
                continue;
            }
            if (const LxResult result = selector->FromString(value); !result.IsOK()) {
                Note(aSetting, result);
                return false;
            }
        }
        LxGenParameter &feature = *aSetting.mFeature;
        const bool isReadable = feature.IsReadable();
        const LxString before = feature.ToString();
        if (isReadable && before == aSetting.mValue) {
            aSetting.mProblem.reset();
            aSetting.mIsRestored = true;
            return false;
        }
        if (const LxResult result = feature.FromString(aSetting.mValue); !result.IsOK()) {
            Note(aSetting, result);
            return false;
        }
        const LxString after = feature.ToString();
        aSetting.mProblem.reset();
        aSetting.mIsRestored = true;
        if (!(after == aSetting.mValue) && feature.IsReadable()) {
            aSetting.mProblem =
                SettingsText("The camera made %1 of %2.").arg(ToQString(after), ToQString(aSetting.mValue));
            aSetting.mIsRestored = false;
        }
        return !(after == before);
    }

    void Note(Setting &aSetting, const LxResult &aResult)
    {
        aSetting.mIsRestored = false;
        aSetting.mProblem =
            SettingsText("%1 could not be written. %2").arg(ToQString(aSetting.mValue), Reason(aResult));
        mHasGone = mParameters.GetAccessMode() != 0;
    }

    LxGenParameterArray &mParameters;
    bool mHasGone = false;
};

}  // namespace

Outcome FeatureSettings::Collect(LxGenParameterArray &aParameters, LxPropertyList &aList)
{
    return Collector(aParameters, aList).Run();
}

Outcome FeatureSettings::Restore(LxGenParameterArray &aParameters, const LxPropertyList &aList)
{
    return Restorer(aParameters).Run(aList);
}
