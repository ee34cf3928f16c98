#pragma once

#include <QtCore/QAbstractItemModel>
#include <vector>

/// Visits every row of a model below the root, depth first in row order.
class GenBrowserTreeWalk
{
public:
    explicit GenBrowserTreeWalk(const QAbstractItemModel &aModel) : mModel(aModel), mLevels{{QModelIndex(), 0}} {}

    /// The first cell of the next row; invalid at the end.
    QModelIndex Next()
    {
        while (!mLevels.empty()) {
            Level &level = mLevels.back();
            const QModelIndex index = mModel.index(level.mNextRow++, 0, level.mParent);
            if (index.isValid()) {
                mLevels.push_back({index, 0});
                return index;
            }
            mLevels.pop_back();
        }
        return QModelIndex();
    }

private:
    struct Level
    {
        QModelIndex mParent;
        int mNextRow;
    };

    const QAbstractItemModel &mModel;
    std::vector<Level> mLevels;
};
