#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

class ILxDeviceAdapter;
class QObject;

/// The objects of the host that a window works on. When one ends that the host should have taken from the window
/// before, the window gives it up in time, and a warning says so.
class ObjectWatch
{
public:
    /// Watches these objects instead of the former; nulls are left out.
    /// @param aWindow nothing is called once it has gone.
    /// @param aWhat what the objects are, for the warning.
    /// @param aGiveUp takes the objects from the window; called on the application's thread, for which the thread that
    ///        ends the object waits: two seconds at most, as the application's thread may be waiting for that one.
    void Set(QObject *aWindow, const char *aWhat, std::initializer_list<const void *> aObjects,
             const std::function<void()> &aGiveUp);
    /// The same with an adapter and the device that it leads to.
    void SetAdapter(QObject *aWindow, ILxDeviceAdapter *aAdapter, const std::function<void()> &aGiveUp);

private:
    std::vector<std::shared_ptr<void>> mWatches;
};
