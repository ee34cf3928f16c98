#include "Banner.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>

Banner::Banner(QWidget *aParent) : QFrame(aParent), mIcon(new QLabel(this)), mText(new QLabel(this))
{
    setObjectName(QStringLiteral("banner"));
    setAccessibleName(tr("Message"));
    mText->setWordWrap(true);
    mText->setTextFormat(Qt::PlainText);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 6);
    layout->addWidget(mIcon);
    layout->addWidget(mText, 1);
    hide();
}

void Banner::Say(const QString &aText)
{
    if (styleSheet().isEmpty()) {  // the first message: most runs have none
        setStyleSheet(
            QStringLiteral("#banner { background: #ffe9a8; border-bottom: 1px solid #c9a227; } "
                           "#banner QLabel { color: #3a2f00; }"));
        mIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(20, 20));
    }
    mText->setText(aText);
    show();
}

void Banner::Clear()
{
    mText->clear();
    hide();
}

QString Banner::Text() const
{
    return mText->text();
}
