#include <QtCore/QMetaMethod>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtGui/QResizeEvent>
#include <QtGui/QWheelEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>

#include "DisplayTest.h"

using namespace DisplayGeometry;

namespace
{

class DisplayInput : public DisplayTest
{
protected:
    void SetUp() override
    {
        ShowAt(400, 300);
        ShowPicture(1000, 800);
    }

    /// Opens the context menu at a point of the widget and triggers the entry of this text.
    void ChooseFromMenu(const QPoint &aPoint, const QString &aText)
    {
        QStringList texts;
        bool done = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu || done) {
                return;
            }
            done = true;
            for (QAction *action : menu->actions()) {
                texts << action->text();
            }
            for (QAction *action : menu->actions()) {
                if (action->text() == aText) {
                    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                    return;
                }
            }
            menu->close();
        });
        timer.start(1);
        QContextMenuEvent event(QContextMenuEvent::Mouse, aPoint, mHost.mapToGlobal(aPoint));
        QApplication::sendEvent(&mHost, &event);
        EXPECT_TRUE(done);
        EXPECT_EQ(texts, QStringList({"Zoom 1:1", "Zoom Fit", "Zoom In", "Zoom Out", "Center Here"}));
    }

    void Wheel(int aDelta)
    {
        QWheelEvent event(QPointF(10, 10), mHost.mapToGlobal(QPointF(10, 10)), {}, QPoint(0, aDelta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        EXPECT_TRUE(QApplication::sendEvent(&mHost, &event));
    }
};

}  // namespace

TEST_F(DisplayInput, MenuEntriesZoomByOneAndAHalf)
{
    ChooseFromMenu({10, 10}, "Zoom 1:1");
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomOneToOne);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.0);
    ChooseFromMenu({10, 10}, "Zoom In");
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFree);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.5);
    ChooseFromMenu({10, 10}, "Zoom Out");
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.0);
    ChooseFromMenu({10, 10}, "Zoom Fit");
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFit);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 300.0 / 800.0);
}

TEST_F(DisplayInput, KeysZoomByOneFifthAndEqualAndUnderscoreCountToo)
{
    mDisplay.OnMainZoom1To1();
    double expected = 1.0;
    QTest::keyClick(&mHost, Qt::Key_Plus);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, expected *= 1.2);
    QTest::keyClick(&mHost, Qt::Key_Equal);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, expected *= 1.2);
    QTest::keyClick(&mHost, Qt::Key_Minus);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, expected /= 1.2);
    QTest::keyClick(&mHost, Qt::Key_Underscore);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, expected / 1.2);
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFree);
}

TEST_F(DisplayInput, OnlyTheFourKeysAreTaken)
{
    for (int key : {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Minus, Qt::Key_Underscore}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        EXPECT_TRUE(mDisplay.eventFilter(&mHost, &event)) << key;
    }
    for (int key : {Qt::Key_A, Qt::Key_Escape, Qt::Key_0, Qt::Key_Space}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        EXPECT_FALSE(mDisplay.eventFilter(&mHost, &event)) << key;
    }
}

TEST_F(DisplayInput, TheWheelZoomsByOneTenthAndOutForADeltaBelowOne)
{
    mDisplay.OnMainZoom1To1();
    Wheel(120);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.1);
    Wheel(1);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.1 * 1.1);
    Wheel(-120);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.1 * 1.1 / 1.1);
    Wheel(0);
    EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.1 * 1.1 / 1.1 / 1.1);
}

TEST_F(DisplayInput, EveryMouseButtonGivesTheWindowTheKeyboard)
{
    QLineEdit other;
    other.show();
    for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        other.activateWindow();
        other.setFocus();
        mHost.activateWindow();
        mHost.clearFocus();
        ASSERT_FALSE(mHost.hasFocus());
        QTest::mousePress(&mHost, button);
        EXPECT_TRUE(WaitForGui([&] { return mHost.hasFocus(); })) << button;
        QTest::mouseRelease(&mHost, button);
    }
}

TEST_F(DisplayInput, CenterHereMovesTheClickedPointToTheMiddle)
{
    mDisplay.OnMainZoom1To1();
    ASSERT_EQ(Bar("horizontalScrollBar")->value(), 309);
    ASSERT_EQ(Bar("verticalScrollBar")->value(), 259);
    ChooseFromMenu({291, 41}, "Center Here");
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), 309 + 291 - 191);
    EXPECT_EQ(Bar("verticalScrollBar")->value(), 259 + 41 - 141);
    ChooseFromMenu({0, 0}, "Center Here");
    ChooseFromMenu({0, 0}, "Center Here");
    ChooseFromMenu({0, 0}, "Center Here");
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), 0);
    EXPECT_EQ(Bar("verticalScrollBar")->value(), 0);
}

TEST_F(DisplayInput, CenterHereDoesNothingInFitMode)
{
    mDisplay.OnMainZoomFit();
    ChooseFromMenu({291, 41}, "Center Here");
    EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), 0);
}

TEST_F(DisplayInput, AZoomChangeShowsTheMiddleAgain)
{
    mDisplay.OnMainZoom1To1();
    Bar("horizontalScrollBar")->setValue(0);
    mDisplay.OnMainZoomIn();
    EXPECT_EQ(Bar("horizontalScrollBar")->maximum(), 1500 - 382);
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), (1500 - 382) / 2);
}

TEST_F(DisplayInput, ResizingMovesTheBarsButKeepsTheirRanges)
{
    mDisplay.OnMainZoom1To1();
    mHost.resize(500, 400);
    ASSERT_TRUE(WaitForGui([&] { return Bar("horizontalScrollBar")->width() == 500; }));
    EXPECT_EQ(Bar("horizontalScrollBar")->geometry(), QRect(0, 382, 500, 18));
    EXPECT_EQ(Bar("verticalScrollBar")->geometry(), QRect(482, 0, 18, 400));
    EXPECT_EQ(Bar("horizontalScrollBar")->maximum(), 1000 - 382);
}

TEST_F(DisplayInput, DraggingABarScrollsThePicture)
{
    mDisplay.OnMainZoom1To1();
    Bar("horizontalScrollBar")->setValue(100);
    Bar("verticalScrollBar")->setValue(50);
    const QImage shot = Shot();
    EXPECT_EQ(shot.pixel(0, 0), PictureColor(100, 50));
}

TEST_F(DisplayInput, AMenuLeftWithoutAChoiceChangesNothing)
{
    mDisplay.OnMainZoom1To1();
    ChooseFromMenu({10, 10}, "no such entry");
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomOneToOne);
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), 309);
}

TEST_F(DisplayInput, EventsThatOnlyTakePartOfTheWorkGoOnToTheWidget)
{
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), mHost.mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    EXPECT_FALSE(mDisplay.eventFilter(&mHost, &press));
    QResizeEvent resize({500, 400}, {400, 300});
    EXPECT_FALSE(mDisplay.eventFilter(&mHost, &resize));
    EXPECT_EQ(Bar("verticalScrollBar")->geometry(), QRect(482, 0, 18, 400)) << "the event's size counts";
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), mHost.mapToGlobal(QPointF(5, 5)), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    EXPECT_FALSE(mDisplay.eventFilter(&mHost, &move));
    QObject stranger;
    EXPECT_FALSE(mDisplay.eventFilter(&stranger, &move));
}

TEST_F(DisplayInput, ABarThatIsNotNeededTakesItsScrollValueAway)
{
    mDisplay.OnMainZoom1To1();
    Bar("horizontalScrollBar")->setValue(600);
    Bar("verticalScrollBar")->setValue(500);
    mDisplay.OnMainZoomFit();
    EXPECT_TRUE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_TRUE(Bar("verticalScrollBar")->isHidden());
    ShowPicture(100, 90);
    mDisplay.OnMainZoom1To1();
    EXPECT_EQ(Shot().pixel(150, 105), PictureColor(0, 0)) << "centred, not scrolled";
    ShowPicture(1000, 800);
    EXPECT_EQ(Shot().pixel(0, 0), PictureColor(0, 0)) << "from its corner, until the zoom is applied again";
}

TEST_F(DisplayInput, OneBarAloneLeavesTheOtherDirectionAsItIs)
{
    ShowPicture(1000, 200);
    mDisplay.OnMainZoom1To1();
    ASSERT_TRUE(Bar("verticalScrollBar")->isHidden());
    EXPECT_EQ(Bar("horizontalScrollBar")->maximum(), 1000 - 400);
    EXPECT_EQ(Shot().pixel(399, (282 - 200) / 2), PictureColor(700, 0)) << "as wide as the window, corners inclusive";
    ChooseFromMenu({291, 41}, "Center Here");
    EXPECT_EQ(Bar("horizontalScrollBar")->value(), 300 + 291 - 200);
    ShowPicture(200, 800);
    mDisplay.OnMainZoom1To1();
    ASSERT_TRUE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_EQ(Shot().pixel((382 - 200) / 2, 10), PictureColor(0, 250 + 10));
    ChooseFromMenu({291, 41}, "Center Here");
    EXPECT_EQ(Bar("verticalScrollBar")->value(), 250 + 41 - 150);
}

TEST_F(DisplayInput, AKeyHeldDownZoomsUntilOnePixelFillsTheWindow)
{
    for (int i = 0; i < 150; ++i) {
        QTest::keyClick(&mHost, Qt::Key_Plus);
    }
    EXPECT_FALSE(Bar("horizontalScrollBar")->isHidden());
    EXPECT_FALSE(Bar("verticalScrollBar")->isHidden());
    const QImage shot = Shot();
    EXPECT_EQ(mDisplay.PictureAt(QPoint(190, 140)), QPoint(500, 400)) << "in the middle as before";
    EXPECT_EQ(shot.pixel(0, 0), PictureColor(500, 400));
    EXPECT_EQ(shot.pixel(381, 281), PictureColor(500, 400));
    for (int i = 0; i < 90; ++i) {
        QTest::keyClick(&mHost, Qt::Key_Minus);
    }
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFit);
}

TEST_F(DisplayInput, AFrameOfAnotherSizeKeepsBarsAndZoom)
{
    mDisplay.OnMainZoom1To1();
    ShowPicture(420, 330);
    EXPECT_EQ(Bar("horizontalScrollBar")->maximum(), 1000 - 382);
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomOneToOne);
    Shot();
}

TEST(DisplayMetaObject, HasItsSlotsInOrder)
{
    const QMetaObject &meta = DisplayWnd::staticMetaObject;
    QStringList slots_;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        slots_ << QString::fromLatin1(meta.method(i).methodSignature());
        EXPECT_EQ(meta.method(i).methodType(), QMetaMethod::Slot);
    }
    EXPECT_EQ(slots_, QStringList({"OnMainZoom1To1()", "OnMainZoomFit()", "OnMainZoomIn()", "OnMainZoomOut()",
                                   "OnMainCenterHere()", "OnHorizontalScroll(int)", "OnVerticalScroll(int)"}));
}
