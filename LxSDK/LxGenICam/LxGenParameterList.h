#pragma once

#include <cstddef>
#include <vector>

#include "LxSDKExport.h"

class LxGenParameter;

/// An ordered list of features, which it does not own.
class LX_API LxGenParameterList
{
public:
    void Add(LxGenParameter *aParameter);
    void Clear();
    size_t GetCount() const { return mParameters.size(); }
    /// The first feature or null; GetNext() then walks on and is null at the end.
    LxGenParameter *GetFirst();
    LxGenParameter *GetNext();

private:
    std::vector<LxGenParameter *> mParameters;
    size_t mNext = 0;
};
