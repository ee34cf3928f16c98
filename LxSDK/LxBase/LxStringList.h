#pragma once

#include <cstddef>
#include <vector>

#include "LxBase/LxString.h"

/// An ordered list of texts. A value type; the order of adding is kept and duplicates are allowed.
/// @thread{any; one object by one thread at a time}
class LX_API LxStringList
{
public:
    /// Appends a copy.
    void Add(const LxString &aText);
    /// Removes all texts.
    void Clear();
    /// The number of texts.
    size_t GetSize() const { return mTexts.size(); }
    /// The text at an index of 0 to GetSize() - 1; beyond that the empty text.
    LxString GetItem(size_t aIndex) const;

private:
    std::vector<LxString> mTexts;
};
