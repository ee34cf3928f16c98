#include "LxGUI/GenBrowser/FeatureCellAccessible.h"

#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

FeatureCellAccessible::FeatureCellAccessible(GenBrowserTree *aTree, const QModelIndex &aIndex)
    : mTree(aTree), mIndex(aIndex)
{
}

bool FeatureCellAccessible::isValid() const
{
    return mTree && mIndex.isValid() && mIndex.model() == mTree->model();
}

const GenBrowserTreeItem &FeatureCellAccessible::Item() const
{
    return *GenBrowserTreeModel::Item(mIndex);
}

bool FeatureCellAccessible::IsName() const
{
    return mIndex.column() == GenBrowserTreeModel::NameColumn;
}

bool FeatureCellAccessible::IsEditable() const
{
    // there is no editor for registers, whatever the device allows
    return Item().Parameter() && Item().Type() != LxGenTypeRegister &&
           (mIndex.sibling(mIndex.row(), GenBrowserTreeModel::ValueColumn).flags() & Qt::ItemIsEditable);
}

QAccessibleInterface *FeatureCellAccessible::parent() const
{
    return mTree ? QAccessible::queryAccessibleInterface(mTree) : nullptr;
}

QString FeatureCellAccessible::text(QAccessible::Text aKind) const
{
    if (!isValid()) {
        return QString();
    }
    const GenBrowserTreeItem &item = Item();
    switch (aKind) {
        case QAccessible::Name:
            return mIndex.data().toString();
        case QAccessible::Value:
            return item.ValueText();
        case QAccessible::Description:
            if (!item.ErrorMsg().isEmpty()) {
                return item.ErrorMsg();
            }
            return IsName() ? item.ValueText() : item.ShownName();
        case QAccessible::Help:
            return item.ToolTip();
        default:
            return QString();
    }
}

QRect FeatureCellAccessible::rect() const
{
    if (!isValid()) {
        return QRect();
    }
    const QRect place = mTree->visualRect(mIndex);
    return QRect(mTree->viewport()->mapToGlobal(place.topLeft()), place.size());
}

QAccessible::Role FeatureCellAccessible::role() const
{
    return mIndex.column() == GenBrowserTreeModel::NameColumn ? QAccessible::TreeItem : QAccessible::Cell;
}

QAccessible::State FeatureCellAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const GenBrowserTreeItem &item = Item();
    state.selectable = true;
    state.focusable = true;
    state.selected = isSelected();
    state.focused = mTree->currentIndex() == mIndex && mTree->hasFocus();
    state.offscreen = !mTree->visualRect(mIndex).intersects(mTree->viewport()->rect());
    if (!item.Parameter()) {
        state.expandable = IsName();
        state.expanded = IsName() && mTree->isExpanded(mIndex);
        state.collapsed = IsName() && !state.expanded;
        return state;
    }
    state.disabled = !item.IsImplemented() || !item.IsAvailable();
    state.editable = IsEditable();
    state.readOnly = !state.editable;
    state.busy = !item.IsDone();
    state.checkable = item.Type() == LxGenTypeBoolean;
    state.checked = state.checkable && item.ValueText() == QLatin1String("True");
    return state;
}

void *FeatureCellAccessible::interface_cast(QAccessible::InterfaceType aType)
{
    if (aType == QAccessible::TableCellInterface) {
        return static_cast<QAccessibleTableCellInterface *>(this);
    }
    return aType == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

bool FeatureCellAccessible::isSelected() const
{
    return isValid() && mTree->selectionModel()->isSelected(mIndex);
}

QList<QAccessibleInterface *> FeatureCellAccessible::columnHeaderCells() const
{
    // the header's cells are the first children of the tree
    return {parent()->child(columnIndex())};
}

int FeatureCellAccessible::rowIndex() const
{
    return parent()->indexOfChild(this) / GenBrowserTreeModel::ColumnCount - 1;
}

QStringList FeatureCellAccessible::actionNames() const
{
    if (!isValid()) {
        return {};
    }
    if (!Item().Parameter()) {
        return {toggleAction(), setFocusAction()};
    }
    return IsEditable() ? QStringList{pressAction(), setFocusAction()} : QStringList{setFocusAction()};
}

void FeatureCellAccessible::doAction(const QString &aName)
{
    if (!isValid() || !actionNames().contains(aName)) {
        return;
    }
    if (aName == toggleAction()) {
        mTree->setExpanded(mIndex.sibling(mIndex.row(), GenBrowserTreeModel::NameColumn), !mTree->isExpanded(mIndex));
        return;
    }
    mTree->setFocus();
    mTree->setCurrentIndex(mIndex);
    if (aName == pressAction()) {
        mTree->edit(mIndex.sibling(mIndex.row(), GenBrowserTreeModel::ValueColumn));
    }
}
