#pragma once

#include "LxSDKExport.h"

class LxDeviceInfo;
class LxInterface;

/// Receives what a search finds. Implemented by the application.
/// @thread{called on the thread that searches}
class LX_API LxSystemEventSink
{
public:
    virtual ~LxSystemEventSink();

    /// Called during LxSystem::Find() and FindDevice(), on the thread that called them, once for each answer.
    /// @param aInfo may be null for a report about the interface only.
    /// @param aReserved for the interface; not looked at.
    virtual void OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool &aReserved) = 0;
};
