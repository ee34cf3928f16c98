#include "LxGUI/Display/DisplayGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace DisplayGeometry
{
namespace
{

// The longest that a picture becomes on the screen, so that scroll positions are numbers at any zoom.
constexpr double MostLength = 1 << 30;

struct Axis
{
    int mSourceFirst;
    int mSourceLast;
    int mTargetFirst;
    int mTargetLength;
};

Axis PlaceAxis(int aLength, int aView, double aFactor, int aScroll)
{
    const int scaled = ScaledLength(aLength, aFactor);
    if (scaled <= aView) {
        return {0, aLength - 1, (aView - scaled) / 2, scaled};
    }
    int first = std::max(static_cast<int>(aScroll / aFactor + 0.5), 0);
    int last = std::min(aLength, static_cast<int>((aScroll + aView) / aFactor + 0.5));
    if (last < first) {
        first = 0;
        last = aLength;
    }
    return {first, last, 0, aView};
}

ScrollBar MakeBar(int aScaled, int aView)
{
    const int range = aScaled - aView;
    return {true, range, aView / 4, std::max(1, aView / 20), range / 2};
}

}  // namespace

int ScaledLength(int aLength, double aFactor)
{
    return static_cast<int>(std::min(aLength * aFactor + 0.5, MostLength));
}

Zoom ApplyZoom(const Zoom &aZoom, const QSize &aWindow, const QSize &aPicture)
{
    Zoom zoom = aZoom;
    const double windowWidth = aWindow.width();
    const double windowHeight = aWindow.height();
    const double width = aPicture.width();
    const double height = aPicture.height();
    if (zoom.mMode == ZoomOneToOne) {
        zoom.mFactor = 1.0;
    }
    else if (zoom.mMode == ZoomFree) {
        const bool narrower = windowWidth > zoom.mFactor * width;
        if (narrower ? windowHeight / height >= zoom.mFactor : windowWidth / width >= zoom.mFactor) {
            zoom.mMode = ZoomFit;
        }
        zoom.mFactor = std::min(zoom.mFactor, MostLength / std::max(width, height));
    }
    if (zoom.mMode == ZoomFit) {
        zoom.mFactor = 1.0 / std::max(height / windowHeight, width / windowWidth);
    }
    return zoom;
}

ScrollBars ComputeScrollBars(const Zoom &aZoom, const QSize &aWindow, const QSize &aPicture)
{
    ScrollBars bars;
    if (aPicture.isEmpty() || aZoom.mMode == ZoomFit) {
        return bars;
    }
    const int width = ScaledLength(aPicture.width(), aZoom.mFactor);
    const int height = ScaledLength(aPicture.height(), aZoom.mFactor);
    bool horizontal = aWindow.width() < width;
    bool vertical = aWindow.height() < height;
    // a bar takes room from the other direction
    if (vertical && !horizontal) {
        horizontal = aWindow.width() - ScrollBarThickness < width;
    }
    if (horizontal && !vertical) {
        vertical = aWindow.height() - ScrollBarThickness < height;
    }
    const QSize view = ViewSize(aWindow, horizontal, vertical);
    if (horizontal) {
        bars.mHorizontal = MakeBar(width, view.width());
    }
    if (vertical) {
        bars.mVertical = MakeBar(height, view.height());
    }
    return bars;
}

QSize ViewSize(const QSize &aWindow, bool aHorizontalBar, bool aVerticalBar)
{
    return {aWindow.width() - (aVerticalBar ? ScrollBarThickness : 0),
            aWindow.height() - (aHorizontalBar ? ScrollBarThickness : 0)};
}

Placement ComputePlacement(const Zoom &aZoom, const QSize &aView, const QSize &aPicture, const QPoint &aScroll)
{
    const int width = aPicture.width();
    const int height = aPicture.height();
    if (aZoom.mMode != ZoomFit) {
        const Axis x = PlaceAxis(width, aView.width(), aZoom.mFactor, aScroll.x());
        const Axis y = PlaceAxis(height, aView.height(), aZoom.mFactor, aScroll.y());
        return {QRect(QPoint(x.mSourceFirst, y.mSourceFirst), QPoint(x.mSourceLast, y.mSourceLast)),
                QRect(x.mTargetFirst, y.mTargetFirst, x.mTargetLength, y.mTargetLength)};
    }
    const QRect source(0, 0, width, height);
    // whole numbers, as a quotient of doubles may fall short of the pixel that it should be
    const int64_t across = int64_t{aView.width()} * height;
    const int64_t down = int64_t{aView.height()} * width;
    if (across > down) {
        const int targetWidth = static_cast<int>(down / height);
        return {source, QRect((aView.width() - targetWidth) / 2, 0, targetWidth, aView.height())};
    }
    const int targetHeight = static_cast<int>(across / width);
    return {source, QRect(0, (aView.height() - targetHeight) / 2, aView.width(), targetHeight)};
}

int SourcePixel(int aOffset, int aTarget, int aStart, int aSource, int aLength)
{
    // the nearest pixel to the middle of the screen's, in the 16 bits behind the point with which QPainter steps
    const double exactStep = 65536.0 * aSource / aTarget;
    const int64_t first = static_cast<int64_t>(std::ceil(0.5 * exactStep)) - 1;
    const int64_t pixel = aStart + ((first + aOffset * static_cast<int64_t>(exactStep)) >> 16);
    return static_cast<int>(std::clamp<int64_t>(pixel, 0, aLength - 1));
}

QPoint PictureAt(const Placement &aPlacement, const QSize &aPicture, const QPoint &aPoint)
{
    if (!aPlacement.mTarget.contains(aPoint) || aPicture.isEmpty()) {
        return {-1, -1};
    }
    const QRect &source = aPlacement.mSource;
    const QRect &target = aPlacement.mTarget;
    return {SourcePixel(aPoint.x() - target.x(), target.width(), source.x(), source.width(), aPicture.width()),
            SourcePixel(aPoint.y() - target.y(), target.height(), source.y(), source.height(), aPicture.height())};
}

QPoint FittedPictureAt(const QSize &aView, const QSize &aPicture, const QPoint &aPoint)
{
    const double ratio = static_cast<double>(aPicture.width()) / aPicture.height();
    const bool isWideView = static_cast<double>(aView.width()) / aView.height() > ratio;
    const double width = isWideView ? ratio * aView.height() : aView.width();
    const double height = isWideView ? aView.height() : aView.width() / ratio;
    // from 0 to 1 within the picture
    const double x = (aPoint.x() + 0.5 - (aView.width() - width) / 2) / width;
    const double y = (aPoint.y() + 0.5 - (aView.height() - height) / 2) / height;
    if (x < 0 || x >= 1 || y < 0 || y >= 1) {
        return {-1, -1};
    }
    return {static_cast<int>(x * aPicture.width()), static_cast<int>(y * aPicture.height())};
}

int CenteredScroll(int aPoint, int aViewLength, int aScroll, int aMaximum)
{
    return std::clamp(aPoint - aViewLength / 2 + aScroll, 0, aMaximum);
}

}  // namespace DisplayGeometry
