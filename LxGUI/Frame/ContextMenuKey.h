#pragma once

#include <QtCore/QObject>

class QWidget;

/// Opens the context menu of the control with the focus at Shift+F10, which only Windows does by itself; the Menu key
/// works everywhere. For a widget and what is in it; belongs to the widget.
class ContextMenuKey : public QObject
{
public:
    /// Once a widget, however often it is called.
    static void Install(QWidget *aWidget);

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

private:
    explicit ContextMenuKey(QWidget *aWidget);
};
