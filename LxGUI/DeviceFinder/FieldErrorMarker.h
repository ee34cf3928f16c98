#pragma once

#include <QtCore/QPoint>
#include <QtCore/QString>
#include <QtGui/QPixmap>

class QPainter;
class QWidget;

/// Says what is wrong with a field: a sign that is drawn beside it, and its tool tip.
class FieldErrorMarker
{
public:
    /// @param aField not owned; must outlive the marker.
    explicit FieldErrorMarker(QWidget *aField);

    /// An empty message takes the marker away.
    void SetMessage(const QString &aMessage);
    const QString &GetMessage() const { return mMessage; }
    bool HasMessage() const { return !mMessage.isEmpty(); }
    const QWidget *GetField() const { return mField; }

    QSize GetSize() const { return mSign.size(); }
    void Draw(QPainter &aPainter, const QPoint &aTopLeft) const;

private:
    QString mMessage;
    QWidget *mField;
    QPixmap mSign;
};
