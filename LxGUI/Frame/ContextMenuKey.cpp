#include "LxGUI/Frame/ContextMenuKey.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace
{

constexpr const char *KeyObjectName = "contextMenuKey";

}  // namespace

void ContextMenuKey::Install(QWidget *aWidget)
{
#ifndef Q_OS_WIN
    if (!aWidget->findChild<QObject *>(QLatin1String(KeyObjectName), Qt::FindDirectChildrenOnly)) {
        new ContextMenuKey(aWidget);
    }
#endif
}

ContextMenuKey::ContextMenuKey(QWidget *aWidget) : QObject(aWidget)
{
    setObjectName(QLatin1String(KeyObjectName));
    aWidget->installEventFilter(this);
}

bool ContextMenuKey::eventFilter(QObject *aObject, QEvent *aEvent)
{
    if (aEvent->type() != QEvent::KeyPress) {
        return false;
    }
    // a key that the control with the focus leaves alone comes up to the widget
    const auto &event = *static_cast<QKeyEvent *>(aEvent);
    QWidget *focus = QApplication::focusWidget();
    const auto *widget = static_cast<QWidget *>(aObject);
    if (event.key() != Qt::Key_F10 || event.modifiers() != Qt::ShiftModifier || !focus ||
        (focus != widget && !widget->isAncestorOf(focus)))
    {
        return false;
    }
    const QPoint place = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, focus->mapToGlobal(place));
    QCoreApplication::sendEvent(focus, &menu);
    return true;  // this object may be gone
}
