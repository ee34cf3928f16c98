#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

#include <gtest/gtest.h>

#include <QtCore/QAbstractItemModel>
#include <QtGui/QFontMetrics>
#include <QtGui/QPalette>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <thread>

#include "FakeFeatures.h"
#include "GuiTest.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"

namespace
{

constexpr int NameColumn = GenBrowserTreeModel::NameColumn;
constexpr int ValueColumn = GenBrowserTreeModel::ValueColumn;

class TreeModel : public testing::Test
{
protected:
    void SetUp() override { mArray.AddCategory("General"); }

    GenBrowserTreeModel &Build(bool aTreeMode = true, bool aUseDisplayNames = false,
                               LxGenVisibility aLevel = LxGenVisibilityGuru)
    {
        mTester.reset();
        mModel = std::make_unique<GenBrowserTreeModel>(nullptr, &mArray, aTreeMode, aUseDisplayNames, aLevel);
        mTester = std::make_unique<QAbstractItemModelTester>(mModel.get(),
                                                             QAbstractItemModelTester::FailureReportingMode::Fatal);
        return *mModel;
    }

    /// The tree as one text: "Category(Feature Feature)".
    QString Outline(const QModelIndex &aParent = QModelIndex()) const
    {
        QStringList rows;
        for (int row = 0; row < mModel->rowCount(aParent); ++row) {
            const QModelIndex index = mModel->index(row, NameColumn, aParent);
            rows << index.data().toString() + (mModel->rowCount(index) > 0 ? '(' + Outline(index) + ')' : QString());
        }
        return rows.join(' ');
    }

    QModelIndex Cell(int aColumn, const QString &aName) const
    {
        const QModelIndexList found = mModel->match(mModel->index(0, 0), Qt::DisplayRole, aName, 1,
                                                    Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive);
        return found.isEmpty() ? QModelIndex() : found.first().siblingAtColumn(aColumn);
    }

    static QBrush Brush(const QModelIndex &aIndex, int aRole) { return aIndex.data(aRole).value<QBrush>(); }

    FakeArray mArray;
    std::unique_ptr<GenBrowserTreeModel> mModel;
    std::unique_ptr<QAbstractItemModelTester> mTester;
};

TEST_F(TreeModel, WithoutAnArrayIsEmpty)
{
    GenBrowserTreeModel model(nullptr, nullptr, true, false, LxGenVisibilityGuru);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 2);
    EXPECT_FALSE(model.index(0, 0).isValid());
    EXPECT_FALSE(model.headerData(0, Qt::Horizontal).isValid());
    model.sort(0);
    model.RefreshAll();
}

// Which features are shown, and where

TEST_F(TreeModel, AFeatureLiesUnderItsCategoryBelowTheRoot)
{
    mArray.AddCategory("ImageFormatControl");
    mArray.Add<FakeInteger>("Width", "Root\\ImageFormatControl");
    mArray.Add<FakeInteger>("Height", "Root\\ImageFormatControl");
    Build();
    EXPECT_EQ(Outline(), "ImageFormatControl(Width Height)");
}

TEST_F(TreeModel, CategoriesNestAndKeepTheOrderOfFirstAppearance)
{
    for (const char *name : {"B", "A", "Inner"}) {
        mArray.AddCategory(name);
    }
    mArray.Add<FakeInteger>("B1", "rOOt\\B");
    mArray.Add<FakeInteger>("A1", "Root\\A");
    mArray.Add<FakeInteger>("I1", "Root\\B\\Inner");
    mArray.Add<FakeInteger>("B2", "Root\\B");
    Build();
    EXPECT_EQ(Outline(), "B(B1 Inner(I1) B2) A(A1)");
}

TEST_F(TreeModel, AFeatureWhoseCategoryCannotBeFoundIsNotListed)
{
    mArray.Add<FakeInteger>("Lost", "Root\\Nowhere");
    mArray.Add<FakeInteger>("Leading", "\\General");
    mArray.Add<FakeInteger>("Trailing", "General\\");
    mArray.Add<FakeInteger>("Empty", "");
    mArray.Add<FakeInteger>("There", "General");
    Build();
    EXPECT_EQ(Outline(), "General(There)");
}

TEST_F(TreeModel, APartOfAPathThatIsNoCategoryIsPassedOver)
{
    mArray.Add<FakeInteger>("Width", "Root\\Nowhere\\General");
    Build();
    EXPECT_EQ(Outline(), "General(Width)");
}

TEST_F(TreeModel, FeaturesDirectlyUnderTheRootAreOnTheTopLevel)
{
    mArray.AddCategory("Root");
    mArray.Add<FakeInteger>("Width", "Root");
    Build();
    EXPECT_EQ(Outline(), "Width");
}

TEST_F(TreeModel, OnlyVisibleImplementedFeaturesOfVisibleImplementedCategoriesAreListed)
{
    mArray.AddCategory("Secret").mVisibility = LxGenVisibilityInvisible;
    mArray.AddCategory("Missing").mImplemented = false;
    mArray.Add<FakeInteger>("Shown");
    mArray.Add<FakeInteger>("TooDeep").mAttributes.mVisibility = LxGenVisibilityInvisible;
    mArray.Add<FakeInteger>("NotThere").mImplemented = false;
    mArray.Add<FakeInteger>("Unsure").mScript.Fail("IsImplemented", LxResultCode::Timeout);
    mArray.Add<FakeInteger>("InSecret", "Root\\Secret");
    mArray.Add<FakeInteger>("InMissing", "Root\\Missing");
    Build();
    EXPECT_EQ(Outline(), "General(Shown)");
    Build(true, false, LxGenVisibilityInvisible);
    EXPECT_EQ(Outline(), "General(Shown TooDeep) Secret(InSecret)");
}

TEST_F(TreeModel, AnUnavailableFeatureIsListed)
{
    mArray.Add<FakeInteger>("Width").mAvailable = false;
    Build();
    EXPECT_EQ(Outline(), "General(Width)");
}

TEST_F(TreeModel, AnEnumerationWithoutAVisibleEntryIsNotListed)
{
    mArray.Add<FakeEnum>("Hidden").Add("Deep", 0).mVisibility = LxGenVisibilityInvisible;
    mArray.Add<FakeEnum>("Empty");
    FakeEnum &shown = mArray.Add<FakeEnum>("Shown");
    shown.mEntries.push_back(nullptr);
    shown.Add("Deep", 0).mVisibility = LxGenVisibilityInvisible;
    shown.Add("Flat", 1).mAvailable = false;
    Build();
    EXPECT_EQ(Outline(), "General(Shown)");
}

TEST_F(TreeModel, InListModeAllFeaturesAreOnTheTopLevel)
{
    mArray.AddCategory("Other");
    mArray.Add<FakeInteger>("Width", "Root\\Other");
    mArray.Add<FakeInteger>("Height");
    Build(false);
    EXPECT_EQ(Outline(), "Width Height");
    mModel->sort(1, Qt::DescendingOrder);
    EXPECT_EQ(Outline(), "Height Width");
}

TEST_F(TreeModel, SortingIgnoresCaseAndDisplayNames)
{
    for (const char *name : {"Zoom", "gain", "Exposure", "Gain"}) {
        mArray.Add<FakeInteger>(name).mAttributes.mDisplayName = std::string("Z") + name;
    }
    Build(false, true);
    mModel->sort(0, Qt::DescendingOrder);
    EXPECT_EQ(Outline(), "ZExposure Zgain ZGain ZZoom");
}

TEST_F(TreeModel, SortingKeepsPersistentIndexesOnTheirItems)
{
    mArray.Add<FakeInteger>("B");
    mArray.Add<FakeInteger>("A");
    Build(false);
    const QPersistentModelIndex b = Cell(ValueColumn, "B");
    mModel->sort(0);
    EXPECT_EQ(b.row(), 1);
    EXPECT_EQ(b.column(), ValueColumn);
    EXPECT_EQ(GenBrowserTreeModel::Item(b)->Name(), "B");
}

TEST_F(TreeModel, SortingWhatIsSortedDoesNothing)
{
    mArray.Add<FakeInteger>("B");
    mArray.Add<FakeInteger>("A");
    Build(false);
    mModel->sort(0);
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::layoutAboutToBeChanged);
    mModel->sort(0, Qt::DescendingOrder);
    EXPECT_EQ(spy.size(), 0);
}

// Structure

TEST_F(TreeModel, OnlyTheFirstColumnHasChildren)
{
    mArray.Add<FakeInteger>("Width");
    Build();
    const QModelIndex category = mModel->index(0, NameColumn);
    EXPECT_EQ(mModel->rowCount(category), 1);
    EXPECT_EQ(mModel->rowCount(mModel->index(0, ValueColumn)), 0);
    const QModelIndex feature = mModel->index(0, ValueColumn, category);
    EXPECT_EQ(feature.parent(), category);
    EXPECT_FALSE(category.parent().isValid());
    EXPECT_FALSE(mModel->index(1, 0, category).isValid());
    EXPECT_FALSE(mModel->index(0, 2, category).isValid());
    EXPECT_FALSE(mModel->index(-1, 0).isValid());
}

TEST_F(TreeModel, HeadersAreEmptyTexts)
{
    Build();
    EXPECT_EQ(mModel->headerData(0, Qt::Horizontal), QVariant(QString()));
    EXPECT_EQ(mModel->headerData(1, Qt::Horizontal), QVariant(QString()));
    EXPECT_FALSE(mModel->headerData(0, Qt::Vertical).isValid());
    EXPECT_FALSE(mModel->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

// Data

TEST_F(TreeModel, ShowsNamesOrDisplayNamesAndValues)
{
    mArray.Add<FakeInteger>("Width").mUnit = "px";
    Build();
    EXPECT_EQ(Cell(NameColumn, "Width").data(), "Width");
    EXPECT_EQ(Cell(ValueColumn, "Width").data(), "0 px");
    Build(true, true);
    EXPECT_EQ(Outline(), "The General(The Width)");
}

TEST_F(TreeModel, OtherRolesAreEmpty)
{
    mArray.Add<FakeInteger>("Width");
    Build();
    for (const int role : {int(Qt::EditRole), int(Qt::CheckStateRole), int(Qt::TextAlignmentRole), 14, 100, 1000}) {
        EXPECT_FALSE(Cell(NameColumn, "Width").data(role).isValid()) << role;
    }
    EXPECT_FALSE(mModel->data(QModelIndex(), Qt::DisplayRole).isValid());
}

TEST_F(TreeModel, TheToolTipIsTheErrorIfThereIsOne)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Build();
    EXPECT_EQ(Cell(NameColumn, "Width").data(Qt::ToolTipRole), "tip of Width");
    EXPECT_EQ(Cell(NameColumn, "General").data(Qt::ToolTipRole), "tip of General");
    feature.mValue = 1000;
    mModel->RefreshAll();
    EXPECT_EQ(Cell(ValueColumn, "Width").data(Qt::ToolTipRole), "Parameter out of range");
}

TEST_F(TreeModel, CategoriesAndSelectorsAreBold)
{
    FakeInteger &selected = mArray.Add<FakeInteger>("Selected");
    mArray.Add<FakeInteger>("Selector").mAttributes.mSelected = {&selected};
    Build();
    QFont bold = QApplication::font();
    bold.setBold(true);
    EXPECT_EQ(Cell(NameColumn, "General").data(Qt::FontRole).value<QFont>(), bold);
    EXPECT_EQ(Cell(ValueColumn, "Selector").data(Qt::FontRole).value<QFont>(), bold);
    EXPECT_EQ(Cell(NameColumn, "Selected").data(Qt::FontRole).value<QFont>(), QApplication::font());
}

TEST_F(TreeModel, BackgroundsTellSelectorsSelectedFeaturesAndCategories)
{
    FakeInteger &selected = mArray.Add<FakeInteger>("Selected");
    FakeInteger &selector = mArray.Add<FakeInteger>("Selector");
    FakeInteger &both = mArray.Add<FakeInteger>("Both");
    mArray.Add<FakeInteger>("Plain");
    selector.mAttributes.mSelected = {&selected};
    selected.mAttributes.mSelecting = {&selector};
    both.mAttributes.mSelected = {&selected};
    both.mAttributes.mSelecting = {&selector};
    Build();
    EXPECT_EQ(Brush(Cell(NameColumn, "Selected"), Qt::BackgroundRole), QBrush(QColor(206, 219, 234)));
    EXPECT_EQ(Brush(Cell(NameColumn, "Both"), Qt::BackgroundRole), QBrush(QColor(206, 219, 234)));
    EXPECT_EQ(Brush(Cell(NameColumn, "Selector"), Qt::BackgroundRole), QBrush(QColor(153, 180, 209)));
    EXPECT_EQ(Brush(Cell(NameColumn, "Plain"), Qt::BackgroundRole), QApplication::palette().base());
    EXPECT_EQ(Brush(Cell(NameColumn, "General"), Qt::BackgroundRole), QApplication::palette().window());
}

TEST_F(TreeModel, ARowWithAnErrorIsDarkRedWithWhiteTextAndTheErrorAsToolTip)
{
    mArray.Add<FakeInteger>("Width").mScript.Fail("GetValue", LxResult(LxResultCode::Timeout, "a.cpp:1 Timeout"));
    Build();
    for (const int column : {NameColumn, ValueColumn}) {
        EXPECT_EQ(Brush(Cell(column, "Width"), Qt::BackgroundRole), QBrush(QColor(128, 0, 0)));
        EXPECT_EQ(Brush(Cell(column, "Width"), Qt::ForegroundRole), QBrush(QColor(Qt::white)));
        EXPECT_EQ(Cell(column, "Width").data(Qt::ToolTipRole), "Error reading value: Timeout");
    }
}

TEST_F(TreeModel, GreyTellsWhatCannotBeWritten)
{
    mArray.Add<FakeInteger>("Writable");
    mArray.Add<FakeInteger>("ReadOnly").mWritable = false;
    FakeInteger &gone = mArray.Add<FakeInteger>("Gone");
    gone.mWritable = gone.mAvailable = false;
    Build();
    const QBrush grey = QApplication::palette().mid();
    const QBrush normal = QApplication::palette().text();
    EXPECT_EQ(Brush(Cell(NameColumn, "Writable"), Qt::ForegroundRole), normal);
    EXPECT_EQ(Brush(Cell(ValueColumn, "Writable"), Qt::ForegroundRole), normal);
    EXPECT_EQ(Brush(Cell(NameColumn, "ReadOnly"), Qt::ForegroundRole), normal);
    EXPECT_EQ(Brush(Cell(ValueColumn, "ReadOnly"), Qt::ForegroundRole), grey);
    EXPECT_EQ(Brush(Cell(NameColumn, "Gone"), Qt::ForegroundRole), grey);
    EXPECT_EQ(Brush(Cell(ValueColumn, "Gone"), Qt::ForegroundRole), grey);
    EXPECT_EQ(Brush(Cell(ValueColumn, "General"), Qt::ForegroundRole), normal);
}

TEST_F(TreeModel, RowsAreTenPixelsHigherThanTheirText)
{
    mArray.Add<FakeString>("Name").SetText("text");
    Build();
    const QSize text = QFontMetrics(QApplication::font()).size(Qt::TextSingleLine, "text");
    EXPECT_EQ(Cell(NameColumn, "Name").data(Qt::SizeHintRole).toSize(), text + QSize(0, 10));
}

TEST_F(TreeModel, OnlyTheValueOfAWritableFeatureIsEditable)
{
    mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("ReadOnly").mWritable = false;
    FakeCommand &command = mArray.Add<FakeCommand>("Go");
    Build();
    const Qt::ItemFlags plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    EXPECT_EQ(Cell(NameColumn, "Width").flags(), plain);
    EXPECT_EQ(Cell(ValueColumn, "Width").flags(), plain | Qt::ItemIsEditable);
    EXPECT_EQ(Cell(ValueColumn, "ReadOnly").flags(), plain);
    EXPECT_EQ(Cell(ValueColumn, "General").flags(), plain);
    EXPECT_EQ(Cell(ValueColumn, "Go").flags(), plain | Qt::ItemIsEditable);
    EXPECT_EQ(mModel->flags(QModelIndex()), Qt::NoItemFlags);
    command.mDone = false;  // executing
    mModel->RefreshAll();
    EXPECT_EQ(Cell(ValueColumn, "Go").flags(), plain);
}

// Refreshing

TEST_F(TreeModel, RefreshAllReadsEveryFeatureAndTellsTheViews)
{
    FakeInteger &width = mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("Height");
    Build();
    width.mValue = 7;
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::dataChanged);
    mModel->RefreshAll();
    EXPECT_EQ(Cell(ValueColumn, "Width").data(), "7 ");
    ASSERT_EQ(spy.size(), 2);
    EXPECT_EQ(spy[0][0].toModelIndex(), Cell(NameColumn, "Width"));
    EXPECT_EQ(spy[0][1].toModelIndex(), Cell(ValueColumn, "Width"));
    EXPECT_TRUE(spy[0][2].value<QList<int>>().isEmpty());
    EXPECT_EQ(mArray.mScript.Count("InvalidateCache"), 1);
}

TEST_F(TreeModel, RefreshAllKeepsTheCacheOfALostDevice)
{
    Build();
    mArray.mAccessMode = 1;
    mModel->RefreshAll();
    EXPECT_EQ(mArray.mScript.Count("InvalidateCache"), 0);
}

TEST_F(TreeModel, AReadingThatFailsWhileTheDeviceIsLostIsNotShownAlthoughItIsBackByThen)
{
    auto &width = mArray.Add<FakeInteger>("Width");
    Build();
    mArray.mAccessMode = 1;
    width.mScript.Fail("GetValue", LxResult(LxResultCode::NotConnected, "Device lost"));
    width.mScript.OnCall([this](const std::string &aCall) {
        if (aCall == "GetValue") {
            mArray.mAccessMode = 0;
        }
    });
    GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(Cell(NameColumn, "Width"));
    std::thread([item] { item->Refresh(); }).join();
    QCoreApplication::processEvents();  // what the reading sent
    EXPECT_EQ(width.mScript.Count("GetValue"), 2);
    EXPECT_EQ(item->ErrorMsg(), "");
    EXPECT_EQ(Cell(ValueColumn, "Width").data(), "0 ");
}

TEST_F(TreeModel, RefreshAllLeavesTheEditedRowAlone)
{
    mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("Height");
    Build();
    mModel->SetEditIndex(Cell(ValueColumn, "Width"));
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::dataChanged);
    mModel->RefreshAll();
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy[0][0].toModelIndex(), Cell(NameColumn, "Height"));
    mModel->ClearEditIndex();
    mModel->RefreshAll();
    EXPECT_EQ(spy.size(), 3);
}

TEST_F(TreeModel, ASignalThatWasSentBeforeTheRowWasEditedDoesNotReachIt)
{
    mArray.Add<FakeInteger>("Width");
    Build();
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::dataChanged);
    std::thread([&] { emit mModel->RefreshItemSignal(Cell(NameColumn, "Width"), Cell(ValueColumn, "Width")); }).join();
    mModel->SetEditIndex(Cell(ValueColumn, "Width"));
    QCoreApplication::processEvents();
    EXPECT_EQ(spy.size(), 0);
}

TEST_F(TreeModel, ANotificationUpdatesItsRow)
{
    FakeInteger &width = mArray.Add<FakeInteger>("Width");
    Build();
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::dataChanged);
    width.mValue = 7;
    std::thread([&] { width.Notify(); }).join();
    EXPECT_EQ(spy.size(), 0);
    QCoreApplication::processEvents();
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy[0][0].toModelIndex(), Cell(NameColumn, "Width"));
    EXPECT_EQ(Cell(ValueColumn, "Width").data(), "7 ");
}

TEST_F(TreeModel, ANotificationOfTheEditedRowReadsItButDoesNotTouchTheEditor)
{
    FakeInteger &width = mArray.Add<FakeInteger>("Width");
    Build();
    mModel->SetEditIndex(Cell(ValueColumn, "Width"));
    QSignalSpy spy(mModel.get(), &QAbstractItemModel::dataChanged);
    width.mValue = 7;
    width.Notify();
    EXPECT_EQ(spy.size(), 0);
    EXPECT_EQ(Cell(ValueColumn, "Width").data(), "7 ");
}

TEST_F(TreeModel, NotificationsWhileTheTreeIsBuiltAreSurvived)
{
    std::vector<FakeInteger *> features;
    for (int i = 0; i < 200; ++i) {
        features.push_back(&mArray.Add<FakeInteger>("F" + std::to_string(i)));
    }
    for (int i = 0; i < 5; ++i) {
        std::atomic<bool> stop{false};
        std::thread notifier([&] {
            for (size_t f = 0; !stop; f = (f + 1) % features.size()) {
                features[f]->Notify();
            }
        });
        Build(i % 2 == 0);
        mModel->sort(0);
        stop = true;
        notifier.join();
        QCoreApplication::processEvents();
    }
    Build();
    EXPECT_EQ(mModel->rowCount(mModel->index(0, 0)), 200);
}

TEST_F(TreeModel, WhatStopsReadsNoMoreAndGetsNoNotifications)
{
    FakeInteger &width = mArray.Add<FakeInteger>("Width");
    Build();
    const int reads = width.mScript.Count("IsImplemented");
    mModel->Stop();
    EXPECT_FALSE(width.HasSinks());
    mModel->RefreshAll();
    EXPECT_EQ(width.mScript.Count("IsImplemented"), reads);
}

TEST_F(TreeModel, StoppingDoesNotWaitForANotificationThatRuns)
{
    FakeInteger &width = mArray.Add<FakeInteger>("Width");
    Build();
    std::atomic<bool> inside{false};
    std::atomic<bool> goOn{false};
    width.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "IsAvailable") {
            inside = true;
            while (!goOn) {
                std::this_thread::yield();
            }
        }
    });
    std::thread notifier([&] { width.Notify(); });
    while (!inside) {
        std::this_thread::yield();
    }
    const int values = width.mScript.Count("GetValue");
    mModel->Stop();  // would never return
    EXPECT_TRUE(mModel->HasRunningCalls());
    goOn = true;
    notifier.join();
    EXPECT_FALSE(mModel->HasRunningCalls());
    EXPECT_EQ(width.mScript.Count("GetValue"), values);  // given up in between
}

}  // namespace
