#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <atomic>
#include <memory>

#include "LxGUI/LxWnd.h"
#include "LxGenICam/LxGenTypes.h"

class GenBrowserTreeItem;
class GenBrowserWnd;
class LxGenCategory;
class LxGenParameter;
class LxGenParameterArray;

/// The features of a device as a tree of two columns, name and value: grouped by category or as one list.
///
/// Used on the GUI thread. Other threads may call index() and rowCount(), EditIndex(), NotifyItem(), IsStopping(),
/// IsDeviceReadable(), and emit RefreshItemSignal().
class GenBrowserTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column
    {
        NameColumn = 0,
        ValueColumn = 1,
        ColumnCount = 2,
    };

    /// Builds the tree, which reads every shown feature once.
    /// @param aWindow asked which features to show; may be null, then all.
    /// @param aParameters may be null, then the model is empty.
    GenBrowserTreeModel(GenBrowserWnd *aWindow, LxGenParameterArray *aParameters, bool aTreeMode, bool aUseDisplayNames,
                        LxGenVisibility aVisibility);
    ~GenBrowserTreeModel() override;

    QModelIndex index(int aRow, int aColumn, const QModelIndex &aParent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &aIndex) const override;
    using QObject::parent;
    int rowCount(const QModelIndex &aParent = QModelIndex()) const override;
    int columnCount(const QModelIndex &aParent = QModelIndex()) const override;
    QVariant data(const QModelIndex &aIndex, int aRole = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &aIndex) const override;
    QVariant headerData(int aSection, Qt::Orientation aOrientation, int aRole = Qt::DisplayRole) const override;
    /// Sorts the top level by feature name, whatever the column and the order. Nothing happens when it is sorted.
    void sort(int aColumn, Qt::SortOrder aOrder = Qt::AscendingOrder) override;

    /// The item of an index; null for an invalid one.
    static GenBrowserTreeItem *Item(const QModelIndex &aIndex);
    GenBrowserTreeItem *Root() const { return mRoot.get(); }

    /// Reads every feature on the calling thread, which must be the GUI's.
    void RefreshAll();

    /// The value cell that is being edited; refreshes leave it alone.
    QModelIndex EditIndex() const;
    void SetEditIndex(const QModelIndex &aIndex);
    void ClearEditIndex() { SetEditIndex(QModelIndex()); }

    /// Tells the views that an item has new data, unless it is being edited.
    void NotifyItem(GenBrowserTreeItem *aItem);
    /// False while the device is lost. Any thread.
    bool IsDeviceReadable() const;
    /// The native parent of the window, or null.
    HWND NativeParent() const;

    /// The model is about to go: notifications end, readings that run are given up at the next call of the device.
    void Stop();
    bool IsStopping() const { return mIsStopping; }
    /// Ends what is left and takes the features away, for a model that must live on without them.
    void Clear();
    /// Notifications that run on threads of the SDK.
    void CountCalls(int aNumber) { mRunningCalls += aNumber; }
    bool HasRunningCalls() const { return mRunningCalls != 0; }

public slots:
    void RefreshItemSlot(QModelIndex aFrom, QModelIndex aTo);

signals:
    void RefreshItemSignal(QModelIndex aFrom, QModelIndex aTo);

private:
    void Build();
    void AddFeature(LxGenParameter *aParameter, const QString &aPath);
    bool IsShown(LxGenParameter *aParameter, const QString &aPath);
    bool IsCategoryShown(const QString &aPath);
    GenBrowserTreeItem *CategoryItem(const QString &aName, GenBrowserTreeItem *aParent);
    void Append(GenBrowserTreeItem *aParent, std::unique_ptr<GenBrowserTreeItem> aChild);
    GenBrowserTreeItem *ItemOrRoot(const QModelIndex &aIndex) const;
    QVariant DisplayData(const GenBrowserTreeItem &aItem, int aColumn) const;

    GenBrowserWnd *const mWindow;
    LxGenParameterArray *const mParameters;
    const bool mTreeMode;
    const bool mUseDisplayNames;
    const LxGenVisibility mVisibility;
    QHash<QString, GenBrowserTreeItem *> mCategoryItems;
    // by path; only while the tree is built
    QHash<QString, bool> mShownCategories;
    QHash<QString, GenBrowserTreeItem *> mParents;
    std::atomic<bool> mIsStopping{false};
    std::atomic<int> mRunningCalls{0};
    mutable QMutex mTreeLock;  // guards parents, children and rows of all items; never held over a call of the SDK
    mutable QMutex mEditLock;  // guards mEditIndex
    QModelIndex mEditIndex;
    std::unique_ptr<GenBrowserTreeItem> mRoot;
};
