#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>

#include "LxGUI/Frame/TextDelegate.h"
#include "LxGUI/GenBrowser/PlainCell.h"

class GenBrowserTreeItem;
class GenBrowserTreeModel;
class GenBrowserWnd;

/// Edits values in place: picks an editor by the kind of the feature, fills it, and writes what it holds.
class GenBrowserItemDelegate : public TextDelegate
{
    Q_OBJECT

public:
    /// @param aWindow the delegate's parent; may be null.
    GenBrowserItemDelegate(GenBrowserWnd *aWindow, GenBrowserTreeModel *aModel);

    QWidget *createEditor(QWidget *aParent, const QStyleOptionViewItem &aOption,
                          const QModelIndex &aIndex) const override;
    void destroyEditor(QWidget *aEditor, const QModelIndex &aIndex) const override;
    void paint(QPainter *aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex) const override;
    void setEditorData(QWidget *aEditor, const QModelIndex &aIndex) const override;
    void setModelData(QWidget *aEditor, QAbstractItemModel *aModel, const QModelIndex &aIndex) const override;

    /// Whether a value is being written, or its failure shown, at this moment. The view that asked for it is on the
    /// stack then and goes on with its editor, its model and this delegate.
    bool IsWriting() const { return mIsWriting; }
    /// Takes over an object, which may be this delegate: it is deleted when the view on the stack is done.
    void DeleteWhenWritten(QObject *aObject) const;

protected:
    void initStyleOption(QStyleOptionViewItem *aOption, const QModelIndex &aIndex) const override;

public slots:
    /// Lets refreshes reach the row again that was edited.
    void closeEditor(QWidget *aEditor, QAbstractItemDelegate::EndEditHint aHint);

private:
    QWidget *MakeEditor(QWidget *aParent, const GenBrowserTreeItem &aItem) const;
    bool Write(QWidget *aEditor, GenBrowserTreeItem &aItem, QString &aError) const;
    void Commit(QWidget *aEditor, QAbstractItemModel *aModel, const QModelIndex &aIndex,
                GenBrowserTreeItem &aItem) const;

    const QPointer<GenBrowserTreeModel> mModel;
    mutable QPointer<QWidget> mEditor;  // the one that was made last
    mutable bool mIsWriting = false;
    mutable QPointer<QWidget> mWrittenEditor;
    mutable QList<QPointer<QObject>> mDoomed;  // deleted when nothing is written any more
    mutable PlainCell mPlainCell;
};
