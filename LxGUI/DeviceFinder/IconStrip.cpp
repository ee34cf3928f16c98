#include "LxGUI/DeviceFinder/IconStrip.h"

#include <QtGui/QBitmap>
#include <QtGui/QImage>

namespace
{

/// A tile with a white line around what is drawn, so that dark colours can be told from the ground of a selected line.
QPixmap Outline(const QPixmap &aTile)
{
    const QImage tile = aTile.toImage().convertToFormat(QImage::Format_ARGB32);
    const auto isDrawn = [&tile](int aX, int aY) { return tile.valid(aX, aY) && qAlpha(tile.pixel(aX, aY)) != 0; };
    QImage outlined = tile;
    for (int y = 0; y < tile.height(); ++y) {
        for (int x = 0; x < tile.width(); ++x) {
            if (!isDrawn(x, y) && (isDrawn(x - 1, y) || isDrawn(x + 1, y) || isDrawn(x, y - 1) || isDrawn(x, y + 1))) {
                outlined.setPixelColor(x, y, Qt::white);
            }
        }
    }
    return QPixmap::fromImage(outlined);
}

}  // namespace

void IconStrip::Load()
{
    constexpr int size = 16;
    QPixmap strip(QStringLiteral(":LxGUI/res/finder_icons16.bmp"));
    strip.setMask(strip.createMaskFromColor(Qt::white));
    mIcons.clear();
    for (int x = 0; x + size <= strip.width(); x += size) {
        const QPixmap tile = strip.copy(x, 0, size, size);
        QIcon icon(tile);
        // In a selected line a tinted icon could not be told from its ground.
        icon.addPixmap(Outline(tile), QIcon::Selected);
        mIcons.push_back(icon);
    }
}

QIcon IconStrip::GetIcon(int aTile) const
{
    return aTile >= 0 && aTile < static_cast<int>(mIcons.size()) ? mIcons[static_cast<size_t>(aTile)] : QIcon();
}
