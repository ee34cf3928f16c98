#include "LxGUI/GenBrowser/GenBrowserTree.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QAccessible>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtGui/QTransform>
#include <utility>

#include "LxGUI/GenBrowser/FeatureTreeAccessible.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

namespace
{

constexpr int StripEnd = 20;  // where the strip in front of a feature ends
// Milliseconds for which changed rows are gathered, so that the rows of one refresh are drawn at once: unnoticed.
constexpr int DrawingDelay = 20;

/// Whether a line of the pen covers whole pixels, the same as a filled rectangle. Other scales round lines their own
/// way.
bool DrawsLinesLikeRectangles(const QTransform &aTransform)
{
    const bool isEven = aTransform.type() <= QTransform::TxScale && aTransform.m11() == aTransform.m22();
    return isEven && (aTransform.m11() == 1.0 || aTransform.m11() == 2.0);
}

/// Outlines a rectangle as a pen does. The toolkit draws the lines of a pen pixel by pixel, which takes longer than all
/// else in a row, and rectangles at once.
void DrawOutline(QPainter &aPainter, const QRect &aPlace, const QColor &aColor)
{
    if (!DrawsLinesLikeRectangles(aPainter.deviceTransform())) {
        const QPen pen = aPainter.pen();
        const QBrush brush = aPainter.brush();
        aPainter.setPen(aColor);
        aPainter.setBrush(Qt::NoBrush);
        aPainter.drawRect(aPlace);
        aPainter.setPen(pen);
        aPainter.setBrush(brush);
        return;
    }
    const QRectF place(aPlace);
    for (const qreal y : {place.top(), place.bottom()}) {
        aPainter.fillRect(QRectF(place.left() - 0.5, y - 0.5, place.width() + 1, 1), aColor);
    }
    for (const qreal x : {place.left(), place.right()}) {
        aPainter.fillRect(QRectF(x - 0.5, place.top() + 0.5, 1, place.height() - 1), aColor);
    }
}

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

void GenBrowserTree::drawBranches(QPainter *aPainter, const QRect &aPlace, const QModelIndex &aIndex) const
{
    // The Fusion style draws nothing there for a row without children, and takes its time.
    const bool isEmpty = !model()->hasChildren(aIndex) && style()->inherits("QFusionStyle");
    if (!isEmpty && IsPainted(aPlace)) {
        QTreeView::drawBranches(aPainter, aPlace, aIndex);
    }
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
    DrawOutline(*aPainter, aOption.rect, palette().color(QPalette::AlternateBase));
}
