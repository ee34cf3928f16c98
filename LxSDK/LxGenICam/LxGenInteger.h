#pragma once

#include "LxGenICam/LxGenParameter.h"

/// An integer feature (GenApi IInteger): a signed 64-bit number.
class LX_API LxGenInteger : public LxGenParameter
{
public:
    ~LxGenInteger() override;

    /// Errors: NotReadable and those of the device; the argument is then as it was.
    virtual LxResult GetValue(int64_t &aValue) const = 0;
    /// Errors: NotWritable, OutOfRange (below the minimum, above the maximum, off the increment; nothing is written),
    /// and those of the device.
    virtual LxResult SetValue(int64_t aValue) = 0;
    /// The smallest value that can be set now; may depend on other features.
    virtual LxResult GetMin(int64_t &aMin) const = 0;
    /// The largest value that can be set now; may depend on other features.
    virtual LxResult GetMax(int64_t &aMax) const = 0;
    /// At least 1; the valid values are minimum + n * increment.
    virtual LxResult GetIncrement(int64_t &aIncrement) const = 0;
    /// For example "Bps"; empty when the XML gives none.
    virtual LxResult GetUnit(LxString &aUnit) const = 0;
    /// One of LxGenRepresentation; LxGenRepresentationPureNumber when the XML gives none.
    virtual LxResult GetRepresentation(int &aRepresentation) const = 0;
};
