#pragma once

#include "LxGenICam/LxGenParameter.h"

/// A floating-point feature (GenApi IFloat).
class LX_API LxGenFloat : public LxGenParameter
{
public:
    ~LxGenFloat() override;

    /// Errors: NotReadable and those of the device; the argument is then as it was.
    virtual LxResult GetValue(double &aValue) const = 0;
    /// Errors: NotWritable, OutOfRange (also for what is no number; nothing is written), and those of the device.
    virtual LxResult SetValue(double aValue) = 0;
    /// -DBL_MAX when unbound.
    virtual LxResult GetMin(double &aMin) const = 0;
    /// DBL_MAX when unbound.
    virtual LxResult GetMax(double &aMax) const = 0;
    /// For example "us"; empty when the XML gives none.
    virtual LxResult GetUnit(LxString &aUnit) const = 0;
    /// One of LxGenRepresentation; LxGenRepresentationPureNumber when the XML gives none.
    virtual LxResult GetRepresentation(int &aRepresentation) const = 0;
};
