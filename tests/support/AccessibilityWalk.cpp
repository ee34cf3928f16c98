#include "AccessibilityWalk.h"

#include <gtest/gtest.h>

#include <QtCore/QMap>
#include <QtGui/QAccessible>
#include <QtGui/QKeySequence>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QApplication>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <algorithm>
#include <functional>
#include <utility>

#include "GuiTest.h"
#include "Keyboard.h"

namespace
{

QString Describe(const QWidget *aWidget)
{
    const QString name = aWidget->objectName();
    return QLatin1String(aWidget->metaObject()->className()) + (name.isEmpty() ? name : QLatin1Char(' ') + name);
}

// Names

void ForEachInterface(QAccessibleInterface *aInterface, const std::function<void(QAccessibleInterface *)> &aAct)
{
    if (!aInterface || !aInterface->isValid() || aInterface->state().invisible) {
        return;
    }
    aAct(aInterface);
    if (aInterface->tableInterface()) {
        return;  // the cells are not controls of the window
    }
    for (int i = 0; i < aInterface->childCount(); ++i) {
        ForEachInterface(aInterface->child(i), aAct);
    }
}

bool TakesFocus(const QWidget *aWidget)
{
    return aWidget->focusPolicy() != Qt::NoFocus && !aWidget->focusProxy();
}

bool IsField(const QWidget *aWidget)
{
    return qobject_cast<const QLineEdit *>(aWidget) || qobject_cast<const QComboBox *>(aWidget) ||
           qobject_cast<const QAbstractSpinBox *>(aWidget);
}

/// What stands directly left of a widget (right, where one reads from there) in its row, or null.
QWidget *WidgetBefore(const QWidget *aWidget)
{
    const bool mirrored = aWidget->layoutDirection() == Qt::RightToLeft;
    QWidget *before = nullptr;
    int shortest = aWidget->window()->width();
    for (QWidget *other : aWidget->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        const QRect a = aWidget->geometry();
        const QRect b = other->geometry();
        const int gap = mirrored ? b.left() - a.right() : a.left() - b.right();
        const bool sameRow = b.top() <= a.center().y() && b.bottom() >= a.center().y();
        if (other->isVisible() && sameRow && gap > 0 && gap < shortest) {
            before = other;
            shortest = gap;
        }
    }
    return before;
}

// The order of Tab

bool IsReachable(const QWidget *aWidget)
{
    return aWidget->isVisible() && aWidget->isEnabled() && (aWidget->focusPolicy() & Qt::TabFocus) &&
           !aWidget->focusProxy() && !qobject_cast<const QMenuBar *>(aWidget);
}

/// Buttons of which one is checked at most: Tab comes to one of them, the arrows to the others.
QList<QAbstractButton *> ExclusiveButtons(QWidget *aWidget)
{
    const auto *button = qobject_cast<QAbstractButton *>(aWidget);
    if (!button || !button->isCheckable()) {
        return {};
    }
    if (const QButtonGroup *group = button->group()) {
        return group->exclusive() ? group->buttons() : QList<QAbstractButton *>();
    }
    if (!button->autoExclusive()) {
        return {};
    }
    QList<QAbstractButton *> all;
    for (auto *other : button->parentWidget()->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (other->autoExclusive() && !other->group()) {
            all << other;
        }
    }
    return all;
}

/// The widgets below their common parent that two widgets are in, or are.
std::pair<const QWidget *, const QWidget *> Blocks(const QWidget *aFirst, const QWidget *aSecond)
{
    const QWidget *first = aFirst;
    while (first->parentWidget() && !first->parentWidget()->isAncestorOf(aSecond)) {
        first = first->parentWidget();
    }
    const QWidget *second = aSecond;
    while (second->parentWidget() && second->parentWidget() != first->parentWidget()) {
        second = second->parentWidget();
    }
    return {first, second};
}

/// Whether the eye meets one widget after another: further on in the same row, below, or in the next column.
bool Follows(const QWidget *aFirst, const QWidget *aSecond)
{
    const auto [first, second] = Blocks(aFirst, aSecond);
    QRect a(first->mapToGlobal(QPoint()), first->size());
    QRect b(second->mapToGlobal(QPoint()), second->size());
    if (aFirst->layoutDirection() == Qt::RightToLeft) {
        a.moveLeft(-a.right());
        b.moveLeft(-b.right());
    }
    const bool sideBySide = a.bottom() >= b.top() && b.bottom() >= a.top();
    const bool isFurther = b.left() > a.right();
    return isFurther || (!sideBySide && b.top() > a.bottom());
}

// Mnemonics

void CountMnemonic(QMap<QString, QStringList> &aUses, const QString &aText)
{
    const QKeySequence mnemonic = QKeySequence::mnemonic(aText);
    if (!mnemonic.isEmpty()) {
        aUses[mnemonic.toString()] << aText;
    }
}

void AddClashes(QStringList &aFaults, const QMap<QString, QStringList> &aUses)
{
    for (auto use = aUses.begin(); use != aUses.end(); ++use) {
        if (use->size() > 1) {
            aFaults << use.key() + QLatin1String(" is ") + use->join(QLatin1String(" and "));
        }
    }
}

void FindMenuClashes(QStringList &aFaults, const QMenu *aMenu)
{
    QMap<QString, QStringList> uses;
    for (const QAction *action : aMenu->actions()) {
        CountMnemonic(uses, action->text());
        if (action->menu()) {
            FindMenuClashes(aFaults, action->menu());
        }
    }
    AddClashes(aFaults, uses);
}

}  // namespace

QStringList FindNameFaults(QWidget *aWindow)
{
    QStringList faults;
    QMap<QString, QStringList> names;
    ForEachInterface(QAccessible::queryAccessibleInterface(aWindow), [&](QAccessibleInterface *aInterface) {
        auto *widget = qobject_cast<QWidget *>(aInterface->object());
        if (!widget) {
            return;
        }
        const bool inside = widget->parentWidget() && IsField(widget->parentWidget());  // a part of a field
        const QString name = aInterface->text(QAccessible::Name);
        if (TakesFocus(widget) && !inside) {
            if (name.isEmpty()) {
                faults << Describe(widget) + QLatin1String(" has no name");
            }
            if (aInterface->role() == QAccessible::NoRole || aInterface->role() == QAccessible::Client) {
                faults << Describe(widget) + QLatin1String(" has no role");
            }
            names[name] << Describe(widget);
        }
        if (IsField(widget) && !inside) {
            const auto *label = qobject_cast<QLabel *>(WidgetBefore(widget));
            if (label && label->buddy() != widget) {
                faults << Describe(widget) + QLatin1String(" does not belong to its label ") + label->text();
            }
        }
    });
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (name->size() > 1 && !name.key().isEmpty()) {
            faults << QLatin1Char('"') + name.key() + QLatin1String("\" is the name of ") +
                          name->join(QLatin1String(" and "));
        }
    }
    return faults;
}

QStringList FindTabFaults(QWidget *aWindow)
{
    QWidget *const start = Keyboard::Focus();
    if (!start || start->window() != aWindow->window()) {
        return {QStringLiteral("nothing in the window has the focus")};
    }
    QList<QWidget *> order;
    QWidget *widget = start;
    do {
        order << widget;
        Keyboard::Press(Qt::Key_Tab);
        widget = Keyboard::Focus();
    } while (widget && widget != start && order.size() < Keyboard::MostControls);
    if (widget != start) {
        return {QStringLiteral("Tab does not come round to ") + Describe(start)};
    }
    QStringList faults;
    qsizetype jumps = 0;
    for (qsizetype i = 0; i < order.size(); ++i) {
        const QWidget *next = order[(i + 1) % order.size()];
        if (!Follows(order[i], next)) {
            // the walk may have started in the middle: once it comes from the last control to the first
            if (++jumps > 1) {
                faults << QStringLiteral("Tab goes back from ") + Describe(order[i]) + QStringLiteral(" to ") +
                              Describe(next);
            }
        }
    }
    for (QWidget *control : aWindow->findChildren<QWidget *>()) {
        if (control->window() != aWindow->window() || !IsReachable(control) || order.contains(control)) {
            continue;
        }
        const QList<QAbstractButton *> siblings = ExclusiveButtons(control);
        if (std::none_of(siblings.begin(), siblings.end(),
                         [&](QAbstractButton *aButton) { return order.contains(aButton); })) {
            faults << QStringLiteral("Tab does not come to ") + Describe(control);
        }
    }
    for (qsizetype i = order.size() - 1; i >= 0; --i) {
        Keyboard::Press(Qt::Key_Backtab, Qt::ShiftModifier);
        if (Keyboard::Focus() != order[i]) {
            faults << QStringLiteral("Shift+Tab does not go back to ") + Describe(order[i]);
            break;
        }
    }
    return faults;
}

QStringList FindMnemonicFaults(QWidget *aWindow)
{
    QStringList faults;
    QMap<QString, QStringList> uses;
    for (const QWidget *widget : aWindow->findChildren<QWidget *>()) {
        if (widget->window() != aWindow->window()) {
            continue;
        }
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
            CountMnemonic(uses, button->text());
        }
        else if (const auto *group = qobject_cast<const QGroupBox *>(widget)) {
            CountMnemonic(uses, group->title());
        }
        else if (label && label->buddy()) {
            CountMnemonic(uses, label->text());
        }
        else if (const auto *bar = qobject_cast<const QMenuBar *>(widget)) {
            for (const QAction *action : bar->actions()) {
                CountMnemonic(uses, action->text());
                if (action->menu()) {
                    FindMenuClashes(faults, action->menu());
                }
            }
        }
    }
    AddClashes(faults, uses);
    return faults;
}

void ExpectAccessible(QWidget *aWindow)
{
    const QStringList faults = FindNameFaults(aWindow) + FindTabFaults(aWindow) + FindMnemonicFaults(aWindow);
    EXPECT_TRUE(faults.isEmpty()) << '"' << aWindow->windowTitle().toStdString() << "\":\n"
                                  << faults.join(QLatin1Char('\n')).toStdString();
}
