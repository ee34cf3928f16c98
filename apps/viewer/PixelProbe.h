#pragma once

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QTimer>

class LxDisplayWnd;
class QLabel;
class QWidget;
class ShownFrame;

/// Says what the pixel under the mouse is: where it lies in the picture, what the camera sent and what is shown.
class PixelProbe : public QObject
{
    Q_OBJECT

public:
    /// @param aPicture the widget that the display draws in. All must outlive the object.
    PixelProbe(LxDisplayWnd &aDisplay, ShownFrame &aFrame, QWidget &aPicture, QLabel &aLabel);

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

private:
    void Update();
    QString Describe() const;

    LxDisplayWnd &mDisplay;
    ShownFrame &mFrame;
    QLabel &mLabel;
    QTimer mTimer;  // follows the picture while the mouse rests
    QPoint mPoint;
};
