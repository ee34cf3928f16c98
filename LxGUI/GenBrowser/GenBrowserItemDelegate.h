#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QStyledItemDelegate>

class GenBrowserTreeItem;
class GenBrowserTreeModel;
class GenBrowserWnd;

/// Edits values in place: picks an editor by the kind of the feature, fills it, and writes what it holds.
class GenBrowserItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param aWindow the delegate's parent; may be null.
    GenBrowserItemDelegate(GenBrowserWnd *aWindow, GenBrowserTreeModel *aModel);

    QWidget *createEditor(QWidget *aParent, const QStyleOptionViewItem &aOption,
                          const QModelIndex &aIndex) const override;
    void destroyEditor(QWidget *aEditor, const QModelIndex &aIndex) const override;
    void setEditorData(QWidget *aEditor, const QModelIndex &aIndex) const override;
    void setModelData(QWidget *aEditor, QAbstractItemModel *aModel, const QModelIndex &aIndex) const override;

    /// Whether a value is being written at this moment.
    bool IsWriting() const { return mIsWriting; }

public slots:
    /// Lets refreshes reach the row again that was edited.
    void closeEditor(QWidget *aEditor, QAbstractItemDelegate::EndEditHint aHint);

private:
    QWidget *MakeEditor(QWidget *aParent, const GenBrowserTreeItem &aItem) const;
    bool Write(QWidget *aEditor, GenBrowserTreeItem &aItem, QString &aError) const;
    void ReportLater(const QString &aError) const;

    GenBrowserWnd *const mWindow;
    const QPointer<GenBrowserTreeModel> mModel;
    mutable QPointer<QWidget> mEditor;  // the one that was made last
    mutable bool mIsWriting = false;
};
