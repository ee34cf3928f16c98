#pragma once

#include <QtWidgets/QWidget>

/// Greys what another widget shows, and says why. The widget below can still be used.
class Veil : public QWidget
{
    Q_OBJECT

public:
    Veil(QWidget *aBelow, const QString &aText);

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

protected:
    void paintEvent(QPaintEvent *aEvent) override;

private:
    const QString mText;
};
