#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QColor>

/// A line of an information table. The colour is its background: white for none, yellow for a doubtful value, red and
/// dark red for a failing one.
struct InfoRow
{
    QString mLabel;
    QString mValue;
    QColor mColor = Qt::white;

    bool operator==(const InfoRow &) const = default;
};

using InfoRows = QList<InfoRow>;
