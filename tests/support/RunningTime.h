#pragma once

#include <chrono>

/// How long something takes from the construction of this on, less the time in which this process did not run. For
/// upper bounds: a halt of the whole machine does not break them, and a wait that is too long does.
class RunningTime
{
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    RunningTime();
    Milliseconds Get() const;

private:
    const Milliseconds mStart;
};
