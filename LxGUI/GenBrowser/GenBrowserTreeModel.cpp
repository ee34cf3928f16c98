#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

#include <QtCore/QMutexLocker>
#include <QtCore/QSize>
#include <QtGui/QBrush>
#include <QtGui/QFontMetrics>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <vector>

#include "LxGUI/Frame/Text.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeWalk.h"
#include "LxGUI/GenBrowser/GenBrowserWnd.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

constexpr QChar PathSeparator = QLatin1Char('\\');
constexpr int RowPadding = 10;
constexpr QColor ErrorColor(128, 0, 0);
constexpr QColor SelectedColor(206, 219, 234);
constexpr QColor SelectorColor(153, 180, 209);

/// The last part of a category path; the whole of it when a separator is at an end.
QString CategoryName(const QString &aPath)
{
    const qsizetype last = aPath.lastIndexOf(PathSeparator);
    return last > 0 && last + 1 < aPath.size() ? aPath.mid(last + 1) : aPath;
}

bool HasVisibleEntry(const LxGenEnum &aEnum, LxGenVisibility aLevel)
{
    int64_t count = 0;
    aEnum.GetEntriesCount(count);
    for (int64_t i = 0; i < count; ++i) {
        const LxGenEnumEntry *entry = nullptr;
        if (aEnum.GetEntryByIndex(i, &entry).IsOK() && entry && entry->IsVisible(aLevel)) {
            return true;
        }
    }
    return false;
}

QFont ItemFont(const GenBrowserTreeItem &aItem)
{
    QFont font = QApplication::font();
    if (!aItem.Parameter() || !aItem.SelectedParameters().isEmpty()) {
        font.setBold(true);
    }
    return font;
}

QBrush Background(const GenBrowserTreeItem &aItem)
{
    if (!aItem.ErrorMsg().isEmpty()) {
        return ErrorColor;
    }
    if (!aItem.Parameter()) {
        return QApplication::palette().window();
    }
    if (!aItem.SelectingParameters().isEmpty()) {
        return SelectedColor;
    }
    return aItem.SelectedParameters().isEmpty() ? QApplication::palette().base() : QBrush(SelectorColor);
}

QBrush Foreground(const GenBrowserTreeItem &aItem, int aColumn)
{
    if (!aItem.ErrorMsg().isEmpty()) {
        return QColor(Qt::white);
    }
    const bool isGrey = aItem.Parameter() && !aItem.IsWritable() &&
                        (aColumn != GenBrowserTreeModel::NameColumn || !aItem.IsAvailable());
    return isGrey ? QApplication::palette().mid() : QApplication::palette().text();
}

QSize RowSize(const GenBrowserTreeItem &aItem)
{
    const QFontMetrics metrics(ItemFont(aItem));
    const QMutexLocker lock(&aItem.Lock());
    return metrics.size(Qt::TextSingleLine, aItem.ValueText()) + QSize(0, RowPadding);
}

bool ComesBefore(const GenBrowserTreeItem &aLeft, const GenBrowserTreeItem &aRight)
{
    return QString::compare(aLeft.Name(), aRight.Name(), Qt::CaseInsensitive) < 0;
}

}  // namespace

GenBrowserTreeModel::GenBrowserTreeModel(GenBrowserWnd *aWindow, LxGenParameterArray *aParameters, bool aTreeMode,
                                         bool aUseDisplayNames, LxGenVisibility aVisibility)
    : mWindow(aWindow),
      mParameters(aParameters),
      mTreeMode(aTreeMode),
      mUseDisplayNames(aUseDisplayNames),
      mVisibility(aVisibility)
{
    Build();
    connect(this, &GenBrowserTreeModel::RefreshItemSignal, this, &GenBrowserTreeModel::RefreshItemSlot);
}

GenBrowserTreeModel::~GenBrowserTreeModel()
{
    Stop();
}

// Building

void GenBrowserTreeModel::Build()
{
    if (!mParameters) {
        return;
    }
    mRoot = std::make_unique<GenBrowserTreeItem>(this, nullptr, nullptr, mVisibility, mUseDisplayNames);
    const uint32_t count = mParameters->GetCount();
    for (uint32_t i = 0; i < count; ++i) {
        LxGenParameter *parameter = (*mParameters)[i];
        if (!parameter) {
            continue;
        }
        LxString text;
        parameter->GetCategory(text);
        const QString path = ToQString(text);
        if (IsShown(parameter, path)) {
            AddFeature(parameter, mTreeMode ? path : QString());
        }
    }
    mShownCategories.clear();
    mParents.clear();
}

bool GenBrowserTreeModel::IsShown(LxGenParameter *aParameter, const QString &aPath)
{
    if (!aParameter->IsVisible(mVisibility) || !aParameter->IsImplemented() || !IsCategoryShown(aPath)) {
        return false;
    }
    const auto *enumeration = dynamic_cast<LxGenEnum *>(aParameter);
    if (enumeration && !HasVisibleEntry(*enumeration, mVisibility)) {
        return false;
    }
    return !mWindow || mWindow->IsParameterDisplayed(aParameter);
}

bool GenBrowserTreeModel::IsCategoryShown(const QString &aPath)
{
    const auto known = mShownCategories.constFind(aPath);
    if (known != mShownCategories.constEnd()) {
        return *known;
    }
    const LxGenCategory *category = mParameters->GetCategory(ToLxString(CategoryName(aPath)));
    const bool isShown = category && category->IsVisible(mVisibility) && category->IsImplemented();
    mShownCategories.insert(aPath, isShown);
    return isShown;
}

void GenBrowserTreeModel::AddFeature(LxGenParameter *aParameter, const QString &aPath)
{
    GenBrowserTreeItem *&parent = mParents[aPath];
    if (!parent) {
        parent = mRoot.get();
        for (const QString &segment : aPath.split(PathSeparator, Qt::SkipEmptyParts)) {
            if (segment.toLower() != QLatin1String("root")) {
                parent = CategoryItem(segment, parent);
            }
        }
    }
    Append(parent, std::make_unique<GenBrowserTreeItem>(this, aParameter, nullptr, mVisibility, mUseDisplayNames));
}

GenBrowserTreeItem *GenBrowserTreeModel::CategoryItem(const QString &aName, GenBrowserTreeItem *aParent)
{
    const auto known = mCategoryItems.constFind(aName);
    if (known != mCategoryItems.constEnd()) {
        return *known;
    }
    LxGenCategory *category = mParameters->GetCategory(ToLxString(aName));
    if (!category) {
        return aParent;  // A part of a path that is no category has nothing to show.
    }
    auto item = std::make_unique<GenBrowserTreeItem>(this, nullptr, category, mVisibility, mUseDisplayNames);
    GenBrowserTreeItem *const added = item.get();
    Append(aParent, std::move(item));
    mCategoryItems.insert(aName, added);
    return added;
}

void GenBrowserTreeModel::Append(GenBrowserTreeItem *aParent, std::unique_ptr<GenBrowserTreeItem> aChild)
{
    const QMutexLocker lock(&mTreeLock);
    aParent->AppendChild(std::move(aChild));
}

// Structure

GenBrowserTreeItem *GenBrowserTreeModel::Item(const QModelIndex &aIndex)
{
    return static_cast<GenBrowserTreeItem *>(aIndex.internalPointer());
}

// The view may still hold indexes of a model that was cleared while one of its calls ran: they lead to nothing.
GenBrowserTreeItem *GenBrowserTreeModel::ItemOrRoot(const QModelIndex &aIndex) const
{
    return aIndex.isValid() && mRoot ? Item(aIndex) : mRoot.get();
}

QModelIndex GenBrowserTreeModel::index(int aRow, int aColumn, const QModelIndex &aParent) const
{
    if (!hasIndex(aRow, aColumn, aParent)) {
        return QModelIndex();
    }
    const QMutexLocker lock(&mTreeLock);
    GenBrowserTreeItem *const child = ItemOrRoot(aParent)->Child(aRow);
    return child ? createIndex(aRow, aColumn, child) : QModelIndex();
}

QModelIndex GenBrowserTreeModel::parent(const QModelIndex &aIndex) const
{
    if (!aIndex.isValid() || !mRoot) {
        return QModelIndex();
    }
    const QMutexLocker lock(&mTreeLock);
    GenBrowserTreeItem *const item = Item(aIndex)->ParentItem();
    if (!item || item == mRoot.get()) {
        return QModelIndex();
    }
    return createIndex(item->Row(), NameColumn, item);
}

int GenBrowserTreeModel::rowCount(const QModelIndex &aParent) const
{
    if (aParent.column() > 0) {
        return 0;
    }
    const QMutexLocker lock(&mTreeLock);
    const GenBrowserTreeItem *const item = ItemOrRoot(aParent);
    return item ? item->ChildCount() : 0;
}

int GenBrowserTreeModel::columnCount(const QModelIndex & /*aParent*/) const
{
    return ColumnCount;
}

void GenBrowserTreeModel::sort(int /*aColumn*/, Qt::SortOrder /*aOrder*/)
{
    if (!mRoot) {
        return;
    }
    // Only this thread changes the order, so looking at it needs no lock.
    auto &children = mRoot->Children();
    const auto comesBefore = [](const auto &aLeft, const auto &aRight) { return ComesBefore(*aLeft, *aRight); };
    if (std::is_sorted(children.begin(), children.end(), comesBefore)) {
        return;
    }
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    {
        const QMutexLocker lock(&mTreeLock);
        std::vector<std::unique_ptr<GenBrowserTreeItem>> sorted = std::move(children);
        std::stable_sort(sorted.begin(), sorted.end(), comesBefore);
        mRoot->SetChildren(std::move(sorted));
    }
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before) {
        after.append(createIndex(Item(index)->Row(), index.column(), Item(index)));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

// Data

QVariant GenBrowserTreeModel::DisplayData(const GenBrowserTreeItem &aItem, int aColumn) const
{
    switch (aColumn) {
        case NameColumn:
            return aItem.ShownName();
        case ValueColumn:
            return aItem.ValueText();
        default:
            return QString();
    }
}

QVariant GenBrowserTreeModel::data(const QModelIndex &aIndex, int aRole) const
{
    const GenBrowserTreeItem *const item = mRoot ? Item(aIndex) : nullptr;
    if (!aIndex.isValid() || !item) {
        return QVariant();
    }
    switch (aRole) {
        case Qt::DisplayRole:
            return DisplayData(*item, aIndex.column());
        case Qt::ToolTipRole:
            return item->ErrorMsg().isEmpty() ? item->ToolTip() : item->ErrorMsg();
        case Qt::FontRole:
            return ItemFont(*item);
        case Qt::BackgroundRole:
            return Background(*item);
        case Qt::ForegroundRole:
            return Foreground(*item, aIndex.column());
        case Qt::SizeHintRole:
            return RowSize(*item);
        default:
            return QVariant();
    }
}

Qt::ItemFlags GenBrowserTreeModel::flags(const QModelIndex &aIndex) const
{
    const GenBrowserTreeItem *const item = mRoot ? Item(aIndex) : nullptr;
    if (!aIndex.isValid() || !item) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (item->Parameter() && item->IsWritable() && item->IsDone() && aIndex.column() == ValueColumn) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

QVariant GenBrowserTreeModel::headerData(int aSection, Qt::Orientation aOrientation, int aRole) const
{
    if (aOrientation != Qt::Horizontal || aRole != Qt::DisplayRole || !mRoot) {
        return QVariant();
    }
    return DisplayData(*mRoot, aSection);
}

// Refreshing

void GenBrowserTreeModel::RefreshItemSlot(QModelIndex aFrom, QModelIndex aTo)
{
    // The cell may have come to be edited since the signal was sent.
    const QModelIndex edited = EditIndex();
    if (!edited.isValid() || aTo != edited) {
        emit dataChanged(aFrom, aTo);
    }
}

void GenBrowserTreeModel::NotifyItem(GenBrowserTreeItem *aItem)
{
    QModelIndex from;
    QModelIndex to;
    {
        const QMutexLocker lock(&mTreeLock);
        if (aItem->Row() < 0) {
            return;  // not in the tree yet
        }
        from = createIndex(aItem->Row(), NameColumn, aItem);
        to = createIndex(aItem->Row(), ValueColumn, aItem);
    }
    if (to != EditIndex()) {
        emit RefreshItemSignal(from, to);
    }
}

void GenBrowserTreeModel::RefreshAll()
{
    if (!mParameters) {
        return;
    }
    if (IsDeviceReadable()) {
        mParameters->InvalidateCache();
    }
    GenBrowserTreeWalk walk(*this);
    for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
        GenBrowserTreeItem *const item = Item(index);
        if (!item->Parameter()) {
            continue;
        }
        item->Refresh();
        const QModelIndex value = index.siblingAtColumn(ValueColumn);
        if (value != EditIndex()) {
            emit RefreshItemSignal(index, value);
        }
    }
}

QModelIndex GenBrowserTreeModel::EditIndex() const
{
    const QMutexLocker lock(&mEditLock);
    return mEditIndex;
}

void GenBrowserTreeModel::SetEditIndex(const QModelIndex &aIndex)
{
    const QMutexLocker lock(&mEditLock);
    mEditIndex = aIndex;
}

bool GenBrowserTreeModel::IsDeviceReadable() const
{
    return !mParameters || mParameters->GetAccessMode() == 0;
}

HWND GenBrowserTreeModel::NativeParent() const
{
    return mWindow ? mWindow->NativeParent() : nullptr;
}

void GenBrowserTreeModel::Stop()
{
    mIsStopping = true;
    if (mRoot) {
        mRoot->StopNotifications();
    }
}

void GenBrowserTreeModel::Clear()
{
    Stop();
    beginResetModel();
    mRoot.reset();
    endResetModel();
}
