#pragma once

#include <memory>

#include "LxBase/LxStringList.h"
#include "LxPersistence/LxPropertyList.h"

/// Reads what an LxConfigurationWriter wrote. Not synchronised.
/// @thread{any; one object by one thread at a time}
class LX_API LxConfigurationReader
{
public:
    LxConfigurationReader();
    ~LxConfigurationReader();
    LxConfigurationReader(const LxConfigurationReader &) = delete;
    LxConfigurationReader &operator=(const LxConfigurationReader &) = delete;

    /// Reads a file. FileError when it cannot be opened or read or exceeds 64 MiB; InvalidDataFormat, with the reason
    /// and the place, when it is no configuration. On failure what was loaded before stays.
    LxResult Load(const LxString &aPath);
    /// The same from text in memory. InvalidDataFormat as above.
    LxResult LoadFromString(const LxString &aText);

    /// Replaces the content of the list by the properties stored under the name. NotFound, and the list untouched,
    /// when there is none of that name; InvalidArgument for a null list.
    LxResult Restore(const LxString &aName, LxPropertyList *aList) const;
    /// The names of all lists, in the order of the file.
    LxStringList GetNames() const;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
