#include "LxGUI/GenBrowser/GenBrowserTree.h"

#include <QtCore/QItemSelectionModel>
#include <QtGui/QPainter>
#include <QtGui/QPalette>

#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

namespace
{

constexpr int StripEnd = 20;  // where the strip in front of a feature ends

}  // namespace

GenBrowserTree::GenBrowserTree(QWidget *aParent) : QTreeView(aParent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // All rows are one line; with that known, finding a row's place does not mean to measure all rows before it.
    setUniformRowHeights(true);
    connect(this, SIGNAL(IsVisibleSignal(QModelIndex)), this, SLOT(IsVisibleSlot(QModelIndex)),
            Qt::BlockingQueuedConnection);
}

void GenBrowserTree::ReplaceModel(QAbstractItemModel *aModel)
{
    reset();  // ends open editors; setModel() would have them write what they hold first
    QItemSelectionModel *const before = selectionModel();
    setModel(aModel);
    delete before;  // setModel() leaves the old one to its caller
}

bool GenBrowserTree::IsVisibleSlot(QModelIndex aIndex)
{
    return visualRect(aIndex).intersects(rect());
}

bool GenBrowserTree::edit(const QModelIndex &aIndex, EditTrigger aTrigger, QEvent *aEvent)
{
    const bool isKey = aTrigger == QAbstractItemView::EditKeyPressed;
    return QTreeView::edit(isKey ? aIndex.siblingAtColumn(GenBrowserTreeModel::ValueColumn) : aIndex, aTrigger, aEvent);
}

void GenBrowserTree::selectionChanged(const QItemSelection &aSelected, const QItemSelection &aDeselected)
{
    const QModelIndexList indexes = aSelected.indexes();
    if (!indexes.isEmpty()) {
        emit OnSelectionChanged(GenBrowserTreeModel::Item(indexes.first()));
    }
    QTreeView::selectionChanged(aSelected, aDeselected);
}

void GenBrowserTree::drawRow(QPainter *aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex) const
{
    const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(aIndex);
    QRect ground = aOption.rect;
    if (item && item->Parameter()) {
        ground.setRight(StripEnd - 1);
    }
    aPainter->fillRect(ground, palette().window());
    QTreeView::drawRow(aPainter, aOption, aIndex);
    aPainter->save();
    aPainter->setPen(palette().color(QPalette::AlternateBase));
    aPainter->setBrush(Qt::NoBrush);
    aPainter->drawRect(aOption.rect);
    aPainter->restore();
}
