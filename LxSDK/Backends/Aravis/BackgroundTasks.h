#pragma once

// Internal: calls that may take seconds and whose end nobody waits for.

#include <chrono>
#include <functional>

#include "NodeMap/ArvSupport.h"

struct _ArvDevice;

namespace LxDetail
{

/// Runs a task on a thread of its own: giving back a device that does not answer, taking control of it again. The
/// library gives such calls up after 2.5 s and cannot be interrupted. The end of the process waits for
/// running tasks, but not for ever.
void RunInBackground(std::function<void()> aTask);

/// Drops the reference there: with the last one the library gives control back, whether it had it or not, and waits for
/// an answer.
/// @param aPatience how long to wait for the end all the same.
void GiveBackInBackground(GObjectPtr<_ArvDevice> aDevice,
                          std::chrono::milliseconds aPatience = std::chrono::milliseconds(0));

}  // namespace LxDetail
