#pragma once

#include <QtCore/QSet>
#include <QtCore/QStringList>

class QAbstractItemModel;
class QModelIndex;
class QTreeView;

/// What a user has made of a tree: which row is current, what is closed, and where it is scrolled to. Rows are known by
/// the texts of their first column, so that it can be brought back when the rows are others, as far as they are there.
class FeatureTreeState
{
public:
    FeatureTreeState() = default;
    explicit FeatureTreeState(const QTreeView &aTree);

    /// Applies it to a tree whose rows are all open.
    void ApplyTo(QTreeView &aTree) const;

private:
    void NoteClosed(const QTreeView &aTree, const QModelIndex &aParent, const QStringList &aPath);

    QSet<QStringList> mClosed;
    QStringList mCurrent;
    int mCurrentColumn = 0;
    QStringList mTop;
    int mScrolled = 0;
};
