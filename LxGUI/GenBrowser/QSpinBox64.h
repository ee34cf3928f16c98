#pragma once

#include <QtWidgets/QAbstractSpinBox>
#include <cstdint>

/// A spin box for 64-bit integers in decimal or hexadecimal notation. The value is what its text says; steps keep the
/// notation and are not limited to the range, but the arrows are off where they would leave it.
class QSpinBox64 : public QAbstractSpinBox
{
    Q_OBJECT

public:
    explicit QSpinBox64(QWidget *aParent = nullptr);

    void SetRange(int64_t aMin, int64_t aMax);
    void SetStep(int64_t aStep) { mStep = aStep; }
    int64_t Minimum() const { return mMin; }
    int64_t Maximum() const { return mMax; }
    int64_t Step() const { return mStep; }
    void SetText(const QString &aText);

    void stepBy(int aSteps) override;

protected:
    StepEnabled stepEnabled() const override;

private:
    int64_t mMin = 0;
    int64_t mMax = 100;
    int64_t mStep = 1;
};
