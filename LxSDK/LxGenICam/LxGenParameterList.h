#pragma once

#include <cstddef>
#include <vector>

#include "LxSDKExport.h"

class LxGenParameter;

/// An ordered list of features, which it does not own.
/// @thread{any; one object by one thread at a time}
class LX_API LxGenParameterList
{
public:
    /// Appends a feature, which must outlive the list.
    void Add(LxGenParameter *aParameter);
    /// Removes all features from the list.
    void Clear();
    /// The number of features.
    size_t GetCount() const { return mParameters.size(); }
    /// The first feature, or null when the list is empty.
    LxGenParameter *GetFirst();
    /// The feature behind the one that was given last, null at the end.
    LxGenParameter *GetNext();

private:
    std::vector<LxGenParameter *> mParameters;
    size_t mNext = 0;
};
