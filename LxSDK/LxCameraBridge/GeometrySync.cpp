#include "LxCameraBridge/GeometrySync.h"

#include <algorithm>

#include "LxDevice/LxDevice.h"
#include "LxGenICam/LxGenParameter.h"

namespace LxDetail
{

namespace
{

constexpr const char *Names[] = {"Width", "Height", "PixelFormat"};

std::vector<LxGenParameter *> Register(LxGenParameterArray *aFeatures, LxGenEventSink *aSink)
{
    std::vector<LxGenParameter *> features;
    for (const char *name : Names) {
        LxGenParameter *feature = aFeatures == nullptr ? nullptr : aFeatures->Get(name);
        if (feature != nullptr) {
            feature->RegisterEventSink(aSink);
            features.push_back(feature);
        }
    }
    return features;
}

std::optional<int64_t> ReadInteger(LxGenParameterArray &aFeatures, const char *aName)
{
    int64_t value = 0;
    return aFeatures.GetIntegerValue(aName, value).IsOK() ? std::optional(value) : std::nullopt;
}

void WriteInteger(LxGenParameterArray &aFeatures, const char *aName, std::optional<int64_t> aValue)
{
    if (aValue && ReadInteger(aFeatures, aName) != aValue) {
        aFeatures.SetIntegerValue(aName, *aValue);
    }
}

void WriteEnum(LxGenParameterArray &aFeatures, const char *aName, const std::string &aValue)
{
    LxString value;
    if (!aValue.empty() && aFeatures.GetEnumValue(aName, value).IsOK() && value.GetString() != aValue) {
        aFeatures.SetEnumValue(aName, aValue);
    }
}

}  // namespace

GeometrySync::GeometrySync(LxDevice *aGrabber, LxGenParameterArray &aCamera, std::string aSource, bool aEnabled)
    : mGrabber(aGrabber), mCamera(aCamera), mSource(std::move(aSource)), mEnabled(aEnabled)
{
    mCameraFeatures = Register(&aCamera, this);
    mGrabberFeatures = Register(aGrabber == nullptr ? nullptr : aGrabber->GetParameters(), this);
    if (aEnabled) {
        ReadCamera();
        WriteGrabber();
    }
}

GeometrySync::~GeometrySync()
{
    for (const auto *features : {&mCameraFeatures, &mGrabberFeatures}) {
        for (LxGenParameter *feature : *features) {
            feature->UnregisterEventSink(this);
        }
    }
}

void GeometrySync::SetEnabled(bool aEnabled)
{
    {
        std::lock_guard lock(mMutex);
        mEnabled = aEnabled;
    }
    if (aEnabled) {
        ReadCamera();
        WriteGrabber();
    }
}

void GeometrySync::SetSource(const std::string &aSource)
{
    {
        std::lock_guard lock(mMutex);
        mSource = aSource;
    }
    WriteGrabber();
}

void GeometrySync::OnParameterUpdate(LxGenParameter *aParameter)
{
    {
        std::lock_guard lock(mMutex);
        if (!mEnabled) {
            return;
        }
    }
    if (std::find(mCameraFeatures.begin(), mCameraFeatures.end(), aParameter) != mCameraFeatures.end()) {
        ReadCamera();
    }
    WriteGrabber();
}

void GeometrySync::ReadCamera()
{
    const auto width = ReadInteger(mCamera, Names[0]);
    const auto height = ReadInteger(mCamera, Names[1]);
    LxString format;
    mCamera.GetEnumValue(Names[2], format);
    std::lock_guard lock(mMutex);
    mWidth = width;
    mHeight = height;
    mPixelFormat = format.GetString();
}

void GeometrySync::WriteGrabber()
{
    LxGenParameterArray *features = mGrabber == nullptr ? nullptr : mGrabber->GetParameters();
    std::unique_lock lock(mMutex);
    if (!mEnabled || features == nullptr) {
        return;
    }
    const std::string source = mSource;
    const auto width = mWidth;
    const auto height = mHeight;
    const std::string format = mPixelFormat;
    lock.unlock();  // event sinks run during what follows
    WriteEnum(*features, "SourceSelector", source);
    WriteInteger(*features, Names[0], width);
    WriteInteger(*features, Names[1], height);
    WriteEnum(*features, Names[2], format);
}

}  // namespace LxDetail
