#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>

/// The zoom and scroll arithmetic of the display, apart from its widgets.
namespace DisplayGeometry
{

/// How the picture's size on the screen is found.
enum ZoomMode : int
{
    ZoomFit = 0,
    ZoomOneToOne = 1,
    ZoomFree = 2,
};

/// The thickness of a scroll bar in pixels.
inline constexpr int ScrollBarThickness = 18;

/// Screen pixels per picture pixel and how they came about.
struct Zoom
{
    ZoomMode mMode = ZoomFit;
    double mFactor = 1.0;
};

/// One scroll bar; nothing but mNeeded counts when it is not needed.
struct ScrollBar
{
    bool mNeeded = false;
    int mMaximum = 0;
    int mPageStep = 0;
    int mSingleStep = 0;
    int mValue = 0;
};

struct ScrollBars
{
    ScrollBar mHorizontal;
    ScrollBar mVertical;
};

/// Which part of the picture is drawn where.
struct Placement
{
    QRect mSource;
    QRect mTarget;
};

/// Settles the zoom for a window and a picture, both not empty: one-to-one is 1, fit follows from the sizes, and a free
/// zoom that leaves the picture smaller than the window becomes fit. One that makes it longer than a billion pixels, on
/// which each of its own has long filled the window, goes no further.
Zoom ApplyZoom(const Zoom &aZoom, const QSize &aWindow, const QSize &aPicture);

/// The picture's length on the screen.
int ScaledLength(int aLength, double aFactor);

/// The scroll bars that a window needs; none for an empty picture or in fit mode. The values show the picture's middle.
ScrollBars ComputeScrollBars(const Zoom &aZoom, const QSize &aWindow, const QSize &aPicture);

/// The part of the window that shows the picture.
QSize ViewSize(const QSize &aWindow, bool aHorizontalBar, bool aVerticalBar);

/// Where a picture that is not empty is drawn in a view. Source corners are inclusive.
Placement ComputePlacement(const Zoom &aZoom, const QSize &aView, const QSize &aPicture, const QPoint &aScroll);

/// Along one axis, the pixel that is drawn at an offset into the target: of a source that starts at a pixel of a
/// picture of a length. As QPainter does it without smoothing.
int SourcePixel(int aOffset, int aTarget, int aStart, int aSource, int aLength);

/// The pixel of the picture that is drawn at a point of the view; (-1, -1) where none is.
QPoint PictureAt(const Placement &aPlacement, const QSize &aPicture, const QPoint &aPoint);

/// The same for a picture that OpenGL fits into a view, where its ends do not fall on whole pixels.
QPoint FittedPictureAt(const QSize &aView, const QSize &aPicture, const QPoint &aPoint);

/// The scroll value that brings a point of the window to the middle of the view.
int CenteredScroll(int aPoint, int aViewLength, int aScroll, int aMaximum);

}  // namespace DisplayGeometry
