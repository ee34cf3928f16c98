#include "PixelProbe.h"

#include <QtCore/QChildEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>

#include "LxBuffer/LxPixelSamples.h"
#include "LxGUI/LxDisplayWnd.h"
#include "ShownFrame.h"

namespace
{

constexpr int UpdateInterval = 100;  // milliseconds

// "2047", or "R 12 G 7 B 9"
QString ToText(const LxPixelSamples &aSamples)
{
    QStringList texts;
    for (uint32_t i = 0; i < aSamples.mCount; ++i) {
        texts << (QString::fromUtf8(aSamples.mNames[i].GetAscii()) + QLatin1Char(' ') +
                  QString::number(aSamples.mValues[i]))
                     .trimmed();
    }
    return texts.join(QLatin1Char(' '));
}

}  // namespace

PixelProbe::PixelProbe(LxDisplayWnd &aDisplay, ShownFrame &aFrame, QWidget &aPicture, QLabel &aLabel)
    : QObject(&aPicture), mDisplay(aDisplay), mFrame(aFrame), mLabel(aLabel)
{
    aPicture.setMouseTracking(true);
    aPicture.installEventFilter(this);
    mTimer.setInterval(UpdateInterval);
    connect(&mTimer, &QTimer::timeout, this, &PixelProbe::Update);
}

bool PixelProbe::eventFilter(QObject *aObject, QEvent *aEvent)
{
    switch (aEvent->type()) {
        case QEvent::MouseMove:
            mPoint = static_cast<QMouseEvent *>(aEvent)->position().toPoint();
            mTimer.start();
            Update();
            break;
        case QEvent::Leave:
            mTimer.stop();
            mLabel.clear();
            break;
        case QEvent::ChildAdded:
            // the OpenGL view lies over the widget; its moves come here when it has any
            if (auto *child = qobject_cast<QWidget *>(static_cast<QChildEvent *>(aEvent)->child())) {
                child->setMouseTracking(true);
            }
            break;
        default:
            break;
    }
    return QObject::eventFilter(aObject, aEvent);
}

void PixelProbe::Update()
{
    const QString text = Describe();
    if (mLabel.text() != text) {
        mLabel.setText(text);
    }
}

QString PixelProbe::Describe() const
{
    unsigned x = 0;
    unsigned y = 0;
    if (!mDisplay.PictureAt(mPoint.x(), mPoint.y(), x, y)) {
        return {};
    }
    QRgb color = 0;
    std::shared_ptr<const LxBuffer> frame;
    if (!mFrame.ShownPixel(x, y, color, frame)) {
        return mFrame.Frame() ? mLabel.text() : QString();  // the next frame is just being converted
    }
    const LxImage raw = ShownFrame::RawImage(*frame);
    LxPixelSamples samples;
    const QString sent = LxReadPixelSamples(&raw, x, y, samples).IsOK() ? ToText(samples) : tr("none");
    return tr("(%1, %2)  raw %3  shown %4, %5, %6")
        .arg(x)
        .arg(y)
        .arg(sent)
        .arg(qRed(color))
        .arg(qGreen(color))
        .arg(qBlue(color));
}
