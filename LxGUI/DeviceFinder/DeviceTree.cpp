#include "LxGUI/DeviceFinder/DeviceTree.h"

#include <QtWidgets/QHeaderView>

DeviceTree::DeviceTree(QWidget *aParent) : QTreeWidget(aParent)
{
    // texts that are wider than the view are scrolled to
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

void DeviceTree::resizeEvent(QResizeEvent *aEvent)
{
    QTreeWidget::resizeEvent(aEvent);
    header()->setMinimumSectionSize(viewport()->width());
}

DeviceTree::~DeviceTree()
{
    emit AboutToBeDestroyed(this);
}
