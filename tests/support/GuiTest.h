#pragma once

#include <QtCore/QString>
#include <QtGui/QImage>
#include <functional>
#include <memory>

class QWidget;

/// Runs the event loop until a condition holds. False when the time-out (milliseconds) passed first.
bool WaitForGui(const std::function<bool()> &aCondition, int aTimeout = 20000);

/// Calls a function once, from the event loop, as soon as a modal widget (a message box, a dialog) is shown; for what a
/// blocking call like QMessageBox::warning() shows. The function must end the widget. When nothing has appeared after
/// the time-out, the widget's absence is reported as a test failure.
void OnNextModal(std::function<void(QWidget *)> aAct, int aTimeout = 20000);

/// Ends the next message box with its default button and keeps its title and text.
struct ExpectedBox
{
    ExpectedBox();
    bool WasShown() const;
    QString Title() const;
    QString Text() const;

private:
    struct State;
    std::shared_ptr<State> mState;
};

/// What a widget shows, in its own pixels.
QImage Grab(QWidget *aWidget);
