#pragma once

#include <chrono>
#include <functional>

/// Waits until a condition holds, asking it every millisecond. For tests without a Qt event loop; those with one use
/// WaitForGui(). False when the time-out passed first.
bool WaitFor(const std::function<bool()> &aCondition,
             std::chrono::milliseconds aTimeout = std::chrono::milliseconds(20000));
