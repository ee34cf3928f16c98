#pragma once

#include "LxDevice/ILxDeviceAdapter.h"

class LxDevice;

/// Adapts a device. Does not own it; the device must outlive the adapter. A null device has no parameters and an empty
/// identifier.
class LX_API LxDeviceAdapter : public ILxDeviceAdapter
{
public:
    /// Null is allowed.
    explicit LxDeviceAdapter(LxDevice *aDevice);
    ~LxDeviceAdapter() override;

    LxGenParameterArray *GetParameters() override;
    LxString GetUniqueID() const override;
    /// The adapted device, or null.
    LxDevice *GetDevice() const { return mDevice; }

private:
    LxDevice *mDevice;
};
