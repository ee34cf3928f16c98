#pragma once

// Internal: lets a frame grabber follow the geometry of the camera at it.

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenParameterArray.h"

class LxDevice;

namespace LxDetail
{

/// Copies Width, Height and PixelFormat from a camera to the source of the grabber that it feeds: when it is enabled,
/// when the camera's features change, and, where the grabber did not take them (while it streams), when it does again.
/// What the grabber does not have, or does not take, is left out. Thread-safe.
class GeometrySync : public LxGenEventSink
{
public:
    GeometrySync(LxDevice *aGrabber, LxGenParameterArray &aCamera, std::string aSource, bool aEnabled);
    ~GeometrySync() override;

    void SetEnabled(bool aEnabled);
    void SetSource(const std::string &aSource);

    void OnParameterUpdate(LxGenParameter *aParameter) override;

private:
    void ReadCamera();
    void WriteGrabber();

    LxDevice *const mGrabber;
    LxGenParameterArray &mCamera;
    std::vector<LxGenParameter *> mCameraFeatures;
    std::vector<LxGenParameter *> mGrabberFeatures;
    std::mutex mMutex;  // guards all members below
    std::string mSource;
    bool mEnabled;
    std::optional<int64_t> mWidth;
    std::optional<int64_t> mHeight;
    std::string mPixelFormat;
};

}  // namespace LxDetail
