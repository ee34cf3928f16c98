#pragma once

#include <cstddef>
#include <list>

#include "LxPersistence/LxProperty.h"

/// An ordered list of properties. The order of adding is kept and names may repeat.
///
/// The list owns its properties; the pointers that it hands out stay valid until Clear() or its destruction. A copy is
/// independent and starts with its own GetFirst()/GetNext() position. Not synchronised.
class LX_API LxPropertyList
{
public:
    LxPropertyList() = default;
    LxPropertyList(const LxPropertyList &aOther);
    LxPropertyList &operator=(const LxPropertyList &aOther);

    void Clear();
    /// Adds a copy.
    void Add(const LxProperty &aProperty);
    /// Adds a copy; the caller keeps its object. A null pointer adds nothing.
    void Add(const LxProperty *aProperty);

    /// The first property, or null when the list is empty; GetNext() then walks on and is null at the end.
    LxProperty *GetFirst();
    LxProperty *GetNext();
    /// The first property of exactly this name, or null.
    LxProperty *GetProperty(const LxString &aName);
    const LxProperty *GetProperty(const LxString &aName) const;
    size_t GetCount() const { return mProperties.size(); }
    /// The property at an index of 0 to GetCount() - 1, else null.
    const LxProperty *GetAt(size_t aIndex) const;

private:
    std::list<LxProperty> mProperties;
    std::list<LxProperty>::iterator mNext = mProperties.end();
};
