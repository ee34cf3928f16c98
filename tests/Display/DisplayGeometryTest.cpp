#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "LxGUI/Display/DisplayGeometry.h"

using namespace DisplayGeometry;

TEST(DisplayZoom, OneToOneIsAlwaysOne)
{
    const Zoom zoom = ApplyZoom({ZoomOneToOne, 3.5}, {400, 300}, {1000, 1000});
    EXPECT_EQ(zoom.mMode, ZoomOneToOne);
    EXPECT_DOUBLE_EQ(zoom.mFactor, 1.0);
}

TEST(DisplayZoom, FitFollowsFromTheTighterDirection)
{
    EXPECT_DOUBLE_EQ(ApplyZoom({ZoomFit, 9}, {400, 300}, {800, 300}).mFactor, 0.5);
    EXPECT_DOUBLE_EQ(ApplyZoom({ZoomFit, 9}, {400, 300}, {100, 300}).mFactor, 1.0);
    EXPECT_DOUBLE_EQ(ApplyZoom({ZoomFit, 9}, {400, 300}, {40, 30}).mFactor, 10.0);
}

TEST(DisplayZoom, AFreeZoomThatLeavesThePictureSmallerThanTheWindowSnapsToFit)
{
    const Zoom zoom = ApplyZoom({ZoomFree, 0.5}, {400, 300}, {400, 300});
    EXPECT_EQ(zoom.mMode, ZoomFit);
    EXPECT_DOUBLE_EQ(zoom.mFactor, 1.0);
}

TEST(DisplayZoom, AFreeZoomThatOverflowsOneDirectionStays)
{
    // narrower than the window, higher than it
    EXPECT_EQ(ApplyZoom({ZoomFree, 1.0}, {400, 300}, {100, 301}).mMode, ZoomFree);
    // wider than the window, lower than it
    EXPECT_EQ(ApplyZoom({ZoomFree, 1.0}, {400, 300}, {401, 10}).mMode, ZoomFree);
    EXPECT_EQ(ApplyZoom({ZoomFree, 2.0}, {400, 300}, {400, 300}).mMode, ZoomFree);
}

TEST(DisplayZoom, APictureExactlyAsWideAsTheWindowSnapsToFitEvenWhenItsHeightOverflows)
{
    EXPECT_EQ(ApplyZoom({ZoomFree, 1.0}, {400, 300}, {400, 3000}).mMode, ZoomFit);
}

TEST(DisplayZoom, RatiosAreNotTruncated)
{
    // 300 / 200 = 1.5 covers a factor of 1.4; with whole numbers it would not
    EXPECT_EQ(ApplyZoom({ZoomFree, 1.4}, {400, 300}, {200, 200}).mMode, ZoomFit);
}

TEST(DisplayScrollBars, NoneForFitAndForAnEmptyPicture)
{
    EXPECT_FALSE(ComputeScrollBars({ZoomFit, 5}, {100, 100}, {1000, 1000}).mHorizontal.mNeeded);
    EXPECT_FALSE(ComputeScrollBars({ZoomOneToOne, 1}, {100, 100}, {0, 1000}).mVertical.mNeeded);
}

TEST(DisplayScrollBars, OneBarMayMakeTheOtherNecessary)
{
    struct Case
    {
        QSize mPicture;
        bool mHorizontal;
        bool mVertical;
    };
    const Case cases[] = {
        {{400, 300}, false, false}, {{401, 282}, true, false}, {{401, 283}, true, true},
        {{382, 301}, false, true},  {{383, 301}, true, true},  {{401, 301}, true, true},
    };
    for (const Case &c : cases) {
        const ScrollBars bars = ComputeScrollBars({ZoomOneToOne, 1}, {400, 300}, c.mPicture);
        EXPECT_EQ(bars.mHorizontal.mNeeded, c.mHorizontal) << c.mPicture.width() << 'x' << c.mPicture.height();
        EXPECT_EQ(bars.mVertical.mNeeded, c.mVertical) << c.mPicture.width() << 'x' << c.mPicture.height();
    }
}

TEST(DisplayScrollBars, RangesStepsAndValuesTruncate)
{
    const ScrollBars bars = ComputeScrollBars({ZoomOneToOne, 1}, {400, 300}, {1000, 801});
    EXPECT_EQ(bars.mHorizontal.mMaximum, 1000 - 382);
    EXPECT_EQ(bars.mHorizontal.mPageStep, 95);
    EXPECT_EQ(bars.mHorizontal.mSingleStep, 19);
    EXPECT_EQ(bars.mHorizontal.mValue, 309);
    EXPECT_EQ(bars.mVertical.mMaximum, 801 - 282);
    EXPECT_EQ(bars.mVertical.mPageStep, 70);
    EXPECT_EQ(bars.mVertical.mSingleStep, 14);
    EXPECT_EQ(bars.mVertical.mValue, 259);
}

TEST(DisplayScrollBars, OneBarAloneTakesRoomFromTheOtherDirectionOnly)
{
    ScrollBars bars = ComputeScrollBars({ZoomOneToOne, 1}, {400, 300}, {1001, 200});
    EXPECT_EQ(bars.mHorizontal.mMaximum, 1001 - 400);
    EXPECT_EQ(bars.mHorizontal.mPageStep, 100);
    EXPECT_EQ(bars.mHorizontal.mValue, 300);
    EXPECT_EQ(ViewSize({400, 300}, true, false), QSize(400, 282));
    bars = ComputeScrollBars({ZoomOneToOne, 1}, {400, 300}, {300, 801});
    EXPECT_EQ(bars.mVertical.mMaximum, 801 - 300);
    EXPECT_EQ(bars.mVertical.mPageStep, 75);
    EXPECT_EQ(bars.mVertical.mSingleStep, 15);
    EXPECT_EQ(bars.mVertical.mValue, 250);
    EXPECT_EQ(ViewSize({400, 300}, false, true), QSize(382, 300));
}

TEST(DisplayScrollBars, TheSingleStepIsAtLeastOne)
{
    EXPECT_EQ(ComputeScrollBars({ZoomOneToOne, 1}, {30, 30}, {100, 100}).mHorizontal.mSingleStep, 1);
}

TEST(DisplayScrollBars, TheScaledSizeIsRounded)
{
    EXPECT_EQ(ScaledLength(333, 1.5), 500);
    EXPECT_EQ(ScaledLength(3, 0.5), 2);
    EXPECT_EQ(ScaledLength(100, 0.004), 0);
}

TEST(DisplayScrollBars, AZoomBeyondAllNumbersStillShowsAPartOfThePicture)
{
    for (const double factor : {1e7, 1e20, 1e308}) {
        const ScrollBars bars = ComputeScrollBars({ZoomFree, factor}, {10, 300}, {1000, 800});
        ASSERT_TRUE(bars.mHorizontal.mNeeded && bars.mVertical.mNeeded) << factor;
        EXPECT_GT(bars.mHorizontal.mMaximum, 0);
        EXPECT_GT(bars.mVertical.mMaximum, 0);
        const Placement place = ComputePlacement({ZoomFree, factor}, {400, 300}, {1000, 800},
                                                 {bars.mHorizontal.mMaximum, bars.mVertical.mValue});
        EXPECT_EQ(place.mTarget, QRect(0, 0, 400, 300));
        EXPECT_EQ(place.mSource.size(), QSize(1, 1));
    }
}

TEST(DisplayPlacement, FitFillsTheTighterDirectionAndCentresTheOther)
{
    Placement place = ComputePlacement({ZoomFit, 1}, {400, 300}, {100, 100}, {});
    EXPECT_EQ(place.mTarget, QRect(50, 0, 300, 300));
    EXPECT_EQ(place.mSource, QRect(0, 0, 100, 100));
    place = ComputePlacement({ZoomFit, 1}, {400, 300}, {400, 100}, {});
    EXPECT_EQ(place.mTarget, QRect(0, 100, 400, 100));
}

TEST(DisplayPlacement, TheFittedLengthAndItsPlaceAreTruncated)
{
    EXPECT_EQ(ComputePlacement({ZoomFit, 1}, {400, 300}, {333, 1000}, {}).mTarget, QRect(150, 0, 99, 300));
    EXPECT_EQ(ComputePlacement({ZoomFit, 1}, {400, 300}, {1000, 333}, {}).mTarget, QRect(0, 83, 400, 133));
}

// Quotients of two sizes are not what they should be to the last bit.
TEST(DisplayPlacement, APictureThatIsAsHighOrWideAsTheViewIsFittedPixelByPixel)
{
    for (int width = 100; width < 2000; width += 7) {
        for (int height = 100; height < 1600; height += 11) {
            const QRect picture(0, 0, width, height);
            ASSERT_EQ(ComputePlacement({}, picture.size(), picture.size(), {}).mTarget, picture);
            ASSERT_EQ(ComputePlacement({}, {width + 2, height}, picture.size(), {}).mTarget, picture.translated(1, 0));
            ASSERT_EQ(ComputePlacement({}, {width, height + 2}, picture.size(), {}).mTarget, picture.translated(0, 1));
        }
    }
}

TEST(DisplayPlacement, ASmallerPictureIsCentredAtItsZoom)
{
    const Placement place = ComputePlacement({ZoomOneToOne, 1}, {400, 300}, {101, 50}, {});
    EXPECT_EQ(place.mTarget, QRect(149, 125, 101, 50));
    EXPECT_EQ(place.mSource, QRect(0, 0, 101, 50));
}

TEST(DisplayPlacement, ALargerPictureShowsTheScrolledPartWithInclusiveCorners)
{
    const Placement place = ComputePlacement({ZoomOneToOne, 1}, {382, 282}, {1000, 800}, {309, 259});
    EXPECT_EQ(place.mTarget, QRect(0, 0, 382, 282));
    EXPECT_EQ(place.mSource.topLeft(), QPoint(309, 259));
    EXPECT_EQ(place.mSource.bottomRight(), QPoint(691, 541));
}

TEST(DisplayPlacement, TheScrolledPartIsRoundedToPixels)
{
    const Placement place = ComputePlacement({ZoomFree, 1.5}, {300, 100}, {1000, 800}, {100, 50});
    EXPECT_EQ(place.mSource.topLeft(), QPoint(67, 33));
    EXPECT_EQ(place.mSource.bottomRight(), QPoint(267, 100));
    EXPECT_EQ(ComputePlacement({ZoomFree, 1.5}, {301, 100}, {1000, 800}, {100, 51}).mSource.bottomRight(),
              QPoint(267, 101));
}

TEST(DisplayPlacement, TheEndIsLimitedToThePicture)
{
    const Placement place = ComputePlacement({ZoomFree, 2}, {382, 282}, {300, 300}, {600 - 382, 600 - 282});
    EXPECT_EQ(place.mSource.right(), 300);
    EXPECT_EQ(place.mSource.left(), 109);
}

TEST(DisplayPlacement, AScrollBeyondThePictureShowsTheWholeAxis)
{
    const Placement place = ComputePlacement({ZoomOneToOne, 1}, {100, 100}, {200, 200}, {500, 0});
    EXPECT_EQ(place.mSource.left(), 0);
    EXPECT_EQ(place.mSource.right(), 200);
}

TEST(DisplayCentring, IsClampedToTheBar)
{
    EXPECT_EQ(CenteredScroll(200, 382, 309, 618), 318);
    EXPECT_EQ(CenteredScroll(0, 382, 10, 618), 0);
    EXPECT_EQ(CenteredScroll(400, 382, 600, 618), 618);
}

namespace
{

// A picture of which every pixel says where it is.
QImage MakeMap(const QSize &aSize)
{
    QImage map(aSize, QImage::Format_RGB32);
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x) {
            map.setPixel(x, y, static_cast<QRgb>(x | y << 12));
        }
    }
    return map;
}

void ExpectPainted(const QImage &aMap, const Zoom &aZoom, const QSize &aView, const QPoint &aScroll)
{
    const Placement place = ComputePlacement(aZoom, aView, aMap.size(), aScroll);
    QImage view(aView, QImage::Format_RGB32);
    view.fill(Qt::white);
    QPainter painter(&view);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(place.mTarget, aMap, place.mSource);
    painter.end();
    int wrong = 0;
    for (int y = 0; y < view.height(); y += 3) {
        for (int x = 0; x < view.width(); ++x) {
            const QRgb seen = view.pixel(x, y) & 0xFFFFFF;
            const QPoint pixel = PictureAt(place, aMap.size(), QPoint(x, y));
            if (seen == 0xFFFFFF) {
                continue;  // beside the picture, or the last column or row of one that overlaps its end
            }
            wrong += pixel == QPoint(static_cast<int>(seen & 0xFFF), static_cast<int>(seen >> 12)) ? 0 : 1;
        }
    }
    EXPECT_EQ(wrong, 0) << aView.width() << " x " << aView.height() << ", zoom " << aZoom.mFactor;
}

}  // namespace

TEST(DisplayPicture, IsProbedAsItIsPaintedAtEveryWidth)
{
    const QImage map = MakeMap({1024, 512});
    for (int width = 200; width < 800; width += 41) {
        ExpectPainted(map, {ZoomFit, 1}, {width, 200 + width % 90}, {});
    }
    for (const double factor : {0.37, 0.9, 1.0, 1.2, 2.5}) {
        for (int scroll = 0; scroll < 100; scroll += 33) {
            ExpectPainted(map, {ZoomFree, factor}, {301, 157}, {scroll, scroll / 2});
        }
    }
}
