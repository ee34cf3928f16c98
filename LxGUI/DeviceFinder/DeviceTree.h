#pragma once

#include <QtWidgets/QTreeWidget>

/// A tree that tells before its items die. They can die with a widget of the host while the search thread still fills
/// them.
class DeviceTree : public QTreeWidget
{
    Q_OBJECT

public:
    using QTreeWidget::QTreeWidget;
    ~DeviceTree() override;

signals:
    void AboutToBeDestroyed(DeviceTree *aTree);
};
