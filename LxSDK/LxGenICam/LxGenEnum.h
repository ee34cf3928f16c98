#pragma once

#include "LxGenICam/LxGenEnumEntry.h"
#include "LxGenICam/LxGenParameter.h"

/// An enumeration feature (GenApi IEnumeration).
class LX_API LxGenEnum : public LxGenParameter
{
public:
    ~LxGenEnum() override;

    /// The number of the current entry. Errors: NotReadable and those of the device.
    virtual LxResult GetValue(int64_t &aValue) const = 0;
    /// The name of the current entry. NotFound when no entry has the current number.
    virtual LxResult GetValue(LxString &aName) const = 0;
    /// Chooses an entry by its number. Errors: NotWritable, NotFound (no such entry), NotAvailable (the entry cannot be
    /// chosen now), the device's.
    virtual LxResult SetValue(int64_t aValue) = 0;
    /// Chooses an entry by its name. Errors as above.
    virtual LxResult SetValue(const LxString &aName) = 0;

    /// All entries of the XML, in its order, whatever their availability and visibility. Always OK.
    virtual LxResult GetEntriesCount(int64_t &aCount) const = 0;
    /// An index of 0 to count - 1. OutOfRange, and the pointer set to null, beyond that. A success may carry null.
    virtual LxResult GetEntryByIndex(int64_t aIndex, const LxGenEnumEntry **aEntry) const = 0;
    /// NotFound, and the pointer set to null, when no entry has the number. A success may carry null.
    virtual LxResult GetEntryByValue(int64_t aValue, const LxGenEnumEntry **aEntry) const = 0;
    /// NotFound, and the pointer set to null, when no entry has the name.
    virtual LxResult GetEntryByName(const LxString &aName, const LxGenEnumEntry **aEntry) const = 0;
};
