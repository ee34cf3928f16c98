#include "LxGUI/GenBrowser/FeatureDescription.h"

#include "LxGUI/Frame/Text.h"
#include "LxGUI/GenBrowser/FeatureTexts.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"

namespace
{

// Texts of the device may hold "%1", so they are put together, never replaced one after the other.

QString Bold(const QString &aText)
{
    return QLatin1String("<b>") + aText + QLatin1String("</b>");
}

QString Paragraph(const QString &aText)
{
    return QLatin1String("<p>") + aText + QLatin1String("</p>");
}

QString OptionalParagraph(const LxString &aText)
{
    return aText.IsEmpty() ? QString() : Paragraph(ToQString(aText));
}

QString Selectors(const QStringList &aNames)
{
    if (aNames.isEmpty()) {
        return QString();
    }
    QStringList names;
    for (const QString &name : aNames) {
        names.append(Bold(name));
    }
    return QLatin1String(aNames.size() == 1 ? "Selector: " : "Selectors: ") + names.join(QLatin1String(", ")) +
           QLatin1String("\n\n");
}

QString DescribeLimits(const LxGenInteger &aInteger)
{
    int64_t min = 0;
    int64_t max = 0;
    int64_t increment = 0;
    int representation = LxGenRepresentationPureNumber;
    aInteger.GetMin(min);
    aInteger.GetMax(max);
    aInteger.GetRepresentation(representation);
    aInteger.GetIncrement(increment);
    return Paragraph(IntegerRangeText(min, max, representation) + QLatin1String("<br/>Increment: ") +
                     Bold(QString::number(qlonglong(increment))));
}

QString DescribeLimits(const LxGenFloat &aFloat)
{
    double min = 0.0;
    double max = 0.0;
    aFloat.GetMin(min);
    aFloat.GetMax(max);
    return Paragraph(QLatin1String("Min: ") + Bold(FormatFloat(min)) + QLatin1String(" Max: ") +
                     Bold(FormatFloat(max)));
}

QString DescribeLimits(const LxGenString &aString)
{
    int64_t length = 0;
    aString.GetMaxLength(length);
    return Paragraph(QLatin1String("Max Length: ") + Bold(QString::number(qlonglong(length))) +
                     QLatin1String(" bytes"));
}

QString DescribeLimits(const LxGenRegister &aRegister)
{
    int64_t length = 0;
    aRegister.GetLength(length);
    return Paragraph(QLatin1String("This feature can only be accessed programmatically.<br/>Length: ") +
                     Bold(QString::number(qlonglong(length))) + QLatin1String(" bytes"));
}

QString DescribeLimits(const LxGenParameter &aParameter)
{
    if (const auto *integer = dynamic_cast<const LxGenInteger *>(&aParameter)) {
        return DescribeLimits(*integer);
    }
    if (const auto *number = dynamic_cast<const LxGenFloat *>(&aParameter)) {
        return DescribeLimits(*number);
    }
    if (const auto *text = dynamic_cast<const LxGenString *>(&aParameter)) {
        return DescribeLimits(*text);
    }
    if (const auto *bytes = dynamic_cast<const LxGenRegister *>(&aParameter)) {
        return DescribeLimits(*bytes);
    }
    return QString();
}

QString DescribeEntry(const LxGenEnumEntry &aEntry)
{
    LxString name;
    LxString displayName;
    LxString description;
    int64_t value = 0;
    LxGenNameSpace nameSpace = LxGenNameSpaceUndefined;
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    aEntry.GetName(name);
    aEntry.GetDisplayName(displayName);
    aEntry.GetDescription(description);
    aEntry.GetValue(value);
    aEntry.GetNameSpace(nameSpace);
    aEntry.GetVisibility(visibility);
    return QLatin1String("<h4>") + ToQString(displayName) + QLatin1String("</h4>") + OptionalParagraph(description) +
           QLatin1String("<p>Enum Entry Name: ") + Bold(ToQString(name)) + QLatin1String("<br/>Enum Entry Value: ") +
           Bold(QString::number(qlonglong(value)) + QLatin1String(" (0x") + QString::number(qlonglong(value), 16) +
                QLatin1Char(')')) +
           QLatin1String("<br/>Name Space: ") + Bold(NameSpaceText(nameSpace)) + QLatin1String("<br/>Visibility: ") +
           Bold(VisibilityText(visibility)) + QLatin1String("</p>");
}

QString DescribeEntries(const LxGenEnum &aEnum)
{
    int64_t count = 0;
    aEnum.GetEntriesCount(count);
    QString text;
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        aEnum.GetEntryByIndex(i, &entry);
        if (entry) {
            text += DescribeEntry(*entry);
        }
    }
    return text;
}

}  // namespace

QString DescribeFeature(const LxGenParameter &aParameter, const FeatureIdentity &aIdentity)
{
    LxString description;
    aParameter.GetDescription(description);
    QString text = QLatin1String("<h3>") + aIdentity.mDisplayName + QLatin1String("</h3>");
    text += Selectors(aIdentity.mSelectors);
    text += OptionalParagraph(description);
    if (!aIdentity.mIsAddress) {
        text += DescribeLimits(aParameter);
    }
    text += QLatin1String("<p>Feature Name: ") + Bold(aIdentity.mName) + QLatin1String("<br/>Type: ") +
            Bold(aIdentity.mType) + QLatin1String("<br/>Name Space: ") + Bold(aIdentity.mNameSpace) +
            QLatin1String("<br/>Visibility: ") + Bold(aIdentity.mVisibility) + QLatin1String("</p>");
    if (const auto *enumeration = dynamic_cast<const LxGenEnum *>(&aParameter)) {
        text += DescribeEntries(*enumeration);
    }
    return text;
}

QString DescribeCategory(const LxGenCategory &aCategory, const FeatureIdentity &aIdentity)
{
    LxString description;
    aCategory.GetDescription(description);
    // The closing tag without an opening one belongs to this text.
    return QLatin1String("<h3>") + aIdentity.mDisplayName + QLatin1String("</h3></b>") +
           OptionalParagraph(description) + QLatin1String("<p>Feature Name: ") + Bold(aIdentity.mName) +
           QLatin1String("<br/>Type: <b>Category</b><br/>Name Space: ") + Bold(aIdentity.mNameSpace) +
           QLatin1String("<br/></p>");
}
