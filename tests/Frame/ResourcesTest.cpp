// The bitmaps that are compiled into the library.

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtGui/QImage>

TEST(Resources, TheThreeBitmapsLoadWithAndWithoutLeadingSlash)
{
    for (const char *name : {"wheel.bmp", "finder_icons16.bmp", "Error.bmp"}) {
        for (const char *folder : {":LxGUI/res/", ":/LxGUI/res/"}) {
            const QImage image(QString::fromLatin1(folder) + QString::fromLatin1(name), "BMP");
            EXPECT_FALSE(image.isNull()) << folder << name;
        }
    }
    EXPECT_EQ(QDir(QStringLiteral(":/LxGUI/res")).entryList().size(), 3);
}

TEST(Resources, TheFinderStripHoldsItsTilesOfSixteenPixels)
{
    const QImage strip(QStringLiteral(":LxGUI/res/finder_icons16.bmp"));
    EXPECT_EQ(strip.height(), 16);
    EXPECT_GE(strip.width(), 29 * 16);
}
