#include "LxGUI/DeviceFinder/IconStrip.h"

#include <QtGui/QBitmap>

void IconStrip::Load()
{
    constexpr int size = 16;
    QPixmap strip(QStringLiteral(":LxGUI/res/finder_icons16.bmp"));
    strip.setMask(strip.createMaskFromColor(Qt::white));
    mIcons.clear();
    for (int x = 0; x + size <= strip.width(); x += size) {
        const QPixmap tile = strip.copy(x, 0, size, size);
        QIcon icon(tile);
        // The same in a selected line: a tinted icon could not be told from its ground.
        icon.addPixmap(tile, QIcon::Selected);
        mIcons.push_back(icon);
    }
}

QIcon IconStrip::GetIcon(int aTile) const
{
    return aTile >= 0 && aTile < static_cast<int>(mIcons.size()) ? mIcons[static_cast<size_t>(aTile)] : QIcon();
}
