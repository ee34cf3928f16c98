#include "LxGUI/DeviceFinder/TreeItemInfo.h"

#include <algorithm>

#include "LxGUI/DeviceFinder/IconStrip.h"
#include "LxGUI/Frame/Text.h"

TreeItemInfo::~TreeItemInfo() = default;

void TreeItemInfo::Display(const IconStrip &aIcons)
{
    if (mShownText != mDisplayText) {
        mShownText = mDisplayText;
        setText(0, QString::fromUtf8(mDisplayText));
    }
    if (mShownIcon != mIconIndex) {
        mShownIcon = mIconIndex;
        setIcon(0, aIcons.GetIcon(mIconIndex));
    }
}

void TreeItemInfo::SetIdentity(const LxString &aDisplayText, const LxString &aUniqueID)
{
    mDisplayText = aDisplayText.GetAscii();
    mUniqueID = aUniqueID.GetAscii();
}

void TreeItemInfo::AddRow(const char *aLabel, const QString &aValue, const QColor &aColor)
{
    mRows.append({QString::fromUtf8(aLabel), aValue, aColor});
}

void TreeItemInfo::AddRow(const char *aLabel, const LxString &aValue, const QColor &aColor)
{
    AddRow(aLabel, ToQString(aValue), aColor);
}

void TreeItemInfo::ChangeRow(const char *aLabel, const QString &aValue, const QColor &aColor)
{
    const auto row = std::find_if(mRows.begin(), mRows.end(),
                                  [aLabel](const InfoRow &aRow) { return aRow.mLabel == QLatin1String(aLabel); });
    if (row != mRows.end()) {
        row->mValue = aValue;
        row->mColor = aColor;
    }
}
