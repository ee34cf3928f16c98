#pragma once

#include <QtCore/QEvent>
#include <cstddef>

/// What is posted to a DisplayWnd. One piece of memory for these events is kept, so that a stream of frames allocates
/// nothing.
class DisplayEvent : public QEvent
{
public:
    static constexpr auto RefreshType = static_cast<QEvent::Type>(11244);
    static constexpr auto ClearType = static_cast<QEvent::Type>(11245);

    explicit DisplayEvent(QEvent::Type aType) : QEvent(aType) {}

    static void *operator new(std::size_t aSize);
    static void operator delete(void *aMemory);
};
