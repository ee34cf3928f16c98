#include "LxGUI/GenBrowser/GenBrowserSearchBar.h"

#include <QtCore/QPointer>

#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/GenBrowser/GenBrowserTreeWalk.h"

GenBrowserSearchBar::GenBrowserSearchBar(GenBrowserTree *aTree, QWidget *aParent) : QLineEdit(aParent), mTree(aTree)
{
    connect(this, SIGNAL(textChanged(const QString &)), this, SLOT(Search(const QString &)));
    connect(this, SIGNAL(returnPressed()), this, SLOT(MoveToNextOccurence()));
}

void GenBrowserSearchBar::ForgetMatches()
{
    mMatches.clear();
    mPosition = 0;
}

void GenBrowserSearchBar::Search(const QString &aQuery)
{
    ForgetMatches();
    mTree->clearSelection();
    const QPointer<QAbstractItemModel> model = mTree->model();
    if (!model) {
        return;
    }
    if (!aQuery.isEmpty()) {
        FindMatches(aQuery);
        if (!mMatches.isEmpty()) {
            mTree->setCurrentIndex(QModelIndex(mMatches.first()));  // a copy, as matches may be forgotten meanwhile
        }
    }
    if (model) {
        emit model->layoutAboutToBeChanged();
        emit model->layoutChanged();
    }
}

void GenBrowserSearchBar::FindMatches(const QString &aQuery)
{
    QModelIndex expanded;
    GenBrowserTreeWalk walk(*mTree->model());
    for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
        const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(index);
        if (!item->Parameter() || !item->ShownName().contains(aQuery, Qt::CaseInsensitive)) {
            continue;
        }
        mMatches.append(index);
        if (const QModelIndex parent = index.parent(); parent.isValid() && parent != expanded) {
            mTree->expand(parent);
            expanded = parent;
        }
    }
}

void GenBrowserSearchBar::MoveToNextOccurence()
{
    Move(1);
}

void GenBrowserSearchBar::MoveToPreviousOccurence()
{
    Move(-1);
}

void GenBrowserSearchBar::Move(qsizetype aStep)
{
    if (mMatches.isEmpty()) {
        return;
    }
    mPosition = (mPosition + aStep + mMatches.size()) % mMatches.size();
    mTree->setCurrentIndex(QModelIndex(mMatches.at(mPosition)));
}
