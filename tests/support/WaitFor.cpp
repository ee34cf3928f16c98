#include "WaitFor.h"

#include <thread>

bool WaitFor(const std::function<bool()> &aCondition, std::chrono::milliseconds aTimeout)
{
    const auto end = std::chrono::steady_clock::now() + aTimeout;
    while (!aCondition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
