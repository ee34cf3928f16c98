#pragma once

#include <cstddef>
#include <list>

#include "LxPersistence/LxProperty.h"

/// An ordered list of properties. The order of adding is kept and names may repeat.
///
/// The list owns its properties; the pointers that it hands out stay valid until Clear() or its destruction. A copy is
/// independent and starts with its own GetFirst()/GetNext() position. Not synchronised.
/// @thread{any; one object by one thread at a time}
class LX_API LxPropertyList
{
public:
    LxPropertyList() = default;
    /// Copies the properties.
    LxPropertyList(const LxPropertyList &aOther);
    /// Replaces the properties by copies.
    LxPropertyList &operator=(const LxPropertyList &aOther);

    /// Removes and deletes all properties.
    void Clear();
    /// Adds a copy.
    void Add(const LxProperty &aProperty);
    /// Adds a copy; the caller keeps its object. A null pointer adds nothing.
    void Add(const LxProperty *aProperty);

    /// The first property, or null when the list is empty.
    LxProperty *GetFirst();
    /// The property behind the one that was given last; null at the end.
    LxProperty *GetNext();
    /// The first property of exactly this name, or null.
    LxProperty *GetProperty(const LxString &aName);
    /// The same for reading only.
    const LxProperty *GetProperty(const LxString &aName) const;
    /// The number of properties.
    size_t GetCount() const { return mProperties.size(); }
    /// The property at an index of 0 to GetCount() - 1, else null.
    const LxProperty *GetAt(size_t aIndex) const;

private:
    std::list<LxProperty> mProperties;
    std::list<LxProperty>::iterator mNext = mProperties.end();
};
