#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QItemSelectionModel>
#include <QtGui/QRegion>
#include <QtWidgets/QTreeView>
#include <memory>

class GenBrowserTreeItem;

/// The view of the features.
class GenBrowserTree : public QTreeView
{
    Q_OBJECT

public:
    explicit GenBrowserTree(QWidget *aParent = nullptr);

    /// Replaces the model and returns what the view kept for the one before, which is to be deleted.
    [[nodiscard]] std::unique_ptr<QItemSelectionModel> ReplaceModel(QAbstractItemModel *aModel);

    using QTreeView::edit;

    /// False for a place of the viewport that needs no painting at this moment, as nothing has changed there.
    bool IsPainted(const QRect &aPlace) const { return mPainted.isNull() || mPainted.intersects(aPlace); }

public slots:
    /// Whether a row is on screen.
    bool IsVisibleSlot(QModelIndex aIndex);

signals:
    /// For other threads than the GUI's, which get IsVisibleSlot()'s answer; they wait for the GUI's event loop.
    bool IsVisibleSignal(QModelIndex aIndex);
    void OnSelectionChanged(const GenBrowserTreeItem *aSelection);

protected:
    void dataChanged(const QModelIndex &aFrom, const QModelIndex &aTo, const QList<int> &aRoles = {}) override;
    void timerEvent(QTimerEvent *aEvent) override;
    void paintEvent(QPaintEvent *aEvent) override;
    void scrollContentsBy(int aX, int aY) override;
    /// The keyboard edits the value of the current row, whichever of its cells is the current one.
    bool edit(const QModelIndex &aIndex, EditTrigger aTrigger, QEvent *aEvent) override;
    void selectionChanged(const QItemSelection &aSelected, const QItemSelection &aDeselected) override;
    void drawBranches(QPainter *aPainter, const QRect &aPlace, const QModelIndex &aIndex) const override;
    void drawRow(QPainter *aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex) const override;

private:
    /// Has drawn what has changed so far.
    void DrawChanges();

    QRegion mChanged;  // of the viewport; drawn when the timer fires
    QBasicTimer mChangedTimer;
    QRect mPainted;  // by the event that is handled; null when none is
};
