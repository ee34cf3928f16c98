#include "LxGenICam/LxGenParameterList.h"

void LxGenParameterList::Add(LxGenParameter *aParameter)
{
    mParameters.push_back(aParameter);
}

void LxGenParameterList::Clear()
{
    mParameters.clear();
    mNext = 0;
}

LxGenParameter *LxGenParameterList::GetFirst()
{
    mNext = 0;
    return GetNext();
}

LxGenParameter *LxGenParameterList::GetNext()
{
    return mNext < mParameters.size() ? mParameters[mNext++] : nullptr;
}
