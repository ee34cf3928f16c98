#pragma once

#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QWidget>
#include <memory>

#include "GuiTest.h"
#include "LxBuffer/LxBuffer.h"
#include "LxGUI/Display/DisplayWnd.h"

/// A display in a host widget of its own, shown.
class DisplayTest : public testing::Test
{
protected:
    void ShowAt(int aWidth, int aHeight);
    /// Shows a BGRa8 picture whose pixel (x, y) is rgb(x % 256, y % 256, 77) and waits until it is painted.
    void ShowPicture(int aWidth, int aHeight);
    /// Runs the event loop until every posted refresh has been painted.
    void Settle();
    QImage Shot();
    QScrollBar *Bar(const char *aName) const;

    QWidget mHost;
    DisplayWnd mDisplay;
};

/// Waits until a widget is on the screen.
bool WaitForScreen(const QWidget &aWidget);
/// The picture that ShowPicture() shows.
std::unique_ptr<LxBuffer> MakePicture(int aWidth, int aHeight);
QRgb PictureColor(int aX, int aY);
/// How many pixels of an area are as green as the overlay, which no pixel of MakePicture() is.
int CountGreen(const QImage &aImage, const QRect &aArea);
