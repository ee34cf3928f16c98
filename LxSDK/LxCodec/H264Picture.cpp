#include "LxCodec/H264Picture.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

#include "LxCodec/ConversionKernels.h"
#include "LxCodec/Libav.h"
#include "LxCodec/YuvSplit.h"

namespace LxDetail
{

namespace
{

/// A picture's format without the mark of full range, which is old and that one then has.
AVPixelFormat GetFormat(const AVFrame &aPicture, bool &aIsFullRange)
{
    aIsFullRange = true;
    switch (aPicture.format) {
        case AV_PIX_FMT_YUVJ420P:
            return AV_PIX_FMT_YUV420P;
        case AV_PIX_FMT_YUVJ422P:
            return AV_PIX_FMT_YUV422P;
        case AV_PIX_FMT_YUVJ444P:
            return AV_PIX_FMT_YUV444P;
        default:
            // without a word about it limited range is meant (E.2.1, video_full_range_flag)
            aIsFullRange = aPicture.color_range == AVCOL_RANGE_JPEG;
            return static_cast<AVPixelFormat>(aPicture.format);
    }
}

/// The matrix by its number in ITU-T H.264 (table E-5), guessed by the size where there is none.
AVColorSpace GetMatrix(const AVFrame &aPicture)
{
    switch (aPicture.colorspace) {
        case AVCOL_SPC_BT709:
        case AVCOL_SPC_FCC:
        case AVCOL_SPC_SMPTE240M:
            return aPicture.colorspace;
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
            return AVCOL_SPC_SMPTE170M;
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return AVCOL_SPC_BT2020_NCL;
        default:
            return aPicture.width >= 1280 || aPicture.height > 576 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    }
}

HalfChromaFactors GetFactors(AVColorSpace aMatrix, bool aIsFullRange)
{
    switch (aMatrix) {
        case AVCOL_SPC_BT709:
            return MakeHalfChromaFactors(0.2126, 0.0722, aIsFullRange);
        case AVCOL_SPC_FCC:
            return MakeHalfChromaFactors(0.30, 0.11, aIsFullRange);
        case AVCOL_SPC_SMPTE240M:
            return MakeHalfChromaFactors(0.212, 0.087, aIsFullRange);
        case AVCOL_SPC_BT2020_NCL:
            return MakeHalfChromaFactors(0.2627, 0.0593, aIsFullRange);
        default:
            return MakeHalfChromaFactors(0.299, 0.114, aIsFullRange);
    }
}

/// Pictures of 8 bits with a plane each for luma and both chromas, chroma for two pixels beside each other.
/// @param aLinesPerChroma lines of the picture that share a line of chroma
void ConvertHalfChroma(const AVFrame &aPicture, const HalfChromaFactors &aFactors, int aLinesPerChroma, uint8_t *aOut)
{
    const auto width = static_cast<size_t>(aPicture.width);
    const bool isAligned = reinterpret_cast<uintptr_t>(aOut) % kStreamUnit == 0 && 4 * width % kStreamUnit == 0;
    // past the caches, which the decoder needs for the pictures that the next one refers to
    const ConversionKernels &kernels = isAligned ? GetStreamingKernels() : GetConversionKernels();
    for (int y = 0; y < aPicture.height; ++y) {
        const int chroma = y / aLinesPerChroma;
        kernels.mHalfChroma(aPicture.data[0] + ptrdiff_t{aPicture.linesize[0]} * y,
                            aPicture.data[1] + ptrdiff_t{aPicture.linesize[1]} * chroma,
                            aPicture.data[2] + ptrdiff_t{aPicture.linesize[2]} * chroma, aFactors, aOut, width);
        aOut += 4 * width;
    }
    kernels.mFlush();
}

}  // namespace

H264PictureConverter::~H264PictureConverter()
{
    if (mScaler) {
        Libav::Get().sws_freeContext(mScaler);
    }
}

LxResult H264PictureConverter::Convert(const AVFrame &aPicture, LxImage &aImage)
{
    bool isFullRange = false;
    const AVPixelFormat format = GetFormat(aPicture, isFullRange);
    const AVColorSpace matrix = GetMatrix(aPicture);
    const bool hasKernel = format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_YUV422P;
    if (!hasKernel) {
        // full interpolation of chroma wraps around at saturated colours, so it is not asked for
        mScaler =
            Libav::Get().sws_getCachedContext(mScaler, aPicture.width, aPicture.height, format, aPicture.width,
                                              aPicture.height, AV_PIX_FMT_BGRA, SWS_POINT, nullptr, nullptr, nullptr);
        if (!mScaler) {
            return LxResult(LxResultCode::PixelFormatNotSupported, "The format of the H.264 pictures cannot be shown.");
        }
        constexpr int one = 1 << 16;  // contrast and saturation as they are
        Libav::Get().sws_setColorspaceDetails(mScaler, Libav::Get().sws_getCoefficients(matrix), isFullRange,
                                              Libav::Get().sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, one, one);
    }
    const auto width = static_cast<uint32_t>(aPicture.width);
    const auto height = static_cast<uint32_t>(aPicture.height);
    if (LxResult result = aImage.Alloc(width, height, LxPixelType::BGRa8); !result.IsOK()) {
        return result;
    }
    auto *const out = static_cast<uint8_t *>(aImage.GetDataPointer());
    if (hasKernel) {
        ConvertHalfChroma(aPicture, GetFactors(matrix, isFullRange), format == AV_PIX_FMT_YUV420P ? 2 : 1, out);
    }
    else {
        const int stride = 4 * aPicture.width;
        Libav::Get().sws_scale(mScaler, aPicture.data, aPicture.linesize, 0, aPicture.height, &out, &stride);
    }
    return LxResult();
}

}  // namespace LxDetail
