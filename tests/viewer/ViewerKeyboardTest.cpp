// The viewer with nothing but a keyboard, from its start to its end, with a picture of each step.

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeWidget>

#include "AccessibilityWalk.h"
#include "Keyboard.h"
#include "ViewerTest.h"

namespace
{

class ViewerKeyboard : public Viewer
{
protected:
    void SetUp() override
    {
        Viewer::SetUp();
        ASSERT_TRUE(mPictures.mkpath("."));
        mWindow->resize(1000, 640);
        EXPECT_NE(Keyboard::Focus(), nullptr);
    }
    /// Keeps what a window shows, which must have changed since the last step.
    void Shoot(QWidget *aWindow, const QString &aName)
    {
        const QImage picture = Grab(aWindow);
        EXPECT_NE(picture, mLast) << aName.toStdString();
        EXPECT_TRUE(picture.save(mPictures.filePath(aName + ".png")));
        mLast = picture;
    }
    void ChooseInTheFinder()
    {
        OnNextModal([this](QWidget *aFinder) {
            auto *tree = aFinder->findChild<QTreeWidget *>();
            ASSERT_NE(tree, nullptr);
            const auto isFound = [tree] { return tree->topLevelItem(0) && tree->topLevelItem(0)->childCount() > 0; };
            EXPECT_TRUE(WaitForGui(isFound));
            for (int i = 0; i < 10 && !(tree->currentItem() && tree->currentItem()->parent()); ++i) {
                Keyboard::Press(Qt::Key_Down);
            }
            Shoot(aFinder, "2-finder");
            Keyboard::Press(Qt::Key_Return);
        });
        Keyboard::Press(Qt::Key_F, Qt::ControlModifier);
        ASSERT_TRUE(WaitForGui([this] { return Shown().mWidth > 0; }));
    }

    const QDir mPictures{KEYBOARD_PICTURES};
    QImage mLast;
};

}  // namespace

TEST_F(ViewerKeyboard, IsWorkedFromStartToEnd)
{
    Shoot(mWindow.get(), "1-start");
    ChooseInTheFinder();
    Shoot(mWindow.get(), "3-live");

    EXPECT_EQ(Keyboard::Focus()->objectName(), "picture");
    const auto *bar = mWindow->findChild<QScrollBar *>("horizontalScrollBar");
    Keyboard::Press(Qt::Key_1, Qt::ControlModifier);
    for (int i = 0; i < 10 && !bar->isVisible(); ++i) {
        Keyboard::Press(Qt::Key_Plus);
    }
    ASSERT_TRUE(bar->isVisible());
    Shoot(mWindow.get(), "4-zoomed");
    const int before = bar->value();
    Keyboard::Press(Qt::Key_Right, {}, 3);
    EXPECT_GT(bar->value(), before);
    Shoot(mWindow.get(), "5-scrolled");
    ASSERT_TRUE(Keyboard::ChooseFromContextMenu(&Keyboard::PressMenuKey, "Zoom Fit"));
    EXPECT_FALSE(bar->isVisible());

    ASSERT_TRUE(Keyboard::TabTo("SearchBar"));
    Keyboard::Type("OffsetX");
    ASSERT_TRUE(Keyboard::TabTo("FeatureTree"));
    EXPECT_EQ(Current(), "OffsetX");
    Keyboard::Press(Qt::Key_F2);
    Keyboard::Replace("64");
    Shoot(mWindow.get(), "6-editing");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_TRUE(WaitForGui([this] { return Value("OffsetX").startsWith("64"); }));
    Shoot(mWindow.get(), "7-edited");

    Keyboard::PressMnemonic("&View");
    Shoot(QApplication::activePopupWidget(), "8-menu");
    ASSERT_TRUE(Keyboard::ChooseFromMenu("Registers..."));
    QWidget *registers = mWindow->Registers().GetQWidget();
    ASSERT_TRUE(WaitForGui([registers] { return registers->isActiveWindow(); }));
    EXPECT_EQ(Keyboard::Focus()->objectName(), "ReadAddressEdit");
    Keyboard::Press(Qt::Key_Return);
    EXPECT_NE(registers->findChild<QLineEdit *>("ReadValueEdit")->text(), "");
    Shoot(registers, "9-registers");
    Keyboard::Press(Qt::Key_Escape);
    EXPECT_FALSE(registers->isVisible());

    Keyboard::Press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(mWindow->isVisible());
    EXPECT_FALSE(mWindow->Session().IsConnected());
}

TEST_F(ViewerKeyboard, IsAccessible)
{
    const QStringList faults = FindNameFaults(mWindow.get()) + FindMnemonicFaults(mWindow.get());
    EXPECT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();
    ChooseInTheFinder();
    const QStringList connected = FindNameFaults(mWindow.get()) + FindTabFaults(mWindow.get());
    EXPECT_TRUE(connected.isEmpty()) << connected.join('\n').toStdString();
}

TEST_F(ViewerKeyboard, ItsKeysAreInTheDocumentation)
{
    QFile file(LXGUI_SOURCE_DIR "/docs/keyboard.md");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    QStringList documented;
    const QRegularExpression row("^\\| (.+) \\| (\\w+ > .+) \\|$", QRegularExpression::MultilineOption);
    for (auto rows = row.globalMatch(page.section("## The viewer", 1).section("\n## ", 0, 0)); rows.hasNext();) {
        const QRegularExpressionMatch match = rows.next();
        documented << match.captured(1) + ": " + match.captured(2);
    }
    QStringList actual;
    for (const QAction *top : mWindow->menuBar()->actions()) {
        for (const QAction *action : top->menu()->actions()) {
            if (!action->shortcut().isEmpty()) {
                const QString text = QString(top->text() + " > " + action->text()).remove('&').remove("...");
                actual << action->shortcut().toString() + ": " + text;
            }
        }
    }
    documented.sort();
    actual.sort();
    EXPECT_EQ(documented.join('\n').toStdString(), actual.join('\n').toStdString());
}
