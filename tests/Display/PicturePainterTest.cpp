// A picture is drawn as QPainter draws it, pixel by pixel.

#include "LxGUI/Display/PicturePainter.h"

#include <gtest/gtest.h>

#include <QtGui/QPainter>
#include <QtWidgets/QWidget>
#include <algorithm>

using namespace DisplayGeometry;

namespace
{

QImage MakeColours(const QSize &aSize)
{
    QImage picture(aSize, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgb(x, y, x >> 8 | y >> 8 << 4));
        }
    }
    return picture;
}

/// Draws one picture at one place whenever it is painted, either way.
class Canvas : public QWidget
{
public:
    Canvas(QImage aPicture, const Placement &aPlacement) : mPicture(std::move(aPicture)), mPlacement(aPlacement) {}

    bool mIsDirect = false;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        if (mIsDirect) {
            mPainter.Draw(painter, mPicture, mPlacement);
        }
        else {
            painter.drawImage(mPlacement.mTarget, mPicture, mPlacement.mSource);
        }
    }

private:
    QImage mPicture;
    Placement mPlacement;
    PicturePainter mPainter;
};

/// What a window's backing store is: QPainter draws on it as on the screen.
QImage Rendered(Canvas &aCanvas, bool aDirect, const QRegion &aRegion)
{
    aCanvas.mIsDirect = aDirect;
    QImage image(aCanvas.size() + QSize(9, 7), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    aCanvas.render(&image, QPoint(5, 3), aRegion, {});
    return image;
}

void ExpectSame(const QSize &aPicture, const Placement &aPlacement, const QSize &aView, const QRegion &aRegion = {})
{
    Canvas canvas(MakeColours(aPicture), aPlacement);
    canvas.resize(aView);
    EXPECT_EQ(Rendered(canvas, true, aRegion), Rendered(canvas, false, aRegion))
        << aPicture.width() << " x " << aPicture.height() << " into " << aView.width() << " x " << aView.height();
}

}  // namespace

TEST(PicturePainter, DrawsWhatQPainterDrawsAtEverySize)
{
    for (const QSize picture : {QSize(64, 48), QSize(1, 1), QSize(301, 7), QSize(1024, 768), QSize(5000, 40)}) {
        for (int width = 1; width < 700; width += 53) {
            const QSize view(width, 20 + width % 240);
            ExpectSame(picture, ComputePlacement({}, view, picture, {}), view);
            for (const double factor : {0.37, 0.9, 1.0, 1.2, 2.5}) {
                ExpectSame(picture, ComputePlacement({ZoomFree, factor}, view, picture, {width / 3, 5}), view);
            }
        }
    }
}

TEST(PicturePainter, SharesLargePicturesWithAnotherThread)
{
    for (const QSize picture : {QSize(1280, 960), QSize(4096, 3000), QSize(640, 480)}) {
        ExpectSame(picture, ComputePlacement({}, {1280, 960}, picture, {}), {1280, 960});
    }
}

TEST(PicturePainter, DrawsOnlyWhatIsPainted)
{
    const QSize picture(400, 300);
    const QSize view(400, 300);
    const QRegion region = QRegion(10, 20, 100, 50) + QRegion(200, 100, 1, 150);
    ExpectSame(picture, ComputePlacement({ZoomOneToOne, 1}, view, picture, {}), view, region);
}

TEST(PicturePainter, LeavesNoPixelTransparent)
{
    QImage picture(8, 8, QImage::Format_RGB32);
    std::fill_n(reinterpret_cast<QRgb *>(picture.bits()), 64, 0x00102030);
    for (const int size : {8, 20}) {
        Canvas canvas(picture, {QRect(0, 0, 8, 8), QRect(0, 0, size, size)});
        canvas.resize(size, size);
        const QImage image = Rendered(canvas, true, {});
        EXPECT_EQ(image.pixel(5 + size / 2, 3 + size / 2), 0xFF102030u);
    }
}
