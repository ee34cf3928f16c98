// In a layout from right to left numbers, addresses and bytes are drawn as in one from left to right.

#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QTreeWidget>

#include "Display/DisplayTest.h"
#include "GenBrowser/BrowserTest.h"
#include "LxGUI/DeviceFinder/DeviceTree.h"
#include "LxGUI/DeviceFinder/InfoTable.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/Frame/TextDelegate.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/SerialTerminal/TranscriptView.h"

namespace
{

/// What is drawn in a place, without the empty ground around it.
QImage Ink(const QImage &aImage, const QRect &aPlace)
{
    const QRgb ground = aImage.pixel(aPlace.center().x(), aPlace.top() + 1);
    QRect ink;
    for (int y = aPlace.top(); y <= aPlace.bottom(); ++y) {
        for (int x = aPlace.left(); x <= aPlace.right(); ++x) {
            if (aImage.pixel(x, y) != ground) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return aImage.copy(ink);
}

/// Runs something in a layout from left to right, and in one from right to left.
template <class Result>
std::pair<Result, Result> InBothDirections(const std::function<Result()> &aRun)
{
    const QFont before = QApplication::font();
    QFont whole = before;  // glyphs that look the same at every place
    whole.setStyleStrategy(QFont::NoAntialias);
    whole.setHintingPreference(QFont::PreferFullHinting);
    QApplication::setFont(whole);
    Result leftToRight = aRun();
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Result rightToLeft = aRun();
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QApplication::setFont(before);
    return {std::move(leftToRight), std::move(rightToLeft)};
}

}  // namespace

TEST(RightToLeft, MarksKeepTheDirectionOfTheFirstLetter)
{
    EXPECT_EQ(KeepDirection(QStringLiteral("-5 dB")), QString::fromUtf16(u"\u202A-5 dB\u202C"));
    EXPECT_EQ(KeepDirection(QStringLiteral("192.168.0.1")), QString::fromUtf16(u"\u202A192.168.0.1\u202C"));
    EXPECT_EQ(KeepDirection(QString::fromUtf16(u"\u05E9 5")), QString::fromUtf16(u"\u202B\u05E9 5\u202C"));
    EXPECT_EQ(KeepDirection(QString()), QString());
}

TEST(RightToLeft, ValuesOfFeaturesAreDrawnTheSame)
{
    const auto draw = [] {
        FakeArray array;
        array.AddCategory("General");
        FakeInteger &gain = array.Add<FakeInteger>("Gain");
        gain.mValue = -5;
        gain.mUnit = "dB";
        gain.mMin = -10;
        array.Add<FakeInteger>("GevMACAddress").mValue = 0x00111C0A0B0C;
        array.Add<FakeString>("Name").SetText("(12.) + 3f, -1");
        TestBrowser browser;
        browser.SetRefreshMode(LxGenRefreshManual);
        browser.SetGenParameterArray(&array);
        browser.SetPosition(-1, -1, 600, 500);
        browser.ShowModeless();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(browser.GetQWidget()));
        const QImage image = Grab(browser.Tree()->viewport());
        QList<QImage> inks;
        for (const char *name : {"Gain", "GevMACAddress", "Name"}) {
            const QModelIndex cell = browser.Cell(name, GenBrowserTreeModel::ValueColumn);
            inks << Ink(image, browser.Tree()->visualRect(cell).adjusted(2, 2, -2, -2));
        }
        return inks;
    };
    const auto [usual, mirrored] = InBothDirections<QList<QImage>>(draw);
    EXPECT_GT(usual[0].width(), 10);
    EXPECT_EQ(usual, mirrored);
}

TEST(RightToLeft, TheFindersTextsAreDrawnTheSame)
{
    const auto draw = [] {
        const std::unique_ptr<QTableWidget> table(
            CreateInfoTable(nullptr, QStringLiteral("t"), QStringLiteral("Table")));
        FillInfoTable(*table, {{QStringLiteral("MAC"), QStringLiteral("00:11:1C:0A:0B:0C")},
                               {QStringLiteral("Max Power"), QStringLiteral("500 mA")}});
        table->resize(500, 200);
        table->show();
        DeviceTree tree(nullptr);
        tree.setHeaderHidden(true);
        tree.setItemDelegate(new TextDelegate(&tree));
        auto *item = new QTreeWidgetItem(&tree, {QStringLiteral("02:00:00:00:01:02 (10.0.5.7)")});
        tree.resize(500, 200);
        tree.show();
        const QImage tableImage = Grab(table->viewport());
        QList<QImage> inks;
        for (const int row : {0, 1}) {
            inks << Ink(tableImage, table->visualItemRect(table->item(row, 1)).adjusted(2, 2, -2, -2));
        }
        inks << Ink(Grab(tree.viewport()), tree.visualItemRect(item).adjusted(2, 1, -2, -1));
        return inks;
    };
    const auto [usual, mirrored] = InBothDirections<QList<QImage>>(draw);
    EXPECT_GT(usual[0].width(), 50);
    EXPECT_EQ(usual, mirrored);
}

TEST(RightToLeft, TheTranscriptIsDrawnTheSame)
{
    const auto draw = [] {
        TranscriptView view(nullptr);
        view.resize(700, 200);
        view.AppendText(QStringLiteral("48 45 4c 50 0d 0a 20 3f   HELP..?\n38.5 \u00B0C\n-12 ?\n"));
        view.show();
        return Grab(view.viewport());
    };
    const auto [usual, mirrored] = InBothDirections<QImage>(draw);
    EXPECT_EQ(usual, mirrored);
}

TEST(RightToLeft, RegistersAreDrawnTheSame)
{
    const auto draw = [] {
        LxRegisterInterfaceWnd window;
        window.ShowModeless();
        auto *edit = window.GetQWidget()->findChild<QLineEdit *>("WriteValueEdit");
        edit->setText(QStringLiteral("0x0a0b 12"));
        return Ink(Grab(edit), edit->rect().adjusted(4, 4, -4, -4));
    };
    const auto [usual, mirrored] = InBothDirections<QImage>(draw);
    EXPECT_GT(usual.width(), 40);
    EXPECT_EQ(usual, mirrored);
}

class RightToLeftDisplay : public DisplayTest
{
protected:
    void SetUp() override { QApplication::setLayoutDirection(Qt::RightToLeft); }
    void TearDown() override { QApplication::setLayoutDirection(Qt::LeftToRight); }
};

TEST_F(RightToLeftDisplay, TheOverlayStandsAtItsOffsetFromTheLeft)
{
    ShowAt(400, 300);
    mDisplay.SetTextOverlay(QStringLiteral("Frame 7, 25.0 fps"));
    ShowPicture(400, 300);
    const QImage shot = Shot();
    EXPECT_GT(CountGreen(shot, QRect(10, 10, 180, 30)), 50);
    EXPECT_EQ(CountGreen(shot, QRect(250, 0, 150, 300)), 0);
}

TEST_F(RightToLeftDisplay, TheScrollBarLiesAsThePictureDoes)
{
    ShowAt(400, 300);
    ShowPicture(1000, 800);
    mDisplay.OnMainZoom1To1();
    Settle();
    QScrollBar *const bar = Bar("horizontalScrollBar");
    ASSERT_TRUE(bar->isVisible());
    bar->setValue(0);
    Settle();
    EXPECT_EQ(Shot().pixel(5, 5) & 0xFF0000, PictureColor(5, 0) & 0xFF0000) << "the left end of the picture";
    // a click at the left arrow of the bar goes to the left
    bar->setValue(100);
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(8, bar->height() / 2));
    EXPECT_LT(bar->value(), 100);
}
