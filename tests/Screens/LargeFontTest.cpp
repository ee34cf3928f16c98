// What has a fixed size makes a large font smaller.

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <memory>

#include "LxGUI/DeviceFinder/InfoTable.h"
#include "LxGUI/DeviceFinder/SelectFromIPDlg.h"
#include "LxGUI/Frame/FitFont.h"
#include "LxGUI/GenBrowser/FlowLayout.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "ScreenCheck.h"

namespace
{

class LargeFont : public testing::Test
{
protected:
    static void Use(double aPoints)
    {
        QFont font = QApplication::font();
        font.setPointSizeF(aPoints);
        QApplication::setFont(font);
    }
    void TearDown() override { QApplication::setFont(mBefore); }

    const QFont mBefore = QApplication::font();
};

std::unique_ptr<QWidget> MakeLabels(int aCount)
{
    auto widget = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(widget.get());
    for (int i = 0; i < aCount; ++i) {
        layout->addWidget(new QLabel(QStringLiteral("a line of text")));
    }
    return widget;
}

}  // namespace

TEST_F(LargeFont, StaysWhereItFits)
{
    const auto widget = MakeLabels(4);
    ShrinkFontToFit(widget.get(), QSize(1000, 1000));
    EXPECT_EQ(widget->font(), QApplication::font());
}

TEST_F(LargeFont, IsMadeJustSmallEnough)
{
    Use(30);
    const auto widget = MakeLabels(4);
    const QSize size(300, 120);
    ShrinkFontToFit(widget.get(), size);
    EXPECT_LT(widget->font().pointSizeF(), 30);
    const QSize least = widget->layout()->minimumSize();
    EXPECT_LE(least.height(), size.height());
    EXPECT_LE(least.width(), size.width());
    EXPECT_GT(least.height(), size.height() * 3 / 4) << "not smaller than needed";
}

TEST_F(LargeFont, DoesNotVanishInWhatIsFarTooSmall)
{
    const auto widget = MakeLabels(4);
    ShrinkFontToFit(widget.get(), QSize(1, 1));
    EXPECT_GE(widget->font().pointSizeF(), 4.5);
}

TEST_F(LargeFont, OfPixelsIsShrunkToo)
{
    QFont font = QApplication::font();
    font.setPixelSize(40);
    QWidget widget;
    widget.setFont(font);
    ShrinkFontToHeight(&widget, 18);
    EXPECT_LE(widget.fontMetrics().height(), 18);
    EXPECT_GT(widget.fontMetrics().height(), 14);
}

TEST_F(LargeFont, LeavesARegisterWindowOfTheSameSizeThatCanBeRead)
{
    for (const double points : {9.0, 12.0, 16.0, 24.0}) {
        Use(points);
        LxRegisterInterfaceWnd window;
        window.ShowModeless();
        EXPECT_EQ(window.GetQWidget()->size(), QSize(350, 180)) << points;
        EXPECT_EQ(FindUnreadable(*window.GetQWidget()).join(QLatin1Char('\n')).toStdString(), "") << points;
        EXPECT_GE(window.GetQWidget()->font().pointSizeF(), std::min(points, 8.5)) << points;
        window.Close();
    }
}

TEST_F(LargeFont, LeavesAnAddressDialogOfTheSameSizeThatCanBeRead)
{
    Use(20);
    SelectFromIPDlg dialog(nullptr);
    dialog.show();
    EXPECT_EQ(dialog.size(), QSize(350, 200));
    EXPECT_EQ(FindUnreadable(dialog).join(QLatin1Char('\n')).toStdString(), "");
}

TEST_F(LargeFont, FitsTheRowsOfTheInformationTables)
{
    Use(16);
    const std::unique_ptr<QTableWidget> table(CreateInfoTable(nullptr, QStringLiteral("t"), QStringLiteral("Table")));
    FillInfoTable(*table, {{QStringLiteral("MAC"), QStringLiteral("00:11:22:33:44:55")}});
    EXPECT_EQ(table->rowHeight(0), 18);
    EXPECT_LE(table->fontMetrics().height(), 18);
}

TEST(WidthForText, IsWhatShowsAllOfIt)
{
    const QString text = QStringLiteral("255.255.255.255");
    QLineEdit edit(text);
    edit.resize(WidthForText(&edit, text), edit.sizeHint().height());
    edit.setCursorPosition(0);
    QStyleOptionFrame option;
    EXPECT_GE(edit.width(), edit.fontMetrics().horizontalAdvance(text) + 4);
    EXPECT_LT(edit.width(), edit.fontMetrics().horizontalAdvance(text) + 20);
}

TEST(FlowLayout, TakesAsManyRowsAsTheWidthNeeds)
{
    QWidget widget;
    auto *layout = new FlowLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    widget.setLayout(layout);
    QList<QWidget *> items;
    for (int i = 0; i < 3; ++i) {
        items << new QWidget;
        items.last()->setFixedSize(100, 20);
        layout->addWidget(items.last());
    }
    layout->setGeometry(QRect(0, 0, 500, 20));
    EXPECT_EQ(items[1]->y(), items[0]->y());
    EXPECT_EQ(items[2]->geometry().right(), 499) << "the last one stands at the end";
    EXPECT_EQ(layout->heightForWidth(500), 20);
    EXPECT_GT(layout->heightForWidth(250), 40);
    layout->setGeometry(QRect(0, 0, 250, 60));
    EXPECT_EQ(items[1]->y(), 0);
    EXPECT_GT(items[2]->y(), 20);
    EXPECT_EQ(layout->minimumSize(), QSize(100, 20));
    widget.setLayoutDirection(Qt::RightToLeft);
    layout->setGeometry(QRect(0, 0, 500, 20));
    EXPECT_EQ(items[0]->geometry().right(), 499);
    EXPECT_EQ(items[2]->x(), 0);
    delete layout->takeAt(0);
    EXPECT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->takeAt(5), nullptr);
}
