#include "LxPersistence/LxPropertyList.h"

#include <algorithm>
#include <iterator>

LxPropertyList::LxPropertyList(const LxPropertyList &aOther) : mProperties(aOther.mProperties) {}

LxPropertyList &LxPropertyList::operator=(const LxPropertyList &aOther)
{
    if (this != &aOther) {
        mProperties = aOther.mProperties;
        mNext = mProperties.end();
    }
    return *this;
}

void LxPropertyList::Clear()
{
    mProperties.clear();
    mNext = mProperties.end();
}

void LxPropertyList::Add(const LxProperty &aProperty)
{
    mProperties.push_back(aProperty);
}

void LxPropertyList::Add(const LxProperty *aProperty)
{
    if (aProperty) {
        mProperties.push_back(*aProperty);
    }
}

LxProperty *LxPropertyList::GetFirst()
{
    mNext = mProperties.begin();
    return GetNext();
}

LxProperty *LxPropertyList::GetNext()
{
    return mNext == mProperties.end() ? nullptr : &*mNext++;
}

const LxProperty *LxPropertyList::GetProperty(const LxString &aName) const
{
    const auto found = std::find_if(mProperties.begin(), mProperties.end(),
                                    [&](const LxProperty &aProperty) { return aProperty.GetName() == aName; });
    return found == mProperties.end() ? nullptr : &*found;
}

LxProperty *LxPropertyList::GetProperty(const LxString &aName)
{
    return const_cast<LxProperty *>(static_cast<const LxPropertyList *>(this)->GetProperty(aName));
}

const LxProperty *LxPropertyList::GetAt(size_t aIndex) const
{
    return aIndex < mProperties.size() ? &*std::next(mProperties.begin(), static_cast<std::ptrdiff_t>(aIndex))
                                       : nullptr;
}
