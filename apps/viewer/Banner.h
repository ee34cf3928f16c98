#pragma once

#include <QtWidgets/QFrame>

class QLabel;

/// A strip of text above the picture, hidden until there is something to say.
class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *aParent);

    void Say(const QString &aText);
    void Clear();
    QString Text() const;

private:
    QLabel *mIcon;
    QLabel *mText;
};
