#pragma once

#include <QtWidgets/QApplication>
#include <memory>

/// The QApplication that the library makes for a host that has none. It must never be deleted inside its own event
/// loop: one that is released there waits until no loop runs, or until a new window takes it over.
namespace OwnedApplication
{

/// Makes the application, or takes over one that waits for its end, unless the program has one; null if it has one.
std::unique_ptr<QApplication> Ensure();

/// Ends an application that Ensure() returned: now, or when no event loop runs any more. Null does nothing.
void Release(std::unique_ptr<QApplication> aApplication);

/// Whether widgets can be made and used: the program has an application, not one without a GUI, and is not at its end.
bool CanMakeWidgets();

/// Makes windows that are destroyed after main(), with the static objects of the program, leave Qt alone. Called before
/// the first widget is made, which is after such a window was constructed.
void LeaveAloneAtExit();

/// Whether neither an event loop nor DoEvents() is running on this thread, so that nothing of Qt is on the stack.
bool IsIdle();

/// Lets Qt process its pending events.
void ProcessEvents();

/// Ends an application that waits for its end, if no event loop runs any more.
void CollectReleased();

}  // namespace OwnedApplication
