#pragma once

#include <QtCore/QMutex>
#include <QtGui/QImage>
#include <atomic>
#include <memory>
#include <mutex>

#include "LxBuffer/LxBuffer.h"
#include "LxCodec/LxBufferConverter.h"
#include "LxGUI/LxDisplayWnd.h"

/// Shows frames, and keeps the last one as it came from the camera, for whoever wants its bytes.
///
/// Holds one of the stream's buffers all the time.
class ShownFrame
{
public:
    /// The display must outlive the object.
    explicit ShownFrame(LxDisplayWnd &aDisplay) : mDisplay(aDisplay) {}

    /// Shows a frame. On the acquisition thread.
    void Show(const std::shared_ptr<const LxBuffer> &aFrame);
    /// Empties the display and forgets the frame.
    void Clear();
    /// Frames that were shown more than a tenth of a second after they had arrived. Any thread.
    uint64_t LateCount() const { return mLate; }
    /// Frames that the screen did not take, which only OpenGL waits for. Any thread.
    uint64_t DroppedCount() const { return mDropped; }
    void ResetCounts();

    // On the GUI thread.

    /// The last frame that was shown; null when there is none.
    std::shared_ptr<const LxBuffer> Frame() const;
    /// Its image as the camera sent it, or an empty one (H.264). Valid as long as the frame.
    static LxImage RawImage(const LxBuffer &aFrame);
    /// The colour of a pixel on the screen, and the frame that it belongs to. False while there is none, or while the
    /// next frame is just being converted.
    bool ShownPixel(uint32_t aX, uint32_t aY, QRgb &aColor, std::shared_ptr<const LxBuffer> &aFrame);
    /// A copy of the shown picture in full size, and the frame that it belongs to; null as above.
    QImage Picture(std::shared_ptr<const LxBuffer> &aFrame);

private:
    template <class Reader>
    bool ReadPicture(const Reader &aReader, std::shared_ptr<const LxBuffer> &aFrame);

    LxDisplayWnd &mDisplay;
    QMutex mShowMutex;               // held while the display takes a frame: guards its internal buffer
    mutable std::mutex mFrameMutex;  // guards mFrame
    std::shared_ptr<const LxBuffer> mFrame;
    std::atomic<uint64_t> mLate{0};
    std::atomic<uint64_t> mDropped{0};
    // for OpenGL, where the display keeps no picture; GUI thread only
    LxBufferConverter mConverter{-1};
    LxBuffer mConverted{LxPayloadType::Image};
    std::weak_ptr<const LxBuffer> mConvertedFrame;
};
