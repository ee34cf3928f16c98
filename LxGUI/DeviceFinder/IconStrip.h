#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPixmap>
#include <vector>

/// The icons of the device finder, cut from one bitmap. Pure white is transparent.
class IconStrip
{
public:
    /// Loads the bitmap; needs a QApplication.
    void Load();
    /// The icon of a tile, with a white outline in a selected line; empty for a tile that is not there.
    QIcon GetIcon(int aTile) const;

private:
    std::vector<QIcon> mIcons;
};
