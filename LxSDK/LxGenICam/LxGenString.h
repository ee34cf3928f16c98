#pragma once

#include "LxGenICam/LxGenParameter.h"

/// A text feature (GenApi IString).
class LX_API LxGenString : public LxGenParameter
{
public:
    ~LxGenString() override;

    /// Errors: NotReadable and those of the device; the argument is then as it was.
    virtual LxResult GetValue(LxString &aValue) const = 0;
    /// Errors: NotWritable, TooLong (more bytes than GetMaxLength(); nothing is written), and those of the device.
    virtual LxResult SetValue(const LxString &aValue) = 0;
    /// In bytes, without a terminating zero; INT64_MAX when unbound.
    virtual LxResult GetMaxLength(int64_t &aMaxLength) const = 0;
};
