#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtGui/QImage>
#include <set>
#include <string>

#include "LxGUI/DeviceFinder/IconStrip.h"

namespace
{

const std::set<int> UsedTiles = {0, 1, 2, 3, 5, 7, 8, 9, 10, 11, 17, 21, 23, 24, 25, 26, 27, 28};

QImage Load(const char *aName)
{
    QImage image(QStringLiteral(":LxGUI/res/") + QLatin1String(aName));
    EXPECT_FALSE(image.isNull()) << aName;
    return image.convertToFormat(QImage::Format_RGB32);
}

QImage Tile(const QImage &aStrip, int aTile)
{
    return aStrip.copy(16 * aTile, 0, 16, 16);
}

/// The tile in black, grey and white, as somebody sees it who cannot tell the colours apart.
QImage Grey(const QImage &aTile)
{
    return aTile.convertToFormat(QImage::Format_Grayscale8);
}

}  // namespace

TEST(Bitmaps, LoadWithAndWithoutTheLeadingSlash)
{
    for (const char *name : {"finder_icons16.bmp", "wheel.bmp", "Error.bmp"}) {
        EXPECT_TRUE(QFile::exists(QStringLiteral(":LxGUI/res/") + name)) << name;
        EXPECT_TRUE(QFile::exists(QStringLiteral(":/LxGUI/res/") + name)) << name;
        Load(name);
    }
}

TEST(Bitmaps, TheStripHasRoomForAllTiles)
{
    const QImage strip = Load("finder_icons16.bmp");
    EXPECT_GE(strip.width(), 464);
    EXPECT_EQ(strip.height(), 16);
    EXPECT_EQ(QImage(":LxGUI/res/finder_icons16.bmp").depth(), 32) << "24 bits a pixel are loaded as 32";
}

TEST(Bitmaps, EveryUsedTileIsDrawnAndHasTransparentPixels)
{
    const QImage strip = Load("finder_icons16.bmp");
    for (int tile = 0; tile < 29; ++tile) {
        int transparent = 0;
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x) {
                transparent += strip.pixelColor(16 * tile + x, y) == QColor(Qt::white);
            }
        }
        if (UsedTiles.count(tile)) {
            EXPECT_GT(transparent, 8) << tile;
            EXPECT_LT(transparent, 200) << tile;
        }
        else {
            EXPECT_EQ(transparent, 256) << tile;
        }
    }
}

TEST(Bitmaps, NoPixelIsNearlyTransparent)
{
    const QImage strip = Load("finder_icons16.bmp");
    for (int y = 0; y < strip.height(); ++y) {
        for (int x = 0; x < strip.width(); ++x) {
            const QColor color = strip.pixelColor(x, y);
            const int least = std::min({color.red(), color.green(), color.blue()});
            EXPECT_TRUE(color == QColor(Qt::white) || least < 248) << x << ',' << y;
        }
    }
}

TEST(Bitmaps, TilesDifferWithoutTheirColours)
{
    const QImage strip = Load("finder_icons16.bmp");
    for (const int one : UsedTiles) {
        for (const int other : UsedTiles) {
            if (one >= other) {
                continue;
            }
            const QImage left = Grey(Tile(strip, one));
            const QImage right = Grey(Tile(strip, other));
            int different = 0;
            for (int y = 0; y < 16; ++y) {
                for (int x = 0; x < 16; ++x) {
                    different += std::abs(qGray(left.pixel(x, y)) - qGray(right.pixel(x, y))) > 60;
                }
            }
            EXPECT_GE(different, 20) << one << " and " << other;
        }
    }
}

TEST(Bitmaps, TheErrorSignIs12PixelsWideWithTransparentCorners)
{
    const QImage sign = Load("Error.bmp");
    EXPECT_EQ(sign.size(), QSize(12, 12));
    for (const QPoint &corner : {QPoint(0, 0), QPoint(11, 0), QPoint(0, 11), QPoint(11, 11)}) {
        EXPECT_EQ(sign.pixelColor(corner), QColor(Qt::black));
    }
    EXPECT_NE(sign.pixelColor(6, 6), QColor(Qt::black));
}

TEST(Bitmaps, TheStripsWhiteIsTransparentInTheIcons)
{
    IconStrip strip;
    strip.Load();
    const QImage bitmap = Load("finder_icons16.bmp");
    for (const int tile : UsedTiles) {
        const QImage icon = strip.GetIcon(tile).pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(icon.size(), QSize(16, 16));
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x) {
                const QColor drawn = bitmap.pixelColor(16 * tile + x, y);
                const QColor shown = icon.pixelColor(x, y);
                if (drawn == QColor(Qt::white)) {
                    EXPECT_EQ(shown.alpha(), 0);
                }
                else {
                    EXPECT_EQ(shown, drawn);
                }
            }
        }
    }
    EXPECT_TRUE(strip.GetIcon(-1).isNull());
    EXPECT_TRUE(strip.GetIcon(1000).isNull());
}

TEST(Bitmaps, ASelectedIconIsTheSameWithAWhiteOutline)
{
    IconStrip strip;
    strip.Load();
    for (const int tile : UsedTiles) {
        const QIcon icon = strip.GetIcon(tile);
        const QImage normal = icon.pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
        const QImage selected = icon.pixmap(16, 16, QIcon::Selected).toImage().convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(selected.size(), normal.size());
        const auto isDrawn = [&normal](int aX, int aY) {
            return normal.valid(aX, aY) && normal.pixelColor(aX, aY).alpha() != 0;
        };
        int outline = 0;
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x) {
                if (isDrawn(x, y)) {
                    EXPECT_EQ(selected.pixelColor(x, y), normal.pixelColor(x, y)) << tile;
                }
                else if (isDrawn(x - 1, y) || isDrawn(x + 1, y) || isDrawn(x, y - 1) || isDrawn(x, y + 1)) {
                    EXPECT_EQ(selected.pixelColor(x, y), QColor(Qt::white)) << tile;
                    ++outline;
                }
                else {
                    EXPECT_EQ(selected.pixelColor(x, y).alpha(), 0) << tile;
                }
            }
        }
        EXPECT_GT(outline, 5) << tile;
    }
}
