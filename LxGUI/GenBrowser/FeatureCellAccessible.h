#pragma once

#include <QtCore/QPersistentModelIndex>
#include <QtCore/QPointer>
#include <QtGui/QAccessible>

#include "LxGUI/GenBrowser/GenBrowserTree.h"

class GenBrowserTreeItem;

/// What assistive technology reads of a cell of the tree. The name's cell, which the keyboard moves to, tells the value
/// too, and the states are those of the whole feature.
class FeatureCellAccessible : public QAccessibleInterface,
                              public QAccessibleTableCellInterface,
                              public QAccessibleActionInterface
{
public:
    FeatureCellAccessible(GenBrowserTree *aTree, const QModelIndex &aIndex);

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *parent() const override;
    QString text(QAccessible::Text aKind) const override;
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType aType) override;

    bool isSelected() const override;
    QList<QAccessibleInterface *> columnHeaderCells() const override;
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return mIndex.column(); }
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    QStringList actionNames() const override;
    void doAction(const QString &aName) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

    const QPersistentModelIndex &Index() const { return mIndex; }

private:
    const GenBrowserTreeItem &Item() const;
    bool IsName() const;
    bool IsEditable() const;

    const QPointer<GenBrowserTree> mTree;
    const QPersistentModelIndex mIndex;
};
