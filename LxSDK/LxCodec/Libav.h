#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

namespace LxDetail
{

#define LX_LIBAVCODEC_FUNCTIONS(X) \
    X(av_frame_alloc)              \
    X(av_frame_free)               \
    X(av_frame_move_ref)           \
    X(av_frame_unref)              \
    X(av_new_packet)               \
    X(av_packet_alloc)             \
    X(av_packet_free)              \
    X(av_packet_unref)             \
    X(avcodec_alloc_context3)      \
    X(avcodec_find_decoder)        \
    X(avcodec_flush_buffers)       \
    X(avcodec_free_context)        \
    X(avcodec_open2)               \
    X(avcodec_receive_frame)       \
    X(avcodec_send_packet)
#define LX_LIBSWSCALE_FUNCTIONS(X) \
    X(sws_freeContext)             \
    X(sws_getCachedContext)        \
    X(sws_getCoefficients)         \
    X(sws_scale)                   \
    X(sws_setColorspaceDetails)

/// The functions of libavcodec and libswscale that are used. The libraries are loaded with the first H.264 data: with
/// all that they need in turn they would take a quarter of the time that a program needs to start.
struct Libav
{
#define LX_MEMBER(name) decltype(&::name) name = nullptr;
    LX_LIBAVCODEC_FUNCTIONS(LX_MEMBER)
    LX_LIBSWSCALE_FUNCTIONS(LX_MEMBER)
#undef LX_MEMBER

    /// Loads the libraries once for the process. Any thread.
    /// @return null when this machine does not have them, in the version that the headers are of.
    static const Libav *Load();
    /// The same where they have been loaded, since something of theirs is there.
    static const Libav &Get()
    {
        return *Load();
    }
};

}  // namespace LxDetail
