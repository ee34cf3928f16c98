#include "LxGUI/GenBrowser/GenBrowserTree.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QAccessible>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <utility>

#include "LxGUI/GenBrowser/FeatureTreeAccessible.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

namespace
{

constexpr int StripEnd = 20;  // where the strip in front of a feature ends
// Milliseconds for which changed rows are gathered, so that the rows of one refresh are drawn at once: unnoticed.
constexpr int DrawingDelay = 20;

}  // namespace

GenBrowserTree::GenBrowserTree(QWidget *aParent) : QTreeView(aParent)
{
    InstallFeatureTreeAccessibility();
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    // All rows are one line; with that known, finding a row's place does not mean to measure all rows before it.
    setUniformRowHeights(true);
    connect(this, SIGNAL(IsVisibleSignal(QModelIndex)), this, SLOT(IsVisibleSlot(QModelIndex)),
            Qt::BlockingQueuedConnection);
}

std::unique_ptr<QItemSelectionModel> GenBrowserTree::ReplaceModel(QAbstractItemModel *aModel)
{
    reset();  // ends open editors; setModel() would have them write what they hold first
    std::unique_ptr<QItemSelectionModel> before(selectionModel());
    setModel(aModel);
    return before;
}

bool GenBrowserTree::IsVisibleSlot(QModelIndex aIndex)
{
    return visualRect(aIndex).intersects(rect());
}

void GenBrowserTree::dataChanged(const QModelIndex &aFrom, const QModelIndex &aTo, const QList<int> &aRoles)
{
    const bool isOneRow = aFrom.isValid() && aTo.isValid() && aFrom.siblingAtColumn(aTo.column()) == aTo;
    if (!isOneRow || state() == EditingState || QAccessible::isActive()) {
        QTreeView::dataChanged(aFrom, aTo, aRoles);
        return;
    }
    // Rows are told of at every refresh, changed or not. All are equally high, so only what looks different matters.
    const GenBrowserTreeItem::Change change = GenBrowserTreeModel::Item(aFrom)->TakeChange();
    if (change == GenBrowserTreeItem::Change::None) {
        return;
    }
    QRect place = visualRect(aFrom.siblingAtColumn(GenBrowserTreeModel::ValueColumn));
    if (change == GenBrowserTreeItem::Change::Row) {
        place.setLeft(0);
        place.setRight(viewport()->width() - 1);
    }
    if (place.intersects(viewport()->rect())) {
        mChanged += place;
        if (!mChangedTimer.isActive()) {
            mChangedTimer.start(DrawingDelay, this);
        }
    }
}

void GenBrowserTree::timerEvent(QTimerEvent *aEvent)
{
    if (aEvent->timerId() == mChangedTimer.timerId()) {
        DrawChanges();
    }
    else {
        QTreeView::timerEvent(aEvent);
    }
}

void GenBrowserTree::paintEvent(QPaintEvent *aEvent)
{
    mPainted = aEvent->rect();
    QTreeView::paintEvent(aEvent);
    mPainted = QRect();
}

void GenBrowserTree::scrollContentsBy(int aX, int aY)
{
    DrawChanges();  // rows move, and what is to be drawn of them with them
    QTreeView::scrollContentsBy(aX, aY);
}

void GenBrowserTree::DrawChanges()
{
    mChangedTimer.stop();
    viewport()->update(std::exchange(mChanged, QRegion()));
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
    const QPen pen = aPainter->pen();
    const QBrush brush = aPainter->brush();
    aPainter->setPen(palette().color(QPalette::AlternateBase));
    aPainter->setBrush(Qt::NoBrush);
    aPainter->drawRect(aOption.rect);
    aPainter->setPen(pen);
    aPainter->setBrush(brush);
}
