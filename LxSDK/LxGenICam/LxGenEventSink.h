#pragma once

#include "LxSDKExport.h"

class LxGenParameter;

/// Receives notifications of features. Implemented by the application.
/// @thread{called on the thread that wrote or polled, or on one of the SDK}
class LX_API LxGenEventSink
{
public:
    virtual ~LxGenEventSink();

    /// The feature, or something that it depends on, changed: its value, limits, access or availability. Called on the
    /// thread that wrote or polled, or on a thread of the SDK when the device was lost or came back; no lock of the SDK
    /// is held, so every operation of the SDK may be called from here, except destroying the device.
    virtual void OnParameterUpdate(LxGenParameter *aParameter) = 0;
};
