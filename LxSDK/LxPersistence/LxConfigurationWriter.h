#pragma once

#include <memory>

#include "LxPersistence/LxPropertyList.h"

/// Collects named property lists and writes them as XML.
///
/// The XML form is UTF-8: `<LxConfiguration version="1">` holds one `<PropertyList name="...">` for each list, which
/// holds one `<Property name="..." value="..."/>` for each property, all in the order of storing. Texts that XML 1.0
/// cannot carry unchanged (control characters, bytes that are no UTF-8) are written with the attribute
/// encoding="base64". The format is versioned: a reader refuses a version that it does not know.
///
/// Not synchronised.
/// @thread{any; one object by one thread at a time}
class LX_API LxConfigurationWriter
{
public:
    LxConfigurationWriter();
    ~LxConfigurationWriter();
    LxConfigurationWriter(const LxConfigurationWriter &) = delete;
    LxConfigurationWriter &operator=(const LxConfigurationWriter &) = delete;

    /// Stores a copy of the list under a name; a list stored under the same name earlier is replaced in its place.
    /// InvalidArgument for a null list or an empty name.
    LxResult Store(const LxPropertyList *aList, const LxString &aName);

    /// Writes everything stored so far to a file. The file is complete or the old one is untouched: it is written
    /// under a temporary name in the same folder and renamed. FileError with the system's reason otherwise.
    LxResult Save(const LxString &aPath) const;
    /// The same as text in memory.
    LxString SaveToString() const;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
