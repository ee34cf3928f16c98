#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "Peers.h"

namespace
{

cv::Mat View(const void *aData, int aWidth, int aHeight, int aType)
{
    return cv::Mat(aHeight, aWidth, aType, const_cast<void *>(aData));
}

// OpenCV writes into memory that has the right size and type already.
void Convert(const cv::Mat &aIn, uint8_t *aOut, int aCode)
{
    cv::Mat out = View(aOut, aIn.cols, aIn.rows, CV_8UC4);
    cv::cvtColor(aIn, out, aCode);
}

Peer MakePeer(int aType, int aCode)
{
    return {"OpenCV", [aType, aCode](const uint8_t *aIn, uint8_t *aOut, int aWidth, int aHeight) {
                Convert(View(aIn, aWidth, aHeight, aType), aOut, aCode);
            }};
}

// Words of aBits to bytes first, as a second picture.
Peer MakeWordPeer(int aBits, int aCode)
{
    const auto bytes = std::make_shared<cv::Mat>();
    return {"OpenCV", [=](const uint8_t *aIn, uint8_t *aOut, int aWidth, int aHeight) {
                View(aIn, aWidth, aHeight, CV_16UC1).convertTo(*bytes, CV_8U, 1.0 / (1 << (aBits - 8)));
                Convert(*bytes, aOut, aCode);
            }};
}

Peer MakePackedPeer(LxPixelType aType, int aCode)
{
    const auto bytes = std::make_shared<std::vector<uint8_t>>();
    return {"OpenCV", [=](const uint8_t *aIn, uint8_t *aOut, int aWidth, int aHeight) {
                bytes->resize(static_cast<size_t>(aWidth) * static_cast<size_t>(aHeight));
                UnpackSimply(aType, aIn, bytes->data(), aWidth * aHeight);
                Convert(View(bytes->data(), aWidth, aHeight, CV_8UC1), aOut, aCode);
            }};
}

}  // namespace

std::vector<Peer> GetOpenCVPeers(LxPixelType aType)
{
    cv::setNumThreads(1);
    // OpenCV names the second pixel of the second line: its BG is the RG of cameras
    constexpr int bayer = cv::COLOR_BayerBG2BGRA;
    switch (aType) {
        case LxPixelType::Mono8:
            return {MakePeer(CV_8UC1, cv::COLOR_GRAY2BGRA)};
        case LxPixelType::Mono10:
            return {MakeWordPeer(10, cv::COLOR_GRAY2BGRA)};
        case LxPixelType::Mono12:
            return {MakeWordPeer(12, cv::COLOR_GRAY2BGRA)};
        case LxPixelType::Mono16:
            return {MakeWordPeer(16, cv::COLOR_GRAY2BGRA)};
        case LxPixelType::RGB8:
            return {MakePeer(CV_8UC3, cv::COLOR_RGB2BGRA)};
        case LxPixelType::BGR8:
            return {MakePeer(CV_8UC3, cv::COLOR_BGR2BGRA)};
        case LxPixelType::RGBa8:
            return {MakePeer(CV_8UC4, cv::COLOR_RGBA2BGRA)};
        case LxPixelType::YUV422_8_UYVY:
            return {MakePeer(CV_8UC2, cv::COLOR_YUV2BGRA_UYVY)};
        case LxPixelType::YUV422_8:
            return {MakePeer(CV_8UC2, cv::COLOR_YUV2BGRA_YUY2)};
        case LxPixelType::Mono10p:
        case LxPixelType::Mono12p:
        case LxPixelType::Mono10Packed:
        case LxPixelType::Mono12Packed:
            return {MakePackedPeer(aType, cv::COLOR_GRAY2BGRA)};
        case LxPixelType::BayerRG8:
            return {MakePeer(CV_8UC1, bayer)};
        case LxPixelType::BayerRG10p:
        case LxPixelType::BayerRG12p:
        case LxPixelType::BayerRG10Packed:
        case LxPixelType::BayerRG12Packed:
            return {MakePackedPeer(aType, bayer)};
        case LxPixelType::BayerRG10:
            return {MakeWordPeer(10, bayer)};
        case LxPixelType::BayerRG12:
            return {MakeWordPeer(12, bayer)};
        case LxPixelType::BayerRG16:
            return {MakeWordPeer(16, bayer)};
        default:
            return {};
    }
}

bool HasOpenCV()
{
    return true;
}
