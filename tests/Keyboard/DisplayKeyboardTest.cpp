// The display with nothing but a keyboard.

#include <QtCore/QFile>
#include <QtGui/QAccessible>
#include <QtWidgets/QMenu>

#include "AccessibilityWalk.h"
#include "Display/DisplayTest.h"
#include "Keyboard.h"
#include "LxGUI/LxDisplayWnd.h"

using namespace DisplayGeometry;

namespace
{

class DisplayKeyboard : public DisplayTest
{
protected:
    void SetUp() override
    {
        ShowAt(300, 200);
        ShowPicture(800, 600);
        mHost.setWindowTitle("Host");
        EXPECT_EQ(Keyboard::Focus(), &mHost);
    }
    QPoint Scrolled() const { return {Bar("horizontalScrollBar")->value(), Bar("verticalScrollBar")->value()}; }
    QString AccessibleText(QAccessible::Text aKind)
    {
        return QAccessible::queryAccessibleInterface(&mHost)->text(aKind);
    }
};

}  // namespace

TEST_F(DisplayKeyboard, IsAccessible)
{
    ExpectAccessible(&mHost);
}

TEST_F(DisplayKeyboard, TellsWhatItShows)
{
    EXPECT_EQ(AccessibleText(QAccessible::Name), "Picture");
    EXPECT_EQ(AccessibleText(QAccessible::Description), "800 x 600 pixels, fitted into the window");
    Keyboard::Press(Qt::Key_Plus);
    EXPECT_EQ(AccessibleText(QAccessible::Description), "800 x 600 pixels, zoom 120 %");
    mDisplay.Clear();
    Settle();
    EXPECT_EQ(AccessibleText(QAccessible::Description), "No picture");
}

TEST(DisplayAccessible, IsAPictureInAWindowAndADialogAsOne)
{
    DisplayWnd display;
    QWidget window;
    QWidget part(&window);
    part.setAccessibleName("Left camera");
    ASSERT_TRUE(display.Create(&part).IsOK());
    QAccessibleInterface *picture = QAccessible::queryAccessibleInterface(&part);
    EXPECT_EQ(picture->role(), QAccessible::Graphic);
    EXPECT_EQ(picture->text(QAccessible::Name), "Left camera") << "the host's own name stays";

    LxDisplayWnd dialog;
    dialog.SetTitle("Right camera");
    ASSERT_TRUE(dialog.ShowModeless().IsOK());
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(dialog.GetQWidget());
    EXPECT_EQ(interface->role(), QAccessible::Dialog);
    EXPECT_EQ(interface->text(QAccessible::Name), "Right camera");
    EXPECT_EQ(interface->text(QAccessible::Description), "No picture");
    EXPECT_EQ(Keyboard::Focus(), dialog.GetQWidget());
    dialog.Close();
}

TEST(DisplayAccessible, AWidgetThatOutlivesItsDisplayIsEmpty)
{
    QWidget host;
    auto display = std::make_unique<DisplayWnd>();
    ASSERT_TRUE(display->Create(&host).IsOK());
    QAccessibleInterface *picture = QAccessible::queryAccessibleInterface(&host);
    display.reset();
    EXPECT_EQ(picture->text(QAccessible::Description), "No picture");
}

TEST_F(DisplayKeyboard, ZoomsByTheMenu)
{
    for (const auto press : {&Keyboard::PressMenuKey, &Keyboard::PressShiftF10}) {
        ASSERT_TRUE(Keyboard::ChooseFromContextMenu(press, "Zoom 1:1"));
        EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomOneToOne);
        ASSERT_TRUE(Keyboard::ChooseFromContextMenu(press, "Zoom In"));
        EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.5);
        ASSERT_TRUE(Keyboard::ChooseFromContextMenu(press, "Zoom Out"));
        EXPECT_DOUBLE_EQ(mDisplay.GetZoom().mFactor, 1.0);
        const QPoint before = Scrolled();
        ASSERT_TRUE(Keyboard::ChooseFromContextMenu(press, "Center Here"));
        EXPECT_NEAR(Scrolled().x(), before.x(), 20) << "by the keyboard the menu is asked for in the middle";
        ASSERT_TRUE(Keyboard::ChooseFromContextMenu(press, "Zoom Fit"));
        EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFit);
    }
}

TEST_F(DisplayKeyboard, ZoomsAndScrolls)
{
    Keyboard::Press(Qt::Key_Plus, {}, 6);
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFree);
    const QScrollBar &across = *Bar("horizontalScrollBar");
    const QScrollBar &down = *Bar("verticalScrollBar");
    ASSERT_TRUE(across.isVisible() && down.isVisible());
    const QPoint middle = Scrolled();
    const QImage before = Shot();

    Keyboard::Press(Qt::Key_Right);
    EXPECT_EQ(Scrolled(), middle + QPoint(across.singleStep(), 0));
    EXPECT_NE(Shot(), before);
    Keyboard::Press(Qt::Key_Left);
    EXPECT_EQ(Shot(), before);
    Keyboard::Press(Qt::Key_Down);
    EXPECT_EQ(Scrolled(), middle + QPoint(0, down.singleStep()));
    Keyboard::Press(Qt::Key_Up);
    Keyboard::Press(Qt::Key_PageDown);
    EXPECT_EQ(Scrolled(), middle + QPoint(0, down.pageStep()));
    Keyboard::Press(Qt::Key_PageUp);
    EXPECT_EQ(Scrolled(), middle);
    Keyboard::Press(Qt::Key_Home);
    EXPECT_EQ(Scrolled(), QPoint(0, 0));
    Keyboard::Press(Qt::Key_End);
    EXPECT_EQ(Scrolled(), QPoint(across.maximum(), down.maximum()));
    Keyboard::Press(Qt::Key_Minus, {}, 20);
    EXPECT_EQ(mDisplay.GetZoom().mMode, ZoomFit);
}

TEST_F(DisplayKeyboard, EveryKeyOfTheDocumentationDoesSomething)
{
    QFile file(LXGUI_SOURCE_DIR "/docs/keyboard.md");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    int count = 0;
    for (const QString &row : page.section("## Image display", 1).section("\n## ", 0, 0).split('\n')) {
        const QString keys = row.section('|', 1, 1).trimmed();
        if (!row.startsWith("| ") || keys == "Key" || keys.startsWith("Menu")) {
            continue;
        }
        for (const QString &name : keys.split(", ")) {
            mDisplay.OnMainZoom1To1();
            const QImage before = Shot();
            Keyboard::Press(QKeySequence(name)[0].key());
            EXPECT_NE(Shot(), before) << name.toStdString();
            ++count;
        }
    }
    EXPECT_EQ(count, 12);
}

TEST_F(DisplayKeyboard, KeysThatScrollAreTheHostsToo)
{
    mDisplay.OnMainZoom1To1();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown,
                              Qt::Key_Home, Qt::Key_End})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        EXPECT_FALSE(mDisplay.eventFilter(&mHost, &event)) << key;
    }
}

TEST_F(DisplayKeyboard, AFittedPictureDoesNotScroll)
{
    const QImage before = Shot();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageDown, Qt::Key_End}) {
        Keyboard::Press(key);
    }
    EXPECT_EQ(Shot(), before);
    EXPECT_EQ(Scrolled(), QPoint(0, 0));
}
