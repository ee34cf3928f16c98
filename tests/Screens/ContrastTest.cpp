// Text on grounds that the windows choose can be read, with light and dark palettes.

#include <QtCore/QTimer>
#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QMenu>
#include <QtWidgets/QTableWidget>

#include "DarkPalette.h"
#include "Display/DisplayTest.h"
#include "GenBrowser/BrowserTest.h"
#include "LxGUI/DeviceFinder/InfoTable.h"
#include "LxGUI/Frame/Contrast.h"
#include "LxGUI/GenBrowser/CellColors.h"

namespace
{

/// The contrast of a ground and of what stands out most from it.
double StrongestContrast(const QImage &aImage, const QRect &aPlace, const QColor &aGround)
{
    double strongest = 1;
    for (int y = aPlace.top(); y <= aPlace.bottom(); ++y) {
        for (int x = aPlace.left(); x <= aPlace.right(); ++x) {
            strongest = std::max(strongest, ContrastRatio(aImage.pixelColor(x, y), aGround));
        }
    }
    return strongest;
}

}  // namespace

TEST(Contrast, IsThatOfWCAG)
{
    EXPECT_DOUBLE_EQ(ContrastRatio(Qt::black, Qt::white), 21);
    EXPECT_DOUBLE_EQ(ContrastRatio(Qt::white, Qt::black), 21);
    EXPECT_DOUBLE_EQ(ContrastRatio(Qt::red, Qt::red), 1);
    EXPECT_NEAR(ContrastRatio(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.005);
    EXPECT_FALSE(IsReadable(QColor(0x77, 0x77, 0x77), Qt::white));
    EXPECT_NEAR(ContrastRatio(Qt::black, Qt::red), 5.25, 0.005);
}

TEST(Contrast, EveryGroundHasAStrongAndAMutedTextColorThatCanBeRead)
{
    for (int red = 0; red < 256; red += 51) {
        for (int green = 0; green < 256; green += 51) {
            for (int blue = 0; blue < 256; blue += 51) {
                const QColor ground(red, green, blue);
                EXPECT_TRUE(IsReadable(StrongTextColor(ground), ground)) << qPrintable(ground.name());
                EXPECT_TRUE(IsReadable(MutedTextColor(ground), ground)) << qPrintable(ground.name());
                EXPECT_LT(ContrastRatio(MutedTextColor(ground), ground), 4.8) << qPrintable(ground.name());
            }
        }
    }
}

class BrowserContrast : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        if (GetParam()) {
            mDark.emplace();
        }
        mArray.AddCategory("General");
        mArray.Add<FakeInteger>("Writable");
        mArray.Add<FakeInteger>("ReadOnly").mWritable = false;
        FakeInteger &gone = mArray.Add<FakeInteger>("Gone");
        gone.mWritable = gone.mAvailable = false;
        auto &selector = mArray.Add<FakeInteger>("Selector");
        auto &selected = mArray.Add<FakeInteger>("Selected");
        auto &fixed = mArray.Add<FakeInteger>("SelectedReadOnly");
        fixed.mWritable = false;
        auto &fixedSelector = mArray.Add<FakeInteger>("SelectorReadOnly");
        fixedSelector.mWritable = false;
        selector.mAttributes.mSelected = fixedSelector.mAttributes.mSelected = {&selected, &fixed};
        selected.mAttributes.mSelecting = fixed.mAttributes.mSelecting = {&selector};
        mArray.Add<FakeInteger>("Failing").mScript.Fail("GetValue", LxResult(LxResultCode::Timeout, "Timeout"));
        mBrowser.SetRefreshMode(LxGenRefreshManual);
        mBrowser.SetGenParameterArray(&mArray);
        mBrowser.SetPosition(-1, -1, 500, 600);
        mBrowser.ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser.GetQWidget()));
    }
    static QColor Ground(const QModelIndex &aCell) { return aCell.data(Qt::BackgroundRole).value<QBrush>().color(); }

    std::optional<DarkPalette> mDark;
    FakeArray mArray;
    TestBrowser mBrowser;
};

TEST_P(BrowserContrast, EveryCellCanBeRead)
{
    for (const char *name : {"General", "Writable", "ReadOnly", "Gone", "Selector", "Selected", "SelectedReadOnly",
                             "SelectorReadOnly", "Failing"})
    {
        for (const int column : {GenBrowserTreeModel::NameColumn, GenBrowserTreeModel::ValueColumn}) {
            const QModelIndex cell = mBrowser.Cell(name, column);
            ASSERT_TRUE(cell.isValid()) << name;
            EXPECT_GE(ContrastRatio(CellTextColor(cell), Ground(cell)), ReadableContrast) << name << ' ' << column;
        }
    }
}

TEST_P(BrowserContrast, WhatCannotBeWrittenIsPaler)
{
    for (const auto &[pale, normal] :
         {std::pair("ReadOnly", "Writable"), {"SelectedReadOnly", "Selected"}, {"SelectorReadOnly", "Selector"}})
    {
        const QModelIndex paleCell = mBrowser.Cell(pale, GenBrowserTreeModel::ValueColumn);
        const QModelIndex normalCell = mBrowser.Cell(normal, GenBrowserTreeModel::ValueColumn);
        ASSERT_EQ(Ground(paleCell), Ground(normalCell));
        EXPECT_LT(ContrastRatio(CellTextColor(paleCell), Ground(paleCell)),
                  ContrastRatio(CellTextColor(normalCell), Ground(normalCell)) - 2)
            << pale;
    }
}

TEST_P(BrowserContrast, ThePaintedTextStandsOut)
{
    const QImage image = Grab(mBrowser.Tree()->viewport());
    for (const char *name : {"Writable", "ReadOnly", "Selected", "SelectedReadOnly"}) {
        const QModelIndex cell = mBrowser.Cell(name, GenBrowserTreeModel::ValueColumn);
        const QRect place = mBrowser.Tree()->visualRect(cell).adjusted(2, 2, -2, -2);
        EXPECT_EQ(image.pixelColor(place.bottomRight()), Ground(cell)) << name;
        EXPECT_GT(StrongestContrast(image, place, Ground(cell)), 3)
            << name;  // thin strokes are paler than their colour
    }
}

TEST_P(BrowserContrast, TheDescriptionCanBeRead)
{
    const QPalette palette = mBrowser.Description()->palette();
    EXPECT_TRUE(IsReadable(palette.color(QPalette::Text), palette.color(QPalette::Base)));
}

INSTANTIATE_TEST_SUITE_P(Palettes, BrowserContrast, testing::Bool(), [](const testing::TestParamInfo<bool> &aInfo) {
    return aInfo.param ? std::string("Dark") : std::string("Light");
});

TEST(InfoTableContrast, ColouredRowsCanBeReadWithEveryPalette)
{
    const DarkPalette dark;
    const std::unique_ptr<QTableWidget> table(CreateInfoTable(nullptr, QStringLiteral("t"), QStringLiteral("Table")));
    InfoRows rows;
    for (const QColor &color : {QColor(Qt::white), QColor(Qt::yellow), QColor(Qt::red), QColor(Qt::darkRed)}) {
        rows.push_back({QStringLiteral("label"), QStringLiteral("value"), color});
    }
    FillInfoTable(*table, rows);
    EXPECT_EQ(table->item(0, 0)->background().style(), Qt::NoBrush) << "the ground of the palette, with its text";
    for (int row = 1; row < 4; ++row) {
        for (const int column : {0, 1}) {
            const QTableWidgetItem *item = table->item(row, column);
            EXPECT_TRUE(IsReadable(item->foreground().color(), item->background().color())) << row;
        }
    }
}

TEST_F(DisplayTest, TheContextMenuHasTheColoursOfThePaletteAndNotOfThePicture)
{
    const DarkPalette dark;
    ShowAt(400, 300);
    mDisplay.SetBackgroundColor(Qt::white);
    QImage image;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
            timer.stop();
            image = Grab(menu);
            menu->close();
        }
    });
    timer.start(1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(10, 10), mHost.mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(&mHost, &event);
    ASSERT_FALSE(image.isNull());
    const QColor ground = QApplication::palette().color(QPalette::Window);
    EXPECT_EQ(image.pixelColor(image.width() - 4, image.height() / 2), ground);
    EXPECT_GT(StrongestContrast(image, image.rect().adjusted(3, 3, -3, -3), ground), ReadableContrast);
}
