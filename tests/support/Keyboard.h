#pragma once

#include <QtCore/QString>
#include <QtGui/QKeySequence>

class QWidget;

/// A user who has nothing but a keyboard: every key goes to the window with the focus, and from there where the focus
/// is, as the platform delivers it.
namespace Keyboard
{

/// A round of Tab in the largest window is shorter.
constexpr int MostControls = 100;

/// The control with the focus; null when there is none.
QWidget *Focus();

void Press(Qt::Key aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier, int aTimes = 1);
void Type(const QString &aText);
/// Types a text in the place of all that a line edit holds.
void Replace(const QString &aText);
/// The Menu key, which platforms deliver as a request for a context menu.
void PressMenuKey();
void PressShiftF10();

/// Presses Tab until the control of this object name has the focus. False, and a test failure, when a round does not
/// come to it.
bool TabTo(const char *aName);
/// Presses Alt and the letter that a text of a menu, button or label marks with "&".
void PressMnemonic(const QString &aText);
/// In an open menu, goes down to the entry of this text, without "&", and chooses it. False, and a test failure, when
/// there is none.
bool ChooseFromMenu(const QString &aText);
/// Opens the context menu with a key and chooses an entry; returns when that has been done.
bool ChooseFromContextMenu(void (*aPressKey)(), const QString &aText);

}  // namespace Keyboard
