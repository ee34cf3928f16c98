#pragma once

#include <QtWidgets/QTreeWidget>

/// A tree that tells before its items die. They can die with a widget of the host while the search thread still fills
/// them.
class DeviceTree : public QTreeWidget
{
    Q_OBJECT

public:
    explicit DeviceTree(QWidget *aParent);
    ~DeviceTree() override;

signals:
    void AboutToBeDestroyed(DeviceTree *aTree);

protected:
    void resizeEvent(QResizeEvent *aEvent) override;
};
