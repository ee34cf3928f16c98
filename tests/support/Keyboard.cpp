#include "Keyboard.h"

#include <gtest/gtest.h>

#include <QtCore/QTimer>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <memory>
#include <optional>

#include "GuiTest.h"

namespace
{

/// The window with the focus. The offscreen platform has no window manager, which gives it to a modal window that comes
/// and to the window below one that goes: that is made up for here.
QWindow *FocusWindow()
{
    const auto isUsable = [] {
        const QWindow *window = QGuiApplication::focusWindow();
        const QWidget *modal = QApplication::activeModalWidget();
        return window && window->isVisible() && (!modal || modal->windowHandle() == window);
    };
    if (!isUsable()) {
        QWidget *next = QApplication::activeModalWidget();
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            const bool isWindow = widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog;
            if (!next && widget->isVisible() && isWindow) {
                next = widget;
            }
        }
        if (next) {
            next->activateWindow();
            EXPECT_TRUE(WaitForGui(isUsable)) << "no window takes the focus";
        }
    }
    return QGuiApplication::focusWindow();
}

}  // namespace

QWidget *Keyboard::Focus()
{
    FocusWindow();
    return QApplication::focusWidget();
}

void Keyboard::Press(Qt::Key aKey, Qt::KeyboardModifiers aModifiers, int aTimes)
{
    for (int i = 0; i < aTimes; ++i) {
        QWindow *window = FocusWindow();
        ASSERT_NE(window, nullptr) << "no window has the focus";
        QTest::keyClick(window, aKey, aModifiers);
    }
}

void Keyboard::Type(const QString &aText)
{
    for (const QChar character : aText) {
        QWindow *window = FocusWindow();
        ASSERT_NE(window, nullptr) << "no window has the focus";
        QTest::keyClick(window, character.toLatin1());
    }
}

void Keyboard::Replace(const QString &aText)
{
    Press(Qt::Key_A, Qt::ControlModifier);
    Type(aText);
}

void Keyboard::PressMenuKey()
{
    QWindow *window = FocusWindow();
    ASSERT_NE(window, nullptr) << "no window has the focus";
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(window, &event);
}

void Keyboard::PressShiftF10()
{
    Press(Qt::Key_F10, Qt::ShiftModifier);
}

bool Keyboard::TabTo(const char *aName)
{
    QStringList passed;
    for (int i = 0; i < MostControls; ++i) {
        const QWidget *focus = Focus();
        if (focus && focus->objectName() == QLatin1String(aName)) {
            return true;
        }
        passed << (focus ? focus->objectName() : QStringLiteral("nothing"));
        Press(Qt::Key_Tab);
    }
    passed.removeDuplicates();
    ADD_FAILURE() << "Tab does not come to " << aName << ", only to " << passed.join(", ").toStdString();
    return false;
}

void Keyboard::PressMnemonic(const QString &aText)
{
    const QKeySequence mnemonic = QKeySequence::mnemonic(aText);
    ASSERT_FALSE(mnemonic.isEmpty()) << aText.toStdString() << " has no mnemonic";
    Press(mnemonic[0].key(), Qt::AltModifier);
}

bool Keyboard::ChooseFromMenu(const QString &aText)
{
    const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (!menu) {
        ADD_FAILURE() << "no menu is open";
        return false;
    }
    const auto activeText = [menu] {
        return menu->activeAction() ? menu->activeAction()->text().remove(QLatin1Char('&')) : QString();
    };
    QStringList passed;
    while (activeText() != aText && passed.size() < MostControls) {
        passed << activeText();
        Press(Qt::Key_Down);
    }
    if (activeText() != aText) {
        passed.removeDuplicates();
        ADD_FAILURE() << "the menu has no " << aText.toStdString() << ", only " << passed.join(", ").toStdString();
        return false;
    }
    Press(Qt::Key_Return);
    return true;
}

bool Keyboard::ChooseFromContextMenu(void (*aPressKey)(), const QString &aText)
{
    // a menu may run an event loop of its own, from which alone it can be reached
    auto done = std::make_shared<std::optional<bool>>();
    QTimer waiting;
    QObject::connect(&waiting, &QTimer::timeout, [&waiting, done, aText] {
        if (QApplication::activePopupWidget()) {
            waiting.stop();
            *done = ChooseFromMenu(aText);
        }
    });
    waiting.start(1);
    aPressKey();
    EXPECT_TRUE(WaitForGui([done] { return done->has_value(); })) << "no menu has come for " << aText.toStdString();
    return done->value_or(false);
}
