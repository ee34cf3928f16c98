#include "LxGUI/GenBrowser/QSpinBox64.h"

#include <QtWidgets/QLineEdit>

#include "LxGUI/GenBrowser/NumberText.h"

QSpinBox64::QSpinBox64(QWidget *aParent) : QAbstractSpinBox(aParent) {}

void QSpinBox64::SetRange(int64_t aMin, int64_t aMax)
{
    mMin = aMin;
    mMax = aMax;
    update();
}

void QSpinBox64::SetText(const QString &aText)
{
    lineEdit()->setText(aText);
    update();  // which arrows are on depends on the text
}

void QSpinBox64::stepBy(int aSteps)
{
    const NumberText number = ParseNumber(text());
    int64_t distance = 0;
    int64_t value = 0;
    if (number.mIsValid && !__builtin_mul_overflow(static_cast<int64_t>(aSteps), mStep, &distance) &&
        !__builtin_add_overflow(number.mValue, distance, &value))
    {
        SetText(FormatNumber(value, number.mNotation));
    }
}

QAbstractSpinBox::StepEnabled QSpinBox64::stepEnabled() const
{
    const NumberText number = ParseNumber(text());
    const int64_t current = number.mIsValid ? number.mValue : 0;
    StepEnabled enabled = StepNone;
    int64_t next = 0;
    if (!__builtin_add_overflow(current, mStep, &next) && next <= mMax) {
        enabled |= StepUpEnabled;
    }
    if (!__builtin_sub_overflow(current, mStep, &next) && next >= mMin) {
        enabled |= StepDownEnabled;
    }
    return enabled;
}
