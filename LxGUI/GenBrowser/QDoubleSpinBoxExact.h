#pragma once

#include <QtWidgets/QDoubleSpinBox>

/// A double spin box that neither rounds what it is given nor shows digits that say nothing.
class QDoubleSpinBoxExact : public QDoubleSpinBox
{
    Q_OBJECT

public:
    explicit QDoubleSpinBoxExact(QWidget *aParent = nullptr);

    /// Sets limits and value, with as many decimals as they need and a step that suits the limits.
    void Set(double aMin, double aMax, double aValue);

    QString textFromValue(double aValue) const override;
    /// A text is a number only as the locale writes it. The toolkit takes the separators of groups out of any other,
    /// so that 1.5 typed where the comma is decimal would become 15.
    QValidator::State validate(QString &aText, int &aPosition) const override;
    void fixup(QString &aText) const override;
};
