#pragma once

#include "LxGenICam/LxGenParameter.h"

/// A boolean feature (GenApi IBoolean).
class LX_API LxGenBoolean : public LxGenParameter
{
public:
    ~LxGenBoolean() override;

    /// Errors: NotReadable and those of the device; the argument is then as it was.
    virtual LxResult GetValue(bool &aValue) const = 0;
    /// Errors: NotWritable and those of the device.
    virtual LxResult SetValue(bool aValue) = 0;
};
