// What the view draws, when, and that its own way of drawing cells looks like the toolkit's.

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QRegion>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QStyledItemDelegate>

#include "BrowserTest.h"
#include "LxGUI/GenBrowser/GenBrowserItemDelegate.h"
#include "LxGUI/GenBrowser/PlainCell.h"

namespace
{

/// Gathers what of a widget is painted.
class PaintRecorder : public QObject
{
public:
    explicit PaintRecorder(QWidget *aWidget) { aWidget->installEventFilter(this); }

    QRegion mRegion;
    int mPaints = 0;

private:
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        if (aEvent->type() == QEvent::Paint) {
            mRegion += static_cast<QPaintEvent *>(aEvent)->region();
            ++mPaints;
        }
        return false;
    }
};

/// What a widget shows on a screen of a scale.
QImage Render(QWidget *aWidget, double aScale)
{
    QImage image((QSizeF(aWidget->size()) * aScale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(aScale);
    image.fill(Qt::black);
    aWidget->render(&image);
    return image;
}

class TreeView : public testing::Test
{
protected:
    void SetUp() override
    {
        mArray.AddCategory("General");
        for (int i = 0; i < 10; ++i) {
            mFeatures.push_back(&mArray.Add<FakeInteger>("Feature" + std::to_string(i)));
        }
    }
    void Show()
    {
        mBrowser.SetRefreshMode(LxGenRefreshManual);
        mBrowser.SetGenParameterArray(&mArray);
        mBrowser.SetPosition(-1, -1, 500, 600);
        mBrowser.ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser.GetQWidget()));
    }
    QRect Place(const QString &aName, int aColumn)
    {
        return mBrowser.Tree()->visualRect(mBrowser.Cell(aName, aColumn));
    }

    FakeArray mArray;
    std::vector<FakeInteger *> mFeatures;
    TestBrowser mBrowser;
};

/// Leaves all painting to the style.
class ToolkitPainting : public GenBrowserItemDelegate
{
public:
    using GenBrowserItemDelegate::GenBrowserItemDelegate;
    void paint(QPainter *aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex) const override
    {
        QStyledItemDelegate::paint(aPainter, aOption, aIndex);
    }
};

TEST_F(TreeView, DrawsCellsLikeTheToolkit)
{
    mFeatures[0]->mScript.Fail("GetValue", LxResult(LxResultCode::Timeout, "a.cpp:1 Timeout"));
    mFeatures[1]->mWritable = false;
    mFeatures[2]->mAvailable = mFeatures[2]->mWritable = false;
    mFeatures[3]->mAttributes.mSelected = {mFeatures[4]};
    mFeatures[4]->mAttributes.mSelecting = {mFeatures[3]};
    mFeatures[5]->mUnit = "a unit that is far too long for any column of a tree of this width, so that it is cut";
    mFeatures[6]->mUnit = "two\nlines";
    mFeatures[7]->mUnit = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D";  // from right to left
    mFeatures[8]->mUnit = "\xE6\xB8\xA9\xE5\xBA\xA6";          // in another font
    mFeatures[9]->mUnit = "a\xC2\xADz \xC2\x85 A\xCC\x88";     // what has no place, or shares one
    mArray
        .Add<FakeString>(
            "Gr\xC3\xB6\xC3\x9F"
            "e")
        .SetText(
            "Gr\xC3\xBC\xC3\x9F"
            "e fi \xC2\xB5s");
    Show();
    GenBrowserTree *const tree = mBrowser.Tree();
    ASSERT_TRUE(tree->style()->inherits("QFusionStyle")) << "the style of the offscreen platform";
    tree->setCurrentIndex(mBrowser.Cell("Feature1"));
    QAbstractItemDelegate *const delegate = tree->itemDelegate();
    ToolkitPainting toolkit(nullptr, nullptr);
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage own = Render(tree, scale);
        tree->setItemDelegate(&toolkit);
        EXPECT_EQ(Render(tree, scale), own) << scale;
        tree->setItemDelegate(delegate);
    }
}

TEST_F(TreeView, DrawsAStripBeforeFeaturesTheGroundOfCategoriesAndAFrameAroundRows)
{
    Show();
    GenBrowserTree *const tree = mBrowser.Tree();
    const QImage image = Grab(tree->viewport());
    const QPalette palette = tree->palette();
    const int feature = Place("Feature0", 0).top();
    const int category = Place("General", 0).top();
    const int high = Place("Feature0", 0).height();
    for (const int x : {1, 10, 19}) {
        EXPECT_EQ(image.pixelColor(x, feature + 3), palette.color(QPalette::Window)) << x;
        EXPECT_EQ(image.pixelColor(x, category + 3), palette.color(QPalette::Window)) << x;
    }
    EXPECT_EQ(image.pixelColor(22, feature + 3), palette.color(QPalette::Base));
    EXPECT_EQ(image.pixelColor(image.width() - 5, category + 3), palette.color(QPalette::Window));
    for (const int y : {feature, feature + high}) {
        EXPECT_EQ(image.pixelColor(image.width() / 2, y), palette.color(QPalette::AlternateBase)) << y;
    }
}

/// Which pixels are of a colour.
QImage MaskOf(const QImage &aImage, const QColor &aColor)
{
    QImage mask(aImage.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < aImage.height(); ++y) {
        for (int x = 0; x < aImage.width(); ++x) {
            mask.setPixelColor(x, y, aImage.pixelColor(x, y) == aColor ? Qt::white : Qt::black);
        }
    }
    return mask;
}

TEST_F(TreeView, TheFrameAroundARowIsThatOfAPenAtEveryScale)
{
    Show();
    GenBrowserTree *const tree = mBrowser.Tree();
    const QColor frame(255, 0, 255);
    QPalette palette = tree->palette();
    palette.setColor(QPalette::AlternateBase, frame);
    tree->setPalette(palette);
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QImage own = Render(tree->viewport(), scale);
        QImage pen = own;
        pen.fill(Qt::black);
        QPainter painter(&pen);
        painter.setPen(frame);
        for (QModelIndex index = mBrowser.Cell("General"); index.isValid(); index = tree->indexBelow(index)) {
            const QRect row = tree->visualRect(index).united(tree->visualRect(index.siblingAtColumn(1)));
            painter.drawRect(QRect(0, row.top(), tree->viewport()->width(), row.height()));
        }
        painter.end();
        EXPECT_EQ(MaskOf(own, frame), MaskOf(pen, frame)) << scale;
    }
}

TEST_F(TreeView, LeavesOtherStylesToTheToolkit)
{
    Show();
    const std::unique_ptr<QStyle> windows(QStyleFactory::create("Windows"));
    GenBrowserTree *const tree = mBrowser.Tree();
    QStyleOptionViewItem option;
    option.initFrom(tree);
    option.widget = tree;
    option.state = QStyle::State_Enabled;
    option.rect = QRect(0, 0, 200, 30);
    option.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    QImage image(200, 30, QImage::Format_RGB32);
    QPainter painter(&image);
    PlainCell cell;
    EXPECT_TRUE(cell.Paint(painter, option, mBrowser.Cell("Feature0")));
    tree->setStyle(windows.get());
    EXPECT_FALSE(cell.Paint(painter, option, mBrowser.Cell("Feature0")));
    tree->setStyle(nullptr);
}

TEST_F(TreeView, DrawsOnlyTheValuesThatHaveChanged)
{
    Show();
    PaintRecorder recorder(mBrowser.Tree()->viewport());
    mFeatures[3]->mValue = 7;
    mBrowser.Refresh();
    EXPECT_TRUE(WaitForGui([&] { return recorder.mPaints > 0; }));
    EXPECT_EQ(recorder.mRegion, QRegion(Place("Feature3", 1)));
}

TEST_F(TreeView, DrawsTheWholeRowWhenItsColoursChange)
{
    Show();
    PaintRecorder recorder(mBrowser.Tree()->viewport());
    mFeatures[3]->mValue = 700;  // out of range
    mBrowser.Refresh();
    EXPECT_TRUE(WaitForGui([&] { return recorder.mPaints > 0; }));
    EXPECT_TRUE(recorder.mRegion.contains(Place("Feature3", 0)));
    EXPECT_TRUE(recorder.mRegion.contains(Place("Feature3", 1)));
    EXPECT_FALSE(recorder.mRegion.intersects(Place("Feature4", 1)));
    const QImage image = Grab(mBrowser.Tree()->viewport());
    EXPECT_EQ(image.pixelColor(Place("Feature3", 0).topRight() + QPoint(-4, 4)), QColor(128, 0, 0));
    recorder.mRegion = QRegion();
    recorder.mPaints = 0;
    mFeatures[3]->mWritable = false;
    mFeatures[3]->mValue = 7;
    mBrowser.Refresh();
    EXPECT_TRUE(WaitForGui([&] { return recorder.mPaints > 0; }));
    EXPECT_TRUE(recorder.mRegion.contains(Place("Feature3", 0)));
}

TEST_F(TreeView, DrawsTheRowsOfOneRefreshAtOnce)
{
    Show();
    PaintRecorder recorder(mBrowser.Tree()->viewport());
    for (FakeInteger *feature : mFeatures) {
        feature->mValue = 5;
        feature->Notify();
        QCoreApplication::sendPostedEvents();
    }
    EXPECT_TRUE(WaitForGui([&] { return recorder.mRegion.contains(Place("Feature7", 1)); }));
    EXPECT_LE(recorder.mPaints, 2);
    for (int i = 0; i < 8; ++i) {
        EXPECT_TRUE(recorder.mRegion.contains(Place("Feature" + QString::number(i), 1))) << i;
    }
}

TEST_F(TreeView, AChangedRowThatIsScrolledBeforeItIsDrawnIsDrawnWhereItIs)
{
    mBrowser.SetPosition(-1, -1, 500, 320);
    for (int i = 10; i < 20; ++i) {
        mArray.Add<FakeInteger>("Feature" + std::to_string(i));
    }
    mBrowser.SetRefreshMode(LxGenRefreshManual);
    mBrowser.SetGenParameterArray(&mArray);
    mBrowser.ShowModeless();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser.GetQWidget()));
    QScrollBar *const bar = mBrowser.Tree()->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 1);
    PaintRecorder recorder(mBrowser.Tree()->viewport());
    const QRect before = Place("Feature2", 1);
    mFeatures[2]->mValue = 7;
    mBrowser.Refresh();
    bar->setValue(1);
    const QRect after = Place("Feature2", 1);
    EXPECT_LT(after.top(), before.top());
    EXPECT_TRUE(WaitForGui([&] { return recorder.mRegion.contains(after); }));
}

TEST_F(TreeView, ARowThatChangedWhileItWasEditedIsDrawnAfterwards)
{
    Show();
    QWidget *const editor = mBrowser.OpenEditor("Feature3");
    ASSERT_NE(editor, nullptr);
    mFeatures[3]->mValue = 7;
    mBrowser.Refresh();
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_TRUE(WaitForGui([&] { return mBrowser.Editor() == nullptr; }));
    QCoreApplication::processEvents();
    PaintRecorder recorder(mBrowser.Tree()->viewport());
    mBrowser.Refresh();
    EXPECT_TRUE(WaitForGui([&] { return recorder.mRegion.contains(Place("Feature3", 1)); }));
}

}  // namespace
