#pragma once

#include <QtCore/QByteArray>
#include <QtWidgets/QTreeWidgetItem>

#include "LxGUI/DeviceFinder/InfoRow.h"

class IconStrip;
class LxString;

/// A line of the device tree with what the information tables show about it.
///
/// The search thread fills an item's own members and never calls QTreeWidgetItem, which belongs to the GUI thread;
/// Display() carries them over. The members are guarded by the window's map mutex once the item is in a map.
class TreeItemInfo : public QTreeWidgetItem
{
public:
    ~TreeItemInfo() override;

    virtual bool IsDevice() const = 0;
    virtual bool IsInterface() const = 0;

    const QByteArray &GetDisplayText() const { return mDisplayText; }
    const QByteArray &GetUniqueID() const { return mUniqueID; }
    const InfoRows &GetRows() const { return mRows; }
    /// The tile of the icon strip.
    int GetIconIndex() const { return mIconIndex; }
    /// The one that the tree shows at present. GUI thread only.
    int GetShownIcon() const { return mShownIcon; }

    /// Shows text and icon in the tree where they changed. GUI thread only.
    void Display(const IconStrip &aIcons);

protected:
    void SetIdentity(const LxString &aDisplayText, const LxString &aUniqueID);
    void ClearRows() { mRows.clear(); }
    void AddRow(const char *aLabel, const QString &aValue, const QColor &aColor = Qt::white);
    void AddRow(const char *aLabel, const LxString &aValue, const QColor &aColor = Qt::white);
    /// Replaces the value of the row with a label, if there is one.
    void ChangeRow(const char *aLabel, const QString &aValue, const QColor &aColor);
    void SetIconIndex(int aIndex) { mIconIndex = aIndex; }

private:
    QByteArray mDisplayText;
    QByteArray mUniqueID;
    InfoRows mRows;
    int mIconIndex = -1;
    // what the tree shows at present
    QByteArray mShownText;
    int mShownIcon = -1;
};
