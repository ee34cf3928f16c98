#include "DisplayTest.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QWindow>

std::unique_ptr<LxBuffer> MakePicture(int aWidth, int aHeight)
{
    auto buffer = std::make_unique<LxBuffer>(LxPayloadType::Image);
    EXPECT_TRUE(buffer->GetImage()
                    ->Alloc(static_cast<uint32_t>(aWidth), static_cast<uint32_t>(aHeight), LxPixelType::BGRa8)
                    .IsOK());
    auto *pixels = static_cast<QRgb *>(buffer->GetDataPointer());
    for (int y = 0; y < aHeight; ++y) {
        for (int x = 0; x < aWidth; ++x) {
            *pixels++ = PictureColor(x, y);
        }
    }
    return buffer;
}

QRgb PictureColor(int aX, int aY)
{
    return qRgb(aX % 256, aY % 256, 77);
}

int CountGreen(const QImage &aImage, const QRect &aArea)
{
    int count = 0;
    const QRect area = aArea & aImage.rect();
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb color = aImage.pixel(x, y);
            count += qGreen(color) > 180 && qRed(color) < 100 && qBlue(color) < 40;
        }
    }
    return count;
}

bool WaitForScreen(const QWidget &aWidget)
{
    return WaitForGui([&] {
        const QWindow *window = aWidget.window()->windowHandle();
        return aWidget.isVisible() && window && window->isExposed();
    });
}

void DisplayTest::ShowAt(int aWidth, int aHeight)
{
    mHost.resize(aWidth, aHeight);
    ASSERT_TRUE(mDisplay.Create(&mHost).IsOK());
    ASSERT_TRUE(WaitForScreen(mHost));
    ASSERT_TRUE(WaitForGui([&] { return mHost.size() == QSize(aWidth, aHeight); }));
    Settle();
}

void DisplayTest::ShowPicture(int aWidth, int aHeight)
{
    ASSERT_TRUE(mDisplay.Display(*MakePicture(aWidth, aHeight), false).IsOK());
    Settle();
}

void DisplayTest::Settle()
{
    QCoreApplication::sendPostedEvents(&mDisplay);
    QCoreApplication::processEvents();
}

QImage DisplayTest::Shot()
{
    Settle();
    return Grab(&mHost);
}

QScrollBar *DisplayTest::Bar(const char *aName) const
{
    return mHost.findChild<QScrollBar *>(QLatin1String(aName));
}
