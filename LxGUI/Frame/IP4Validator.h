#pragma once

#include <QtGui/QValidator>

/// Accepts dotted IPv4 texts of four numbers up to 255, and the empty text.
class IP4Validator : public QValidator
{
    Q_OBJECT

public:
    using QValidator::QValidator;

    State validate(QString &aInput, int &aPos) const override;
};
