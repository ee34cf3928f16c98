#include "LxGUI/Frame/EnterKey.h"

#include <QtCore/QObject>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QPushButton>

#include "LxGUI/Frame/Named.h"

namespace
{

class EnterFilter : public QObject
{
public:
    explicit EnterFilter(QAbstractButton *aButton) : QObject(aButton) { aButton->installEventFilter(this); }

    bool eventFilter(QObject *aButton, QEvent *aEvent) override
    {
        if (aEvent->type() != QEvent::KeyPress) {
            return false;
        }
        const auto &event = *static_cast<QKeyEvent *>(aEvent);
        if (event.isAutoRepeat() || (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)) {
            return false;
        }
        static_cast<QAbstractButton *>(aButton)->click();
        return true;  // this object may be gone
    }
};

}  // namespace

void PressOnEnter(QAbstractButton *aButton)
{
    new EnterFilter(aButton);
}

QPushButton *MakeEnterButton(QWidget *aParent, const char *aName, const QString &aText, const QString &aAccessibleName)
{
    auto *button = Named(new QPushButton(aText, aParent), aName, aAccessibleName);
    button->setAutoDefault(false);
    PressOnEnter(button);
    return button;
}
