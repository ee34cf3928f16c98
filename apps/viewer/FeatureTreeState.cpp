#include "FeatureTreeState.h"

#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeView>

namespace
{

QStringList PathOf(const QModelIndex &aIndex)
{
    QStringList path;
    for (QModelIndex index = aIndex.siblingAtColumn(0); index.isValid(); index = index.parent()) {
        path.prepend(index.data().toString());
    }
    return path;
}

// The row of a path; invalid when it is not there.
QModelIndex Find(const QAbstractItemModel &aModel, const QStringList &aPath)
{
    QModelIndex found;
    for (const QString &text : aPath) {
        const QModelIndex parent = found;
        found = QModelIndex();
        for (int row = 0; row < aModel.rowCount(parent) && !found.isValid(); ++row) {
            const QModelIndex index = aModel.index(row, 0, parent);
            if (index.data().toString() == text) {
                found = index;
            }
        }
        if (!found.isValid()) {
            break;
        }
    }
    return found;
}

}  // namespace

FeatureTreeState::FeatureTreeState(const QTreeView &aTree)
{
    if (!aTree.model()) {
        return;
    }
    NoteClosed(aTree, QModelIndex(), {});
    const QModelIndex current = aTree.currentIndex();
    mCurrent = PathOf(current);
    mCurrentColumn = current.column();
    mTop = PathOf(aTree.indexAt(QPoint(0, 0)));
    mScrolled = aTree.verticalScrollBar()->value();
}

void FeatureTreeState::NoteClosed(const QTreeView &aTree, const QModelIndex &aParent, const QStringList &aPath)
{
    for (int row = 0; row < aTree.model()->rowCount(aParent); ++row) {
        const QModelIndex index = aTree.model()->index(row, 0, aParent);
        if (!aTree.model()->hasChildren(index)) {
            continue;
        }
        const QStringList path = aPath + QStringList(index.data().toString());
        if (!aTree.isExpanded(index)) {
            mClosed.insert(path);
        }
        NoteClosed(aTree, index, path);
    }
}

void FeatureTreeState::ApplyTo(QTreeView &aTree) const
{
    if (!aTree.model()) {
        return;
    }
    for (const QStringList &path : mClosed) {
        aTree.collapse(Find(*aTree.model(), path));
    }
    if (const QModelIndex current = Find(*aTree.model(), mCurrent); current.isValid()) {
        aTree.setCurrentIndex(current.siblingAtColumn(mCurrentColumn));
    }
    if (const QModelIndex top = Find(*aTree.model(), mTop); top.isValid()) {
        aTree.scrollTo(top, QAbstractItemView::PositionAtTop);
    }
    else {
        aTree.verticalScrollBar()->setValue(mScrolled);
    }
}
