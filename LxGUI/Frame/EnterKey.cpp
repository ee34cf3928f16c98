#include "LxGUI/Frame/EnterKey.h"

#include <QtCore/QObject>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractButton>

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
