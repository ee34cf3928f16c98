#pragma once

#include <memory>

#include "LxBuffer/LxBuffer.h"

/// Decodes H.264 access units into BGRa8 images (bytes B, G, R, a) with alpha 255.
///
/// - Every profile that libavcodec decodes: 4:0:0, 4:2:0, 4:2:2 and 4:4:4, 8 to 14 bits. An image has the cropped size
///   of its picture, which may change from key frame to key frame.
/// - Colours follow the stream's own description: range, and the matrices of BT.601, BT.709, BT.2020, FCC and SMPTE
///   240M. A stream that names no matrix (or another one) is taken for BT.709 from 1280 columns or 577 lines on, else
///   for BT.601; one that names no range for limited range. Pixels that share chroma get the same.
/// - Only whole pictures come out. At the start, after a unit that is broken, after a picture that is missing and after
///   Flush() the decoder waits for the next key frame (an IDR picture or a recovery point) and lets everything else
///   pass. Missing pictures are seen by the frame numbers of the stream. Of pictures that are coded out of order those
///   that are shown before a broken one come out before the library tells that it is.
/// - A picture comes out as soon as it is complete; where pictures are coded out of order (B pictures) it waits for
///   those that are shown before it.
///
/// Decodes on the caller's thread alone and starts no threads: threads would hold pictures back or hide errors. One
/// call at a time per object; different objects are independent.
/// @thread{any; one object by one thread at a time}
class LX_API LxH264Decoder
{
public:
    LxH264Decoder();
    ~LxH264Decoder();
    LxH264Decoder(const LxH264Decoder &) = delete;
    LxH264Decoder &operator=(const LxH264Decoder &) = delete;

    /// Takes one access unit in byte stream format (ITU-T H.264 Annex B). The data are copied. At most 16 pictures wait
    /// to be retrieved; then the oldest is dropped.
    /// @return InvalidArgument for null; InvalidDataFormat when there is no NAL unit in it; Failed, with the reason,
    ///         when it is broken, or when it is let pass while the decoder waits for a key frame; TooLong from 2^30
    ///         bytes on; Unavailable when libavcodec has no decoder; NoMemory. OK does not promise a picture.
    LxResult Process(const ILxH264AccessUnit *aUnit);
    /// Takes the next decoded picture, allocating the image as needed; its memory is used again where it is large
    /// enough. NotFound when none is left, InvalidArgument for null, NoMemory, PixelFormatNotSupported; the image is
    /// then as it was, and a picture that cannot be converted is dropped.
    LxResult Retrieve(LxImage *aImage);
    /// Forgets all pictures and waits for the next key frame; for the start of another stream. Parameter sets stay
    /// known.
    void Flush();

private:
    class Data;
    std::unique_ptr<Data> mData;
};
