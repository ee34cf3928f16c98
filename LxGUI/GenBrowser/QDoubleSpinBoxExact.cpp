#include "LxGUI/GenBrowser/QDoubleSpinBoxExact.h"

#include <QtCore/QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr int LeastDecimals = 6;

/// How many decimals tell the number from every other one.
int NeededDecimals(double aValue)
{
    if (aValue == 0.0 || !std::isfinite(aValue)) {
        return LeastDecimals;
    }
    const int exponent = static_cast<int>(std::floor(std::log10(std::fabs(aValue))));
    return std::max(LeastDecimals, std::numeric_limits<double>::max_digits10 - 1 - exponent);
}

/// A hundredth of the range as a power of ten, at most 1.
double SuitableStep(double aMin, double aMax)
{
    const double hundredth = aMax / 100 - aMin / 100;
    return hundredth > 0.0 && hundredth < 1.0 ? std::pow(10.0, std::floor(std::log10(hundredth))) : 1.0;
}

}  // namespace

QDoubleSpinBoxExact::QDoubleSpinBoxExact(QWidget *aParent) : QDoubleSpinBox(aParent)
{
    setKeyboardTracking(false);  // the beginning of a text that is no number is no value either
}

void QDoubleSpinBoxExact::Set(double aMin, double aMax, double aValue)
{
    setDecimals(std::max({NeededDecimals(aMin), NeededDecimals(aMax), NeededDecimals(aValue)}));
    setRange(aMin, aMax);
    setSingleStep(SuitableStep(aMin, aMax));
    setValue(aValue);
}

QString QDoubleSpinBoxExact::textFromValue(double aValue) const
{
    QLocale locale = this->locale();
    if (!isGroupSeparatorShown()) {
        locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    }
    return locale.toString(aValue, 'f', QLocale::FloatingPointShortest);
}

QValidator::State QDoubleSpinBoxExact::validate(QString &aText, int &aPosition) const
{
    bool isNumber = true;
    QString ungrouped = aText;
    if (ungrouped.remove(locale().groupSeparator()) != aText) {
        locale().toDouble(aText.trimmed(), &isNumber);
    }
    if (isNumber) {
        return QDoubleSpinBox::validate(aText, aPosition);
    }
    // it stays in view, but is not taken
    int position = static_cast<int>(ungrouped.size());
    return std::min(QDoubleSpinBox::validate(ungrouped, position), QValidator::Intermediate);
}

void QDoubleSpinBoxExact::fixup(QString & /*aText*/) const {}
