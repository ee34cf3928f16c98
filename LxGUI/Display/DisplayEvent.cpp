#include "LxGUI/Display/DisplayEvent.h"

#include <atomic>
#include <new>

namespace
{

std::atomic<void *> sSpare{nullptr};

}  // namespace

void *DisplayEvent::operator new(std::size_t aSize)
{
    void *spare = sSpare.exchange(nullptr);
    return spare ? spare : ::operator new(aSize);
}

void DisplayEvent::operator delete(void *aMemory)
{
    ::operator delete(sSpare.exchange(aMemory));
}
