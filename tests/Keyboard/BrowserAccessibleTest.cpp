// The tree of features as assistive technology reads it.

#include <QtGui/QAccessible>

#include "GenBrowser/BrowserTest.h"
#include "Keyboard.h"

namespace
{

constexpr int NameColumn = GenBrowserTreeModel::NameColumn;
constexpr int ValueColumn = GenBrowserTreeModel::ValueColumn;

class BrowserAccessible : public testing::Test
{
protected:
    void SetUp() override
    {
        mArray.AddCategory("General");
        mArray.AddCategory("Image");
        mWidth = &mArray.Add<FakeInteger>("Width", "Root\\Image");
        mMode = &mArray.Add<FakeBoolean>("Mode", "Root\\Image");
        mGain = &mArray.Add<FakeInteger>("Gain");
        mCommand = &mArray.Add<FakeCommand>("Start");
        mRegister = &mArray.Add<FakeRegister>("Memory");
        mBrowser.SetRefreshMode(LxGenRefreshManual);
        mBrowser.SetGenParameterArray(&mArray);
        mBrowser.SetPosition(-1, -1, 500, 500);
        ASSERT_TRUE(mBrowser.ShowModeless().IsOK());
        mTree = QAccessible::queryAccessibleInterface(mBrowser.Tree());
        ASSERT_NE(mTree, nullptr);
        mTable = mTree->tableInterface();
        ASSERT_NE(mTable, nullptr);
    }
    void TearDown() override { mBrowser.Close(); }

    QAccessibleInterface *Cell(const QString &aName, int aColumn = NameColumn)
    {
        for (int row = 0; row < mTable->rowCount(); ++row) {
            if (mTable->cellAt(row, NameColumn)->text(QAccessible::Name) == aName) {
                return mTable->cellAt(row, aColumn);
            }
        }
        ADD_FAILURE() << "no row " << aName.toStdString();
        return mTable->cellAt(0, aColumn);
    }
    QAccessible::State State(const QString &aName, int aColumn = ValueColumn) { return Cell(aName, aColumn)->state(); }
    QString Text(const QString &aName, int aColumn, QAccessible::Text aKind = QAccessible::Name)
    {
        return Cell(aName, aColumn)->text(aKind);
    }
    void Refresh() { mBrowser.Refresh(); }

    FakeArray mArray;
    FakeInteger *mWidth = nullptr;
    FakeBoolean *mMode = nullptr;
    FakeInteger *mGain = nullptr;
    FakeCommand *mCommand = nullptr;
    FakeRegister *mRegister = nullptr;
    TestBrowser mBrowser;
    QAccessibleInterface *mTree = nullptr;
    QAccessibleTableInterface *mTable = nullptr;
};

}  // namespace

TEST_F(BrowserAccessible, IsATreeOfTheRowsThatAreOpen)
{
    EXPECT_EQ(mTree->role(), QAccessible::Tree);
    EXPECT_EQ(mTree->text(QAccessible::Name), "Features");
    EXPECT_EQ(mTable->columnCount(), 2);
    EXPECT_EQ(mTable->rowCount(), 7);
    EXPECT_EQ(mTable->columnDescription(NameColumn), "Feature");
    EXPECT_EQ(mTable->columnDescription(ValueColumn), "Value");
    mBrowser.Tree()->collapse(mBrowser.Cell("Image"));
    EXPECT_EQ(mTable->rowCount(), 5);
    EXPECT_EQ(mTree->childCount(), (5 + 1) * 2) << "with the header";
    for (int i = 0; i < mTree->childCount(); ++i) {
        EXPECT_EQ(mTree->indexOfChild(mTree->child(i)), i);
        EXPECT_EQ(mTree->child(i)->parent(), mTree);
    }
    EXPECT_EQ(mTree->child(mTree->childCount()), nullptr);
    EXPECT_EQ(mTable->cellAt(5, 0), nullptr);
}

TEST_F(BrowserAccessible, TellsNamesAndValues)
{
    mWidth->mMax = 1000;
    mWidth->mValue = 640;
    Refresh();
    EXPECT_EQ(Text("Width", NameColumn), "Width");
    EXPECT_EQ(Text("Width", ValueColumn), mBrowser.Value("Width"));
    EXPECT_TRUE(mBrowser.Value("Width").startsWith("640"));
    EXPECT_EQ(Text("Width", NameColumn, QAccessible::Description), mBrowser.Value("Width"))
        << "where the keyboard goes";
    EXPECT_EQ(Text("Width", ValueColumn, QAccessible::Value), mBrowser.Value("Width"));
    EXPECT_EQ(Text("Width", ValueColumn, QAccessible::Description), "Width");
    EXPECT_EQ(Cell("Width")->role(), QAccessible::TreeItem);
    QAccessibleTableCellInterface *cell = Cell("Width", ValueColumn)->tableCellInterface();
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->columnIndex(), ValueColumn);
    EXPECT_EQ(mTable->cellAt(cell->rowIndex(), ValueColumn), Cell("Width", ValueColumn));
    EXPECT_EQ(cell->columnHeaderCells().value(0)->text(QAccessible::Name), "Value");
}

TEST_F(BrowserAccessible, TellsErrors)
{
    mWidth->mScript.Fail("GetValue", LxResult(LxResultCode::Failed, "Width.cpp:1 Timeout"));
    Refresh();
    EXPECT_EQ(Text("Width", NameColumn, QAccessible::Description), "Error reading value: Timeout");
    EXPECT_EQ(Text("Width", ValueColumn, QAccessible::Description), "Error reading value: Timeout");
}

TEST_F(BrowserAccessible, TellsWhatCanBeEdited)
{
    EXPECT_TRUE(State("Width").editable);
    EXPECT_FALSE(State("Width").readOnly);
    EXPECT_FALSE(State("Width").disabled);
    mWidth->mWritable = false;
    mGain->mAvailable = false;
    Refresh();
    for (const int column : {NameColumn, ValueColumn}) {
        EXPECT_FALSE(State("Width", column).editable);
        EXPECT_TRUE(State("Width", column).readOnly);
        EXPECT_FALSE(State("Width", column).disabled);
        EXPECT_TRUE(State("Gain", column).disabled);
    }
    EXPECT_TRUE(State("Memory").readOnly) << "a register is written by programs only";
}

TEST_F(BrowserAccessible, TellsWhetherABooleanIsChecked)
{
    mMode->mValue = true;
    Refresh();
    EXPECT_TRUE(State("Mode").checkable);
    EXPECT_TRUE(State("Mode").checked);
    mMode->mValue = false;
    Refresh();
    EXPECT_FALSE(State("Mode").checked);
    EXPECT_FALSE(State("Width").checkable);
}

TEST_F(BrowserAccessible, TellsWhetherACommandRuns)
{
    EXPECT_FALSE(State("Start").busy);
    mCommand->mDone = false;
    Refresh();
    EXPECT_TRUE(State("Start").busy);
    EXPECT_TRUE(State("Start").readOnly);
}

TEST_F(BrowserAccessible, TellsWhetherACategoryIsOpen)
{
    EXPECT_TRUE(State("Image", NameColumn).expandable);
    EXPECT_TRUE(State("Image", NameColumn).expanded);
    EXPECT_FALSE(State("Width", NameColumn).expandable);
    QAccessibleActionInterface *actions = Cell("Image")->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(mBrowser.Tree()->isExpanded(mBrowser.Cell("Image")));
    EXPECT_TRUE(State("Image", NameColumn).collapsed);
    EXPECT_FALSE(State("Image", NameColumn).expanded);
}

TEST_F(BrowserAccessible, TellsTheCurrentRow)
{
    ASSERT_TRUE(Keyboard::TabTo("FeatureTree"));
    Keyboard::Press(Qt::Key_Home);
    Keyboard::Press(Qt::Key_Down);
    const QString current = mBrowser.Current();
    EXPECT_TRUE(State(current, NameColumn).focused);
    EXPECT_TRUE(State(current, NameColumn).selected);
    EXPECT_EQ(mTree->focusChild(), Cell(current));
    EXPECT_EQ(mTable->selectedRowCount(), 1);
    EXPECT_EQ(mTable->selectedCellCount(), 2);
    EXPECT_TRUE(mTable->selectRow(0));
    EXPECT_EQ(mBrowser.Tree()->currentIndex(), mBrowser.Model()->index(0, 0));
    const QPoint middle = Cell("Width", ValueColumn)->rect().center();
    EXPECT_EQ(mTree->childAt(middle.x(), middle.y()), Cell("Width", ValueColumn));
}

TEST_F(BrowserAccessible, OpensEditors)
{
    Cell("Width")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    ASSERT_NE(mBrowser.Editor(), nullptr);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(mBrowser.Editor())->text(QAccessible::Name), "Width");
    Keyboard::Press(Qt::Key_Escape);
    EXPECT_FALSE(Cell("Memory")->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
}

TEST_F(BrowserAccessible, CellsOfATreeThatWasReplacedAreNoLongerValid)
{
    QAccessibleInterface *cell = Cell("Width");
    ASSERT_TRUE(cell->isValid());
    mBrowser.SetGenParameterArray(nullptr);
    EXPECT_FALSE(cell->isValid());
    EXPECT_TRUE(cell->state().invalid);
    EXPECT_EQ(cell->text(QAccessible::Name), "");
    EXPECT_EQ(mTree->childCount(), 0);
    mBrowser.SetGenParameterArray(&mArray);
    EXPECT_EQ(Text("Width", NameColumn), "Width");
}
