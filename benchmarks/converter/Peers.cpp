#include "Peers.h"

#include <libyuv/convert_argb.h>

#include <utility>

namespace
{

using Libyuv = int (*)(const uint8_t *, int, uint8_t *, int, int, int);

Peer MakePeer(Libyuv aFunction, int aBytesPerPixel)
{
    return {"libyuv", [aFunction, aBytesPerPixel](const uint8_t *aIn, uint8_t *aOut, int aWidth, int aHeight) {
                aFunction(aIn, aWidth * aBytesPerPixel, aOut, aWidth * 4, aWidth, aHeight);
            }};
}

}  // namespace

std::vector<Peer> GetPeers(LxPixelType aType)
{
    std::vector<Peer> peers = GetOpenCVPeers(aType);
    switch (aType) {
        case LxPixelType::Mono8:
            peers.push_back(MakePeer(libyuv::J400ToARGB, 1));
            break;
        case LxPixelType::RGB8:
            peers.push_back(MakePeer(libyuv::RAWToARGB, 3));
            break;
        case LxPixelType::BGR8:
            peers.push_back(MakePeer(libyuv::RGB24ToARGB, 3));
            break;
        case LxPixelType::RGBa8:
            peers.push_back(MakePeer(libyuv::ABGRToARGB, 4));
            break;
        case LxPixelType::YUV422_8_UYVY:
            peers.push_back(MakePeer(libyuv::UYVYToARGB, 2));
            break;
        case LxPixelType::YUV422_8:
            peers.push_back(MakePeer(libyuv::YUY2ToARGB, 2));
            break;
        default:
            break;
    }
    return peers;
}

bool UnpackSimply(LxPixelType aType, const uint8_t *aIn, uint8_t *aOut, int aPixels)
{
    switch (aType) {
        case LxPixelType::Mono10p:
        case LxPixelType::BayerRG10p:
            for (int i = 0; i < aPixels; i += 4, aIn += 5) {
                aOut[i] = static_cast<uint8_t>(aIn[0] >> 2 | aIn[1] << 6);
                aOut[i + 1] = static_cast<uint8_t>(aIn[1] >> 4 | aIn[2] << 4);
                aOut[i + 2] = static_cast<uint8_t>(aIn[2] >> 6 | aIn[3] << 2);
                aOut[i + 3] = aIn[4];
            }
            return true;
        case LxPixelType::Mono12p:
        case LxPixelType::BayerRG12p:
            for (int i = 0; i < aPixels; i += 2, aIn += 3) {
                aOut[i] = static_cast<uint8_t>(aIn[0] >> 4 | aIn[1] << 4);
                aOut[i + 1] = aIn[2];
            }
            return true;
        case LxPixelType::Mono10Packed:
        case LxPixelType::Mono12Packed:
        case LxPixelType::BayerRG10Packed:
        case LxPixelType::BayerRG12Packed:
            for (int i = 0; i < aPixels; i += 2, aIn += 3) {
                aOut[i] = aIn[0];
                aOut[i + 1] = aIn[2];
            }
            return true;
        default:
            return false;
    }
}
