#include "LxBase/LxStringList.h"

void LxStringList::Add(const LxString &aText)
{
    mTexts.push_back(aText);
}

void LxStringList::Clear()
{
    mTexts.clear();
}

LxString LxStringList::GetItem(size_t aIndex) const
{
    return aIndex < mTexts.size() ? mTexts[aIndex] : LxString();
}
