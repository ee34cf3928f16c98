#include "ShownFrame.h"

#include <chrono>

#include "LxBuffer/ILxGenDC.h"

using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::nanoseconds LateAfter = 100ms;
// How long the display waits for the screen to take a frame.
constexpr auto DroppedAfter = 500ms;
// How long the GUI thread waits for the conversion of a frame to end.
constexpr auto Patience = 50ms;

uint64_t Now()
{
    return static_cast<uint64_t>(std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count());
}

const ILxGenDCImage *FirstImage(const ILxGenDCContainer &aContainer)
{
    for (uint32_t c = 0; c < aContainer.GetComponentCount(); ++c) {
        const ILxGenDCComponent *component = aContainer.GetComponent(c);
        for (uint32_t p = 0; p < component->GetPartCount(); ++p) {
            if (const ILxGenDCImage *image = component->GetPart(p)->GetImage()) {
                return image;
            }
        }
    }
    return nullptr;
}

template <class Image>
void Attach(LxImage &aTo, const Image &aFrom)
{
    // only read from, whatever the type says
    aTo.AttachSized(const_cast<void *>(static_cast<const void *>(aFrom.GetDataPointer())), aFrom.GetDataSize(),
                    aFrom.GetWidth(), aFrom.GetHeight(), aFrom.GetPixelType(), aFrom.GetPaddingX(),
                    aFrom.GetPaddingY());
}

}  // namespace

void ShownFrame::Show(const std::shared_ptr<const LxBuffer> &aFrame)
{
    const std::lock_guard lock(mShowMutex);
    const auto start = std::chrono::steady_clock::now();
    if (!mDisplay.Display(*aFrame).IsOK()) {
        return;
    }
    if (mDisplay.GetRendererMode() == LxRendererModeOpenGL && std::chrono::steady_clock::now() - start >= DroppedAfter)
    {
        ++mDropped;
        return;
    }
    const uint64_t received = aFrame->GetReceptionTime();
    if (received != 0 && Now() > received + static_cast<uint64_t>(LateAfter.count())) {
        ++mLate;
    }
    const std::lock_guard frameLock(mFrameMutex);
    mFrame = aFrame;
}

void ShownFrame::ResetCounts()
{
    mLate = 0;
    mDropped = 0;
}

void ShownFrame::Clear()
{
    mDisplay.Clear();
    const std::lock_guard lock(mFrameMutex);
    mFrame.reset();
}

std::shared_ptr<const LxBuffer> ShownFrame::Frame() const
{
    const std::lock_guard lock(mFrameMutex);
    return mFrame;
}

LxImage ShownFrame::RawImage(const LxBuffer &aFrame)
{
    LxImage image;
    if (const ILxGenDCImage *part = aFrame.GetGenDC() ? FirstImage(*aFrame.GetGenDC()) : nullptr) {
        Attach(image, *part);
    }
    else if (aFrame.GetImage()) {
        Attach(image, *aFrame.GetImage());
    }
    return image;
}

// Calls a reader with the picture that the display shows. By OpenGL that is made here of the frame, once a frame;
// nobody may wait there for the acquisition thread, which waits for the GUI thread.
template <class Reader>
bool ShownFrame::ReadPicture(const Reader &aReader, std::shared_ptr<const LxBuffer> &aFrame)
{
    aFrame = Frame();
    if (!aFrame) {
        return false;
    }
    const LxImage raw = RawImage(*aFrame);
    if (mDisplay.GetRendererMode() == LxRendererModeOpenGL && raw.GetDataPointer()) {
        if (mConvertedFrame.lock() != aFrame) {
            mConvertedFrame.reset();
            if (!mConverter.Convert(&raw, &mConverted, true, false).IsOK()) {
                return false;
            }
            mConvertedFrame = aFrame;
        }
        return aReader(*mConverted.GetImage());
    }
    const std::unique_lock lock(mShowMutex, Patience);
    if (!lock.owns_lock()) {
        return false;
    }
    aFrame = Frame();  // the picture may be of a newer one by now
    return aFrame && aReader(*mDisplay.GetInternalBuffer().GetImage());
}

bool ShownFrame::ShownPixel(uint32_t aX, uint32_t aY, QRgb &aColor, std::shared_ptr<const LxBuffer> &aFrame)
{
    return ReadPicture(
        [&](const LxImage &aPicture) {
            if (!aPicture.GetDataPointer() || aX >= aPicture.GetWidth() || aY >= aPicture.GetHeight()) {
                return false;
            }
            const uint8_t *pixel =
                static_cast<const uint8_t *>(aPicture.GetDataPointer()) + (uint64_t{aY} * aPicture.GetWidth() + aX) * 4;
            aColor = qRgb(pixel[2], pixel[1], pixel[0]);
            return true;
        },
        aFrame);
}

QImage ShownFrame::Picture(std::shared_ptr<const LxBuffer> &aFrame)
{
    QImage picture;
    ReadPicture(
        [&](const LxImage &aPicture) {
            if (aPicture.GetDataPointer()) {
                picture =
                    QImage(static_cast<const uchar *>(aPicture.GetDataPointer()), static_cast<int>(aPicture.GetWidth()),
                           static_cast<int>(aPicture.GetHeight()), QImage::Format_RGB32)
                        .copy();
            }
            return !picture.isNull();
        },
        aFrame);
    return picture;
}
