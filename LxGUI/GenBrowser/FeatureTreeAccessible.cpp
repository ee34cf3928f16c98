#include "LxGUI/GenBrowser/FeatureTreeAccessible.h"

#include <QtCore/QHash>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QHeaderView>

#include "LxGUI/Frame/AccessibleFactory.h"
#include "LxGUI/GenBrowser/FeatureCellAccessible.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

namespace
{

constexpr int Columns = GenBrowserTreeModel::ColumnCount;

/// A cell of the header, whose texts are empty on screen.
class HeaderCellAccessible : public QAccessibleInterface
{
public:
    HeaderCellAccessible(GenBrowserTree *aTree, int aColumn) : mTree(aTree), mColumn(aColumn) {}

    bool isValid() const override { return mTree; }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *parent() const override
    {
        return mTree ? QAccessible::queryAccessibleInterface(mTree) : nullptr;
    }
    QString text(QAccessible::Text aKind) const override
    {
        if (aKind != QAccessible::Name) {
            return QString();
        }
        return mColumn == GenBrowserTreeModel::NameColumn ? GenBrowserTree::tr("Feature") : GenBrowserTree::tr("Value");
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        if (!mTree) {
            return QRect();
        }
        const QHeaderView *header = mTree->header();
        const QPoint corner(header->sectionViewportPosition(mColumn), 0);
        return QRect(header->mapToGlobal(corner), QSize(header->sectionSize(mColumn), header->height()));
    }
    QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    QAccessible::State state() const override { return QAccessible::State(); }

private:
    const QPointer<GenBrowserTree> mTree;
    const int mColumn;
};

/// The tree as a table of the rows that are not in closed categories. Children are, as QTreeView counts them when it
/// tells of changes, the cells of the header and then those of the rows.
class FeatureTreeAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit FeatureTreeAccessible(GenBrowserTree *aTree) : QAccessibleWidget(aTree, QAccessible::Tree)
    {
        for (int column = 0; column < Columns; ++column) {
            mHeader[column] = QAccessible::registerAccessibleInterface(new HeaderCellAccessible(aTree, column));
        }
    }
    ~FeatureTreeAccessible() override
    {
        ForgetCells();
        for (const QAccessible::Id id : mHeader) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    void *interface_cast(QAccessible::InterfaceType aType) override
    {
        return aType == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface *>(this)
                                                    : QAccessibleWidget::interface_cast(aType);
    }
    int childCount() const override { return Tree().model() ? (rowCount() + 1) * Columns : 0; }
    QAccessibleInterface *child(int aIndex) const override
    {
        if (aIndex < 0 || !Tree().model()) {
            return nullptr;
        }
        return aIndex < Columns ? QAccessible::accessibleInterface(mHeader[aIndex])
                                : cellAt(aIndex / Columns - 1, aIndex % Columns);
    }
    QAccessibleInterface *childAt(int aX, int aY) const override
    {
        return Cell(Tree().indexAt(Tree().viewport()->mapFromGlobal(QPoint(aX, aY))));
    }
    QAccessibleInterface *focusChild() const override
    {
        return Tree().hasFocus() ? Cell(Tree().currentIndex()) : QAccessibleWidget::focusChild();
    }
    int indexOfChild(const QAccessibleInterface *aChild) const override
    {
        for (int column = 0; column < Columns; ++column) {
            if (QAccessible::accessibleInterface(mHeader[column]) == aChild) {
                return column;
            }
        }
        const auto *cell = dynamic_cast<const FeatureCellAccessible *>(aChild);
        const qsizetype row =
            cell && cell->isValid() ? Rows().indexOf(QModelIndex(cell->Index()).siblingAtColumn(0)) : -1;
        return row < 0 ? -1 : static_cast<int>(row + 1) * Columns + cell->columnIndex();
    }

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int aRow, int aColumn) const override
    {
        return aRow < 0 ? nullptr : Cell(Rows().value(aRow).siblingAtColumn(aColumn));
    }
    int selectedCellCount() const override { return static_cast<int>(selectedCells().size()); }
    QList<QAccessibleInterface *> selectedCells() const override
    {
        QList<QAccessibleInterface *> cells;
        if (Tree().selectionModel()) {
            for (const QModelIndex &index : Tree().selectionModel()->selectedIndexes()) {
                cells << Cell(index);
            }
        }
        return cells;
    }
    QString columnDescription(int aColumn) const override
    {
        return aColumn >= 0 && aColumn < Columns ? child(aColumn)->text(QAccessible::Name) : QString();
    }
    QString rowDescription(int) const override { return QString(); }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    int columnCount() const override { return Columns; }
    int rowCount() const override { return static_cast<int>(Rows().size()); }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override
    {
        QList<int> rows;
        if (Tree().selectionModel()) {
            const QModelIndexList all = Rows();
            for (const QModelIndex &index : Tree().selectionModel()->selectedRows()) {
                if (const qsizetype row = all.indexOf(index); row >= 0) {
                    rows << static_cast<int>(row);
                }
            }
        }
        return rows;
    }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int aRow) const override { return selectedRows().contains(aRow); }
    bool selectRow(int aRow) override
    {
        const QModelIndex index = Rows().value(aRow);
        if (index.isValid()) {
            Tree().setCurrentIndex(index);
        }
        return index.isValid();
    }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int aRow) override
    {
        const bool selected = isRowSelected(aRow);
        if (selected) {
            Tree().clearSelection();
        }
        return selected;
    }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *aEvent) override
    {
        if (aEvent->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged) {
            ForgetCells();
        }
    }

private:
    GenBrowserTree &Tree() const { return *static_cast<GenBrowserTree *>(object()); }

    QModelIndexList Rows() const
    {
        QModelIndexList rows;
        AppendRows(rows, QModelIndex());
        return rows;
    }
    void AppendRows(QModelIndexList &aRows, const QModelIndex &aParent) const
    {
        const QAbstractItemModel *model = Tree().model();
        const int count = model ? model->rowCount(aParent) : 0;
        for (int row = 0; row < count; ++row) {
            const QModelIndex index = model->index(row, 0, aParent);
            aRows << index;
            if (Tree().isExpanded(index)) {
                AppendRows(aRows, index);
            }
        }
    }
    QAccessibleInterface *Cell(const QModelIndex &aIndex) const
    {
        if (!aIndex.isValid()) {
            return nullptr;
        }
        QAccessible::Id &id = mCells[aIndex];
        if (id == 0) {
            id = QAccessible::registerAccessibleInterface(new FeatureCellAccessible(&Tree(), aIndex));
        }
        return QAccessible::accessibleInterface(id);
    }
    void ForgetCells()
    {
        for (const QAccessible::Id id : mCells) {
            QAccessible::deleteAccessibleInterface(id);
        }
        mCells.clear();
    }

    QAccessible::Id mHeader[Columns];
    mutable QHash<QPersistentModelIndex, QAccessible::Id> mCells;
};

QAccessibleInterface *CreateInterface(const QString & /*aClass*/, QObject *aObject)
{
    auto *tree = qobject_cast<GenBrowserTree *>(aObject);
    return tree ? new FeatureTreeAccessible(tree) : nullptr;
}

}  // namespace

void InstallFeatureTreeAccessibility()
{
    static const AccessibleFactory factory(CreateInterface);
}
