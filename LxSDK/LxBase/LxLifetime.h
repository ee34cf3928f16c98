#pragma once

#include <functional>
#include <memory>

#include "LxSDKExport.h"

/// Tells those who point to an object of another owner when it is about to end: the windows of LxGUI give up a device
/// in time whose application forgets to take it from them.
/// @thread{any}
class LX_API LxLifetime
{
public:
    LxLifetime() = delete;

    /// Calls the function when the object ends, on the thread that ends it, while the object can still be used and with
    /// no lock held. Told of their ends are devices (as LxDevice), feature arrays (as LxGenParameterArray), adapters
    /// (as ILxDeviceAdapter; one of the application's own class only when its own part has gone already) and what calls
    /// End() itself.
    /// @return the watch, which lasts as long as it is kept. A call that has begun on another thread may still be
    ///         running when it is given up.
    static std::shared_ptr<void> Watch(const void *aObject, std::function<void()> aNotice);
    /// Tells the watchers of an object, once. For the destructors of what is watched.
    static void End(const void *aObject);
};
